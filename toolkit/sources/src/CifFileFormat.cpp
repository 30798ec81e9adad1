#include "CifFileFormat.h"

#include "CifFile.h"

HMoleculeFile CifFileFormat::create_molecule_file() const
{
    return HMoleculeFile(new CifFile);
}

bool CifFileFormat::line_matches(const std::string& line) const
{
    return line.find("data_") != std::string::npos || line.find("_publ_") != std::string::npos ||
           line.find("_symmetry_equiv_pos_as_xyz") != std::string::npos;
}

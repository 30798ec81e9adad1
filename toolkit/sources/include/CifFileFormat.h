#pragma once

#include "TextIdentifiedFileFormat.h"

// CIF as a structure format: files ending .cif or .cmf, or holding a line with "data_",
// "_publ_" or "_symmetry_equiv_pos_as_xyz".
class CifFileFormat : public TextIdentifiedFileFormat {
public:
    HMoleculeFile create_molecule_file() const override;
    std::string description() const override { return "Cif file"; }
    std::string filter() const override { return "Cif files (*.cif *.cmf)"; }
    bool extension_matches(const std::string& extension) const override
    {
        return extension == "cif" || extension == "cmf";
    }
    bool line_matches(const std::string& line) const override;
};

#pragma once

#include "BondDetector.h"
#include "Cell.h"
#include "CifDataBlock.h"
#include "CrystalMaker.h"
#include "Molecule.h"

#include <vector>

// The atoms of a CIF data block as a molecule and as a crystal maker. Bonds are always found
// from the coordinates; the file's own geometry tables are not read. Atoms of a minor disorder
// part (group 2 and up) bond to nothing.
namespace CifMolecule {

struct AtomItems {
    HCifDataItem label;
    HCifDataItem type;
    HCifDataItem x;
    HCifDataItem y;
    HCifDataItem z;
    HCifDataItem occupancy;
    HCifDataItem disorder_group;
};
AtomItems atom_items(const CifDataBlock& block);

// One atom per row of _atom_site_fract_x, its symmetry tag the row; fails with "CifMolecule::atoms:
// no atoms found." without rows, and with "Failed to read atom <label> :reason: <why>" for a row
// that cannot be read.
std::vector<HAtom> atoms(const AtomItems& items);
// The element a label or type symbol names: "C1" C, "Cl2" Cl, "OW1" O, "Cu2+" Cu.
Element element_of(const std::string& type, const std::string& label);
// Whether the row belongs to a minor disorder part: a group whose first character is a digit,
// other than 0 and 1.
bool minor_disorder(const AtomItems& items, int row);
// The bonded pairs among the atoms that are not of a minor disorder part.
BondDetector::Pairs bonds(const AtomItems& items, const std::vector<HAtom>& atoms, const Cell& cell);

HMolecule molecule(const CifDataBlock& block, const Cell& cell);
// The connected parts of the atoms under the bonds, each a molecule, in the order of their first
// atoms.
std::vector<HMolecule> components(const std::string& refcode, const std::vector<HAtom>& atoms,
                                  const BondDetector::Pairs& pairs);
// Each connected part a molecule, completed across symmetry; each atom of a minor disorder part
// that bonds to nothing stays a molecule of its own, in place.
HCrystalMaker crystal_maker(const CifDataBlock& block, const Cell& cell);

} // namespace CifMolecule

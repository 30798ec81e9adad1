#pragma once

#include "Cell.h"
#include "CifDataBlock.h"

#include <string>
#include <vector>

// The cell and the symmetry of a CIF data block. Every failure is a molecule_error with the text
// the user sees; warnings go to the log and, when a list is given, into it.
namespace CifCell {

// The items a block may give its symmetry in: the first found of each kind is used.
struct SymmetryItems {
    HCifDataItem name;
    HCifDataItem number;
    HCifDataItem symops;
};
SymmetryItems symmetry_items(const CifDataBlock& block);

// The six parameters, read with their uncertainties, and the space group. A length or angle
// group that lacks a value stays at zero, which leaves the cell invalid.
Cell cell(const CifDataBlock& block, std::vector<std::string>* warnings = nullptr);

// The operators win over the symbol and the number; a symbol or number that disagrees with them
// is reported and ignored. Without operators the symbol gives the group, and an unknown symbol
// fails. Operators that do not close into a group fail.
Spacegroup extract_spacegroup_and_symmops(const CifDataBlock& block,
                                          std::vector<std::string>* warnings = nullptr);

// The group the block's symbol names, or one named "Unknown" when it names none or gives none.
Spacegroup spacegroup_from_symbol(const CifDataBlock& block);

// Whether two operator lists are the same set, up to lattice translations.
bool same_operators(std::vector<SymmOp> a, std::vector<SymmOp> b);

} // namespace CifCell

#ifndef CIFWARD_STRUCTUREREPORT_H
#define CIFWARD_STRUCTUREREPORT_H

#include "Cell.h"
#include "MoietyFormula.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

class Cif;
class CifDataBlock;

// What cifward-check --structure says of each block with atom sites: the space group from the
// operators and from the symbol, the cell and its volume, the atoms, bonds and molecules after
// the connectivity search, and the moiety formula computed beside the file's own. Every atom
// takes part, those of disorder parts too, so that the parts add up by their occupancies.
class StructureReport {
public:
    struct Block {
        std::string name;
        bool has_atoms = false;
        // Why the structure could not be built; empty when it was.
        std::string failure;
        Cell cell;
        // The group the operators give, known also when the atoms or the cell could not be read.
        std::optional<Spacegroup> spacegroup;
        std::optional<Spacegroup> from_symbol;
        int atoms = 0;
        int bonds = 0;
        MoietyFormula moiety;
        std::string moiety_given;
        // How the computed moiety compares with the given one; empty when the file gives none.
        std::optional<MoietyFormula::Agreement> moiety_agreement;
        std::vector<std::string> warnings;
    };

    static Block analyse(const CifDataBlock& block);
    static std::vector<Block> analyse(const Cif& cif);

    static void write_text(std::ostream& out, const std::string& file, const std::vector<Block>& blocks);
    static void write_json(std::ostream& out, const std::string& file, const std::vector<Block>& blocks,
                           bool one_line);
};

#endif

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "MoleculeError.h"
#include "Spacegroup.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// The values of the first of `names` that the block holds: the core and mmCIF spellings of one item.
std::vector<std::string> values_of(const CifDataBlock& block, std::initializer_list<const char*> names)
{
    std::vector<std::string> values;
    for (const char* name : names)
        if (const HCifDataItem item = block.item(name); item && values.empty())
            for (std::size_t row = 0; row < item->value_count(); ++row)
                values.push_back(item->value(row));
    return values;
}

} // namespace

// For each corpus block whose operators parse, the group found from them must carry the number
// the file states, unless the file's own symbol names the group the operators form (then the
// stated number is the file's mistake). Blocks whose operators form no setting of the table are
// listed.
TEST(SpacegroupCorpus, OperatorsAgreeWithTheStatedNumber)
{
    const fs::path corpus = fs::path(CIFWARD_SHARED_DIR) / "corpus";
    if (!fs::is_directory(corpus))
        GTEST_SKIP() << "no corpus at " << corpus << ": the shared directory is absent";
    int blocks = 0, agreeing = 0, unknown = 0, unparsed = 0;
    std::ostringstream report;
    for (const auto& entry : fs::recursive_directory_iterator(corpus)) {
        if (entry.path().extension() != ".cif")
            continue;
        Cif cif(HCifDictionary(new CifConcreteDictionary));
        std::ifstream in(entry.path(), std::ios::binary);
        cif.read(in);
        for (const HCifDataBlock& block : cif) {
            const std::string where = entry.path().filename().string() + " [" + block->name() + "]: ";
            std::vector<SymmOp> ops;
            try {
                for (const std::string& text :
                     values_of(*block, {"_symmetry_equiv_pos_as_xyz", "_space_group_symop_operation_xyz",
                                        "_symmetry_equiv.pos_as_xyz", "_space_group_symop.operation_xyz"}))
                    ops.emplace_back(text);
            } catch (const molecule_error& e) {
                ++unparsed;
                report << "  " << where << "operators do not parse (" << e.what() << ")\n";
                continue;
            }
            if (ops.empty())
                continue;
            ++blocks;
            const Spacegroup found(ops);
            const std::vector<std::string> number =
                values_of(*block, {"_symmetry_int_tables_number", "_space_group_it_number",
                                   "_symmetry.int_tables_number", "_space_group.it_number"});
            const std::vector<std::string> symbol =
                values_of(*block, {"_symmetry_space_group_name_h-m", "_space_group_name_h-m_alt",
                                   "_symmetry.space_group_name_h-m", "_space_group.name_h-m_alt"});
            if (found.row() < 0) {
                ++unknown;
                report << "  " << where << ops.size() << " operators form no setting of the table\n";
                continue;
            }
            if (number.empty() || !std::isdigit(static_cast<unsigned char>(number[0][0])))
                continue;
            if (found.number() == std::stoi(number[0])) {
                ++agreeing;
                continue;
            }
            int symbol_number = -1;
            try {
                symbol_number = symbol.empty() ? -1 : Spacegroup(symbol[0]).number();
            } catch (const molecule_error&) {
            }
            EXPECT_EQ(symbol_number, found.number())
                << where << "operators give " << found.name() << ", the file states number " << number[0];
            report << "  " << where << "operators and symbol give " << found.name() << ", the stated number "
                   << number[0] << " contradicts both\n";
        }
    }
    std::cout << blocks << " blocks with operators: " << agreeing << " agree with the stated number, "
              << unknown << " form no setting of the table, " << unparsed << " do not parse\n"
              << report.str();
    EXPECT_GT(agreeing, 0);
}

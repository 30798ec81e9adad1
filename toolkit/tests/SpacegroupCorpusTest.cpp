#include "MoleculeError.h"
#include "Spacegroup.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Just enough of CIF to pull the symmetry operators and the International Tables number out of
// each data block: the toolkit does not depend on the CIF engine, and neither does its test.
struct BlockSymmetry {
    std::string block;
    std::vector<std::string> operators;
    std::string it_number;
    std::string symbol;
};

std::vector<std::string> tokenize(std::istream& in)
{
    std::vector<std::string> tokens;
    std::string line;
    bool in_text = false;
    std::string text;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty() && line[0] == ';') {
            if (in_text) {
                tokens.push_back(text);
                text.clear();
                in_text = false;
            } else {
                in_text = true;
                text = line.substr(1);
            }
            continue;
        }
        if (in_text) {
            text += "\n" + line;
            continue;
        }
        std::size_t i = 0;
        while (i < line.size()) {
            if (std::isspace(static_cast<unsigned char>(line[i]))) {
                ++i;
                continue;
            }
            if (line[i] == '#')
                break;
            if (line[i] == '\'' || line[i] == '"') {
                const char quote = line[i];
                std::size_t end = i + 1;
                while (end < line.size() &&
                       !(line[end] == quote &&
                         (end + 1 == line.size() || std::isspace(static_cast<unsigned char>(line[end + 1])))))
                    ++end;
                tokens.push_back(line.substr(i + 1, end - i - 1));
                i = end + 1;
                continue;
            }
            std::size_t end = i;
            while (end < line.size() && !std::isspace(static_cast<unsigned char>(line[end])))
                ++end;
            tokens.push_back(line.substr(i, end - i));
            i = end;
        }
    }
    return tokens;
}

std::string lower(std::string s)
{
    for (char& c : s)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

bool is_operator_tag(const std::string& tag)
{
    const std::string t = lower(tag);
    return t == "_symmetry_equiv_pos_as_xyz" || t == "_space_group_symop_operation_xyz" ||
           t == "_symmetry_equiv.pos_as_xyz" || t == "_space_group_symop.operation_xyz";
}

bool is_number_tag(const std::string& tag)
{
    const std::string t = lower(tag);
    return t == "_symmetry_int_tables_number" || t == "_space_group_it_number" ||
           t == "_symmetry.int_tables_number" || t == "_space_group.it_number";
}

bool is_symbol_tag(const std::string& tag)
{
    const std::string t = lower(tag);
    return t == "_symmetry_space_group_name_h-m" || t == "_space_group_name_h-m_alt" ||
           t == "_symmetry.space_group_name_h-m" || t == "_space_group.name_h-m_alt";
}

bool is_keyword(const std::string& token)
{
    const std::string t = lower(token);
    return t[0] == '_' || t == "loop_" || t.rfind("data_", 0) == 0 || t.rfind("save_", 0) == 0 ||
           t == "global_";
}

std::vector<BlockSymmetry> read_symmetry(const fs::path& path)
{
    std::ifstream in(path);
    const auto tokens = tokenize(in);
    std::vector<BlockSymmetry> blocks;
    std::size_t i = 0;
    while (i < tokens.size()) {
        const std::string& t = tokens[i];
        if (lower(t).rfind("data_", 0) == 0) {
            blocks.push_back({t.substr(5), {}, {}, {}});
            ++i;
        } else if (lower(t) == "loop_") {
            std::vector<std::string> tags;
            ++i;
            while (i < tokens.size() && tokens[i][0] == '_')
                tags.push_back(tokens[i++]);
            std::vector<std::string> values;
            while (i < tokens.size() && !is_keyword(tokens[i]))
                values.push_back(tokens[i++]);
            for (std::size_t col = 0; col < tags.size() && !blocks.empty(); ++col)
                if (is_operator_tag(tags[col]))
                    for (std::size_t v = col; v < values.size(); v += tags.size())
                        blocks.back().operators.push_back(values[v]);
        } else if (t[0] == '_' && i + 1 < tokens.size()) {
            if (is_number_tag(t) && !blocks.empty())
                blocks.back().it_number = tokens[i + 1];
            if (is_symbol_tag(t) && !blocks.empty())
                blocks.back().symbol = tokens[i + 1];
            i += 2;
        } else {
            ++i;
        }
    }
    return blocks;
}

} // namespace

// For each corpus block whose operators parse, the group found from them must carry the number
// the file states. Blocks whose operators form no setting of the table are listed with the
// reason; a found group of another number is a failure.
TEST(SpacegroupCorpus, OperatorsAgreeWithTheStatedNumber)
{
    const fs::path corpus = fs::path(CIFWARD_SHARED_DIR) / "corpus";
    if (!fs::is_directory(corpus))
        GTEST_SKIP() << "no corpus at " << corpus << ": the shared directory is absent";

    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(corpus))
        if (entry.is_regular_file() && lower(entry.path().extension().string()) == ".cif")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());

    int blocks_with_operators = 0, agreeing = 0, unparsed = 0, unknown = 0, without_number = 0,
        contradicted = 0;
    std::ostringstream report;
    for (const auto& file : files) {
        for (const auto& block : read_symmetry(file)) {
            if (block.operators.empty())
                continue;
            ++blocks_with_operators;
            std::vector<SymmOp> ops;
            try {
                for (const auto& text : block.operators)
                    ops.emplace_back(text);
            } catch (const molecule_error& e) {
                ++unparsed;
                report << "  " << file.filename().string() << " [" << block.block
                       << "]: operators do not parse (" << e.what() << ")\n";
                continue;
            }
            const Spacegroup found(ops);
            const std::string& stated = block.it_number;
            const bool has_number = !stated.empty() && std::isdigit(static_cast<unsigned char>(stated[0]));
            if (found.row() < 0) {
                ++unknown;
                report << "  " << file.filename().string() << " [" << block.block << "]: " << ops.size()
                       << " operators form no setting of the table (stated number "
                       << (has_number ? stated : "none") << ")\n";
                continue;
            }
            if (!has_number) {
                ++without_number;
                continue;
            }
            const int stated_number = std::stoi(stated);
            if (found.number() == stated_number) {
                ++agreeing;
                continue;
            }
            // A file whose own symbol names the group its operators form has a wrong number.
            int symbol_number = -1;
            try {
                symbol_number = Spacegroup(block.symbol).number();
            } catch (const molecule_error&) {
            }
            EXPECT_EQ(symbol_number, found.number())
                << file.filename().string() << " [" << block.block << "]: operators give " << found.name()
                << ", the file states number " << stated << " and symbol '" << block.symbol << "'";
            ++contradicted;
            report << "  " << file.filename().string() << " [" << block.block << "]: operators give "
                   << found.name() << " (" << found.number() << "), as its symbol '" << block.symbol
                   << "' does; the stated number " << stated << " contradicts both\n";
        }
    }
    std::cout << files.size() << " files, " << blocks_with_operators << " blocks with operators: " << agreeing
              << " agree with the stated number, " << contradicted
              << " state a number their operators contradict, " << without_number << " state none, "
              << unknown << " form no setting of the table, " << unparsed << " do not parse\n"
              << report.str();
    EXPECT_GT(agreeing, 0);
}

#include "Spacegroup.h"

#include "SpacegroupTable.h"
#include "ToolkitTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <tuple>
#include <vector>

namespace {

std::vector<SymmOp> ops_of(std::initializer_list<const char*> texts)
{
    return std::vector<SymmOp>(texts.begin(), texts.end());
}

} // namespace

TEST(Spacegroup, CanonicalNames)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {" P 21/c ", "P21/c"}, {"p21/C", "P21/c"},      {"P 1 21/n 1", "P21/n"}, {"F m -3 m", "Fm-3m"},
        {"R 3 r", "R3r"},      {"Q 9", "Unknown"},      {"P 21/*", "P21/*"},     {"(P1n1)", "Pn"},
        {"~P1211~", "P21"},    {"P_1_21/c_1", "P21/c"}, {"P", "Unknown"}};
    for (const auto& [text, canonical] : cases)
        EXPECT_EQ(Spacegroup::canonical_name(text), canonical) << '"' << text << '"';
}

TEST(Spacegroup, ByNameAndSetting)
{
    // Name and setting asked; the row's name, number and setting; the operators. A centrosymmetric
    // row stores half of them.
    const std::vector<std::tuple<const char*, int, const char*, int, int, int>> cases = {
        {"P1", -1, "P1", 1, 1, 1},          {"A1", -1, "A1", 1, 2, 2},
        {"F1", -1, "F1", 1, 5, 4},          {"P-1", -1, "P-1", 2, 1, 2},
        {"P1211", -1, "P21", 4, 2, 2},      {"P 1 21/c 1", -1, "P21/c", 14, 5, 4},
        {"P21/c", 1, "P21/b11", 14, 1, 4},  {"P21/n", -1, "P21/n", 14, 6, 4},
        {"C2/c", 1, "C2/c11", 15, 1, 8},    {"C2/c", -1, "C2/c", 15, 5, 8},
        {"C2/c", 6, "C2/c", 15, 6, 8},      {"F2/d", -1, "F2/d", 15, 8, 16},
        {"I2/n", -1, "I2/n", 15, 11, 8},    {"I*aa", -1, "I*aa", 572, 1, 1},
        {"R3", -1, "R3", 146, 1, 9},        {"R3r", -1, "R3r", 146, 2, 3},
        {"R-3", -1, "R-3", 148, 1, 18},     {"Fm-3m", -1, "Fm-3m", 225, 2, 192},
        {"P*", -1, "P*", 502, 1, 1},        {"P21/*", -1, "P21/*", 511, 1, 1},
        {"P6/***", -1, "P6/***", 691, 1, 1}};
    for (const auto& [name, setting, row_name, number, found_setting, nsymmops] : cases) {
        SCOPED_TRACE(name);
        const Spacegroup g(name, setting);
        EXPECT_EQ(g.name(), row_name);
        EXPECT_EQ(g.number(), number);
        EXPECT_EQ(g.setting(), found_setting);
        EXPECT_EQ(g.nsymmops(), nsymmops);
        ASSERT_GE(g.row(), 0);
        const int stored = SpacegroupTable::rows()[g.row()].stored_operators;
        EXPECT_EQ(Spacegroup::is_centrosymmetric(number) ? 2 * stored : stored, nsymmops);
    }
    for (const auto& [name, setting] :
         {std::make_pair("P21/c", 99), std::make_pair("Q9", -1), std::make_pair("P 6/m*m", -1)})
        EXPECT_EQ(failure_of([&] { Spacegroup(name, setting); }),
                  "Spacegroup::Spacegroup: Unknown space group name/setting combination: " +
                      std::string(name) + " " + std::to_string(setting));
    // By number and setting: a missing row leaves the group unknown.
    const std::vector<std::tuple<int, int, const char*>> numbered = {
        {14, 5, "P21/c"}, {1, 2, "A1"}, {14, 99, "Unknown"}, {0, 1, "Unknown"}, {231, 1, "Unknown"}};
    for (const auto& [number, setting, name] : numbered) {
        const Spacegroup g(number, setting);
        EXPECT_EQ(g.name(), name) << number << ":" << setting;
        EXPECT_EQ(g.row() >= 0, std::string(name) != "Unknown") << number << ":" << setting;
    }
}

TEST(Spacegroup, ByOperators)
{
    // Operators, the number and name the search is restricted to, and the name and number found.
    const std::vector<std::tuple<std::vector<SymmOp>, int, const char*, const char*, int>> cases = {
        // Written as a file would, in another order, translations off by lattice vectors.
        {ops_of({"-x,-y,-z", "x,-y+1/2,z+1/2", "x,y,z", "-x,y+1/2,-z-1/2"}), 0, "", "P21/c", 14},
        {ops_of({"+x, +y, +z", "1/2-x,1/2+y,1/2-z", "-x,-y,-z", "-1/2+x,-1/2-y,-1/2+z"}), 0, "", "P21/n", 14},
        {ops_of({"x,y,z", "-x,-y,-z"}), 0, "", "P-1", 2},
        {ops_of({"x,y,z"}), 2, "", "Unknown", -1},
        {ops_of({"x,y,z", "-x,-y,-z"}), 0, "P1", "Unknown", -1},
        {ops_of({"x,y,z", "-x,-y,-z"}), 0, "P -1", "P-1", 2},
        {ops_of({"x,y,z", "-x,y,z+1/3"}), 0, "", "Unknown", -1}, // no group of the table
        {ops_of({"x,y,z", "-y,x-y,z", "-x+y,-x,z", "x+2/3,y+1/3,z+1/3", "-y+2/3,x-y+1/3,z+1/3",
                 "-x+y+2/3,-x+1/3,z+1/3", "x+1/3,y+2/3,z+2/3", "-y+1/3,x-y+2/3,z+2/3",
                 "-x+y+1/3,-x+2/3,z+2/3"}),
         0, "", "R3", 146}};
    for (const auto& [ops, number, name, found_name, found_number] : cases) {
        SCOPED_TRACE(found_name);
        const Spacegroup g(ops, number, name);
        EXPECT_EQ(g.name(), found_name);
        EXPECT_EQ(g.number(), found_number);
        EXPECT_EQ(g.symmops(), ops) << "the given operators are kept in their order";
    }
    // The largest groups, reversed and shifted by lattice vectors.
    for (const char* name : {"Fd-3c", "Im-3m", "P6/mmm"}) {
        SCOPED_TRACE(name);
        const Spacegroup reference(name);
        std::vector<SymmOp> ops(reference.symmops().rbegin(), reference.symmops().rend());
        for (std::size_t i = 0; i < ops.size(); i += 3)
            ops[i].set_trans(ops[i].trans() + Vector3D(1, -2, 0));
        const Spacegroup found(ops);
        EXPECT_EQ(found.number(), reference.number());
        // Im3m and Im-3m are two spellings of one setting: the first row that fits answers.
        EXPECT_LE(found.setting(), reference.setting());
        EXPECT_EQ(Spacegroup(found.name()).nsymmops(), reference.nsymmops());
    }
}

#include "Spacegroup.h"

#include "MoleculeError.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>

namespace {

std::vector<SymmOp> ops_of(std::initializer_list<const char*> texts)
{
    std::vector<SymmOp> ops;
    for (const char* t : texts)
        ops.emplace_back(std::string(t));
    return ops;
}

} // namespace

TEST(Spacegroup, CanonicalNames)
{
    struct Case {
        const char* text;
        const char* canonical;
    };
    const Case cases[] = {
        {" P 21/c ", "P21/c"},   {"P_21/c", "P21/c"},       {"P 1 21/c 1", "P21/c"}, {"p21/C", "P21/c"},
        {"P 1 21/n 1", "P21/n"}, {"P1211", "P21"},          {"C 1 2/c 1", "C2/c"},   {"F m -3 m", "Fm-3m"},
        {"R 3 r", "R3r"},        {"P 21 21 21", "P212121"}, {"Q 9", "Unknown"},      {"P 6/m*m", "Unknown"},
        {"P 21/*", "P21/*"},     {"(P1n1)", "Pn"},          {"~P1211~", "P21"},      {"P:21/c", "P21/c"},
        {"P_1_21/c_1", "P21/c"}, {"P", "Unknown"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Spacegroup::canonical_name(c.text), c.canonical) << '"' << c.text << '"';
}

TEST(Spacegroup, ByNameAndSetting)
{
    struct Case {
        const char* name;
        int setting;
        const char* row_name;
        int number;
        int found_setting;
        int nsymmops;
    };
    const Case cases[] = {
        {"P1", -1, "P1", 1, 1, 1},
        {"P-1", -1, "P-1", 2, 1, 2},
        {"P 1 21/c 1", -1, "P21/c", 14, 5, 4},
        {"P21/c", 1, "P21/b11", 14, 1, 4},
        {"C2/c", 1, "C2/c11", 15, 1, 8},
        {"Fm-3m", -1, "Fm-3m", 225, 2, 192},
        {"P21/*", -1, "P21/*", 511, 1, 1},
        {"R-3", -1, "R-3", 148, 1, 18},
        {"P1211", -1, "P21", 4, 2, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Spacegroup g(c.name, c.setting);
        EXPECT_EQ(g.name(), c.row_name);
        EXPECT_EQ(g.number(), c.number);
        EXPECT_EQ(g.setting(), c.found_setting);
        EXPECT_EQ(g.nsymmops(), c.nsymmops);
    }
    for (const auto& bad :
         {std::make_pair("P21/c", 99), std::make_pair("Q9", -1), std::make_pair("P 6/m*m", -1)}) {
        try {
            Spacegroup g(bad.first, bad.second);
            ADD_FAILURE() << bad.first << " was accepted";
        } catch (const molecule_error& e) {
            EXPECT_EQ(std::string(e.what()),
                      "Spacegroup::Spacegroup: Unknown space group name/setting combination: " +
                          std::string(bad.first) + " " + std::to_string(bad.second));
        }
    }
}

TEST(Spacegroup, ByNumberAndSetting)
{
    struct Case {
        int number;
        int setting;
        const char* name;
        int row_found;
    };
    const Case cases[] = {{14, 5, "P21/c", 1},
                          {1, 2, "A1", 1},
                          {14, 99, "Unknown", 0},
                          {0, 1, "Unknown", 0},
                          {231, 1, "Unknown", 0}};
    for (const auto& c : cases) {
        const Spacegroup g(c.number, c.setting);
        EXPECT_EQ(g.name(), c.name) << c.number << ":" << c.setting;
        EXPECT_EQ(g.row() >= 0, c.row_found == 1);
    }
}

TEST(Spacegroup, ByOperators)
{
    struct Case {
        std::vector<SymmOp> ops;
        int number;
        const char* name;
        const char* found_name;
        int found_number;
    };
    const Case cases[] = {
        // Written as a file would, in another order, translations off by lattice vectors.
        {ops_of({"-x,-y,-z", "x,-y+1/2,z+1/2", "x,y,z", "-x,y+1/2,-z-1/2"}), 0, "", "P21/c", 14},
        {ops_of({"x,y,z", "-x+1/2,y+1/2,-z+1/2", "-x,-y,-z", "x-1/2,-y-1/2,z-1/2"}), 0, "", "P21/n", 14},
        {ops_of({"x,y,z"}), 0, "", "P1", 1},
        {ops_of({"x,y,z", "-x,-y,-z"}), 0, "", "P-1", 2},
        // The restriction to a number or a name is obeyed.
        {ops_of({"x,y,z"}), 2, "", "Unknown", -1},
        {ops_of({"x,y,z", "-x,-y,-z"}), 0, "P1", "Unknown", -1},
        {ops_of({"x,y,z", "-x,-y,-z"}), 0, "P -1", "P-1", 2},
        // Not a group of the table: kept as given.
        {ops_of({"x,y,z", "-x,y,z+1/3"}), 0, "", "Unknown", -1},
        {ops_of({"x,y,z", "-y,x-y,z", "-x+y,-x,z", "x+2/3,y+1/3,z+1/3", "-y+2/3,x-y+1/3,z+1/3",
                 "-x+y+2/3,-x+1/3,z+1/3", "x+1/3,y+2/3,z+2/3", "-y+1/3,x-y+2/3,z+2/3",
                 "-x+y+1/3,-x+2/3,z+2/3"}),
         0, "", "R3", 146},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.found_name);
        const Spacegroup g(c.ops, c.number, c.name);
        EXPECT_EQ(g.name(), c.found_name);
        EXPECT_EQ(g.number(), c.found_number);
        ASSERT_EQ(g.nsymmops(), static_cast<int>(c.ops.size()));
        for (std::size_t i = 0; i < c.ops.size(); ++i)
            EXPECT_EQ(g.symmop(static_cast<int>(i)), c.ops[i]) << "the given order is kept";
    }
}

TEST(Spacegroup, LargestGroupsAreFoundFromShuffledOperators)
{
    for (const char* name : {"Fm-3m", "Fd-3c", "Im-3m", "P6/mmm"}) {
        SCOPED_TRACE(name);
        const Spacegroup reference(name);
        std::vector<SymmOp> ops = reference.symmops();
        std::reverse(ops.begin(), ops.end());
        for (std::size_t i = 0; i < ops.size(); i += 3)
            ops[i].set_trans(ops[i].trans() + Vector3D(1, -2, 0));
        const Spacegroup found(ops);
        EXPECT_EQ(found.number(), reference.number());
        // Im3m and Im-3m are two spellings of one setting: the first row that fits answers.
        EXPECT_LE(found.setting(), reference.setting());
        EXPECT_EQ(Spacegroup(found.name()).nsymmops(), reference.nsymmops());
    }
}

TEST(Spacegroup, CentrosymmetricNumbers)
{
    struct Case {
        int number;
        bool centrosymmetric;
    };
    const Case cases[] = {{1, false},  {2, true},   {3, false},   {10, true},   {15, true},
                          {16, false}, {47, true},  {75, false},  {83, true},   {88, true},
                          {89, false}, {148, true}, {149, false}, {191, true},  {195, false},
                          {200, true}, {230, true}, {231, false}, {502, false}, {691, false}};
    for (const auto& c : cases)
        EXPECT_EQ(Spacegroup::is_centrosymmetric(c.number), c.centrosymmetric) << c.number;
}

TEST(Spacegroup, CopiesShareOperatorsAndPrint)
{
    const Spacegroup g("P21/c");
    const Spacegroup copy = g;
    EXPECT_EQ(&g.symmops(), &copy.symmops());
    EXPECT_EQ(g, copy);
    EXPECT_NE(g, Spacegroup("P21/n"));
    std::ostringstream out;
    out << g;
    EXPECT_EQ(out.str(), "symmop P21/c, number: 14, setting: 5, nsymmops: 4");
    const Spacegroup unset;
    EXPECT_EQ(unset.name(), "Unknown");
    EXPECT_EQ(unset.number(), -1);
    EXPECT_EQ(unset.nsymmops(), 0);
}

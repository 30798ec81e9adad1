#include "SpacegroupTable.h"

#include "Spacegroup.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

bool contains(const std::vector<SymmOp>& sorted, const SymmOp& op)
{
    const auto it = std::lower_bound(sorted.begin(), sorted.end(), op);
    return it != sorted.end() && it->equivalent(op);
}

// Orders of the point groups that a number's crystal system admits.
std::set<int> point_group_orders(int number)
{
    if (number <= 2)
        return {1, 2};
    if (number <= 15)
        return {2, 4};
    if (number <= 74)
        return {4, 8};
    if (number <= 142)
        return {4, 8, 16};
    if (number <= 167)
        return {3, 6, 12};
    if (number <= 194)
        return {6, 12, 24};
    return {12, 24, 48};
}

} // namespace

// For every complete row: the operators close under products modulo lattice translations, the
// identity and (for a centrosymmetric number) the inversion are there, the order of the point
// group suits the number, and the lookup by these operators lands on a row of the same number.
TEST(SpacegroupTable, EveryRowIsAGroupThatItsOperatorsFindAgain)
{
    ASSERT_GT(SpacegroupTable::size(), 600u);
    const SymmOp identity("x,y,z");
    const SymmOp inversion("-x,-y,-z");
    int checked = 0;
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r) {
        const SpacegroupRow& row = SpacegroupTable::rows()[r];
        SCOPED_TRACE(std::string(row.name) + " row " + std::to_string(r));
        const auto& ops = Spacegroup::row_symmops(static_cast<int32_t>(r));
        if (row.number > 230) {
            ASSERT_EQ(ops.size(), 1u);
            EXPECT_TRUE(ops[0].equivalent(identity));
            continue;
        }
        std::vector<SymmOp> sorted = ops;
        std::sort(sorted.begin(), sorted.end());
        for (std::size_t i = 1; i < sorted.size(); ++i)
            ASSERT_FALSE(sorted[i].equivalent(sorted[i - 1])) << "repeated " << sorted[i].text();
        ASSERT_TRUE(contains(sorted, identity));
        EXPECT_EQ(contains(sorted, inversion), Spacegroup::is_centrosymmetric(row.number));
        for (const SymmOp& a : ops)
            for (const SymmOp& b : ops)
                ASSERT_TRUE(contains(sorted, SymmOp(a * b))) << a.text() << " * " << b.text();
        int centring = 0;
        for (const SymmOp& op : ops)
            centring += op.element_type() == 1;
        EXPECT_EQ(point_group_orders(row.number).count(static_cast<int>(ops.size()) / centring), 1u)
            << ops.size() << " operators, " << centring << " centring vectors";
        const Spacegroup found(ops);
        EXPECT_EQ(found.number(), row.number);
        ++checked;
    }
    EXPECT_GT(checked, 550);
}

TEST(SpacegroupTable, RowsRunByNumberAndSetting)
{
    std::set<std::string> names;
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r) {
        const SpacegroupRow& row = SpacegroupTable::rows()[r];
        names.insert(row.name);
        if (r == 0) {
            EXPECT_EQ(row.setting, 1);
            continue;
        }
        const SpacegroupRow& prev = SpacegroupTable::rows()[r - 1];
        if (prev.number == row.number)
            EXPECT_EQ(row.setting, prev.setting + 1) << row.name;
        else
            EXPECT_TRUE(row.number > prev.number && row.setting == 1) << row.name;
    }
    EXPECT_EQ(names.size(), SpacegroupTable::size());
    EXPECT_EQ(SpacegroupTable::rows()[0].number, 1);
    EXPECT_EQ(SpacegroupTable::rows()[SpacegroupTable::size() - 1].number, 726);
}

TEST(SpacegroupTable, TellingRows)
{
    struct Case {
        const char* name;
        int number;
        int setting;
        int stored;
    };
    const Case cases[] = {
        {"P1", 1, 1, 1},      {"A1", 1, 2, 2},       {"F1", 1, 5, 4},       {"P-1", 2, 1, 1},
        {"P21/c", 14, 5, 2},  {"P21/n", 14, 6, 2},   {"C2/c11", 15, 1, 4},  {"C2/c", 15, 5, 4},
        {"R3", 146, 1, 9},    {"R3r", 146, 2, 3},    {"Fm-3m", 225, 2, 96}, {"P*", 502, 1, 1},
        {"P21/*", 511, 1, 1}, {"P6/***", 691, 1, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Spacegroup g(c.name);
        EXPECT_EQ(g.number(), c.number);
        EXPECT_EQ(g.setting(), c.setting);
        ASSERT_GE(g.row(), 0);
        EXPECT_EQ(SpacegroupTable::rows()[g.row()].stored_operators, c.stored);
        const int full = Spacegroup::is_centrosymmetric(c.number) ? 2 * c.stored : c.stored;
        EXPECT_EQ(g.nsymmops(), full);
    }
}

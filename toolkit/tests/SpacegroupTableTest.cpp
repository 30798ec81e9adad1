#include "SpacegroupTable.h"

#include "Spacegroup.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

namespace {

bool contains(const std::vector<SymmOp>& sorted, const SymmOp& op)
{
    const auto it = std::lower_bound(sorted.begin(), sorted.end(), op);
    return it != sorted.end() && it->equivalent(op);
}

// The orders of the point groups of each crystal system, keyed by its last number.
const std::map<int, std::set<int>> point_group_orders = {
    {2, {1, 2}},       {15, {2, 4}},       {74, {4, 8}},       {142, {4, 8, 16}},
    {167, {3, 6, 12}}, {194, {6, 12, 24}}, {230, {12, 24, 48}}};

// Rows whose operators are not a setting of their number. Their names agree with no setting of
// the number their place in the table gives, so their operators are those the symbol generates:
// moved to the given origin, they are a setting of the number the group really has.
struct KnownException {
    int number;
    Vector3D origin;
};
const std::map<std::string, KnownException> known_exceptions = {
    // An n glide across b in an I lattice is also a mirror: the group is I2/m's, at another origin.
    {"I2/n", {12, {0.25, 0.25, 0.25}}},
    // I*aa, the other name that fits no setting, is incomplete: it holds the identity like every
    // incomplete symbol, numbered through the group its own symbol (filled in as Imaa) generates.
};

std::vector<SymmOp> with_origin_at(const std::vector<SymmOp>& ops, const Vector3D& origin)
{
    std::vector<SymmOp> moved;
    for (SymmOp op : ops) {
        op.set_trans(op.trans() + SymmOp(op) * origin - op.trans() - origin);
        moved.push_back(op);
    }
    return moved;
}

// C2/c stands under settings 5 and 6 of number 15.
const std::map<std::string, int> repeated_names = {{"C2/c", 2}};

} // namespace

// Rows run by number and then setting under distinct names. For every complete row: the operators
// close under products modulo lattice translations, the identity and (for a centrosymmetric
// number) the inversion are there, the order of the point group suits the number, and the lookup
// by these operators lands on a row of the same number.
TEST(SpacegroupTable, EveryRowIsAGroupThatItsOperatorsFindAgain)
{
    EXPECT_EQ(SpacegroupTable::size(), 681u);
    EXPECT_EQ(SpacegroupTable::rows()[0].number, 1);
    EXPECT_EQ(SpacegroupTable::rows()[SpacegroupTable::size() - 1].number, 726);
    const SymmOp identity("x,y,z"), inversion("-x,-y,-z");
    std::map<std::string, int> names;
    int checked = 0;
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r) {
        const SpacegroupRow& row = SpacegroupTable::rows()[r];
        SCOPED_TRACE(std::string(row.name) + " row " + std::to_string(r));
        const auto repeated = repeated_names.find(row.name);
        EXPECT_LE(++names[row.name], repeated == repeated_names.end() ? 1 : repeated->second);
        const SpacegroupRow* prev = r > 0 ? &SpacegroupTable::rows()[r - 1] : nullptr;
        if (prev && prev->number == row.number)
            EXPECT_EQ(row.setting, prev->setting + 1);
        else
            EXPECT_TRUE(row.setting == 1 && (!prev || row.number > prev->number));
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
        const auto centring =
            std::count_if(ops.begin(), ops.end(), [](const SymmOp& op) { return op.element_type() == 1; });
        EXPECT_EQ(
            point_group_orders.lower_bound(row.number)->second.count(static_cast<int>(ops.size() / centring)),
            1u)
            << ops.size() << " operators, " << centring << " centring vectors";
        const auto exception = known_exceptions.find(row.name);
        if (exception == known_exceptions.end())
            EXPECT_EQ(Spacegroup(ops).number(), row.number);
        else
            EXPECT_EQ(Spacegroup(with_origin_at(ops, exception->second.origin)).number(),
                      exception->second.number);
        ++checked;
    }
    EXPECT_GT(checked, 550);
}

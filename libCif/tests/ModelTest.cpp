#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDataBlock.h"
#include "CifDataItem.h"
#include "CifErrorException.h"
#include "CifLoop.h"
#include "CifTestSupport.h"
#include "THandle.h"

#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

HCifDictionary empty_dictionary()
{
    return HCifDictionary(new CifConcreteDictionary);
}

std::string join(const std::vector<std::string>& parts)
{
    std::string out;
    for (const std::string& p : parts)
        out += (out.empty() ? "" : " ") + p;
    return out;
}

std::string item_order(const CifDataBlock& block)
{
    std::vector<std::string> names;
    for (const HCifDataItem& item : block)
        names.push_back(item->name());
    return join(names);
}

std::string values_of(const CifDataItem& item)
{
    std::vector<std::string> out;
    for (std::size_t row = 0; row < item.value_count(); ++row)
        out.push_back(item.value(row));
    return join(out);
}

// A block whose single items named in `names` each hold their own name as value.
HCifDataBlock block_with(const std::vector<std::string>& names, std::int32_t line = -1)
{
    HCifDataBlock block(new CifDataBlock("data_x", line, empty_dictionary()));
    for (const std::string& name : names)
        block->add_item(name)->set_single_value("v" + name);
    return block;
}

template <class F> CifError thrown_by(F action)
{
    try {
        action();
    } catch (const CifErrorException& e) {
        return e.error();
    }
    ADD_FAILURE() << "no CifErrorException";
    return CifError(0, -1);
}

struct Counted {
    static int destroyed;
    virtual ~Counted() { ++destroyed; }
};
int Counted::destroyed = 0;
struct CountedChild : Counted {
    int extra = 7;
};

TEST(THandle, SharesOneCountAndFreesAtZero)
{
    Counted::destroyed = 0;
    {
        THandle<Counted> a(new Counted);
        EXPECT_EQ(a.use_count(), 1);
        {
            THandle<Counted> b(a);
            THandle<Counted> c;
            c = b;
            EXPECT_EQ(a.use_count(), 3);
            EXPECT_TRUE(b == a);
            c = c; // self-assignment keeps the object
            EXPECT_EQ(a.use_count(), 3);
        }
        EXPECT_EQ(a.use_count(), 1);
        EXPECT_EQ(Counted::destroyed, 0);
        THandle<Counted> moved(std::move(a));
        EXPECT_TRUE(a.is_null());
        EXPECT_EQ(moved.use_count(), 1);
        EXPECT_EQ(Counted::destroyed, 0);
    }
    EXPECT_EQ(Counted::destroyed, 1);

    // A handle to the base shares the count of the handle to the derived class.
    {
        THandle<CountedChild> child(new CountedChild);
        THandle<Counted> base(child);
        EXPECT_EQ(child.use_count(), 2);
        child = THandle<CountedChild>();
        EXPECT_EQ(Counted::destroyed, 1);
        EXPECT_EQ(base.use_count(), 1);
    }
    EXPECT_EQ(Counted::destroyed, 2);
}

TEST(THandle, NullHandleRefusesAccess)
{
    THandle<Counted> null;
    EXPECT_FALSE(null);
    EXPECT_EQ(null.use_count(), 0);
    EXPECT_EQ(null.get(), nullptr);
    try {
        (void)*null;
        ADD_FAILURE() << "no exception";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "Internal error: access of null handle");
    }
    EXPECT_THROW((void)null.operator->(), std::logic_error);
    THandle<Counted> from_null_pointer(static_cast<Counted*>(nullptr));
    EXPECT_TRUE(from_null_pointer.is_null());
    EXPECT_EQ(from_null_pointer.use_count(), 0);
}

TEST(CifCommentable, EmptyTextRemovesTheEntry)
{
    CifLoop loop; // any comment-bearing class will do
    EXPECT_FALSE(loop.has_comment(1));
    EXPECT_EQ(loop.comment(1), "");
    loop.set_comment(1, "# a\n");
    loop.set_comment(2, "# b\n");
    EXPECT_TRUE(loop.has_comment(1));
    EXPECT_EQ(loop.comment(1), "# a\n");
    loop.set_comment(1, "# c\n");
    EXPECT_EQ(loop.comment(1), "# c\n");
    loop.set_comment(1, "");
    EXPECT_FALSE(loop.has_comment(1));
    EXPECT_EQ(loop.comment(1), "");
    EXPECT_EQ(loop.comments().size(), 1u);
    CifLoop other;
    other.copy_comments(loop);
    EXPECT_EQ(other.comment(2), "# b\n");
}

TEST(CifDataItem, ValuesGrowAndShrinkAsDescribed)
{
    CifDataItem item("_a", empty_dictionary());
    item.set_looped();
    for (const char* v : {"1", "2", "3"})
        item.add_value(v);
    EXPECT_EQ(item.value(5), ""); // beyond the end of a looped column: empty, no failure
    EXPECT_EQ(item.value_count(), 3u);

    CifDataItem two("_b", empty_dictionary());
    two.set_looped();
    two.add_value("p");
    two.add_value("q");
    EXPECT_EQ(two.set_value(4, "r"), 0);
    EXPECT_EQ(two.value_count(), 5u);
    EXPECT_EQ(two.value(2), "");
    EXPECT_EQ(two.value(3), "");
    EXPECT_EQ(two.value(4), "r");
    two.remove_value(0);
    EXPECT_EQ(two.first_value(), "q");
    EXPECT_EQ(two.value_count(), 4u);
    two.clear_values();
    EXPECT_FALSE(two.has_value());

    CifDataItem single("_c", empty_dictionary());
    EXPECT_EQ(single.set_single_value("x"), 0);
    EXPECT_EQ(single.first_value(), "x");
    EXPECT_EQ(single.set_single_value("y"), 0);
    EXPECT_EQ(single.value_count(), 1u);
    EXPECT_EQ(single.first_value(), "y");
    single.set_single_value("");
    EXPECT_FALSE(single.has_value());
    EXPECT_EQ(single.first_value(), "");

    // The check still stores a refused value and only reports it.
    CifConcreteDictionary* numbers = new CifConcreteDictionary;
    HCifDictionary numbers_handle(numbers);
    CifDictionaryEntry numb;
    numb.type = CifDictionaryEntry::Numb;
    numbers->add_entry({"_n"}, numb);
    CifDataItem number("_N", numbers_handle);
    number.set_looped();
    EXPECT_EQ(number.set_value(1, "abc"), 3);
    EXPECT_EQ(number.value(1), "abc");
    EXPECT_EQ(number.set_value(0, "1.2.3"), 2);
    EXPECT_EQ(number.check("12"), 0);
    EXPECT_EQ(number.check("12(3)"), 6); // an uncertainty needs "esd" in the dictionary
    EXPECT_EQ(number.set_single_value("?"), 0);
    CifDataItem flags("_Atom_Site_Refinement_Flags", empty_dictionary());
    EXPECT_EQ(flags.set_single_value("?"), 1);
    EXPECT_EQ(flags.first_value(), "?");
    EXPECT_EQ(flags.check("SG"), 0);
}

TEST(CifDataItem, NotLoopedGuardRaisesOnlyBeyondRowZero)
{
    struct Case {
        const char* label;
        std::function<void(CifDataItem&)> action;
        const char* refused_action; // nullptr: allowed
    };
    CifDataItem two_values("_two", empty_dictionary());
    two_values.set_looped();
    two_values.add_value("1");
    two_values.add_value("2");
    CifDataItem one_value("_one", empty_dictionary());
    one_value.set_single_value("1");

    const std::vector<Case> cases = {
        {"add_value to an empty item", [](CifDataItem& i) { i.clear_values(), i.add_value("n"); }, nullptr},
        {"add_value to a full item", [](CifDataItem& i) { i.add_value("n"); }, "add_value"},
        {"set_value row 0", [](CifDataItem& i) { i.set_value(0, "n"); }, nullptr},
        {"set_value row 1", [](CifDataItem& i) { i.set_value(1, "n"); }, "set_value"},
        {"value row 0", [](CifDataItem& i) { (void)i.value(0); }, nullptr},
        {"value row 5", [](CifDataItem& i) { (void)i.value(5); }, "value"},
        {"remove_value row 0", [](CifDataItem& i) { i.remove_value(0); }, nullptr},
        {"remove_value row 1", [](CifDataItem& i) { i.remove_value(1); }, "remove_value"},
        {"copy_value of one value", [&](CifDataItem& i) { i.copy_value(one_value); }, nullptr},
        {"copy_value of two values", [&](CifDataItem& i) { i.copy_value(two_values); }, "copy_value"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        CifDataItem single("_s", empty_dictionary());
        single.set_single_value("0");
        if (!c.refused_action) {
            EXPECT_NO_THROW(c.action(single));
        } else {
            try {
                c.action(single);
                ADD_FAILURE() << "no exception";
            } catch (const CifErrorException& e) {
                EXPECT_EQ(e.error().code, 345u);
                EXPECT_EQ(e.error().first, c.refused_action);
                EXPECT_EQ(
                    std::string(e.what()).rfind("Error: Internal error: Action invalid as data item not "
                                                "looped, action: " +
                                                    std::string(c.refused_action) + ", name: ",
                                                0),
                    0u)
                    << e.what();
            }
        }
        // Once looped, every one of them is legal.
        CifDataItem looped("_l", empty_dictionary());
        looped.set_looped();
        looped.add_value("0");
        EXPECT_NO_THROW(c.action(looped));
    }
    CifDataItem copy("_copy", empty_dictionary());
    copy.set_looped();
    copy.copy_value(two_values);
    EXPECT_EQ(values_of(copy), "1 2");
}

TEST(CifLoop, NameOperations)
{
    struct Case {
        const char* label;
        std::function<void(CifLoop&)> action;
        std::string names;
    };
    const std::vector<Case> cases = {
        {"add keeps names unique", [](CifLoop& l) { l.add("_b"), l.add("_d"); }, "_a _b _c _d"},
        {"remove", [](CifLoop& l) { l.remove("_b"); }, "_a _c"},
        {"remove absent", [](CifLoop& l) { l.remove("_z"); }, "_a _b _c"},
        {"move_to_end", [](CifLoop& l) { l.move_to_end("_a"); }, "_b _c _a"},
        {"move_to_end absent", [](CifLoop& l) { l.move_to_end("_z"); }, "_a _b _c"},
        {"reorder skips unknown names",
         [](CifLoop& l) {
             l.reorder({"_c", "_x", "_a"});
         },
         "_c _a _b"},
        {"reorder stops at the end",
         [](CifLoop& l) {
             l.reorder({"_c", "_b", "_a", "_c"});
         },
         "_c _b _a"},
        {"reorder with one name", [](CifLoop& l) { l.reorder({"_b"}); }, "_b _a _c"},
        // Data names compare without regard to case everywhere.
        {"remove ignores case", [](CifLoop& l) { l.remove("_B"); }, "_a _c"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        CifLoop loop({"_a", "_b", "_c"});
        c.action(loop);
        EXPECT_EQ(join(loop.names()), c.names);
    }
    CifLoop loop({"_a"});
    EXPECT_TRUE(loop.contains("_a"));
    EXPECT_TRUE(loop.contains("_A"));
    EXPECT_FALSE(loop.contains("_b"));
    loop.set_note(0, "# n\n");
    ASSERT_FALSE(loop.notes().empty());
    EXPECT_EQ(loop.notes()[0], "# n\n");
    std::vector<std::string> out = {"_z"};
    loop.add_names_to(out);
    EXPECT_EQ(join(out), "_z _a");
    loop.remove("_a");
    EXPECT_TRUE(loop.empty());
}

TEST(CifDataBlock, ItemsAreFoundWithoutRegardToCase)
{
    HCifDataBlock block = block_with({});
    HCifDataItem first = block->add_item("_Cell_A");
    HCifDataItem again = block->add_item("_cell_a");
    EXPECT_TRUE(first == again);
    EXPECT_EQ(block->item_count(), 1u);
    EXPECT_EQ(again->name(), "_Cell_A");
    EXPECT_TRUE(block->item("_CELL_A") == first);
    EXPECT_TRUE(block->item("_cell_b").is_null());
    EXPECT_FALSE(block->has_value("_cell_a"));
    first->set_single_value("5");
    EXPECT_TRUE(block->has_value("_CELL_a"));
    EXPECT_EQ(block->first_value("_cell_A"), "5");
    EXPECT_EQ(block->first_value("_nothing"), "");
    EXPECT_FALSE(block->is_looped("_cell_a"));
}

TEST(CifDataBlock, AddLoopRefusesBadLoops)
{
    HCifDataBlock block = block_with({"_a", "_b", "_c"}, 7);
    const CifError null_loop = thrown_by([&] { block->add_loop(HCifLoop()); });
    EXPECT_EQ(null_loop.code, 316u);
    EXPECT_EQ(null_loop.first, "CifDataBlock::adding null loop");
    const CifError no_names = thrown_by([&] { block->add_loop(HCifLoop(new CifLoop)); });
    EXPECT_EQ(no_names.code, 316u);
    EXPECT_EQ(no_names.first, "CifDataBlock::adding null loop");
    const CifError missing = thrown_by([&] { block->add_loop(HCifLoop(new CifLoop({"_a", "_q"}))); });
    EXPECT_EQ(missing.code, 316u);
    EXPECT_EQ(missing.first, "Creating invalid loop, item _q does not exist");
    EXPECT_TRUE(block->loops().empty());

    block->add_loop(HCifLoop(new CifLoop({"_a", "_b"})));
    EXPECT_EQ(block->loops().size(), 1u);
    EXPECT_TRUE(block->is_looped("_a"));
    EXPECT_TRUE(block->is_looped("_b"));
    std::vector<std::string> names;
    block->loop_names("_B", names);
    EXPECT_EQ(join(names), "_a _b");
    names.clear();
    block->loop_names("_c", names);
    EXPECT_TRUE(names.empty());

    const CifError taken = thrown_by([&] { block->add_loop(HCifLoop(new CifLoop({"_b", "_c"}))); });
    EXPECT_EQ(taken.code, 318u);
    EXPECT_EQ(taken.first, "_b");
    EXPECT_EQ(taken.line, 7);
    EXPECT_EQ(block->loops().size(), 1u);
}

TEST(CifDataBlock, MakeLoopJoinsAndMergesLoops)
{
    HCifDataBlock block = block_with({"_s", "_t", "_u"});
    add_loop_with_values(*block, {{"_a", {"1", "2"}}, {"_b", {"3", "4"}}});
    add_loop_with_values(*block, {{"_c", {"5", "6"}}});
    const std::string order = item_order(*block);

    block->make_loop({"_s", "_nothing", "_t"});
    ASSERT_EQ(block->loops().size(), 3u);
    EXPECT_EQ(join(block->loops().back()->names()), "_s _t");
    EXPECT_TRUE(block->is_looped("_s"));
    EXPECT_FALSE(block->is_looped("_u"));
    EXPECT_EQ(block->first_value("_s"), "v_s");

    block->make_loop({"_c", "_b", "_u"});
    ASSERT_EQ(block->loops().size(), 2u);
    const HCifLoop merged = block->loops().front();
    for (const char* name : {"_a", "_b", "_c", "_u"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(merged->contains(name));
        EXPECT_TRUE(block->is_looped(name));
        EXPECT_TRUE(block->loop_of(name) == merged);
    }
    EXPECT_EQ(merged->count(), 4u);
    EXPECT_EQ(values_of(*block->item("_c")), "5 6");
    EXPECT_EQ(item_order(*block), order);
}

TEST(CifDataBlock, RemoveItemLeavesItsLoopAndEmptyLoopsGo)
{
    HCifDataBlock block = block_with({"_s"});
    add_loop_with_values(*block, {{"_a", {"1"}}, {"_b", {"2"}}});
    block->remove_item("_nothing");
    EXPECT_EQ(item_order(*block), "_s _a _b");
    block->remove_item("_A");
    EXPECT_EQ(item_order(*block), "_s _b");
    EXPECT_TRUE(block->item("_a").is_null());
    ASSERT_EQ(block->loops().size(), 1u);
    EXPECT_EQ(join(block->loops().front()->names()), "_b");
    block->remove_item("_b");
    EXPECT_TRUE(block->loops().empty());
    block->remove_item("_s");
    EXPECT_EQ(block->item_count(), 0u);
}

TEST(CifDataBlock, CopyItemFollowsTheSourceShape)
{
    HCifDataBlock source = block_with({"_s"});
    source->item("_s")->set_comment(0, "# about s\n");
    add_loop_with_values(*source, {{"_a", {"1", "2"}}, {"_b", {"3", "4"}}});
    source->add_item("_empty");

    HCifDataBlock target = block_with({});
    EXPECT_FALSE(target->copy_item("_empty", *source, false));
    EXPECT_FALSE(target->copy_item("_missing", *source, false));
    EXPECT_TRUE(target->item("_missing").is_null());
    EXPECT_TRUE(target->copy_item("_s", *source, false));
    EXPECT_EQ(target->first_value("_s"), "v_s");
    EXPECT_EQ(target->item("_s")->comment(0), "# about s\n");

    target->item("_s")->set_single_value("mine");
    EXPECT_FALSE(target->copy_item("_s", *source, true));
    EXPECT_EQ(target->first_value("_s"), "mine");
    EXPECT_TRUE(target->copy_item("_s", *source, false));
    EXPECT_EQ(target->first_value("_s"), "v_s");

    EXPECT_TRUE(target->copy_item("_a", *source, false));
    EXPECT_TRUE(target->is_looped("_a"));
    EXPECT_EQ(values_of(*target->item("_a")), "1 2");
    EXPECT_FALSE(target->loop_of("_a").is_null());

    // A single source value replaces a looped item here by a single one, out of its loop.
    HCifDataBlock looped_here = block_with({});
    add_loop_with_values(*looped_here, {{"_s", {"x", "y"}}, {"_k", {"1", "2"}}});
    EXPECT_TRUE(looped_here->copy_item("_s", *source, false));
    EXPECT_FALSE(looped_here->is_looped("_s"));
    EXPECT_EQ(values_of(*looped_here->item("_s")), "v_s");
    ASSERT_EQ(looped_here->loops().size(), 1u);
    EXPECT_EQ(join(looped_here->loops().front()->names()), "_k");
}

TEST(CifDataBlock, CopyLoopAndCopyBlock)
{
    HCifDataBlock source = block_with({"_s"});
    add_loop_with_values(*source, {{"_a", {"1", "2"}}, {"_b", {"3", "4"}}});
    source->loops().front()->set_comment(1, "# the loop\n");
    source->add_item("_t")->set_single_value("t");

    HCifDataBlock kept = block_with({"_b"});
    kept->copy_loop({"_a", "_b"}, *source, true);
    EXPECT_TRUE(kept->item("_a").is_null());
    EXPECT_EQ(kept->first_value("_b"), "v_b");

    HCifDataBlock loop_copy = block_with({});
    loop_copy->copy_loop({"_a", "_b"}, *source, false);
    ASSERT_EQ(loop_copy->loops().size(), 1u);
    EXPECT_EQ(loop_copy->loops().front()->count(), 2u);
    EXPECT_EQ(loop_copy->loops().front()->comment(1), "# the loop\n");
    EXPECT_EQ(values_of(*loop_copy->item("_b")), "3 4");

    HCifDataBlock whole = block_with({"_t"});
    whole->item("_t")->set_single_value("mine");
    whole->copy_block(*source, true);
    EXPECT_EQ(item_order(*whole), "_t _s _a _b");
    EXPECT_EQ(whole->first_value("_t"), "mine");
    EXPECT_EQ(whole->loops().size(), 1u);
    EXPECT_EQ(values_of(*whole->item("_a")), "1 2");
    whole->copy_block(*source, false);
    EXPECT_EQ(whole->first_value("_t"), "t");
    EXPECT_EQ(whole->loops().size(), 1u);
}

TEST(CifDataBlock, SetWriteOrderModes)
{
    struct Case {
        std::vector<std::string> names;
        int mode;
        std::string order;
    };
    const std::vector<Case> cases = {
        {{"_d", "_b"}, CifDataBlock::AfterLast, "_a _c _e _d _b"},
        {{"_d", "_b"}, CifDataBlock::BeforeFirst, "_d _b _a _c _e"},
        // Destinations that are themselves moved step on to the next item.
        {{"_d", "_b"}, CifDataBlock::AtFirstNamed, "_a _c _d _b _e"},
        {{"_d", "_b"}, CifDataBlock::AtFirstInList, "_a _d _b _c _e"},
        {{"_b", "_d"}, CifDataBlock::AtFirstNamed, "_a _b _d _c _e"},
        {{"_b", "_a"}, CifDataBlock::AtFirstNamed, "_b _a _c _d _e"},
        {{"_c", "_a"}, CifDataBlock::AtFirstInList, "_c _a _b _d _e"},
        {{"_zz", "_D", "_b"}, CifDataBlock::AtFirstNamed, "_a _c _d _b _e"},
        {{"_e"}, CifDataBlock::AfterLast, "_a _b _c _d _e"},
        {{"_e"}, CifDataBlock::AtFirstNamed, "_a _b _c _d _e"},
        {{"_a"}, CifDataBlock::BeforeFirst, "_a _b _c _d _e"},
        {{"_c", "_a"}, CifDataBlock::AfterLast, "_b _d _e _c _a"},
        {{"_zz", "_yy"}, CifDataBlock::AfterLast, "_a _b _c _d _e"},
        {{}, CifDataBlock::BeforeFirst, "_a _b _c _d _e"},
        // A bad mode is only noticed once some name is present.
        {{"_zz"}, 7, "_a _b _c _d _e"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(join(c.names) + " mode " + std::to_string(c.mode));
        HCifDataBlock block = block_with({"_a", "_b", "_c", "_d", "_e"});
        block->set_write_order(c.names, c.mode);
        EXPECT_EQ(item_order(*block), c.order);
        EXPECT_EQ(block->item_count(), 5u);
    }
    for (int mode : {7, -1, 4}) {
        SCOPED_TRACE(mode);
        HCifDataBlock block = block_with({"_a", "_b"});
        const CifError bad = thrown_by([&] { block->set_write_order({"_b"}, mode); });
        EXPECT_EQ(bad.code, 316u);
        EXPECT_EQ(bad.first, "Invalid move of cif data item: CifDataBlock::set_write_order mode was " +
                                 std::to_string(mode));
        EXPECT_EQ(item_order(*block), "_a _b");
    }
}

TEST(CifDataBlock, SetWriteOrderReordersLoopColumns)
{
    HCifDataBlock block = block_with({"_a"});
    add_loop_with_values(*block, {{"_b", {"1"}}, {"_c", {"2"}}, {"_d", {"3"}}});
    block->add_item("_e")->set_single_value("e");
    block->set_write_order({"_d", "_b"}, CifDataBlock::AfterLast);
    EXPECT_EQ(item_order(*block), "_a _c _e _d _b");
    EXPECT_EQ(join(block->loops().front()->names()), "_d _b _c");
    EXPECT_EQ(block->first_value("_d"), "3");
}

TEST(Cif, BlockLookupAndInsertion)
{
    Cif cif(empty_dictionary());
    EXPECT_EQ(cif.block_count(), 0u);
    std::istringstream in("data_a\n\n\n\ndata_b\n\n\n\ndata_c\n");
    cif.read(in, 80);
    ASSERT_EQ(cif.block_count(), 3u);

    // A block made by a program has line -1 and is stepped over by the cursor lookup.
    const HCifDataBlock added = cif.add_block("data_new", cif.begin() + 1);
    EXPECT_EQ(added->line(), -1);
    EXPECT_EQ(cif.block_count(), 4u);
    const HCifDataBlock front = cif.add_block("data_front", cif.begin());
    std::vector<std::string> names;
    for (const HCifDataBlock& b : cif)
        names.push_back(b->name());
    EXPECT_EQ(join(names), "data_front data_a data_new data_b data_c");

    // An existing name gives that block and ignores the position.
    const HCifDataBlock again = cif.add_block("data_b", cif.begin());
    EXPECT_TRUE(again == cif.block_handle(3));
    EXPECT_EQ(cif.block_count(), 5u);
    EXPECT_EQ(cif.block(0).name(), "data_front");
    // Block names compare exactly.
    const HCifDataBlock upper = cif.add_block("data_B", cif.end());
    EXPECT_FALSE(upper == again);
    EXPECT_EQ(cif.block_count(), 6u);
    EXPECT_TRUE(cif.find_block("data_b") == cif.begin() + 3);
    EXPECT_TRUE(cif.find_block("data_B") == cif.begin() + 5);
    EXPECT_TRUE(cif.find_block("data_q") == cif.end());

    struct Case {
        std::int32_t line;
        const char* block; // nullptr: end
    };
    const std::vector<Case> cases = {{1, "data_a"}, {4, "data_a"},   {5, "data_b"}, {8, "data_b"},
                                     {9, "data_c"}, {100, "data_c"}, {0, nullptr},  {-2, nullptr}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        const Cif::iterator it = cif.block_at_line(c.line);
        if (!c.block) {
            EXPECT_TRUE(it == cif.end());
        } else if (it == cif.end()) {
            ADD_FAILURE() << "no block";
        } else {
            EXPECT_EQ((*it)->name(), c.block);
        }
    }

    for (std::size_t index : {6u, 100u}) {
        try {
            (void)cif.block(index);
            ADD_FAILURE() << "no exception";
        } catch (const std::out_of_range& e) {
            EXPECT_EQ(std::string(e.what()), "Cif does not have block " + std::to_string(index));
        }
        EXPECT_THROW((void)cif.block_handle(index), std::out_of_range);
    }
}

} // namespace

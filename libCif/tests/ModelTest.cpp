#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDataBlock.h"
#include "CifDataItem.h"
#include "CifErrorException.h"
#include "CifLoop.h"
#include "CifTestSupport.h"
#include "THandle.h"

#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
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

// The block's items in order, each with its values ("=1|2"), a * after a looped one; then its
// loops by columns.
std::string contents(const CifDataBlock& block)
{
    std::vector<std::string> out;
    for (const HCifDataItem& item : block) {
        std::string text = item->name() + (item->is_looped() ? "*" : "") + "=";
        for (std::size_t row = 0; row < item->value_count(); ++row)
            text += (row ? "|" : "") + item->value(row);
        out.push_back(text);
    }
    for (const HCifLoop& loop : block.loops())
        out.push_back("loop(" + join(loop->names()) + ")");
    return join(out);
}

// A block whose single items named in `names` each hold "v" and their own name as value.
HCifDataBlock block_with(const std::vector<std::string>& names, std::int32_t line = -1)
{
    HCifDataBlock block(new CifDataBlock("data_x", line, empty_dictionary()));
    for (const std::string& name : names)
        block->add_item(name)->set_single_value("v" + name);
    return block;
}

// "code:first" of the CifErrorException that `action` throws.
template <class F> std::string thrown_by(F action)
{
    try {
        action();
    } catch (const CifErrorException& e) {
        return std::to_string(e.error().code) + ":" + e.error().first;
    }
    return "no CifErrorException";
}

struct Counted {
    static int destroyed;
    virtual ~Counted() { ++destroyed; }
};
int Counted::destroyed = 0;
struct CountedChild : Counted {};

TEST(THandle, SharesOneCountFreesAtZeroAndRefusesNull)
{
    Counted::destroyed = 0;
    {
        THandle<Counted> a(new Counted);
        {
            THandle<Counted> b(a), c;
            c = b;
            c = c; // self-assignment keeps the object
            EXPECT_EQ(a.use_count(), 3);
            EXPECT_TRUE(b == a);
        }
        THandle<Counted> moved(std::move(a));
        EXPECT_TRUE(a.is_null());
        EXPECT_EQ(moved.use_count(), 1);
        EXPECT_EQ(Counted::destroyed, 0);
    }
    EXPECT_EQ(Counted::destroyed, 1);
    // A handle to the base shares the count of the handle to the derived class.
    THandle<CountedChild> child(new CountedChild);
    THandle<Counted> base(child);
    EXPECT_EQ(child.use_count(), 2);
    child = THandle<CountedChild>();
    EXPECT_EQ(Counted::destroyed, 1);
    base = THandle<Counted>(static_cast<Counted*>(nullptr));
    EXPECT_EQ(Counted::destroyed, 2);

    EXPECT_FALSE(base);
    EXPECT_EQ(base.use_count(), 0);
    try {
        (void)*base;
        ADD_FAILURE() << "no exception";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "Internal error: access of null handle");
    }
    EXPECT_THROW((void)base.operator->(), std::logic_error);
}

TEST(CifCommentable, EmptyTextRemovesTheEntry)
{
    CifLoop loop, other; // any comment-bearing class will do
    loop.set_comment(1, "# a\n");
    loop.set_comment(2, "# b\n");
    loop.set_comment(1, "# c\n");
    EXPECT_EQ(loop.comment(1), "# c\n");
    loop.set_comment(1, "");
    EXPECT_FALSE(loop.has_comment(1));
    EXPECT_EQ(loop.comment(1), "");
    EXPECT_EQ(loop.comments().size(), 1u);
    other.copy_comments(loop);
    EXPECT_EQ(other.comment(2), "# b\n");
}

TEST(CifDataItem, ValuesGrowShrinkAndAreChecked)
{
    CifDataItem item("_b", empty_dictionary());
    item.set_looped();
    item.add_value("p");
    item.add_value("q");
    EXPECT_EQ(item.value(5), ""); // beyond the end of a looped column: empty, no failure
    EXPECT_EQ(item.set_value(4, "r"), 0);
    EXPECT_EQ(join({item.value(0), item.value(1), item.value(2), item.value(3), item.value(4)}), "p q   r");
    item.remove_value(0);
    EXPECT_EQ(item.first_value() + std::to_string(item.value_count()), "q4");
    item.clear_values();
    EXPECT_FALSE(item.has_value());

    CifDataItem single("_c", empty_dictionary());
    single.set_single_value("x");
    EXPECT_EQ(single.set_single_value("y"), 0);
    EXPECT_EQ(single.first_value() + std::to_string(single.value_count()), "y1");
    single.set_single_value("");
    EXPECT_FALSE(single.has_value());

    // The check still stores a refused value and only reports it.
    HCifConcreteDictionary numbers(new CifConcreteDictionary);
    CifDictionaryEntry numb;
    numb.type = CifDictionaryEntry::Numb;
    numbers->add_entry({"_n"}, numb);
    CifDataItem number("_N", numbers);
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
    CifDataItem two_values("_two", empty_dictionary()), one_value("_one", empty_dictionary());
    two_values.set_looped();
    two_values.add_value("1");
    two_values.add_value("2");
    one_value.set_single_value("1");
    const std::vector<std::pair<const char*, std::function<void(CifDataItem&)>>> cases = {
        {"", [](CifDataItem& i) { i.clear_values(), i.add_value("n"); }},
        {"add_value", [](CifDataItem& i) { i.add_value("n"); }},
        {"", [](CifDataItem& i) { i.set_value(0, "n"); }},
        {"set_value", [](CifDataItem& i) { i.set_value(1, "n"); }},
        {"", [](CifDataItem& i) { (void)i.value(0); }},
        {"value", [](CifDataItem& i) { (void)i.value(5); }},
        {"", [](CifDataItem& i) { i.remove_value(0); }},
        {"remove_value", [](CifDataItem& i) { i.remove_value(1); }},
        {"", [&](CifDataItem& i) { i.copy_value(one_value); }},
        {"copy_value", [&](CifDataItem& i) { i.copy_value(two_values); }},
    };
    for (std::size_t n = 0; n < cases.size(); ++n) {
        const auto& [refused, action] = cases[n]; // refused: the action named in the finding
        SCOPED_TRACE(n);
        CifDataItem single("_s", empty_dictionary());
        single.set_single_value("0");
        try {
            action(single);
            EXPECT_STREQ(refused, "");
        } catch (const CifErrorException& e) {
            EXPECT_EQ(std::string(e.what()),
                      "Error: Internal error: Action invalid as data item not looped, action: " +
                          std::string(refused) + ", name: _s");
            EXPECT_EQ(e.error().code, 345u);
        }
        // Once looped, every one of them is legal.
        CifDataItem looped("_l", empty_dictionary());
        looped.set_looped();
        looped.add_value("0");
        EXPECT_NO_THROW(action(looped));
        if (n == cases.size() - 1) {
            EXPECT_EQ(looped.value(0) + looped.value(1) + std::to_string(looped.value_count()), "122");
        }
    }
}

TEST(CifLoop, NameOperations)
{
    struct Case {
        const char* action;
        std::vector<std::string> names;
        std::string result;
    };
    const std::vector<Case> cases = {
        {"add", {"_b", "_d"}, "_a _b _c _d"}, // names stay unique
        {"remove", {"_B"}, "_a _c"},          // names compare without regard to case
        {"remove", {"_z"}, "_a _b _c"},
        {"move_to_end", {"_a"}, "_b _c _a"},
        {"move_to_end", {"_z"}, "_a _b _c"},
        {"reorder", {"_c", "_x", "_a"}, "_c _a _b"}, // unknown names are skipped
        {"reorder", {"_c", "_b", "_a", "_c"}, "_c _b _a"},
        {"reorder", {"_b"}, "_b _a _c"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.action) + " " + join(c.names));
        CifLoop loop({"_a", "_b", "_c"});
        const std::string action = c.action;
        if (action == "reorder")
            loop.reorder(c.names);
        else
            for (const std::string& name : c.names)
                action == "add"      ? loop.add(name)
                : action == "remove" ? loop.remove(name)
                                     : loop.move_to_end(name);
        EXPECT_EQ(join(loop.names()), c.result);
    }
    CifLoop loop({"_a"});
    EXPECT_TRUE(loop.contains("_A"));
    EXPECT_FALSE(loop.contains("_b"));
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
    EXPECT_TRUE(block->add_item("_cell_a") == first);
    EXPECT_TRUE(block->item("_CELL_A") == first);
    EXPECT_TRUE(block->item("_cell_b").is_null());
    EXPECT_FALSE(block->has_value("_cell_a"));
    first->set_single_value("5");
    EXPECT_TRUE(block->has_value("_CELL_a"));
    EXPECT_EQ(block->first_value("_cell_A") + block->first_value("_nothing"), "5");
    EXPECT_EQ(contents(*block), "_Cell_A=5");
}

TEST(CifDataBlock, AddLoopRefusesBadLoops)
{
    HCifDataBlock block = block_with({"_a", "_b", "_c"}, 7);
    EXPECT_EQ(thrown_by([&] { block->add_loop(HCifLoop()); }), "316:CifDataBlock::adding null loop");
    EXPECT_EQ(thrown_by([&] { block->add_loop(HCifLoop(new CifLoop)); }),
              "316:CifDataBlock::adding null loop");
    EXPECT_EQ(thrown_by([&] {
                  block->add_loop(HCifLoop(new CifLoop({"_a", "_q"})));
              }),
              "316:Creating invalid loop, item _q does not exist");
    block->add_loop(HCifLoop(new CifLoop({"_a", "_b"})));
    std::vector<std::string> names;
    block->loop_names("_B", names);
    block->loop_names("_c", names);
    EXPECT_EQ(join(names), "_a _b");
    EXPECT_EQ(contents(*block), "_a*=v_a _b*=v_b _c=v_c loop(_a _b)");
    try {
        block->add_loop(HCifLoop(new CifLoop({"_b", "_c"})));
        ADD_FAILURE() << "no exception";
    } catch (const CifErrorException& e) {
        EXPECT_EQ(std::to_string(e.error().code) + ":" + e.error().first + "@" +
                      std::to_string(e.error().line),
                  "318:_b@7");
    }
    EXPECT_EQ(block->loops().size(), 1u);
    // The refused loop leaves _c a single item, as it was.
    EXPECT_EQ(contents(*block), "_a*=v_a _b*=v_b _c=v_c loop(_a _b)");
}

TEST(CifDataBlock, MakeLoopRemoveItemAndCopies)
{
    HCifDataBlock block = block_with({"_s", "_t", "_u"});
    add_loop_with_values(*block, {{"_a", {"1", "2"}}, {"_b", {"3", "4"}}});
    add_loop_with_values(*block, {{"_c", {"5", "6"}}});
    block->make_loop({"_s", "_nothing", "_t"});
    EXPECT_EQ(contents(*block),
              "_s*=v_s _t*=v_t _u=v_u _a*=1|2 _b*=3|4 _c*=5|6 loop(_a _b) loop(_c) loop(_s _t)");
    // Joining columns of two loops and a single item merges them into the first loop.
    block->make_loop({"_c", "_b", "_u"});
    EXPECT_EQ(contents(*block),
              "_s*=v_s _t*=v_t _u*=v_u _a*=1|2 _b*=3|4 _c*=5|6 loop(_a _b _c _u) loop(_s _t)");
    EXPECT_TRUE(block->loop_of("_U") == block->loops().front());

    // A removed item leaves its loop, and an emptied loop goes.
    block->remove_item("_nothing");
    block->remove_item("_A");
    block->remove_item("_s");
    block->remove_item("_t");
    EXPECT_EQ(contents(*block), "_u*=v_u _b*=3|4 _c*=5|6 loop(_b _c _u)");

    HCifDataBlock source = block_with({"_s", "_t"});
    source->item("_s")->set_comment(0, "# about s\n");
    add_loop_with_values(*source, {{"_a", {"1", "2"}}, {"_b", {"3", "4"}}});
    source->loops().front()->set_comment(1, "# the loop\n");
    source->add_item("_empty");
    // A single source value replaces a looped item here by a single one, out of its loop.
    HCifDataBlock target = block_with({"_t"});
    add_loop_with_values(*target, {{"_k", {"1", "2"}}, {"_s", {"x", "y"}}});
    EXPECT_FALSE(target->copy_item("_empty", *source, false));
    EXPECT_FALSE(target->copy_item("_missing", *source, false));
    target->item("_t")->set_single_value("mine");
    EXPECT_FALSE(target->copy_item("_t", *source, true));
    EXPECT_EQ(target->first_value("_t"), "mine");
    EXPECT_TRUE(target->copy_item("_t", *source, false));
    EXPECT_TRUE(target->copy_item("_s", *source, false));
    EXPECT_TRUE(target->copy_item("_a", *source, false));
    EXPECT_EQ(contents(*target), "_t=v_t _k*=1|2 _s=v_s _a*=1|2 loop(_k) loop(_a)");
    EXPECT_EQ(target->item("_s")->comment(0), "# about s\n");

    HCifDataBlock loops = block_with({"_b"});
    loops->copy_loop({"_a", "_b"}, *source, true);
    EXPECT_EQ(contents(*loops), "_b=v_b");
    loops->copy_loop({"_a", "_b"}, *source, false);
    EXPECT_EQ(contents(*loops), "_b*=3|4 _a*=1|2 loop(_a _b)");
    EXPECT_EQ(loops->loops().front()->comment(1), "# the loop\n");

    HCifDataBlock whole = block_with({"_t"});
    whole->item("_t")->set_single_value("mine");
    whole->copy_block(*source, true);
    EXPECT_EQ(contents(*whole), "_t=mine _s=v_s _a*=1|2 _b*=3|4 loop(_a _b)");
    whole->copy_block(*source, false);
    EXPECT_EQ(contents(*whole), "_t=v_t _s=v_s _a*=1|2 _b*=3|4 loop(_a _b)");
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
        {{"_zz", "_yy"}, CifDataBlock::AfterLast, "_a _b _c _d _e"},
        {{}, CifDataBlock::BeforeFirst, "_a _b _c _d _e"},
        // A bad mode is only noticed once some name is present.
        {{"_zz"}, 7, "_a _b _c _d _e"},
        {{"_b"}, 7, "316:Invalid move of cif data item: CifDataBlock::set_write_order mode was 7"},
        {{"_b"}, -1, "316:Invalid move of cif data item: CifDataBlock::set_write_order mode was -1"},
        {{"_b"}, 4, "316:Invalid move of cif data item: CifDataBlock::set_write_order mode was 4"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(join(c.names) + " mode " + std::to_string(c.mode));
        HCifDataBlock block = block_with({"_a", "_b", "_c", "_d", "_e"});
        const std::string error = thrown_by([&] { block->set_write_order(c.names, c.mode); });
        std::vector<std::string> order;
        for (const HCifDataItem& item : *block)
            order.push_back(item->name());
        EXPECT_EQ(error == "no CifErrorException" ? join(order) : error, c.order);
        if (error != "no CifErrorException") {
            EXPECT_EQ(join(order), "_a _b _c _d _e");
        }
    }
    // Columns of a loop are put in the same order.
    HCifDataBlock block = block_with({"_a"});
    add_loop_with_values(*block, {{"_b", {"1"}}, {"_c", {"2"}}, {"_d", {"3"}}});
    block->add_item("_e")->set_single_value("e");
    block->set_write_order({"_d", "_b"}, CifDataBlock::AfterLast);
    EXPECT_EQ(contents(*block), "_a=v_a _c*=2 _e=e _d*=3 _b*=1 loop(_d _b _c)");
}

TEST(Cif, BlockLookupAndInsertion)
{
    Cif cif(empty_dictionary());
    std::istringstream in("data_a\n\n\n\ndata_b\n\n\n\ndata_c\n");
    cif.read(in, 80);
    // A block made by a program has line -1 and is stepped over by the cursor lookup.
    EXPECT_EQ(cif.add_block("data_new", cif.begin() + 1)->line(), -1);
    cif.add_block("data_front", cif.begin());
    // An existing name gives that block and ignores the position; block names compare exactly.
    EXPECT_TRUE(cif.add_block("data_b", cif.begin()) == cif.block_handle(3));
    cif.add_block("data_B", cif.end());
    std::vector<std::string> names;
    for (const HCifDataBlock& b : cif)
        names.push_back(b->name());
    EXPECT_EQ(join(names), "data_front data_a data_new data_b data_c data_B");
    EXPECT_TRUE(cif.find_block("data_B") == cif.begin() + 5);
    EXPECT_TRUE(cif.find_block("data_q") == cif.end());

    const std::vector<std::pair<std::int32_t, std::string>> cases = {
        {1, "data_a"}, {4, "data_a"},   {5, "data_b"}, {8, "data_b"},
        {9, "data_c"}, {100, "data_c"}, {0, ""},       {-2, ""}};
    for (const auto& [line, block] : cases) {
        SCOPED_TRACE(line);
        const Cif::iterator it = cif.block_at_line(line);
        EXPECT_EQ(it == cif.end() ? "" : (*it)->name(), block);
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

// A read document's parts share its memory. A block or item kept after the document is read
// again and destroyed must stay whole, copy into another document, and take edits once the block
// is gone too.
TEST(Cif, PartsKeptOutliveTheirDocument)
{
    std::ifstream in(std::string(CIFWARD_SHARED_DIR) + "/corpus/iucr-ciftest/real/4hir.cif");
    if (!in)
        GTEST_SKIP() << "corpus not found: set CIFWARD_SHARED_DIR";
    auto cif = std::make_unique<Cif>(empty_dictionary());
    cif->read(in, 80);
    HCifDataBlock block = cif->block_handle(0);
    std::ostringstream before;
    block->write(before, 80);
    HCifDataItem looped, single;
    for (const HCifDataItem& item : *block) {
        if (!looped && item->is_looped() && item->value_count() > 2)
            looped = item;
        if (!single && !item->is_looped() && item->value(0).size() > 16)
            single = item;
    }
    ASSERT_TRUE(looped && single);
    std::vector<std::string> column;
    for (std::size_t row = 0; row < looped->value_count(); ++row)
        column.push_back(looped->value(row));
    const std::string text = single->value(0);

    std::istringstream other("data_other\n_x 1\n");
    cif->read(other, 80);
    cif.reset();
    std::ostringstream after;
    block->write(after, 80);
    EXPECT_EQ(after.str(), before.str());
    Cif target(empty_dictionary());
    target.add_block("data_target", target.end())->copy_item(single->name(), *block, false);
    block = HCifDataBlock();

    EXPECT_EQ(target.block(0).first_value(single->name()), text);
    EXPECT_EQ(single->value(0), text);
    column[1] = "a value longer than sixteen characters";
    looped->set_value(1, column[1]);
    single->set_value(0, "short");
    EXPECT_EQ(single->value(0), "short");
    ASSERT_EQ(looped->value_count(), column.size());
    for (std::size_t row = 0; row < column.size(); ++row)
        EXPECT_EQ(looped->value(row), column[row]) << row;
}

} // namespace

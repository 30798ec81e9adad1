// The document model as the editing tools use it: items, loops, blocks and the document.

#include "CifDataItem.h"
#include "CifErrorException.h"
#include "CifLoop.h"
#include "CifTestSupport.h"

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

// "code:first@line" of the CifErrorException that `action` throws, or nothing.
std::string thrown_by(const std::function<void()>& action)
{
    try {
        action();
    } catch (const CifErrorException& e) {
        return std::to_string(e.error().code) + ":" + e.error().first + "@" + std::to_string(e.error().line);
    }
    return "";
}

// Values grow, shrink and are checked; a refused value is still stored, and a single item refuses
// every row but the first.
TEST(CifDataItem, ValuesAreStoredCheckedAndGuarded)
{
    CifDataItem number("_N", dictionary_from("data_n _name '_n' _type numb\n"));
    number.set_looped();
    number.add_value("p");
    EXPECT_EQ(number.set_value(3, "abc"), 3);
    EXPECT_EQ(number.set_value(1, "1.2.3"), 2);
    number.remove_value(0);
    EXPECT_EQ(comma_joined({number.value(0), number.value(1), number.value(2), number.value(5)}),
              "1.2.3,,abc,");
    EXPECT_EQ(std::to_string(number.check("12")) + std::to_string(number.check("12(3)")), "06");

    CifDataItem single("_s", empty_dictionary()), two("_two", empty_dictionary());
    single.set_single_value("0");
    two.set_looped();
    two.add_value("1");
    two.add_value("2");
    for (const auto& [refused, action] : std::vector<std::pair<std::string, std::function<void()>>>{
             {"", [&] { single.set_value(0, "n"); }},
             {"set_value", [&] { single.set_value(1, "n"); }},
             {"add_value", [&] { single.add_value("n"); }},
             {"value", [&] { (void)single.value(5); }},
             {"remove_value", [&] { single.remove_value(1); }},
             {"copy_value", [&] { single.copy_value(two); }}})
        EXPECT_EQ(thrown_by(action), refused.empty() ? "" : "345:" + refused + "@-1");
    try {
        single.add_value("n");
    } catch (const CifErrorException& e) {
        EXPECT_STREQ(e.what(),
                     "Error: Internal error: Action invalid as data item not looped, action: add_value, "
                     "name: _s");
    }
}

// The block's items in order, each with its values ("=1|2"), a * after a looped one; then its loops.
std::string contents(const CifDataBlock& block)
{
    std::string out;
    for (const HCifDataItem& item : block) {
        out += item->name() + (item->is_looped() ? "*=" : "=");
        for (std::size_t row = 0; row < item->value_count(); ++row)
            out += (row ? "|" : "") + item->value(row);
        out += " ";
    }
    for (const HCifLoop& loop : block.loops())
        out += "loop(" + comma_joined(loop->names()) + ") ";
    return out;
}

// Each row starts from a block holding "_t=v", "_s=v" and a loop of _a and _b, and one holding
// the same with _t set to "mine" and a loop of _k and _s, and edits the second.
TEST(CifDataBlock, EditsAndCopies)
{
    struct Case {
        const char* what;
        std::function<void(CifDataBlock& target, const CifDataBlock& source)> edit;
        const char* contents;
    };
    const std::vector<Case> cases = {
        {"a loop of an unknown item is refused",
         [](CifDataBlock& t, const CifDataBlock&) {
             EXPECT_EQ(thrown_by([&] {
                           t.add_loop(HCifLoop(new CifLoop({"_t", "_q"})));
                       }),
                       "316:Creating invalid loop, item _q does not exist@-1");
             EXPECT_EQ(thrown_by([&] { t.add_loop(HCifLoop(new CifLoop({"_T", "_s"}))); }), "318:_s@7");
         },
         "_t=mine _k*=1|2 _s*=x|y loop(_k,_s) "},
        {"joined columns merge into the first loop",
         [](CifDataBlock& t, const CifDataBlock&) {
             t.make_loop({"_nothing", "_s", "_T"});
         },
         "_t*=mine _k*=1|2 _s*=x|y loop(_k,_s,_t) "},
        {"a removed item leaves its loop; an emptied loop goes",
         [](CifDataBlock& t, const CifDataBlock&) {
             t.remove_item("_K");
             t.remove_item("_s");
         },
         "_t=mine "},
        {"copied items: a single value replaces a looped item, an existing one is kept if asked",
         [](CifDataBlock& t, const CifDataBlock& s) {
             EXPECT_FALSE(t.copy_item("_empty", s, false) || t.copy_item("_t", s, true));
             EXPECT_TRUE(t.copy_item("_s", s, false) && t.copy_item("_a", s, false));
             EXPECT_EQ(t.item("_s")->comment(0), "# about s\n");
         },
         "_t=mine _k*=1|2 _s=v _a*=1|2 loop(_k) loop(_a) "},
        {"a copied loop keeps its comments",
         [](CifDataBlock& t, const CifDataBlock& s) {
             t.copy_loop({"_a", "_b"}, s, false);
             EXPECT_EQ(t.loops().back()->comment(1), "# the loop\n");
         },
         "_t=mine _k*=1|2 _s*=x|y _a*=1|2 _b*=3|4 loop(_k,_s) loop(_a,_b) "},
        {"a copied block keeps what is asked",
         [](CifDataBlock& t, const CifDataBlock& s) { t.copy_block(s, true); },
         "_t=mine _k*=1|2 _s*=x|y _a*=1|2 _b*=3|4 loop(_k,_s) loop(_a,_b) "},
        {"a copied block replaces the rest",
         [](CifDataBlock& t, const CifDataBlock& s) { t.copy_block(s, false); },
         "_t=v _k*=1|2 _s=v _a*=1|2 _b*=3|4 loop(_k) loop(_a,_b) "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        HCifDataBlock source(new CifDataBlock("data_s", 1, empty_dictionary())),
            target(new CifDataBlock("data_t", 7, empty_dictionary()));
        for (const HCifDataBlock& block : {source, target})
            block->add_item("_t")->set_single_value("v");
        source->add_item("_s")->set_single_value("v");
        source->item("_s")->set_comment(0, "# about s\n");
        add_loop_with_values(*source, {{"_a", {"1", "2"}}, {"_b", {"3", "4"}}});
        source->loops().front()->set_comment(1, "# the loop\n");
        source->add_item("_empty");
        target->item("_t")->set_single_value("mine");
        add_loop_with_values(*target, {{"_k", {"1", "2"}}, {"_s", {"x", "y"}}});
        c.edit(*target, *source);
        EXPECT_EQ(contents(*target), c.contents);
    }
}

TEST(CifDataBlock, SetWriteOrderModes)
{
    const std::vector<std::tuple<std::vector<std::string>, int, const char*>> cases = {
        {{"_d", "_b"}, CifDataBlock::AfterLast, "_a,_c,_e,_d,_b"},
        {{"_d", "_b"}, CifDataBlock::BeforeFirst, "_d,_b,_a,_c,_e"},
        // Destinations that are themselves moved step on to the next item.
        {{"_d", "_b"}, CifDataBlock::AtFirstNamed, "_a,_c,_d,_b,_e"},
        {{"_d", "_b"}, CifDataBlock::AtFirstInList, "_a,_d,_b,_c,_e"},
        {{"_b", "_a"}, CifDataBlock::AtFirstNamed, "_b,_a,_c,_d,_e"},
        {{"_zz", "_D", "_b"}, CifDataBlock::AtFirstNamed, "_a,_c,_d,_b,_e"},
        {{"_b"}, 4, "316:Invalid move of cif data item: CifDataBlock::set_write_order mode was 4@-1"},
    };
    for (const auto& [names, mode, order] : cases) {
        HCifDataBlock block(new CifDataBlock("data_x", 1, empty_dictionary()));
        for (const char* name : {"_a", "_b", "_c", "_d", "_e"})
            block->add_item(name);
        const std::string error = thrown_by([&] { block->set_write_order(names, mode); });
        std::vector<std::string> items;
        for (const HCifDataItem& item : *block)
            items.push_back(item->name());
        EXPECT_EQ(error.empty() ? comma_joined(items) : error, order)
            << comma_joined(names) << " mode " << mode;
    }
    // Columns of a loop are put in the same order.
    HCifDataBlock block(new CifDataBlock("data_x", 1, empty_dictionary()));
    add_loop_with_values(*block, {{"_b", {"1"}}, {"_c", {"2"}}, {"_d", {"3"}}});
    block->set_write_order({"_d", "_b"}, CifDataBlock::AfterLast);
    EXPECT_EQ(contents(*block), "_c*=2 _d*=3 _b*=1 loop(_d,_b,_c) ");
}

TEST(Cif, BlockLookupAndInsertion)
{
    Cif cif(empty_dictionary());
    std::istringstream in("data_a\n\n\n\ndata_b\n\n\n\ndata_c\n");
    cif.read(in, 80);
    // A block made by a program has line -1 and is stepped over by the cursor lookup.
    EXPECT_EQ(cif.add_block("data_new", cif.begin() + 1)->line(), -1);
    // An existing name gives that block and ignores the position; block names compare exactly.
    EXPECT_TRUE(cif.add_block("data_b", cif.begin()) == cif.block_handle(2));
    cif.add_block("data_B", cif.end());
    EXPECT_EQ(describe(cif, false), "data_a{} data_new{} data_b{} data_c{} data_B{}");
    EXPECT_TRUE(cif.find_block("data_B") == cif.begin() + 4 && cif.find_block("data_q") == cif.end());
    for (const auto& [line, block] :
         std::vector<std::pair<int, std::string>>{{4, "data_a"}, {5, "data_b"}, {100, "data_c"}, {0, ""}}) {
        const Cif::iterator it = cif.block_at_line(line);
        EXPECT_EQ(it == cif.end() ? "" : (*it)->name(), block) << line;
    }
    EXPECT_THROW((void)cif.block(5), std::out_of_range);
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

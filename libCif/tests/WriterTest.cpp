#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Columns = std::vector<std::pair<std::string, std::vector<std::string>>>;

std::string escaped(const std::string& text)
{
    std::string out;
    for (char c : text)
        out += c == '\n' ? std::string("\\n") : c == '\t' ? std::string("\\t") : std::string(1, c);
    return out;
}

std::string pad(const std::string& name)
{
    return name + std::string(name.size() < 32 ? 32 - name.size() : 0, ' ');
}

HCif new_cif()
{
    return HCif(new Cif(HCifDictionary(new CifConcreteDictionary)));
}

std::string written(const Cif& cif, unsigned limit = 80)
{
    std::ostringstream out;
    cif.write(out, limit);
    return out.str();
}

HCif read_back(const std::string& text)
{
    HCif cif = new_cif();
    cif->errors()->suppress(320);
    std::istringstream in(text);
    cif->read(in, 80);
    return cif;
}

std::string findings(const Cif& cif)
{
    std::string out;
    for (const CifError& e : *cif.errors())
        out += (out.empty() ? "" : " ") + std::to_string(e.code) + "@" + std::to_string(e.line) + "[" +
               e.first + "]";
    return out;
}

struct Single {
    std::string name;
    std::string value;
    std::string between;
    std::string after;
};

std::string write_single(const Single& s, unsigned limit = 80)
{
    HCif cif = new_cif();
    HCifDataItem item = cif->add_block("data_x", cif->end())->add_item(s.name);
    item->set_single_value(s.value);
    item->set_comment(1, s.between);
    item->set_comment(2, s.after);
    return written(*cif, limit);
}

TEST(Writer, SingleItemLayout)
{
    const std::string n32 = "_" + std::string(31, 'n');
    const std::string n40 = "_" + std::string(39, 'n');
    const auto v = [](std::size_t n) { return std::string(n, 'v'); };
    const auto quoted = [](std::size_t n) { return "a " + std::string(n - 2, 'q'); };
    const auto comment = [](std::size_t n) { return "#" + std::string(n - 2, 'c') + "\n"; };
    struct Case {
        std::string label;
        Single item;
        unsigned limit;
        std::string expected; // after the heading line
    };
    const std::vector<Case> cases = {
        {"padded to 32", {"_a", "1", "", ""}, 80, pad("_a") + " 1\n"},
        {"a long name is not cut", {n40, "1", "", ""}, 80, n40 + " 1\n"},
        {"long value breaks", {n32, v(60), "", ""}, 80, n32 + " \n" + v(60) + "\n"},
        {"fits up to the margin", {"_a", v(45), "", ""}, 80, pad("_a") + " " + v(45) + "\n"},
        {"one past the margin", {"_a", v(46), "", ""}, 80, pad("_a") + " \n" + v(46) + "\n"},
        {"quotes count in the width", {"_a", quoted(43), "", ""}, 80, pad("_a") + " '" + quoted(43) + "'\n"},
        {"quotes push past the margin",
         {"_a", quoted(44), "", ""},
         80,
         pad("_a") + " \n'" + quoted(44) + "'\n"},
        {"smaller limit", {"_a", v(10), "", ""}, 40, pad("_a") + " \n" + v(10) + "\n"},
        {"smaller limit, fits", {"_a", v(5), "", ""}, 40, pad("_a") + " " + v(5) + "\n"},
        {"blank quoted", {"_a", "a b", "", ""}, 80, pad("_a") + " 'a b'\n"},
        {"apostrophe chooses double quotes", {"_a", "it's a", "", ""}, 80, pad("_a") + " \"it's a\"\n"},
        {"leading underscore", {"_a", "_x", "", ""}, 80, pad("_a") + " '_x'\n"},
        {"leading bracket", {"_a", "[x]", "", ""}, 80, pad("_a") + " '[x]'\n"},
        {"numbers go through as text", {"_a", "1.234(5)", "", ""}, 80, pad("_a") + " 1.234(5)\n"},
        {"comment after", {"_a", "1", "", "# c\n"}, 80, pad("_a") + " 1 # c\n"},
        {"value and comment kept together",
         {"_a", "1", "", comment(44)},
         80,
         pad("_a") + " 1 " + comment(44)},
        {"value moves to keep its comment",
         {"_a", "1", "", comment(45)},
         80,
         pad("_a") + " \n1 " + comment(45)},
        {"comment too long for any line", {"_a", "1", "", comment(80)}, 80, pad("_a") + " 1\n" + comment(80)},
        {"comment between", {"_a", "1", "# c\n", ""}, 80, pad("_a") + " # c\n1\n"},
        {"between fits", {"_a", "1", comment(46), ""}, 80, pad("_a") + " " + comment(46) + "1\n"},
        {"between breaks", {"_a", "1", comment(47), ""}, 80, pad("_a") + " \n" + comment(47) + "1\n"},
        {"text block", {"_a", "x\ny\n", "", ""}, 80, pad("_a") + " \n;x\ny\n;\n"},
        {"text block gets its line end", {"_a", "x\ny", "", ""}, 80, pad("_a") + " \n;x\ny\n;\n"},
        {"text block with comment after", {"_a", "x\n", "", "# c\n"}, 80, pad("_a") + " \n;x\n; # c\n"},
        {"text block after between", {"_a", "x\n", "# c\n", ""}, 80, pad("_a") + " # c\n;x\n;\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(write_single(c.item, c.limit), "data_x\n" + c.expected);
    }
}

TEST(Writer, BlocksCommentsAndEmptiedItems)
{
    HCif cif = read_back("# top\n\ndata_a # h\n# c0\n_a 1 # c2\n_gone 2 # c\n_b 3\ndata_b\n_c 4\n# tail\n");
    ASSERT_EQ(findings(*cif), "");
    cif->block(0).item("_gone")->set_single_value("");
    EXPECT_EQ(written(*cif), "# top\n\ndata_a # h\n# c0\n" + pad("_a") + " 1 # c2\n" + pad("_b") + " 3\n" +
                                 "data_b\n" + pad("_c") + " 4\n# tail\n");

    HCif made = new_cif();
    made->add_block("data_a", made->end())->add_item("_a")->set_single_value("1");
    made->add_block("data_b", made->end());
    HCifDataItem empty = made->block(1).add_item("_e");
    empty->set_comment(0, "# about e\n");
    EXPECT_EQ(written(*made), "data_a\n" + pad("_a") + " 1\ndata_b\n");

    // The block made for data before any heading keeps its reserved name when written.
    HCif early = read_back("_a 1\n");
    EXPECT_EQ(findings(*early), "305@1[]");
    EXPECT_EQ(std::string(cif_added_block_name), "data_added_by_cifward");
    EXPECT_EQ(written(*early), "data_added_by_cifward\n" + pad("_a") + " 1\n");
}

TEST(Writer, LoopLayout)
{
    struct Case {
        std::string label;
        Columns columns;
        unsigned limit;
        std::string expected; // after the heading line
    };
    const std::vector<Case> cases = {
        {"rows", {{"_a", {"1", "3"}}, {"_b", {"2", "4"}}}, 80, "loop_\n_a\n_b\n1 2\n3 4\n"},
        {"empty and quoted values",
         {{"_a", {"", "x"}}, {"_b", {"a b", "it's a"}}},
         80,
         "loop_\n_a\n_b\n'' 'a b'\nx \"it's a\"\n"},
        {"text block mid-row",
         {{"_a", {"1"}}, {"_b", {"x\n"}}, {"_c", {"2"}}},
         80,
         "loop_\n_a\n_b\n_c\n1\n;x\n;\n2\n"},
        {"rows ending in text blocks",
         {{"_a", {"1", "3"}}, {"_b", {"x\n", "y\nz"}}},
         80,
         "loop_\n_a\n_b\n1\n;x\n;\n3\n;y\nz\n;\n"},
        {"text block first", {{"_a", {"x\n"}}, {"_b", {"2"}}}, 80, "loop_\n_a\n_b\n;x\n;\n2\n"},
        {"no rows", {{"_a", {}}, {"_b", {}}}, 80, "loop_\n_a\n_b\n"},
        {"bare values break at limit - 2",
         {{"_a", {"aaaaaaaaa"}}, {"_b", {"bbbbbbbbb"}}, {"_c", {"ccccccccc"}}},
         20,
         "loop_\n_a\n_b\n_c\naaaaaaaaa bbbbbbbbb\nccccccccc\n"},
        {"quoted values break at limit - 4",
         {{"_a", {"a bcdef"}}, {"_b", {"a bcdef"}}, {"_c", {"a bcdef"}}},
         20,
         "loop_\n_a\n_b\n_c\n'a bcdef' 'a bcdef'\n'a bcdef'\n"},
        {"bare margin",
         {{"_a", {"aaaaaaaaa"}}, {"_b", {"bcdefghi"}}},
         20,
         "loop_\n_a\n_b\naaaaaaaaa bcdefghi\n"},
        {"quoted margin",
         {{"_a", {"aaaaaaaaa"}}, {"_b", {"b cdefgh"}}},
         20,
         "loop_\n_a\n_b\naaaaaaaaa\n'b cdefgh'\n"},
        {"awkward values are quoted",
         {{"_a", {"#x", "data_y"}}, {"_b", {"'q", "a\tb"}}},
         80,
         "loop_\n_a\n_b\n'#x' \"'q\"\n'data_y' 'a\tb'\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        HCif cif = new_cif();
        add_loop_with_values(*cif->add_block("data_x", cif->end()), c.columns);
        EXPECT_EQ(written(*cif, c.limit), "data_x\n" + c.expected);
    }
}

TEST(Writer, LoopCommentsAndPlacement)
{
    HCif cif = new_cif();
    HCifDataBlock block = cif->add_block("data_x", cif->end());
    block->add_item("_s1")->set_single_value("1");
    block->add_item("_l1");
    block->add_item("_s2")->set_single_value("2");
    block->add_item("_l2");
    block->add_loop(HCifLoop(new CifLoop({"_l2", "_l1"})));
    block->item("_l1")->add_value("A");
    block->item("_l2")->add_value("B");
    const HCifLoop loop = block->loops().front();
    loop->set_comment(1, "# lc\n");
    loop->set_comment(2, "# on\n");
    loop->set_note(0, "# n\n");
    block->item("_l2")->set_comment(0, "# a0\n");
    block->item("_l2")->set_comment(1, "# a1\n");
    block->item("_l2")->set_comment(3, "# t\n");
    block->item("_l1")->set_comment(3, "# u\n");
    // A loop stands where its first column stands among the items, columns in loop order.
    EXPECT_EQ(written(*cif), "data_x\n" + pad("_s1") +
                                 " 1\n# lc\nloop_ # on\n# a0\n_l2 # a1\n_l1\n# n\nB A\n# t\n# u\n" +
                                 pad("_s2") + " 2\n");
}

TEST(Writer, ValuesThatWouldReadBackOtherwiseAreProtected)
{
    struct Case {
        std::string value;
        std::string expected; // after the padded name and its blank
    };
    const std::vector<Case> cases = {
        {"#x", "'#x'\n"},
        {"'x", "\"'x\"\n"},
        {"\"x", "'\"x'\n"},
        {"$x", "'$x'\n"},
        {";x", "';x'\n"},
        {"]x", "']x'\n"},
        {"data_x", "'data_x'\n"},
        {"DATA_X", "'DATA_X'\n"},
        {"data_", "'data_'\n"},
        {"Loop_", "'Loop_'\n"},
        {"loop_abc", "'loop_abc'\n"},
        {"save_frame", "'save_frame'\n"},
        {"SAVE_", "'SAVE_'\n"},
        {"GLOBAL_", "'GLOBAL_'\n"},
        {"sToP_", "'sToP_'\n"},
        {"a\tb", "'a\tb'\n"},
        {"'", "\"'\"\n"},
        {"\"", "'\"'\n"},
        // The quote the rules choose is swapped when it would end the value early.
        {"a' b", "\"a' b\"\n"},
        {"a\" b", "'a\" b'\n"},
        {"x\" y'z", "'x\" y'z'\n"},
        {"x' y\"z", "\"x' y\"z\"\n"},
        {"'a\" b", "''a\" b'\n"},
        {"x\"\ty'z", "'x\"\ty'z'\n"},
        // When both quotes would end it early, only a text block will do.
        {"x\" y' z", "\n;x\" y' z\n;\n"},
        {"a'\tb\" c", "\n;a'\tb\" c\n;\n"},
        // Quotes and hashes inside a word, and words that merely resemble keywords, stay bare.
        {"a'b", "a'b\n"},
        {"a\"b", "a\"b\n"},
        {"a#b", "a#b\n"},
        {"dataX", "dataX\n"},
        {"x_data_y", "x_data_y\n"},
        {"loop", "loop\n"},
        {"?", "?\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(escaped(c.value));
        EXPECT_EQ(write_single({"_a", c.value, "", ""}), "data_x\n" + pad("_a") + " " + c.expected);
    }
}

// Everything written must read back as itself, as a single item and in a loop, with no finding.
TEST(Writer, AwkwardValuesReadBackAsThemselves)
{
    struct Case {
        std::string value;
        std::optional<std::string> back; // what a text block makes of it; nullopt: the value itself
    };
    const std::string bare78(78, 'b');
    const std::string quoted78 = std::string(38, 'q') + " " + std::string(39, 'q');
    const std::vector<Case> cases = {
        {"plain", {}},
        {"a b", {}},
        {"it's a", {}},
        {"a' b", {}},
        {"a\" b", {}},
        {"x\" y'z", {}},
        {"x' y\"z", {}},
        {"'a\" b", {}},
        {"a' ", {}},
        {"a\" ", {}},
        {"x\" y' z", "x\" y' z\n"},
        {"a'\tb\" c", "a'\tb\" c\n"},
        {"' \"", {}},
        {"'", {}},
        {"\"", {}},
        {"''", {}},
        {"'x'", {}},
        {"\"x\" y", {}},
        {";", {}},
        {";x", {}},
        {"; x", {}},
        {"#", {}},
        {"#x y", {}},
        {"$x", {}},
        {"]", {}},
        {"[x]", {}},
        {"_x", {}},
        {"_", {}},
        {"data_x", {}},
        {"DATA_", {}},
        {"Data_Block", {}},
        {"Loop_", {}},
        {"LOOP_X", {}},
        {"save_", {}},
        {"Save_frame", {}},
        {"global_", {}},
        {"GLOBAL_", {}},
        {"global_x", {}},
        {"stop_", {}},
        {"Stop_", {}},
        {"stop_x", {}},
        {"a\tb", {}},
        {"\t", {}},
        {" ", {}},
        {" a", {}},
        {"a ", {}},
        {"x\"\ty", {}},
        {"a'b", {}},
        {"a#b", {}},
        {"?", {}},
        {".", {}},
        {"1.234(5)", {}},
        {bare78, {}},
        {bare78 + "b", {}},
        {bare78 + "bb", {}},
        {quoted78.substr(2), {}},
        {quoted78.substr(1), {}},
        {quoted78, {}},
        {"#" + std::string(77, 'h'), {}},
        {"a\nb", "a\nb\n"},
        {"a\nb\n", {}},
        {"\n", {}},
        {"line one\n  indented\n", {}},
        {"x\n'y' z\n", {}},
        {"#c\nd", "#c\nd\n"},
        {"a b\n_c d\n", {}},
        {"data_x\nloop_\n", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(escaped(c.value));
        const std::string back = c.back ? *c.back : c.value;

        HCif single = new_cif();
        HCifDataBlock block = single->add_block("data_x", single->end());
        block->add_item("_a")->set_single_value(c.value);
        block->add_item("_z")->set_single_value("end");
        const std::string text = written(*single);
        HCif read = read_back(text);
        EXPECT_EQ(findings(*read), "") << text;
        ASSERT_EQ(read->block_count(), 1u) << text;
        EXPECT_EQ(read->block(0).first_value("_a"), back) << text;
        EXPECT_EQ(read->block(0).first_value("_z"), "end") << text;
        EXPECT_EQ(written(*read), text);

        HCif looped = new_cif();
        add_loop_with_values(*looped->add_block("data_x", looped->end()),
                             {{"_k", {"1", "2"}}, {"_v", {c.value, c.value}}, {"_w", {"end", "end"}}});
        const std::string loop_text = written(*looped);
        HCif loop_read = read_back(loop_text);
        EXPECT_EQ(findings(*loop_read), "") << loop_text;
        ASSERT_EQ(loop_read->block_count(), 1u) << loop_text;
        const HCifDataItem v = loop_read->block(0).item("_v");
        const HCifDataItem w = loop_read->block(0).item("_w");
        ASSERT_TRUE(v && w) << loop_text;
        ASSERT_EQ(v->value_count(), 2u) << loop_text;
        EXPECT_EQ(v->value(0), back) << loop_text;
        EXPECT_EQ(v->value(1), back) << loop_text;
        EXPECT_EQ(w->value(1), "end") << loop_text;
        EXPECT_EQ(written(*loop_read), loop_text);
    }
    // The empty value exists only in a loop: a single item without a value is not written.
    HCif looped = new_cif();
    add_loop_with_values(*looped->add_block("data_x", looped->end()),
                         {{"_v", {"", "x"}}, {"_w", {"end", ""}}});
    HCif loop_read = read_back(written(*looped));
    EXPECT_EQ(findings(*loop_read), "");
    EXPECT_EQ(loop_read->block(0).item("_v")->value(0), "");
    EXPECT_EQ(loop_read->block(0).item("_w")->value(1), "");
    EXPECT_EQ(loop_read->block(0).item("_w")->value_count(), 2u);
}

// A closing quote after a backslash does not close, so such a value cannot simply be quoted.
TEST(Writer, QuotedValueEndingInBackslashReadsBack)
{
    for (const std::string value : {"a b\\", "\\ x\\", "#\\"}) {
        SCOPED_TRACE(value);
        HCif cif = new_cif();
        HCifDataBlock block = cif->add_block("data_x", cif->end());
        block->add_item("_a")->set_single_value(value);
        block->add_item("_z")->set_single_value("end");
        const std::string text = written(*cif);
        HCif read = read_back(text);
        EXPECT_EQ(findings(*read), "") << text;
        const std::string got = read->block(0).first_value("_a");
        EXPECT_TRUE(got == value || got == value + "\n") << text;
        EXPECT_EQ(read->block(0).first_value("_z"), "end") << text;
    }
}

std::string comment_dump(const Cif& cif)
{
    std::string out;
    const auto add = [&](const std::string& owner, const CifCommentable& c) {
        for (const auto& [position, text] : c.comments())
            out += owner + "/" + std::to_string(position) + "=" + escaped(text) + "\n";
    };
    for (const HCifDataBlock& block : cif) {
        add(block->name(), *block);
        for (const HCifDataItem& item : *block)
            add(item->name(), *item);
        for (const HCifLoop& loop : block->loops()) {
            add("loop " + loop->names().front(), *loop);
            if (!loop->notes().empty())
                out += "note=" + escaped(loop->notes()[0]) + "\n";
        }
    }
    return out;
}

std::string model_dump(const Cif& cif)
{
    std::string out;
    for (const HCifDataBlock& block : cif) {
        out += block->name() + "\n";
        for (const HCifDataItem& item : *block) {
            out += " " + item->name() + (item->is_looped() ? "*" : "");
            for (std::size_t row = 0; row < item->value_count(); ++row)
                out += " [" + escaped(item->value(row)) + "]";
            out += "\n";
        }
        for (const HCifLoop& loop : block->loops()) {
            out += " loop";
            for (const std::string& name : loop->names())
                out += " " + name;
            out += "\n";
        }
    }
    return out;
}

TEST(Writer, ReadWriteReadKeepsModelAndComments)
{
    const std::vector<std::string> files = {
        "# header comment\n\ndata_one # on heading\n_cell_length_a   10.5(2)   # a axis\n_title\n;\n"
        " A title with 'quotes' and \"double\"\n;\n# before loop\nloop_ # loop line\n"
        "_atom_site_label  # label column\n# before x\n_atom_site_x\n# note\nC1 0.1\nO1 'a b'\n"
        "_last 'x y'\n# tail\ndata_two\n_b \"it's\"\n# end\n",
        "data_a\nloop_\n_a\n_b\n;\ntext\n;\n'_c' \"x' y\" ''\n_s # between\n1\n",
        "data_a _a 1 _b 2 loop_ _c _d 1 2 3 4 _e '[x]'\ndata_b\n_f $x\n",
        "\n\ndata_a\n\n# one\n\n_a 1\n\n\nloop_\n\n_b\n\n_c\n\n1 2\n\n_d x\n\n# end\n\n",
        // Blank lines between a name and its value, with and without a comment among them.
        "data_a\n_x\n\n1\n_y\n\n# c\n\n2\n_z # same line\n\n3\n",
    };
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        HCif first = read_back(file);
        ASSERT_EQ(findings(*first), "");
        const std::string text = written(*first);
        HCif second = read_back(text);
        EXPECT_EQ(findings(*second), "") << text;
        EXPECT_EQ(model_dump(*second), model_dump(*first)) << text;
        EXPECT_EQ(comment_dump(*second), comment_dump(*first)) << text;
    }
}

TEST(Writer, LoopsWithoutRowsNeverTakeTheNamesAfterThem)
{
    // A loop without rows is a bare header; written where it stands, the data names after it
    // would read back as its columns and lose their values.
    struct Case {
        std::string name;
        std::string text;
    };
    const std::vector<Case> cases = {
        // The empty loop stands between two items once the repeated loop of _a joins the first.
        {"merged loops", "data_a\nloop_\n_a\n1\nloop_\n_e\nloop_\n_a\n2\n_x 3\n"},
        {"empty loop then items", "data_a\nloop_\n_e\n_f\nloop_\n_l\n1\n_x 3\n_y 'a b'\ndata_b\n_z 4\n"},
    };
    // Each item keeps its values; only the empty loops change place, to the end of the block.
    auto values_by_name = [](const Cif& cif) {
        std::set<std::string> out;
        for (const HCifDataBlock& block : cif)
            for (const HCifDataItem& item : *block) {
                std::string line = block->name() + " " + item->name() + (item->is_looped() ? "*" : "");
                for (std::size_t row = 0; row < item->value_count(); ++row)
                    line += " [" + item->value(row) + "]";
                out.insert(line);
            }
        return out;
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HCif first = read_back(c.text);
        const std::string text = written(*first);
        HCif second = read_back(text);
        EXPECT_EQ(values_by_name(*second), values_by_name(*first)) << text;
        EXPECT_EQ(written(*second), text);
    }

    // Put by the program itself: an empty loop moved before a single item.
    HCifDictionary dictionary(new CifConcreteDictionary);
    Cif cif(dictionary);
    HCifDataBlock block = cif.add_block("data_m", cif.end());
    block->add_item("_x")->set_single_value("3");
    block->add_item("_e");
    block->make_loop({"_e"});
    block->set_write_order({"_e"}, CifDataBlock::BeforeFirst);
    std::ostringstream out;
    cif.write(out, 80);
    HCif reread = read_back(out.str());
    ASSERT_EQ(reread->block_count(), 1u);
    EXPECT_EQ(reread->block(0).first_value("_x"), "3") << out.str();
    EXPECT_FALSE(reread->block(0).is_looped("_x")) << out.str();
}

TEST(Writer, DamagedFilesStillWriteBackWithoutLosingValues)
{
    // Files with faults that the reader reports: what it kept must survive a write, and writing
    // what is read back gives the same text again.
    struct Case {
        std::string name;
        std::string text;
        std::vector<std::pair<std::string, std::string>> values; // name and its values after the read
    };
    const std::string long_dollar = "$" + std::string(2046, 'a');
    const std::vector<Case> cases = {
        {"column repeated in a later loop keeps the first loop's values",
         "data_a\nloop_ _x _y\n1 2\nloop_ _y 3 4\n",
         {{"_x", "[1]"}, {"_y", "[2]"}}},
        {"later loop with a new column too",
         "data_a\nloop_ _x _y\n1 2\nloop_ _y _z\n3 4\n",
         {{"_x", "[1]"}, {"_y", "[2]"}, {"_z", "[4]"}}},
        {"name repeated in one header", "data_a\nloop_ _x _x\n1 2\n\n#c", {{"_x", "[1]"}}},
        {"loop without rows over a single value, comment last without a line end",
         "data_a\n_x 1\nloop_ _x\n#c",
         {{"_x", "[1]"}}},
        {"comment of a repeated name before other items",
         "data_a\n_x 1\n_y 2\n_x 3\n#c",
         {{"_x", "[1]"}, {"_y", "[2]"}}},
        {"comment after an empty block", "data_a\n_x 1\ndata_b\n#c", {{"_x", "[1]"}}},
        {"comment after a loop, empty loop before it", "data_a\nloop_ _x\nloop_ _z 1\n#c", {{"_z", "[1]"}}},
        {"repeated name of a looped item at the end", "data_a\nloop_ _x\n1\n_x\n", {{"_x", "[1]"}}},
        {"value ending in a backslash that cannot be quoted", "data_a\n_x ]\\\n", {{"_x", "[]\\]"}}},
        {"longest bare value that would need quotes",
         "data_a\n_x\n" + long_dollar + "\n",
         {{"_x", "[" + long_dollar + "]"}}},
    };
    auto values_of = [](const Cif& cif) {
        std::vector<std::pair<std::string, std::string>> out;
        for (const HCifDataBlock& block : cif)
            for (const HCifDataItem& item : *block) {
                std::string values;
                for (std::size_t row = 0; row < item->value_count(); ++row)
                    values += "[" + item->value(row) + "]";
                if (!values.empty())
                    out.emplace_back(item->name(), values);
            }
        std::sort(out.begin(), out.end());
        return out;
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HCif first = read_back(c.text);
        EXPECT_EQ(values_of(*first), c.values);
        const std::string text = written(*first);
        HCif second = read_back(text);
        EXPECT_EQ(values_of(*second), c.values) << text;
        EXPECT_EQ(written(*second), text);
        // No kind of error is reported on the written text that the file itself did not have.
        std::set<std::uint32_t> codes;
        for (const CifError& finding : *first->errors())
            codes.insert(finding.code);
        for (const CifError& finding : *second->errors()) {
            if (finding.severity() == 2) {
                EXPECT_EQ(codes.count(finding.code), 1u) << finding.text() << "\n" << text;
            }
        }
    }
}

} // namespace

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Columns = std::vector<std::pair<std::string, std::vector<std::string>>>;

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

TEST(Writer, SingleItemLayout)
{
    const std::string n32 = "_" + std::string(31, 'n'), n40 = "_" + std::string(39, 'n');
    const auto v = [](std::size_t n) { return std::string(n, 'v'); };
    const auto quoted = [](std::size_t n) { return "a " + std::string(n - 2, 'q'); };
    const auto comment = [](std::size_t n) { return "#" + std::string(n - 2, 'c') + "\n"; };
    struct Case {
        std::string value;
        std::string expected; // after the padded name and its blank
        std::string between = "";
        std::string after = "";
        unsigned limit = 80;
        std::string name = "_a";
    };
    std::vector<Case> cases = {
        {"1", "1\n"},
        {"1", "1\n", "", "", 80, n40}, // a long name is not cut
        {v(60), "\n" + v(60) + "\n", "", "", 80, n32},
        {v(45), v(45) + "\n"}, // up to the margin, then one past it
        {v(46), "\n" + v(46) + "\n"},
        {quoted(43), "'" + quoted(43) + "'\n"}, // the quotes count in the width
        {quoted(44), "\n'" + quoted(44) + "'\n"},
        {v(10), "\n" + v(10) + "\n", "", "", 40},
        {v(5), v(5) + "\n", "", "", 40},
        {"1.234(5)", "1.234(5)\n"},
        // Comments after the value stay with it; one too long for any line goes on its own.
        {"1", "1 # c\n", "", "# c\n"},
        {"1", "1 " + comment(44), "", comment(44)},
        {"1", "\n1 " + comment(45), "", comment(45)},
        {"1", "1\n" + comment(80), "", comment(80)},
        {"1", "# c\n1\n", "# c\n"},
        {"1", comment(46) + "1\n", comment(46)},
        {"1", "\n" + comment(47) + "1\n", comment(47)},
        {"x\ny\n", "\n;x\ny\n;\n"},
        {"x\ny", "\n;x\ny\n;\n"}, // a text block gets its line end
        {"x\n", "\n;x\n; # c\n", "", "# c\n"},
        {"x\n", "# c\n;x\n;\n", "# c\n"},
    };
    // Values that would read back otherwise are protected. The quote the rules choose is swapped
    // when it would end the value early; when both would, only a text block will do. Quotes and
    // hashes inside a word, and words that merely resemble keywords, stay bare.
    const std::vector<std::pair<std::string, std::vector<std::string>>> forms = {
        {"'%'", {"a b",    "_x",    "[x]",   "#x",       "\"x",        "$x",      ";x",      "]x",
                 "DATA_X", "data_", "Loop_", "loop_abc", "save_frame", "SAVE_",   "GLOBAL_", "sToP_",
                 "a\tb",   "\"",    "a\" b", "x\" y'z",  "'a\" b",     "x\"\ty'z"}},
        {"\"%\"", {"it's a", "'x", "'", "a' b", "x' y\"z"}},
        {"\n;%\n;", {"x\" y' z", "a'\tb\" c"}},
        {"%", {"a'b", "a\"b", "a#b", "dataX", "x_data_y", "loop", "?"}},
    };
    for (const auto& [form, values] : forms)
        for (const std::string& value : values)
            cases.push_back(
                {value, form.substr(0, form.find('%')) + value + form.substr(form.find('%') + 1) + "\n"});
    for (const Case& c : cases) {
        SCOPED_TRACE(one_line(c.value) + " between " + c.between + " after " + c.after);
        HCif cif = new_cif();
        HCifDataItem item = cif->add_block("data_x", cif->end())->add_item(c.name);
        item->set_single_value(c.value);
        item->set_comment(1, c.between);
        item->set_comment(2, c.after);
        EXPECT_EQ(written(*cif, c.limit), "data_x\n" + pad(c.name) + " " + c.expected);
    }
}

TEST(Writer, BlocksCommentsAndEmptiedItems)
{
    HCif cif = read_back("# top\n\ndata_a # h\n# c0\n_a 1 # c2\n_gone 2 # c\n_b 3\ndata_b\n_c 4\n# tail\n");
    ASSERT_EQ(findings(*cif->errors()), "");
    cif->block(0).item("_gone")->set_single_value("");
    EXPECT_EQ(written(*cif), "# top\n\ndata_a # h\n# c0\n" + pad("_a") + " 1 # c2\n" + pad("_b") + " 3\n" +
                                 "data_b\n" + pad("_c") + " 4\n# tail\n");

    HCif made = new_cif();
    made->add_block("data_a", made->end())->add_item("_a")->set_single_value("1");
    made->add_block("data_b", made->end())->add_item("_e")->set_comment(0, "# about e\n");
    EXPECT_EQ(written(*made), "data_a\n" + pad("_a") + " 1\ndata_b\n");

    // The block made for data before any heading keeps its reserved name when written.
    HCif early = read_back("_a 1\n");
    EXPECT_EQ(findings(*early->errors()), "305@1");
    EXPECT_EQ(written(*early), "data_added_by_cifward\n" + pad("_a") + " 1\n");
}

TEST(Writer, LoopLayout)
{
    struct Case {
        Columns columns;
        std::string expected; // after the heading line and "loop_"
        unsigned limit = 80;
    };
    const std::vector<Case> cases = {
        {{{"_a", {"1", "3"}}, {"_b", {"2", "4"}}}, "_a\n_b\n1 2\n3 4\n"},
        {{{"_a", {"", "x"}}, {"_b", {"a b", "it's a"}}}, "_a\n_b\n'' 'a b'\nx \"it's a\"\n"},
        {{{"_a", {"1"}}, {"_b", {"x\n"}}, {"_c", {"2"}}}, "_a\n_b\n_c\n1\n;x\n;\n2\n"},
        {{{"_a", {"1", "3"}}, {"_b", {"x\n", "y\nz"}}}, "_a\n_b\n1\n;x\n;\n3\n;y\nz\n;\n"},
        {{{"_a", {"x\n"}}, {"_b", {"2"}}}, "_a\n_b\n;x\n;\n2\n"},
        {{{"_a", {}}, {"_b", {}}}, "_a\n_b\n"},
        // Bare values break at the limit less 2, quoted ones at the limit less 4.
        {{{"_a", {"aaaaaaaaa"}}, {"_b", {"bbbbbbbbb"}}, {"_c", {"ccccccccc"}}},
         "_a\n_b\n_c\naaaaaaaaa bbbbbbbbb\nccccccccc\n",
         20},
        {{{"_a", {"a bcdef"}}, {"_b", {"a bcdef"}}, {"_c", {"a bcdef"}}},
         "_a\n_b\n_c\n'a bcdef' 'a bcdef'\n'a bcdef'\n",
         20},
        {{{"_a", {"aaaaaaaaa"}}, {"_b", {"bcdefghi"}}}, "_a\n_b\naaaaaaaaa bcdefghi\n", 20},
        {{{"_a", {"aaaaaaaaa"}}, {"_b", {"b cdefgh"}}}, "_a\n_b\naaaaaaaaa\n'b cdefgh'\n", 20},
        {{{"_a", {"#x", "data_y"}}, {"_b", {"'q", "a\tb"}}}, "_a\n_b\n'#x' \"'q\"\n'data_y' 'a\tb'\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(one_line(c.expected));
        HCif cif = new_cif();
        add_loop_with_values(*cif->add_block("data_x", cif->end()), c.columns);
        EXPECT_EQ(written(*cif, c.limit), "data_x\nloop_\n" + c.expected);
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

// Writes `columns` (as a loop when `looped`), reads the text back without a finding, and gives
// the model read; writing that again must give the same text.
std::string written_and_read(const Columns& columns, bool looped)
{
    HCif cif = new_cif();
    HCifDataBlock block = cif->add_block("data_x", cif->end());
    if (looped)
        add_loop_with_values(*block, columns);
    else
        for (const auto& [name, values] : columns)
            block->add_item(name)->set_single_value(values.front());
    const std::string text = written(*cif);
    HCif read = read_back(text);
    EXPECT_EQ(findings(*read->errors()), "") << text;
    EXPECT_EQ(written(*read), text);
    return describe(*read, false);
}

// Everything written reads back as itself, as a single item and in a loop; a value that must go
// into a text block gains the line end it lacked.
TEST(Writer, AwkwardValuesReadBackAsThemselves)
{
    const std::string bare78(78, 'b'), quoted78 = std::string(38, 'q') + " " + std::string(39, 'q');
    const std::vector<std::string> as_themselves = {"plain",
                                                    "a b",
                                                    "it's a",
                                                    "a' b",
                                                    "a\" b",
                                                    "x\" y'z",
                                                    "x' y\"z",
                                                    "'a\" b",
                                                    "a' ",
                                                    "a\" ",
                                                    "' \"",
                                                    "'",
                                                    "\"",
                                                    "''",
                                                    "'x'",
                                                    "\"x\" y",
                                                    ";",
                                                    ";x",
                                                    "; x",
                                                    "#",
                                                    "#x y",
                                                    "$x",
                                                    "]",
                                                    "[x]",
                                                    "_x",
                                                    "_",
                                                    "data_x",
                                                    "DATA_",
                                                    "Data_Block",
                                                    "Loop_",
                                                    "LOOP_X",
                                                    "save_",
                                                    "Save_frame",
                                                    "global_",
                                                    "GLOBAL_",
                                                    "global_x",
                                                    "stop_",
                                                    "Stop_",
                                                    "stop_x",
                                                    "a\tb",
                                                    "\t",
                                                    " ",
                                                    " a",
                                                    "a ",
                                                    "x\"\ty",
                                                    "a'b",
                                                    "a#b",
                                                    "?",
                                                    ".",
                                                    "1.234(5)",
                                                    bare78,
                                                    bare78 + "b",
                                                    bare78 + "bb",
                                                    quoted78.substr(2),
                                                    quoted78.substr(1),
                                                    quoted78,
                                                    "#" + std::string(77, 'h'),
                                                    "a\nb\n",
                                                    "\n",
                                                    "line one\n  indented\n",
                                                    "x\n'y' z\n",
                                                    "a b\n_c d\n",
                                                    "data_x\nloop_\n"};
    // The last three: a closing quote after a backslash does not close, so they cannot be quoted.
    const std::vector<std::string> as_text_blocks = {"x\" y' z", "a'\tb\" c", "a\nb", "#c\nd",
                                                     "a b\\",    "\\ x\\",    "#\\"};
    for (const auto* list : {&as_themselves, &as_text_blocks}) {
        for (const std::string& value : *list) {
            SCOPED_TRACE(one_line(value));
            const std::string back = one_line(list == &as_themselves ? value : value + "\n");
            EXPECT_EQ(written_and_read({{"_a", {value}}, {"_z", {"end"}}}, false),
                      "data_x{_a=" + back + " _z=end}");
            EXPECT_EQ(
                written_and_read({{"_k", {"1", "2"}}, {"_v", {value, value}}, {"_w", {"end", "end"}}}, true),
                "data_x{_k*=1|2 _v*=" + back + "|" + back + " _w*=end|end loop(_k,_v,_w)}");
        }
    }
    // The empty value exists only in a loop: a single item without a value is not written.
    EXPECT_EQ(written_and_read({{"_v", {"", "x"}}, {"_w", {"end", ""}}}, true),
              "data_x{_v*=|x _w*=end| loop(_v,_w)}");
}

// Item values of a reading, sorted: "name=value|value", a * after a looped name.
std::string values_by_name(const Cif& cif)
{
    std::vector<std::string> lines;
    for (const HCifDataBlock& block : cif)
        for (const HCifDataItem& item : *block) {
            std::string line = block->name() + ":" + item->name() + (item->is_looped() ? "*" : "") + "=";
            for (std::size_t row = 0; row < item->value_count(); ++row)
                line += (row ? "|" : "") + one_line(item->value(row));
            if (item->value_count())
                lines.push_back(line);
        }
    std::sort(lines.begin(), lines.end());
    std::string out;
    for (const std::string& line : lines)
        out += (out.empty() ? "" : " ") + line;
    return out;
}

// A file read, written and read again: a clean file keeps its model and comments exactly; a file
// with faults keeps the values of each item (`values`), though empty loops move to the end of
// their block. Writing again gives the same text, and no kind of error appears that the file
// itself did not have.
TEST(Writer, ReadWriteReadKeepsWhatWasRead)
{
    struct Case {
        std::string text;
        std::string values; // empty: a clean file
    };
    const std::string long_dollar = "$" + std::string(2046, 'a');
    const std::vector<Case> cases = {
        {"# header comment\n\ndata_one # on heading\n_cell_length_a   10.5(2)   # a axis\n_title\n;\n"
         " A title with 'quotes' and \"double\"\n;\n# before loop\nloop_ # loop line\n"
         "_atom_site_label  # label column\n# before x\n_atom_site_x\n# note\nC1 0.1\nO1 'a b'\n"
         "_last 'x y'\n# tail\ndata_two\n_b \"it's\"\n# end\n"},
        {"data_a\nloop_\n_a\n_b\n;\ntext\n;\n'_c' \"x' y\" ''\n_s # between\n1\n"},
        {"data_a _a 1 _b 2 loop_ _c _d 1 2 3 4 _e '[x]'\ndata_b\n_f $x\n"},
        {"\n\ndata_a\n\n# one\n\n_a 1\n\n\nloop_\n\n_b\n\n_c\n\n1 2\n\n_d x\n\n# end\n\n"},
        // Blank lines between a name and its value, with and without a comment among them.
        {"data_a\n_x\n\n1\n_y\n\n# c\n\n2\n_z # same line\n\n3\n"},
        // A loop without rows is a bare header: written where it stands, the names after it would
        // read back as its columns. Here it stands between two items once the repeated loop of _a
        // joins the first.
        {"data_a\nloop_\n_a\n1\nloop_\n_e\nloop_\n_a\n2\n_x 3\n", "data_a:_a*=1 data_a:_x=3"},
        {"data_a\nloop_\n_e\n_f\nloop_\n_l\n1\n_x 3\n_y 'a b'\ndata_b\n_z 4\n",
         "data_a:_l*=1 data_a:_x=3 data_a:_y=a b data_b:_z=4"},
        {"data_a\nloop_ _x _y\n1 2\nloop_ _y 3 4\n", "data_a:_x*=1 data_a:_y*=2"},
        {"data_a\nloop_ _x _y\n1 2\nloop_ _y _z\n3 4\n", "data_a:_x*=1 data_a:_y*=2 data_a:_z*=4"},
        {"data_a\nloop_ _x _x\n1 2\n\n#c", "data_a:_x*=1"},
        {"data_a\n_x 1\nloop_ _x\n#c", "data_a:_x*=1"},
        {"data_a\n_x 1\n_y 2\n_x 3\n#c", "data_a:_x=1 data_a:_y=2"},
        {"data_a\n_x 1\ndata_b\n#c", "data_a:_x=1"},
        {"data_a\nloop_ _x\nloop_ _z 1\n#c", "data_a:_z*=1"},
        {"data_a\nloop_ _x\n1\n_x\n", "data_a:_x*=1"},
        {"data_a\n_x ]\\\n", "data_a:_x=]\\"},
        {"data_a\n_x\n" + long_dollar + "\n", "data_a:_x=" + long_dollar},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(one_line(c.text.substr(0, 100)));
        HCif first = read_back(c.text);
        const std::string text = written(*first);
        HCif second = read_back(text);
        if (c.values.empty()) {
            EXPECT_EQ(findings(*first->errors()), "");
            EXPECT_EQ(describe(*second, false), describe(*first, false)) << text;
            EXPECT_EQ(comment_dump(*second), comment_dump(*first)) << text;
        } else {
            EXPECT_EQ(values_by_name(*first), c.values);
            EXPECT_EQ(values_by_name(*second), c.values) << text;
        }
        EXPECT_EQ(written(*second), text);
        std::set<std::uint32_t> codes;
        for (const CifError& finding : *first->errors())
            codes.insert(finding.code);
        for (const CifError& finding : *second->errors())
            EXPECT_TRUE(finding.severity() < 2 || codes.count(finding.code)) << finding.text() << "\n"
                                                                             << text;
    }

    // Put by the program itself: an empty loop moved before a single item.
    HCif cif = new_cif();
    HCifDataBlock block = cif->add_block("data_m", cif->end());
    block->add_item("_x")->set_single_value("3");
    block->add_item("_e");
    block->make_loop({"_e"});
    block->set_write_order({"_e"}, CifDataBlock::BeforeFirst);
    EXPECT_EQ(values_by_name(*read_back(written(*cif))), "data_m:_x=3") << written(*cif);
}

} // namespace

#include "CifTestSupport.h"

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
        {"1", "1\n", "", "", 80, n40}, // a long name is not cut
        {v(60), "\n" + v(60) + "\n", "", "", 80, n32},
        {v(45), v(45) + "\n"}, // up to the margin, then one past it
        {v(46), "\n" + v(46) + "\n"},
        {quoted(43), "'" + quoted(43) + "'\n"}, // the quotes count in the width
        {quoted(44), "\n'" + quoted(44) + "'\n"},
        {v(10), "\n" + v(10) + "\n", "", "", 40},
        // Comments after the value stay with it; one too long for any line goes on its own.
        {"1", "1 " + comment(44), "", comment(44)},
        {"1", "\n1 " + comment(45), "", comment(45)},
        {"1", "1\n" + comment(80), "", comment(80)},
        {"1", comment(46) + "1\n", comment(46)},
        {"1", "\n" + comment(47) + "1\n", comment(47)},
        {"x\ny", "\n;x\ny\n;\n"}, // a text block gets its line end
        {"x\n", "\n;x\n; # c\n", "", "# c\n"},
    };
    // Values that would read back otherwise are protected. The quote the rules choose is swapped
    // when it would end the value early; when both would, only a text block will do. Quotes and
    // hashes inside a word, and words that merely resemble keywords, stay bare.
    const std::vector<std::pair<std::string, std::vector<std::string>>> forms = {
        {"'%'",
         {"a b", "_x", "[x]", "#x", "\"x", "$x", ";x", "DATA_X", "loop_abc", "save_frame", "GLOBAL_", "sToP_",
          "a\tb", "x\" y'z", "'a\" b"}},
        {"\"%\"", {"it's a", "'x", "a' b", "x' y\"z"}},
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
        {{{"_a", {}}, {"_b", {}}}, "_a\n_b\n"},
        // Bare values break at the limit less 2, quoted ones at the limit less 4.
        {{{"_a", {"aaaaaaaaa"}}, {"_b", {"bbbbbbbbb"}}, {"_c", {"ccccccccc"}}},
         "_a\n_b\n_c\naaaaaaaaa bbbbbbbbb\nccccccccc\n",
         20},
        {{{"_a", {"a bcdef"}}, {"_b", {"a bcdef"}}, {"_c", {"a bcdef"}}},
         "_a\n_b\n_c\n'a bcdef' 'a bcdef'\n'a bcdef'\n",
         20},
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
    const std::string quoted78 = std::string(38, 'q') + " " + std::string(39, 'q');
    std::vector<std::string> as_themselves = {
        "plain", "a b", "it's a", "a' b",   "a\" b",      "x\" y'z",     "'a\" b",         "'",
        "\"",    ";",   "#",      "$x",     "_x",         "data_x",      "global_",        "a\tb",
        " ",     "a ",  "?",      "a\nb\n", "x\n'y' z\n", "a b\n_c d\n", "data_x\nloop_\n"};
    for (const std::string& long_one :
         {std::string(78, 'b'), std::string(79, 'b'), std::string(80, 'b'), quoted78.substr(2),
          quoted78.substr(1), quoted78, "#" + std::string(77, 'h')})
        as_themselves.push_back(long_one);
    // The last three: a closing quote after a backslash does not close, so they cannot be quoted.
    std::vector<std::string> as_text_blocks = {"x\" y' z", "a'\tb\" c", "a\nb", "a b\\", "\\ x\\", "#\\"};
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

} // namespace

#include "CifTestSupport.h"
#include "CifTokeniser.h"

namespace {

std::string token_text(const CifToken& t)
{
    const std::map<int, char> letters = {{CifEnd, 'E'},     {CifValueToken, 'V'}, {CifName, 'N'},
                                         {CifHeading, 'H'}, {CifLoopToken, 'L'},  {CifComment, 'C'},
                                         {CifBlank, 'B'}};
    std::string out(1, letters.count(t.kind) ? letters.at(t.kind) : '?');
    if (t.kind == CifValueToken || !t.text.empty())
        out += "[" + one_line(t.text) + "]";
    out += "@" + std::to_string(t.line);
    if (t.end_line != t.line)
        out += "-" + std::to_string(t.end_line);
    return out;
}

// Every token up to and including End, then " / " and the findings; a runaway tokeniser is cut
// off rather than hanging.
std::string tokenise(const std::string& text, unsigned limit)
{
    HCifErrorList errors(new CifErrorList);
    std::istringstream in(text);
    CifTokeniser tokeniser(in, limit, errors);
    std::string out;
    for (int i = 0; i < 10000; ++i) {
        const CifToken t = tokeniser.next();
        out += (out.empty() ? "" : " ") + token_text(t);
        if (t.kind == CifEnd)
            break;
    }
    return out + " / " + findings(*errors);
}

// Names unknown to the dictionary raise 320 on every item; most cases are not about that.
HCif parse(const std::string& text, unsigned limit = 80, HCifDictionary dictionary = HCifDictionary())
{
    HCif cif(new Cif(dictionary ? dictionary : HCifDictionary(new CifConcreteDictionary)));
    if (!dictionary)
        cif->errors()->suppress(320);
    std::istringstream in(text);
    cif->read(in, limit);
    return cif;
}

TEST(Tokeniser, GivesKindsTextsLinesAndFindings)
{
    const std::string x80(80, 'x'), x2048(2048, 'x');
    struct Case {
        std::string input;
        std::string tokens; // then " / " and the findings
        unsigned limit = 80;
    };
    const std::vector<Case> cases = {
        {"", "B@1 E@1 / "},
        {"a\r\nb\rc\n", "V[a]@1 V[b]@2 V[c]@3 B@4 E@4 / "},
        {"_a 1 # c # d\n", "N[_a]@1 V[1]@1 C[ c # d]@1 B@2 E@2 / "},
        {"data_x loop_ DATA_ABC Loop_ LOOP_x",
         "H[data_x]@1 L[loop_]@1 H[DATA_ABC]@1 L[Loop_]@1 L[LOOP_x]@1 E@1 / "},
        // A quote closes only before white space or the line end, and not after a backslash.
        {"'a'b' 'it's' 'it' s", "V[a'b]@1 V[it's]@1 V[it]@1 V[s]@1 E@1 / "},
        {"\"x\"y\" '_x' \"data_x\" 'a\\' b' '' \"\"",
         "V[x\"y]@1 V[_x]@1 V[data_x]@1 V[a\\' b]@1 V[]@1 V[]@1 E@1 / "},
        // A byte of 128 or more is not graphic, so a quote before it closes the value.
        {"'x'\xe9y'", "V[x]@1 V[\xe9y']@1 E@1 / 349@1[\\0351]"},
        // Text blocks: a ';' that opens a line opens one, anywhere else it is a plain character.
        {";abc\ndef\n;\n", "V[abc\\ndef\\n]@1-3 B@4 E@4 / "},
        {";abc\n; 2\n", "V[abc\\n]@1-2 V[2]@2 B@3 E@3 / "},
        {"a ;b", "V[a]@1 V[;b]@1 E@1 / "},
        {" ;x\n ; y\n", "V[x\\n]@1-2 V[y]@2 B@3 E@3 / 351@1 352@2"},
        {";x\ny", "V[x\\ny\\n]@1 E@2 / 353@2"},
        {"\n\n;x\r\ny\r\n;\r\n", "B@1 B@2 V[x\\ny\\n]@3-5 B@6 E@6 / "},
        // Line limits: the soft one warns once per line, the hard one also cuts.
        {x80 + "\n", "V[" + x80 + "]@1 B@2 E@2 / "},
        {"a\n" + x80 + "y\n" + x80 + "y",
         "V[a]@1 V[" + x80 + "y]@2 V[" + x80 + "y]@3 E@3 / 347@2[80] 347@3[80]"},
        {std::string(3000, 'x') + "\r\nb", "V[" + x2048 + "]@1 V[b]@2 E@2 / 347@1[80] 347@1[2048]"},
        // Control bytes become blanks; high bytes stay. Tab, VT and FF are white space.
        {"'x\ay'", "V[x y]@1 E@1 / 348@1[\\07]"},
        {std::string("a\x7f") + '\0' + "b", "V[a]@1 V[b]@1 E@1 / 348@1[\\0177] 348@1[\\00]"},
        {"a\tb\vc\fd", "V[a]@1 V[b]@1 V[c]@1 V[d]@1 E@1 / "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(one_line(c.input.substr(0, 100)));
        EXPECT_EQ(tokenise(c.input, c.limit), c.tokens);
    }
}

TEST(Reader, BuildsTheModelAndReportsFindings)
{
    const std::string name75 = "_" + std::string(74, 'n'), name76 = name75 + "m";
    struct Case {
        std::string input;
        std::string model;
        std::string findings;
        unsigned limit = 80;
    };
    const std::vector<Case> cases = {
        {"", "", "302@-1"},
        {"data_a\n_a 1\n_b 'x y'\n", "data_a@1{_a=1 _b=x y}", ""},
        {"data_a _a 1 _b\n;\ntext\n;\n", "data_a@1{_a=1 _b=\\ntext\\n}", ""},
        // Data before the first heading gets a block of its own, reported once.
        {"_a 1\n_b 2\ndata_x\n_c 3\n", "data_added_by_cifward@1{_a=1 _b=2} data_x@3{_c=3}", "305@1"},
        {"x y\nz\n_a 1\nw\n", "data_added_by_cifward@3{_a=1}", "313@1 305@3 312@4[w]"},
        // An unterminated quote is only an error once a heading has been seen.
        {"'x\ndata_a\n_b 'y\n", "data_a@2{_b=y}", "313@1 350@3[']"},
        // The block made for an early data name ends the quiet time as a heading would.
        {"_a 'x\n", "data_added_by_cifward@1{_a=x}", "305@1 350@1[']"},
        {"data_a\n" + name76 + " 1\n", "data_a@1{" + name76 + "=1}", "306@2[" + name76 + "]"},
        // Inside a loop header the length is not checked.
        {"data_a\nloop_\n" + name76 + "\n1\n", "data_a@1{" + name76 + "*=1 loop(" + name76 + ")}", ""},
        {"data_a\n_a _b 1\n", "data_a@1{_b=1}", "307@2[_a]"},
        {"data_a\n_a loop_ _b 1\n", "data_a@1{_b*=1 loop(_b)}", "308@2[_a]"},
        {"data_a\ndata_a\ndata_a\n", "data_a@1{} data_a@2{} data_a@3{}",
         "310@2[data_a] 310@3[data_a] 310@3[data_a]"},
        // Strays: the last item's value tells a swallowed name (311) from plain noise (312).
        {"data_a\n_a 1 2\n", "data_a@1{_a=1}", "312@2[2]"},
        {"data_a\n_a ' \t_b'\nx\n", "data_a@1{_a= \t_b}", "311@3[x]"},
        {"data_a\n_a\n;\n_b 1\n;\nx\n", "data_a@1{_a=\\n_b 1\\n}", "311@6[x]"},
        // Repeated names keep the first value; blocks keep their own names apart.
        {"data_a\n_Cell_A 1\n\n_cell_a 2\n", "data_a@1{_Cell_A=1}", "318@4[_cell_a|2]"},
        {"data_a\n_a ''\n_a 1\n", "data_a@1{_a=1}", ""},
        {"data_a\n_a 1\nloop_\n_a\n2\n", "data_a@1{_a*=2 loop(_a)}", "318@4[_a|2]"},
        {"data_a\nloop_ _a\n1\nloop_ _a\n2\n_z 9\n", "data_a@1{_a*=1 _z=9 loop(_a)}", "318@4[_a|2]"},
        // Only data_ and loop_ are keywords, in any case and with any tail.
        {"DATA_ABC\nLoop_x _a 1\n", "DATA_ABC@1{_a*=1 loop(_a)}", ""},
        {"data_a\n_a data\n_b loop\n_c save_x\n_d stop_\n", "data_a@1{_a=data _b=loop _c=save_x _d=stop_}",
         ""},
        // Loops.
        {"data_a\nloop_\n_a\n_b\n1 2\n3 4\n_c 5\n", "data_a@1{_a*=1|3 _b*=2|4 _c=5 loop(_a,_b)}", ""},
        {"data_a\nloop_\n1 2\n", "data_a@1{}", "321@3 312@3[1] 312@3[2]"},
        {"data_a\nloop_\ndata_b\n", "data_a@1{} data_b@3{}", "321@3"},
        {"data_a\n\nloop_ _a\n_b\n1 2\n3\n_c 4\n", "data_a@1{_a*=1|3 _b*=2 _c=4 loop(_a,_b)}", "322@3"},
        {"data_a\nloop_ _a 1 2 data_x\n_b 3\n", "data_a@1{_a*=1|2 loop(_a)} data_x@2{_b=3}", ""},
        // Values taken straight from the line: words that only look like keywords, quotes, a '#'
        // inside a word, tabs, and rows that run over several lines with comments between.
        {"data_a\nloop_ _a _b\n'x y' a#b\t\"q\"\n'it's' ;z\n",
         "data_a@1{_a*=x y|q|;z _b*=a#b|it's loop(_a,_b)}", "322@2"},
        {"data_a\nloop_ _a _b _c\n1\n\n# inside\n2\n3 4\n  5 # after\n6\n",
         "data_a@1{_a*=1|4 _b*=2|5 _c*=3|6 loop(_a,_b,_c)}", ""},
        {"data_a\nloop_ _a _b\n1 2 _c 3\n", "data_a@1{_a*=1 _b*=2 _c=3 loop(_a,_b)}", ""},
        {"data_a\nloop_ _a _b\n1 2 3 Loop_\n_c 4\n", "data_a@1{_a*=1|3 _b*=2 _c*=4 loop(_a,_b) loop(_c)}",
         "322@2"},
        // The value check runs for every stored value; the flags check needs no dictionary.
        {"data_a\nloop_ _atom_site_refinement_flags\nS\n\n?\n",
         "data_a@1{_atom_site_refinement_flags*=S|? loop(_atom_site_refinement_flags)}",
         "324@5[_atom_site_refinement_flags]"},
        // Tokeniser findings reach the document's list.
        {"data_a\n_a\n ;x\n ;\n", "data_a@1{_a=x\\n}", "351@3 352@4"},
        {"data_a\n_a 'x\ay'\n_b \xe9\n", "data_a@1{_a=x y _b=\xe9}", "348@2[\\07] 349@3[\\0351]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(one_line(c.input.substr(0, 100)));
        const HCif cif = parse(c.input, c.limit);
        EXPECT_EQ(describe(*cif), c.model);
        EXPECT_EQ(findings(*cif->errors()), c.findings);
    }
}

// The quiet time of 350 lasts as long as no heading has been seen, and never lifts a suppression
// the program made; a second read replaces the blocks and the findings of the first; a stream that
// cannot be read is 301.
TEST(Reader, StreamStateSuppressionsAndAReadAgain)
{
    const auto read = [](Cif& cif, const std::string& text, bool fail = false) {
        std::istringstream in(text);
        in.setstate(fail ? std::ios::failbit : std::ios::goodbit);
        cif.read(in, 80);
        return describe(cif) + " / " + findings(*cif.errors());
    };
    Cif no_heading(HCifDictionary(new CifConcreteDictionary));
    EXPECT_EQ(read(no_heading, "'x\n"), " / 313@1 302@-1");
    EXPECT_TRUE(no_heading.errors()->is_suppressed(350));
    for (bool program_suppressed : {false, true}) {
        Cif cif(HCifDictionary(new CifConcreteDictionary));
        if (program_suppressed)
            cif.errors()->suppress(350);
        EXPECT_EQ(read(cif, "data_a\n_a 'x\n"),
                  program_suppressed ? "data_a@1{_a=x} / 320@2[_a]" : "data_a@1{_a=x} / 350@2['] 320@2[_a]");
        EXPECT_EQ(cif.errors()->is_suppressed(350), program_suppressed);
        EXPECT_EQ(read(cif, "data_a\n_a 1\n", true), " / 301@-1");
    }
}

TEST(Reader, UnknownNamesAndValueChecksUseTheDictionary)
{
    HCifConcreteDictionary dictionary(new CifConcreteDictionary);
    CifDictionaryEntry text, number;
    text.type = CifDictionaryEntry::Char;
    number.type = CifDictionaryEntry::Numb;
    dictionary->add_entry({"_known"}, text);
    dictionary->add_entry({"_n"}, number);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"data_a\n_a 1\n_KNOWN x\n", "320@2[_a]"},
        {"data_a\n_n abc\n_n 2\n_N 3\n", "326@2[_n] 318@3[_n|2] 318@4[_N|2]"},
        {"data_a\nloop_\n_n\n1\nabc\n?\n", "326@5[_n]"},
    };
    for (const auto& [input, expected] : cases) {
        SCOPED_TRACE(one_line(input));
        EXPECT_EQ(findings(*parse(input, 80, dictionary)->errors()), expected);
    }
}

TEST(Reader, CommentsLandOnTheirOwners)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        // A name that gets no item leaves the comments before it to the next owner.
        {"data_a\n# c\n_a _b 1\n", "_b/0=# c\\n"},
        {"# top\n\ndata_a # head #2\n_a 1\n", "data_a/0=# top\\n\\n | data_a/1= # head #2"},
        {"data_a\n\n# before\n_a # between\n# more\n 1 # after\n# tail\n",
         "_a/0=\\n# before\\n | _a/1=# between\\n# more\\n | _a/2=# after\\n | _a/3=# tail\\n"},
        // The empty line that follows a file's last line end is not part of the file, but a
        // comment keeps its own line end even when the file has none: the item it belongs to is
        // not always written last.
        {"data_a\n_a 1\n# last", "_a/3=# last\\n"},
        {"data_a\n_a 1\n# x\ndata_b\n", "data_b/0=# x\\n"},
        {"data_a\n# lc\nloop_ # on loop\n# before a\n_a # on a\n# before b\n_b\n# note\n1 2\n",
         "_a/0=# before a\\n | _a/1=# on a\\n | _b/0=# before b\\n | loop(_a)/1=# lc\\n | loop(_a)/2=# on "
         "loop\\n | "
         "note(_a)=# note\\n"},
        // Comments inside and between rows are lost; those after the last row move on.
        {"data_a\nloop_ _a\n1 # r1\n# mid\n2\n# end\n_b 3\n", "_b/0=# end\\n"},
    };
    for (const auto& [input, expected] : cases) {
        SCOPED_TRACE(one_line(input));
        const HCif cif = parse(input);
        EXPECT_EQ(comment_dump(*cif), expected);
        EXPECT_EQ(findings(*cif->errors()),
                  input == cases[0].first ? "307@3[_a]" : ""); // only the first is faulty
    }
}

} // namespace

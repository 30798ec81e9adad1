// The DDL1 dictionary reader, the queries of a concrete dictionary and of a pool, on small
// dictionaries written here and on the real core dictionary; and the loader that finds them.

#include "CifDataItem.h"
#include "CifTestSupport.h"
#include "QcbsDictionaryLoader.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <fstream>

namespace fs = std::filesystem;

namespace {

struct Loaded {
    HCifConcreteDictionary dictionary{new CifConcreteDictionary};
    HCifErrorList errors{new CifErrorList};
};

Loaded load(const std::string& text)
{
    Loaded out;
    std::istringstream in(text);
    out.dictionary->read(in, out.errors);
    return out;
}

std::string pairs_text(const CifDictionary::Pairs& pairs)
{
    std::string out;
    for (const auto& [value, detail] : pairs)
        out += (out.empty() ? "" : ",") + value + "=" + detail;
    return out;
}

std::string related_text(const CifDictionary::Related& related)
{
    std::string out;
    for (const auto& [name, function] : related)
        out += (out.empty() ? "" : ",") + name + "=" + std::to_string(function);
    return out;
}

// What a dictionary answers for a name: "-" when it does not define it, else the units, type,
// type conditions, range and the name of the defining dictionary.
std::string answer(const CifDictionary& d, const std::string& name)
{
    if (!d.exists(name))
        return "-";
    return d.units(name) + "|" + std::to_string(d.type(name)) + "|" +
           std::to_string(d.type_conditions(name)) + "|" + d.enumeration_range(name) + "|" +
           d.header(name).name;
}

std::string sorted_items(const CifDictionary& d, const std::string& category)
{
    std::vector<std::string> items;
    d.category_items(category, items);
    std::sort(items.begin(), items.end());
    return comma_joined(items);
}

const fs::path core_path = fs::path(CIFWARD_SHARED_DIR) / "dict" / "cif_core.dic";

TEST(DictionaryReader, HeaderNamesAndEveryField)
{
    // The first block is the header only if it holds a header item with a value.
    const std::vector<std::pair<std::string, std::string>> headers = {
        {"data_h _dictionary_name d.dic _dictionary_version 1.0\n_dictionary_update 2000-01-01 "
         "_dictionary_history 'made' _name '_in_header'",
         "d.dic|made|2000-01-01|1.0 2"},
        {"data_first _dictionary_name '' _name '_first'", "||| 3"},
    };
    for (const auto& [head, expected] : headers) {
        HCifConcreteDictionary d = dictionary_from(head + "\ndata_a _name '_a'\ndata_b _name '_b'\n");
        const CifDictionaryHeader& h = d->header("_b");
        EXPECT_EQ(h.name + "|" + h.history + "|" + h.update + "|" + h.version + " " +
                      std::to_string(d->entry_count()),
                  expected);
    }

    // A name loop gives one entry under every name, found without regard to case.
    HCifConcreteDictionary d =
        dictionary_from("data_uij loop_ _name '_U_11' '_U_22'\n_category aniso _type numb _units A^2^\n"
                        "data_x _name '_x' _category c _definition 'a definition' _type char\n"
                        "_type_conditions esd _list yes _list_mandatory yes _units K\n"
                        "_enumeration_range 0: _list_link_child '_y' _list_reference '_z'\n"
                        "_enumeration_default 1 _list_link_parent '_p' _list_uniqueness '_u'\n"
                        "_type_construct '[0-9]+' _units_detail kelvins _example 5 _enumeration 5\n"
                        "_related_item '_w' _related_function alternate\n");
    EXPECT_EQ(d->entry("_u_22"), d->entry("_U_11"));
    EXPECT_EQ(d->find_entry("_U_11x"), nullptr);
    EXPECT_EQ(answer(*d, "_u_22") + " " + answer(*d, "U_11") + " " + answer(*d, "_X"),
              "A^2^|0|0|| - K|1|1|0:|");
    EXPECT_EQ(d->category("_x") + "|" + d->definition("_x") + "|" + d->units_detail("_x") + "|" +
                  d->enumeration_default("_x") + "|" + d->list_link_parent("_x") + "|" +
                  d->list_uniqueness("_x") + "|" + d->type_construct("_x") + "|" +
                  std::to_string(d->list("_x")) + std::to_string(d->list_mandatory("_x")) + "|" +
                  comma_joined(d->list_link_child("_x")) + comma_joined(d->list_reference("_x")) + "|" +
                  pairs_text(d->example("_x")) + pairs_text(d->enumeration("_x")) + "|" +
                  related_text(d->related("_x")),
              "c|a definition|kelvins|1|_p|_u|[0-9]+|21|_y_z|5=5=|_w=1");
    EXPECT_EQ(d->type("_not_there"), CifDictionaryEntry::UnknownType);
}

TEST(DictionaryReader, DefinitionFindingsNameTheBlockLineAndTheValue)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"data_a _name '_a'\n\ndata_late _dictionary_name late.dic\n", "331@3"},
        {"data_a _name '_a'\ndata_b _name '_A'\n", "332@-1[_A]"},
        {"data_a _name '_a' loop_ _enumeration _enumeration_detail _zzz x y z\n", "333@1"},
        {"data_h _dictionary_name d\n\ndata_a _name '_a' loop_ _units A B\n", "334@3"},
        {"data_a _name '_a' loop_ _example _enumeration_detail x y\n",
         "337@1[_enumeration_detail|_example_detail]"},
        {"data_a _name '_a' _type text\n\n\ndata_b _category b\n\ndata_c _name '_c' _list never\n",
         "339@1[text] 331@4 341@6[never]"},
        {"data_a _name '_a' _type_conditions null\n", "340@1[null]"}, // named by the message, refused
        {"data_h _dictionary_version 1\n\ndata_a _name '_a' loop_ _related_item _related_function\n"
         "'_b' alternate '_c' cousin\n",
         "342@3[cousin]"},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        Loaded loaded = load(text);
        EXPECT_EQ(findings(*loaded.errors), expected);
        for (const CifError& e : *loaded.errors)
            EXPECT_EQ(e.severity(), e.code == 332 ? 1 : 2) << e.code;
    }
    EXPECT_EQ(
        load("data_a _name '_a' _related_item '_b' _related_function sibling\n").errors->at(0).message(),
        "Invalid value for _related_function 'sibling' : expected 'alternate', 'conversion', "
        "'convention' or 'replace'");

    // 331 skips its block only; 332 keeps the first definition; 333 and 337 leave their pair field
    // empty; 334 takes the first value.
    Loaded loaded = load("data_a\n_name '_a'\n_units first\ndata_b\n_category b\ndata_c\n_name '_A'\n"
                         "_units second\ndata_d\n_name '_d'\n_units K\n"
                         "loop_ _enumeration _enumeration_detail _zzz\nx y z\n_example 12\n"
                         "_related_item '_a'\n_related_function replace\ndata_e\n_name '_e'\n"
                         "loop_ _example _example_detail\nex1 'first example'\nloop_ _enumeration _units\n"
                         "u v\ndata_f\n_name '_f'\nloop_ _definition\none\ntwo\n");
    EXPECT_EQ(findings(*loaded.errors), "331@4 333@9 337@17[_units|_enumeration_detail] 334@23 332@-1[_A]");
    const HCifConcreteDictionary& d = loaded.dictionary;
    EXPECT_EQ(d->units("_a") + d->units("_d") + d->definition("_f"), "firstKone");
    EXPECT_EQ(pairs_text(d->enumeration("_d")) + "|" + pairs_text(d->example("_d")) + "|" +
                  related_text(d->related("_d")) + "|" + pairs_text(d->enumeration("_e")) + "|" +
                  pairs_text(d->example("_e")),
              "|12=|_a=8||ex1=first example");
}

// The enumerated fields read the first accepted word, in the order of the accepted words, that
// occurs anywhere in the value, ignoring case.
TEST(DictionaryReader, EnumeratedFieldsTakeTheFirstAcceptedWordThatOccurs)
{
    using E = CifDictionaryEntry;
    struct Case {
        std::string item, value; // as written
        int expected, code;      // as read; the finding, 0 for none
    };
    const std::vector<Case> cases = {
        {"_type", "'char or numb'", E::Numb, 0},
        {"_type", "text", E::UnknownType, 339},
        {"_type_conditions", "su", E::Esd, 0},
        {"_type_conditions", "sux", E::NoConditions, 340},
        {"_list", "'yes or no'", E::ListNo, 0},
        {"_list", "'yes both'", E::ListBoth, 0},
        {"_list", "maybe", E::ListBoth, 341},
        {"_list_mandatory", "eyes", 1, 0},
        {"_related_function", "'replace alternate'", E::Alternate, 0},
        {"_related_function", "'conversion convention'", E::Convention, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.item + " " + c.value);
        Loaded loaded =
            load("data_h\n_dictionary_name d\ndata_x _name '_x' _related_item '_r'\n" + c.item + " " +
                 c.value + (c.item == "_related_function" ? "\n" : "\n_related_function alternate\n"));
        const std::string unquoted =
            c.value.front() == '\'' ? c.value.substr(1, c.value.size() - 2) : c.value;
        EXPECT_EQ(findings(*loaded.errors), c.code ? std::to_string(c.code) + "@3[" + unquoted + "]" : "");
        const CifConcreteDictionary& d = *loaded.dictionary;
        const int read = c.item == "_type"               ? d.type("_x")
                         : c.item == "_type_conditions"  ? d.type_conditions("_x")
                         : c.item == "_list"             ? d.list("_x")
                         : c.item == "_list_mandatory"   ? d.list_mandatory("_x")
                         : c.item == "_related_function" ? d.related("_x").at(0).second
                                                         : -1;
        EXPECT_EQ(read, c.expected);
    }
}

// A finding of the CIF reading itself, or input that cannot be read, leaves nothing built;
// findings and suppressions already in the list are left as they were; a new read replaces all.
TEST(DictionaryReader, ReadingReplacesEverythingAndAnyReadFindingLeavesNothing)
{
    HCifConcreteDictionary d(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    errors->add(CifError(312, "earlier", 3));
    errors->suppress(320);
    const auto read = [&](const std::string& text, bool bad_stream = false) {
        std::istringstream in(text);
        if (bad_stream)
            in.setstate(std::ios::failbit);
        errors->clear();
        d->read(in, errors);
        std::vector<std::string> categories;
        d->category_names(categories);
        return findings(*errors) + " " + std::to_string(d->entry_count()) + " " + d->header().name +
               comma_joined(categories);
    };
    std::istringstream first("data_h _dictionary_name one.dic\ndata_a _name '_a' _category a\n");
    d->read(first, errors);
    EXPECT_EQ(findings(*errors) + " " + answer(*d, "_a"), "312@3[earlier] |3|0||one.dic");
    EXPECT_TRUE(errors->is_suppressed(320));

    const std::string head = "data_h\n_dictionary_name d\ndata_a\n";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {head + "_name '_b'\n_category b\n", " 1 d_b_[]"},
        {head + "_name '_a'\n# " + std::string(79, 'x') + "\n", "347@5[80] 0 "}, // 81 characters
        {head + "_name '_a'\n" + std::string(80, '#') + "\n", " 1 d"},
        {head + "_name '_a'\n_category a stray\n", "312@5[stray] 0 "},
        {"", "302@-1 0 "},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(read(text), expected) << text;
    EXPECT_EQ(read(head, true), "301@-1 0 ");
}

struct PoolFixture {
    // Both define _shared; only the first has no units for it.
    HCifConcreteDictionary first =
        dictionary_from("data_h _dictionary_name first.dic _dictionary_version 1\n"
                        "data_shared _name '_shared' _category Cell _type char\n"
                        "data_only_first _name '_only_first' _category cell _units K\n");
    HCifConcreteDictionary second =
        dictionary_from("data_h _dictionary_name second.dic _dictionary_version 2\n"
                        "data_shared _name '_SHARED' _category cell _type numb _units A\n"
                        "_enumeration_range 0: _type_conditions esd\n"
                        "data_only_second _name '_only_second' _category atom_site _units deg\n");
    HCifDictionaryPool pool = pool_of(first);
};

// The first dictionary added that defines a name answers wholly for it, and removing or adding
// one again changes who answers; category queries cover every dictionary.
TEST(DictionaryPool, FirstAddedDictionaryAnswersWhollyForAName)
{
    PoolFixture f;
    f.pool->add(f.second);
    EXPECT_EQ(f.pool->find_entry("_Shared"), f.first->entry("_shared"));
    std::vector<std::string> names;
    f.pool->category_names(names);
    EXPECT_EQ(comma_joined(names), "_atom_site_[],_Cell_[]"); // "Cell" and "cell" are one category
    EXPECT_EQ(sorted_items(*f.pool, "CELL"), "_only_first,_shared");
    EXPECT_TRUE(f.pool->in_category("atom_site", "_only_second") && f.pool->has_category("_atom_site_[]"));
    EXPECT_FALSE(f.pool->in_category("atom_site", "_only_first") || f.pool->has_category("geom"));

    struct Step {
        const char* what;
        HCifConcreteDictionary* add;
        HCifConcreteDictionary* remove;
        const char* answers; // for _shared, _only_first, _only_second
    };
    const std::vector<Step> steps = {
        {"both", nullptr, nullptr, "|1|0||first.dic K|3|0||first.dic deg|3|0||second.dic"},
        {"first removed", nullptr, &f.first, "A|0|1|0:|second.dic - deg|3|0||second.dic"},
        {"first added again goes last", &f.first, nullptr,
         "A|0|1|0:|second.dic K|3|0||first.dic deg|3|0||second.dic"},
        {"second removed", nullptr, &f.second, "|1|0||first.dic K|3|0||first.dic -"},
        {"removing what is not there changes nothing", nullptr, &f.second,
         "|1|0||first.dic K|3|0||first.dic -"},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(s.what);
        if (s.add)
            f.pool->add(*s.add);
        if (s.remove)
            f.pool->remove(*s.remove);
        EXPECT_EQ(answer(*f.pool, "_SHARED") + " " + answer(*f.pool, "_only_first") + " " +
                      answer(*f.pool, "_only_second"),
                  s.answers);
    }
}

// A data item asks its dictionary afresh when the pool changes, even after it has checked values
// with the old answer; so does a second reading of the same text.
TEST(DictionaryPool, DataItemChecksFollowThePool)
{
    HCifConcreteDictionary numbers =
        dictionary_from("data_x _name '_x' _type numb _enumeration_range 0:10\n");
    HCifConcreteDictionary narrower =
        dictionary_from("data_x _name '_x' _type numb _enumeration_range 0:5\n");
    HCifConcreteDictionary words = dictionary_from("data_x _name '_x' _type char loop_ _enumeration a b\n");
    HCifDictionaryPool pool(new CifDictionaryPool);
    CifDataItem item("_x", pool);
    struct Step {
        const char* what;
        const HCifConcreteDictionary *add, *remove;
        std::string results; // for "abc", "7" and "a"
    };
    const std::vector<Step> steps = {
        {"no dictionary: nothing is checked", nullptr, nullptr, "000"},
        {"numbers up to 10", &numbers, nullptr, "303"},
        {"a later definition does not answer", &words, nullptr, "303"},
        {"the enumeration answers once the first is gone", nullptr, &numbers, "110"},
        {"numbers up to 5: the range is read again", &narrower, &words, "353"},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(s.what);
        if (s.add)
            pool->add(*s.add);
        if (s.remove)
            pool->remove(*s.remove);
        EXPECT_EQ(std::to_string(item.check("abc")) + std::to_string(item.check("7")) +
                      std::to_string(item.set_single_value("a")),
                  s.results);
    }

    HCifDictionaryPool read_pool = pool_of(numbers);
    Cif cif(read_pool);
    cif.errors()->suppress(320);
    std::istringstream in1("data_t\n_x 7\n"), in2("data_t\n_x 7\n");
    cif.read(in1);
    EXPECT_EQ(findings(*cif.errors()), "");
    read_pool->remove(numbers);
    read_pool->add(narrower);
    cif.read(in2);
    EXPECT_EQ(findings(*cif.errors()), "328@2[_x]");
}

// The core dictionary of the shared data: it reads without findings, and every name that a block
// gives under _name (the file read as plain CIF to know them) is defined with its block's category.
TEST(CoreDictionary, DefinesEveryNameOfTheFileAndAnswersAboutRealNames)
{
    if (!fs::exists(core_path))
        GTEST_SKIP() << core_path << " not found";
    Loaded core;
    std::ifstream in(core_path);
    core.dictionary->read(in, core.errors);
    const CifConcreteDictionary& d = *core.dictionary;
    ASSERT_EQ(findings(*core.errors), "");
    const CifDictionaryHeader& h = d.header("_cell_length_a");
    EXPECT_EQ(h.name + "|" + h.version + "|" + h.update, "cif_core.dic|2.4.5|2014-11-21");

    Cif plain(HCifDictionary(new CifConcreteDictionary));
    std::ifstream again(core_path);
    plain.read(again);
    std::size_t names = 0;
    for (const HCifDataBlock& block : plain) {
        const HCifDataItem item = block->item("_name");
        for (std::size_t row = 0; item && row < item->value_count(); ++row, ++names) {
            ASSERT_TRUE(d.exists(item->value(row))) << item->value(row);
            EXPECT_EQ(d.category(item->value(row)), block->first_value("_category")) << item->value(row);
        }
    }
    EXPECT_GT(names, 700u);
    EXPECT_EQ(d.entry_count(), names);

    EXPECT_EQ(answer(d, "_Cell_Length_A"), "A|0|1|0.0:|cif_core.dic");
    EXPECT_EQ(d.type_conditions("_diffrn_radiation_wavelength"), CifDictionaryEntry::Esd); // written "su"
    EXPECT_EQ(pairs_text(d.enumeration("_atom_site_calc_flag")).substr(0, 2) +
                  d.enumeration_default("_atom_site_calc_flag"),
              "d=d");
}

// ---- The loader

void write_file(const QString& path, const std::string& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    std::ofstream(path.toStdString(), std::ios::binary) << text;
}

std::string small_dictionary(const std::string& name, const std::string& defined, const std::string& units)
{
    return "data_h\n_dictionary_name " + name + "\ndata_d\n_name '" + defined + "'\n_units " + units + "\n";
}

TEST(DictionaryLoader, LoadsGoodFilesInOrderAndReportsBadOnes)
{
    QTemporaryDir temp;
    const QString first = temp.filePath("first"), second = temp.filePath("second");
    write_file(first + "/a.dic", small_dictionary("a.dic", "_x", "from_a"));
    write_file(first + "/b.dic", small_dictionary("b.dic", "_x", "from_b") + "_type text\n");
    // A warning rejects the file as much as an error does.
    write_file(first + "/c.dic", small_dictionary("c.dic", "_c", "K") + "# " + std::string(79, '-') + "\n");
    write_file(first + "/notes.txt", small_dictionary("notes", "_notes", "K"));
    write_file(second + "/0.dic", small_dictionary("0.dic", "_x", "from_0") + "data_w\n_name '_w'\n");

    QcbsDictionaryLoader loader;
    std::string messages;
    QObject::connect(
        &loader, &QcbsDictionaryLoader::outputMessageRequest,
        [&](const QString& text, bool newline) { messages += text.toStdString() + (newline ? "\n" : ""); });
    loader.setSearchDirectories({first, temp.filePath("missing"), second});
    const HCifDictionaryPool pool = loader.load("/nowhere");
    const std::string dir = temp.path().toStdString();
    EXPECT_EQ(messages, "Loaded dictionary: " + dir + "/first/a.dic\nErrors loading dictionary: " + dir +
                            "/first/b.dic\nError: Line 3 : Invalid value for _type 'text' : expected 'numb', "
                            "'char' or 'null'\nErrors loading dictionary: " +
                            dir + "/first/c.dic\nWarning: Line 6 : More than 80 characters long\n" +
                            "Loaded dictionary: " + dir + "/second/0.dic\n");
    // Directories in the order given, files by name within one: a.dic answers for _x.
    EXPECT_EQ(answer(*pool, "_x") + " " + answer(*pool, "_w") + " " + answer(*pool, "_c"),
              "from_a|3|0||a.dic |3|0||0.dic -");
    EXPECT_EQ(loader.rejected().size(), 2u);
    EXPECT_EQ(loader.rejected().at(1).findings.at(0).code, 347u);
}

} // namespace

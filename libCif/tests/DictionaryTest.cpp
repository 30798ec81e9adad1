// The DDL1 dictionary reader, the queries of a concrete dictionary and of a pool, on small
// dictionaries written here, and on the real core dictionary of the shared data.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDataItem.h"
#include "CifDictionaryPool.h"
#include "CifTestSupport.h"
#include "QcbsDictionaryLoader.h"

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <initializer_list>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Dictionary texts are written as one string per line, so that the line of each finding can be
// read off the test: the first string is line 1.
std::string lines(std::initializer_list<const char*> text)
{
    std::string out;
    for (const char* line : text)
        out += std::string(line) + "\n";
    return out;
}

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

HCifConcreteDictionary load_clean(const std::string& text)
{
    Loaded loaded = load(text);
    EXPECT_EQ(findings(*loaded.errors), "") << text;
    return loaded.dictionary;
}

std::vector<std::string> sorted(std::vector<std::string> names)
{
    std::sort(names.begin(), names.end());
    return names;
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

std::string joined(const std::vector<std::string>& values)
{
    std::string out;
    for (const std::string& value : values)
        out += (out.empty() ? "" : ",") + value;
    return out;
}

const fs::path core_path = fs::path(CIFWARD_SHARED_DIR) / "dict" / "cif_core.dic";

// ---------------------------------------------------------------------------------------------
// Header

TEST(DictionaryReader, FirstBlockIsHeaderOnlyIfItHoldsAHeaderItem)
{
    struct Case {
        const char* what;
        std::string text;
        CifDictionaryHeader header;
        std::vector<std::string> defined;
        std::vector<std::string> undefined;
    };
    const std::vector<Case> cases = {
        {"name alone makes a header; its _name is not a definition",
         lines({"data_on_this_dictionary", "_dictionary_name mine.dic", "_name '_in_header'", "data_a",
                "_name '_a'"}),
         {"mine.dic", "", "", ""},
         {"_a"},
         {"_in_header"}},
        {"history alone",
         lines({"data_head", "_dictionary_history 'long ago'", "data_a", "_name '_a'"}),
         {"", "long ago", "", ""},
         {"_a"},
         {}},
        {"update alone",
         lines({"data_head", "_dictionary_update 2014-11-21", "data_a", "_name '_a'"}),
         {"", "", "2014-11-21", ""},
         {"_a"},
         {}},
        {"version alone",
         lines({"data_head", "_dictionary_version 2.4.5", "data_a", "_name '_a'"}),
         {"", "", "", "2.4.5"},
         {"_a"},
         {}},
        {"all four",
         lines({"data_head", "_dictionary_name d.dic", "_dictionary_version 1.0",
                "_dictionary_update 2000-01-01", "_dictionary_history 'made'", "data_a", "_name '_a'"}),
         {"d.dic", "made", "2000-01-01", "1.0"},
         {"_a"},
         {}},
        {"no header item: the first block is a definition",
         lines({"data_first", "_name '_first'", "data_second", "_name '_second'"}),
         {"", "", "", ""},
         {"_first", "_second"},
         {}},
        {"an empty header value does not make a header",
         lines({"data_first", "_dictionary_name ''", "_name '_first'", "data_second", "_name '_second'"}),
         {"", "", "", ""},
         {"_first", "_second"},
         {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        HCifConcreteDictionary d = load_clean(c.text);
        EXPECT_EQ(d->header().name, c.header.name);
        EXPECT_EQ(d->header().history, c.header.history);
        EXPECT_EQ(d->header().update, c.header.update);
        EXPECT_EQ(d->header().version, c.header.version);
        for (const std::string& name : c.defined) {
            EXPECT_TRUE(d->exists(name)) << name;
            // Any defined name leads to the header of its dictionary.
            EXPECT_EQ(d->header(name).name, c.header.name) << name;
            EXPECT_EQ(d->header(name).version, c.header.version) << name;
        }
        for (const std::string& name : c.undefined)
            EXPECT_FALSE(d->exists(name)) << name;
        EXPECT_EQ(d->header("_never_defined").name, "");
        EXPECT_EQ(d->header("_never_defined").version, "");
    }
}

TEST(DictionaryReader, HeaderItemsInALaterBlockAreAnUnnamedDefinition)
{
    Loaded loaded = load(lines({"data_a", "_name '_a'", "data_late_header", "_dictionary_name late.dic"}));
    EXPECT_EQ(findings(*loaded.errors), "331@3");
    EXPECT_EQ(loaded.dictionary->header().name, "");
    EXPECT_TRUE(loaded.dictionary->exists("_a"));
}

// ---------------------------------------------------------------------------------------------
// Names and lookup

TEST(DictionaryReader, NameLoopGivesOneEntryUnderEveryName)
{
    HCifConcreteDictionary d = load_clean(
        lines({"data_head", "_dictionary_name t.dic", "data_uij", "loop_ _name", "  '_atom_site_aniso_U_11'",
               "  '_atom_site_aniso_U_22'", "  '_atom_site_aniso_U_33'", "_category atom_site_aniso",
               "_type numb", "_units A^2^", "data_other", "_name '_other'", "_units K"}));
    const CifDictionaryEntry* first = d->entry("_atom_site_aniso_U_11");
    ASSERT_NE(first, nullptr);
    for (const char* name : {"_atom_site_aniso_U_22", "_atom_site_aniso_U_33"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(d->entry(name), first);
        EXPECT_EQ(d->units(name), "A^2^");
        EXPECT_EQ(d->type(name), CifDictionaryEntry::Numb);
    }
    EXPECT_NE(d->entry("_other"), first);
    EXPECT_EQ(d->units("_other"), "K");
    EXPECT_EQ(d->entry_count(), 4u);
    std::vector<std::string> names;
    d->each_name([&](const std::string& name, const CifDictionaryEntry&) { names.push_back(name); });
    EXPECT_EQ(names.size(), 4u);
}

TEST(DictionaryReader, LookupIgnoresCaseOfTheDataName)
{
    HCifConcreteDictionary d =
        load_clean(lines({"data_cell_length_a", "_name '_cell_length_a'", "_category cell", "_type numb",
                          "_units A", "data_Mixed", "_name '_Chemical_Formula_Sum'", "_type char"}));
    struct Case {
        const char* asked;
        bool found;
        int type;
    };
    const std::vector<Case> cases = {
        {"_cell_length_a", true, CifDictionaryEntry::Numb},
        {"_Cell_Length_A", true, CifDictionaryEntry::Numb},
        {"_CELL_LENGTH_A", true, CifDictionaryEntry::Numb},
        {"_chemical_formula_sum", true, CifDictionaryEntry::Char},
        {"_CHEMICAL_FORMULA_SUM", true, CifDictionaryEntry::Char},
        {"_cell_length", false, CifDictionaryEntry::UnknownType},
        {"_cell_length_a_", false, CifDictionaryEntry::UnknownType},
        {"cell_length_a", false, CifDictionaryEntry::UnknownType},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.asked);
        EXPECT_EQ(d->exists(c.asked), c.found);
        EXPECT_EQ(d->entry(c.asked) != nullptr, c.found);
        EXPECT_EQ(d->find_entry(c.asked) != nullptr, c.found);
        EXPECT_EQ(d->type(c.asked), c.type);
        EXPECT_EQ(d->units(c.asked), c.found && c.type == CifDictionaryEntry::Numb ? "A" : "");
    }
}

TEST(DictionaryReader, UndefinedNamesGetTheDefaults)
{
    HCifConcreteDictionary filled = load_clean(lines({"data_x",
                                                      "_name '_x'",
                                                      "_category c",
                                                      "_definition 'a definition'",
                                                      "_type numb",
                                                      "_type_conditions esd",
                                                      "_list yes",
                                                      "_list_mandatory yes",
                                                      "_units K",
                                                      "_enumeration_range 0:",
                                                      "_list_link_child '_y'",
                                                      "_list_reference '_z'",
                                                      "_enumeration_default 1",
                                                      "_list_link_parent '_p'",
                                                      "_list_uniqueness '_u'",
                                                      "_type_construct '[0-9]+'",
                                                      "_units_detail kelvins",
                                                      "_example 5",
                                                      "_enumeration 5",
                                                      "_related_item '_w'",
                                                      "_related_function alternate"}));
    const CifConcreteDictionary empty;
    HCifDictionaryPool pool(new CifDictionaryPool);
    HCifDictionaryPool filled_pool(new CifDictionaryPool);
    filled_pool->add(filled);
    const std::vector<std::pair<const char*, const CifDictionary*>> dictionaries = {
        {"empty concrete", &empty},
        {"concrete with other names", filled.get()},
        {"empty pool", pool.get()},
        {"pool with other names", filled_pool.get()},
    };
    for (const auto& [what, d] : dictionaries) {
        SCOPED_TRACE(what);
        const std::string name = "_not_there";
        EXPECT_FALSE(d->exists(name));
        EXPECT_EQ(d->find_entry(name), nullptr);
        for (const std::string* text :
             {&d->category(name), &d->list_link_parent(name), &d->enumeration_default(name),
              &d->enumeration_range(name), &d->definition(name), &d->units(name), &d->units_detail(name),
              &d->type_construct(name), &d->list_uniqueness(name)})
            EXPECT_EQ(*text, "");
        EXPECT_EQ(d->type(name), 3);
        EXPECT_EQ(d->type_conditions(name), 0);
        EXPECT_EQ(d->list(name), 1);
        EXPECT_FALSE(d->list_mandatory(name));
        EXPECT_TRUE(d->list_reference(name).empty());
        EXPECT_TRUE(d->list_link_child(name).empty());
        EXPECT_TRUE(d->example(name).empty());
        EXPECT_TRUE(d->enumeration(name).empty());
        EXPECT_TRUE(d->related(name).empty());
        EXPECT_EQ(d->header(name).name, "");
    }

    // The filled definition is read field by field, so that the defaults above are not merely
    // what every query answers.
    EXPECT_EQ(filled->category("_x"), "c");
    EXPECT_EQ(filled->definition("_x"), "a definition");
    EXPECT_EQ(filled->type("_x"), CifDictionaryEntry::Numb);
    EXPECT_EQ(filled->type_conditions("_x"), CifDictionaryEntry::Esd);
    EXPECT_EQ(filled->list("_x"), CifDictionaryEntry::ListYes);
    EXPECT_TRUE(filled->list_mandatory("_x"));
    EXPECT_EQ(filled->units("_x"), "K");
    EXPECT_EQ(filled->units_detail("_x"), "kelvins");
    EXPECT_EQ(filled->enumeration_range("_x"), "0:");
    EXPECT_EQ(filled->enumeration_default("_x"), "1");
    EXPECT_EQ(filled->list_link_parent("_x"), "_p");
    EXPECT_EQ(filled->list_uniqueness("_x"), "_u");
    EXPECT_EQ(filled->type_construct("_x"), "[0-9]+");
    EXPECT_EQ(joined(filled->list_link_child("_x")), "_y");
    EXPECT_EQ(joined(filled->list_reference("_x")), "_z");
    EXPECT_EQ(pairs_text(filled->example("_x")), "5=");
    EXPECT_EQ(pairs_text(filled->enumeration("_x")), "5=");
    EXPECT_EQ(related_text(filled->related("_x")), "_w=1");
    EXPECT_EQ(filled_pool->units("_x"), "K");
}

// ---------------------------------------------------------------------------------------------
// Categories

TEST(DictionaryReader, CategoriesAreKeptInTheirOverviewForm)
{
    HCifConcreteDictionary d = load_clean(lines({
        "data_cell_[]",
        "_name '_cell_[]'",
        "_category category_overview",
        "_type null",
        "data_cell_length_a",
        "_name '_cell_length_a'",
        "_category cell",
        "data_cell_volume",
        "_name '_cell_volume'",
        "_category cell",
        "data_atom_site_label",
        "_name '_atom_site_label'",
        "_category '_atom_site'",
        "data_geom_bond",
        "_name '_geom_bond_distance'",
        "_category '_geom_bond_[]'",
        "data_no_category",
        "_name '_no_category'",
    }));
    std::vector<std::string> names;
    d->category_names(names);
    EXPECT_EQ(joined(sorted(names)), "_atom_site_[],_category_overview_[],_cell_[],_geom_bond_[]");
    // The entry keeps the category as written; only the category index uses the overview form.
    EXPECT_EQ(d->category("_cell_length_a"), "cell");

    struct Case {
        const char* category;
        bool known;
        std::vector<std::string> items;
    };
    const std::vector<Case> cases = {
        {"cell", true, {"_cell_length_a", "_cell_volume"}},
        {"_cell_[]", true, {"_cell_length_a", "_cell_volume"}},
        {"category_overview", true, {"_cell_[]"}},
        {"_category_overview_[]", true, {"_cell_[]"}},
        {"atom_site", true, {"_atom_site_label"}},
        {"_atom_site_[]", true, {"_atom_site_label"}},
        {"geom_bond", true, {"_geom_bond_distance"}},
        {"geom", false, {}},
        {"cel", false, {}},
        {"", false, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.category);
        EXPECT_EQ(d->has_category(c.category), c.known);
        std::vector<std::string> items;
        d->category_items(c.category, items);
        EXPECT_EQ(joined(sorted(items)), joined(c.items));
        for (const std::string& item : c.items) {
            EXPECT_TRUE(d->in_category(c.category, item)) << item;
            std::string upper = item;
            std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
            EXPECT_TRUE(d->in_category(c.category, upper)) << upper;
        }
        EXPECT_FALSE(d->in_category(c.category, "_no_category"));
        EXPECT_FALSE(d->in_category(c.category, "_not_defined"));
    }
    EXPECT_FALSE(d->in_category("cell", "_atom_site_label"));
}

// ---------------------------------------------------------------------------------------------
// Findings of the reader

TEST(DictionaryReader, DefinitionFindingsNameTheBlockLineAndTheValue)
{
    struct Case {
        const char* what;
        std::string text;
        std::string findings;
        std::vector<std::string> messages;
    };
    const std::vector<Case> cases = {
        {"331 block without _name",
         lines({"data_a", "_name '_a'", "data_b", "_category b"}),
         "331@3",
         {"Dictionary entry has no _name"}},
        {"332 name defined twice across blocks",
         lines({"data_a", "_name '_a'", "data_b", "_name '_A'"}),
         "332@-1[_A]",
         {"Duplicate dictionary item _A ignored"}},
        {"332 name repeated in one loop",
         lines({"data_a", "loop_ _name '_a' '_b' '_a'"}),
         "332@-1[_a]",
         {"Duplicate dictionary item _a ignored"}},
        {"333 pair loop with three columns",
         lines({"data_a", "_name '_a'", "loop_ _enumeration _enumeration_detail _zzz", "x y z"}),
         "333@1",
         {"Loop contains too many labels, expected one or two"}},
        {"334 single field with two values",
         lines({"data_h", "_dictionary_name d", "data_a", "_name '_a'", "loop_ _units", "A", "B"}),
         "334@3",
         {"Only a single value expected"}},
        {"337 pair loop with the wrong second column",
         lines({"data_a", "_name '_a'", "loop_ _enumeration _units", "x y"}),
         "337@1[_units|_enumeration_detail]",
         {"Item _units unexpected in loop, expected _enumeration_detail"}},
        {"337 detail of another pair",
         lines({"data_a", "_name '_a'", "loop_ _example _enumeration_detail", "x y"}),
         "337@1[_enumeration_detail|_example_detail]",
         {"Item _enumeration_detail unexpected in loop, expected _example_detail"}},
        {"337 related item with a stray column",
         lines({"data_a", "_name '_a'", "loop_ _related_item _related_detail", "'_b' x"}),
         "337@1[_related_detail|_related_function]",
         {"Item _related_detail unexpected in loop, expected _related_function"}},
        {"338 neither yes nor no",
         lines({"data_a", "_name '_a'", "_list_mandatory maybe"}),
         "338@1[maybe]",
         {"Invalid value for item maybe : expected 'yes' or 'no'"}},
        {"339 _type text",
         lines({"data_a", "_name '_a'", "_type text"}),
         "339@1[text]",
         {"Invalid value for _type 'text' : expected 'numb', 'char' or 'null'"}},
        {"340 _type_conditions sux",
         lines({"data_a", "_name '_a'", "_type_conditions sux"}),
         "340@1[sux]",
         {"Invalid value for _type_conditions 'sux' : expected 'esd', 'seq' or 'null'"}},
        {"340 _type_conditions 's u'",
         lines({"data_a", "_name '_a'", "_type_conditions 's u'"}),
         "340@1[s u]",
         {"Invalid value for _type_conditions 's u' : expected 'esd', 'seq' or 'null'"}},
        {"340 _type_conditions null, named by the message but not accepted",
         lines({"data_a", "_name '_a'", "_type_conditions null"}),
         "340@1[null]",
         {"Invalid value for _type_conditions 'null' : expected 'esd', 'seq' or 'null'"}},
        {"341 _list maybe",
         lines({"data_a", "_name '_a'", "_list maybe"}),
         "341@1[maybe]",
         {"Invalid value for _list 'maybe' : expected 'yes', 'no' or 'both'"}},
        {"342 unknown related function",
         lines({"data_a", "_name '_a'", "_related_item '_b'", "_related_function sibling"}),
         "342@1[sibling]",
         {"Invalid value for _related_function 'sibling' : expected 'alternate', 'conversion', "
          "'convention' or 'replace'"}},
        {"342 in a related loop, for the bad row only",
         lines({"data_h", "_dictionary_version 1", "data_a", "_name '_a'",
                "loop_ _related_item _related_function", "'_b' alternate", "'_c' cousin", "'_d' replace"}),
         "342@3[cousin]",
         {"Invalid value for _related_function 'cousin' : expected 'alternate', 'conversion', "
          "'convention' or 'replace'"}},
        {"findings of several blocks, in file order",
         lines({"data_a", "_name '_a'", "_type text", "data_b", "_category b", "data_c", "_name '_c'",
                "_list never"}),
         "339@1[text] 331@4 341@6[never]",
         {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Loaded loaded = load(c.text);
        EXPECT_EQ(findings(*loaded.errors), c.findings);
        for (std::size_t i = 0; i < c.messages.size() && i < loaded.errors->count(); ++i)
            EXPECT_EQ(loaded.errors->at(i).message(), c.messages[i]);
        for (const CifError& e : *loaded.errors)
            EXPECT_EQ(e.severity(), e.code == 332 ? 1 : 2) << e.code;
    }
}

TEST(DictionaryReader, FindingsWhileBuildingLeaveTheRestOfTheDefinition)
{
    // 331 skips its block only; 332 keeps the first definition; 333 and 337 leave their pair
    // field empty; 334 takes the first value.
    Loaded loaded = load(lines({
        "data_a",
        "_name '_a'",
        "_units first", // 1-3
        "data_b",
        "_category b", // 4-5
        "data_c",
        "_name '_A'",
        "_units second", // 6-8
        "data_d",
        "_name '_d'",
        "_units K", // 9-11
        "loop_ _enumeration _enumeration_detail _zzz",
        "x y z", // 12-13
        "_example 12",
        "_related_item '_a'",
        "_related_function replace", // 14-16
        "data_e",
        "_name '_e'", // 17-18
        "loop_ _example _example_detail",
        "ex1 'first example'", // 19-20
        "loop_ _enumeration _units",
        "u v", // 21-22
        "data_f",
        "_name '_f'",
        "loop_ _definition",
        "one",
        "two", // 23-27
    }));
    EXPECT_EQ(findings(*loaded.errors), "331@4 333@9 337@17[_units|_enumeration_detail] 334@23 332@-1[_A]");
    const HCifConcreteDictionary& d = loaded.dictionary;
    EXPECT_EQ(d->units("_a"), "first");
    EXPECT_EQ(d->units("_d"), "K");
    EXPECT_TRUE(d->enumeration("_d").empty());
    EXPECT_EQ(pairs_text(d->example("_d")), "12=");
    EXPECT_EQ(related_text(d->related("_d")), "_a=8");
    EXPECT_TRUE(d->enumeration("_e").empty());
    EXPECT_EQ(pairs_text(d->example("_e")), "ex1=first example");
    EXPECT_EQ(d->definition("_f"), "one");
    std::vector<std::string> categories;
    d->category_names(categories);
    EXPECT_EQ(joined(categories), "");
}

// The enumerated fields read the first accepted word, in the order of the accepted words, that
// occurs anywhere in the value, ignoring case.
TEST(DictionaryReader, EnumeratedFieldsTakeTheFirstAcceptedWordThatOccurs)
{
    struct Case {
        const char* item;
        const char* value;
        int expected;
        const char* finding;
    };
    const std::vector<Case> cases = {
        {"_type", "numb", CifDictionaryEntry::Numb, ""},
        {"_type", "Numbers", CifDictionaryEntry::Numb, ""},
        {"_type", "CHAR", CifDictionaryEntry::Char, ""},
        {"_type", "character", CifDictionaryEntry::Char, ""},
        {"_type", "null", CifDictionaryEntry::Null, ""},
        {"_type", "'char or numb'", CifDictionaryEntry::Numb, ""},
        {"_type", "nullchar", CifDictionaryEntry::Char, ""},
        {"_type", "text", CifDictionaryEntry::UnknownType, "339@3[text]"},
        {"_type_conditions", "none", CifDictionaryEntry::NoConditions, ""},
        {"_type_conditions", "NONE", CifDictionaryEntry::NoConditions, ""},
        {"_type_conditions", "esd", CifDictionaryEntry::Esd, ""},
        {"_type_conditions", "ESDs", CifDictionaryEntry::Esd, ""},
        {"_type_conditions", "seq", CifDictionaryEntry::Seq, ""},
        {"_type_conditions", "'seq esd'", CifDictionaryEntry::Esd, ""},
        {"_type_conditions", "'esd none'", CifDictionaryEntry::NoConditions, ""},
        {"_type_conditions", "su", CifDictionaryEntry::Esd, ""},
        {"_type_conditions", "sux", CifDictionaryEntry::NoConditions, "340@3[sux]"},
        {"_type_conditions", "'s u'", CifDictionaryEntry::NoConditions, "340@3[s u]"},
        {"_type_conditions", "usu", CifDictionaryEntry::NoConditions, "340@3[usu]"},
        {"_list", "no", CifDictionaryEntry::ListNo, ""},
        {"_list", "both", CifDictionaryEntry::ListBoth, ""},
        {"_list", "yes", CifDictionaryEntry::ListYes, ""},
        {"_list", "Yes", CifDictionaryEntry::ListYes, ""},
        {"_list", "'yes or no'", CifDictionaryEntry::ListNo, ""},
        {"_list", "'yes both'", CifDictionaryEntry::ListBoth, ""},
        {"_list", "nobody", CifDictionaryEntry::ListNo, ""},
        {"_list", "maybe", CifDictionaryEntry::ListBoth, "341@3[maybe]"},
        {"_list_mandatory", "yes", 1, ""},
        {"_list_mandatory", "YES", 1, ""},
        {"_list_mandatory", "no", 0, ""},
        {"_list_mandatory", "'yes, no'", 0, ""},
        {"_list_mandatory", "'yes and not'", 0, ""},
        {"_list_mandatory", "known", 0, ""},
        {"_list_mandatory", "eyes", 1, ""},
        {"_list_mandatory", "'   '", 0, ""},
        {"_list_mandatory", "\n;\n   \n;", 0, ""},
        {"_list_mandatory", "maybe", 0, "338@3[maybe]"},
        {"_related_function", "alternate", CifDictionaryEntry::Alternate, ""},
        {"_related_function", "convention", CifDictionaryEntry::Convention, ""},
        {"_related_function", "conversion", CifDictionaryEntry::Conversion, ""},
        {"_related_function", "replace", CifDictionaryEntry::Replace, ""},
        {"_related_function", "Replaces", CifDictionaryEntry::Replace, ""},
        {"_related_function", "'replace alternate'", CifDictionaryEntry::Alternate, ""},
        {"_related_function", "'conversion convention'", CifDictionaryEntry::Convention, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.item) + " " + c.value);
        std::string text =
            lines({"data_h", "_dictionary_name d", "data_x", "_name '_x'", "_related_item '_r'"});
        const bool related = std::string(c.item) == "_related_function";
        text += std::string(c.item) + " " + c.value + "\n";
        if (!related)
            text += "_related_function alternate\n";
        Loaded loaded = load(text);
        EXPECT_EQ(findings(*loaded.errors), c.finding);
        const HCifConcreteDictionary& d = loaded.dictionary;
        const std::string item = c.item;
        if (item == "_type")
            EXPECT_EQ(d->type("_x"), c.expected);
        else if (item == "_type_conditions")
            EXPECT_EQ(d->type_conditions("_x"), c.expected);
        else if (item == "_list")
            EXPECT_EQ(d->list("_x"), c.expected);
        else if (item == "_list_mandatory")
            EXPECT_EQ(d->list_mandatory("_x"), c.expected != 0);
        else if (*c.finding == 0) {
            EXPECT_EQ(related_text(d->related("_x")), "_r=" + std::to_string(c.expected));
        }
    }
}

TEST(DictionaryReader, PairFieldsSingleOrLooped)
{
    struct Case {
        const char* what;
        std::vector<const char*> body;
        const char* enumeration;
        const char* example;
        const char* related;
    };
    const std::vector<Case> cases = {
        {"single value with its detail",
         {"_enumeration a", "_enumeration_detail 'the a'"},
         "a=the a",
         "",
         ""},
        {"single value without detail", {"_example 1.5"}, "", "1.5=", ""},
        {"single related item", {"_related_item '_y'", "_related_function conversion"}, "", "", "_y=4"},
        {"loop of value and detail",
         {"loop_ _enumeration _enumeration_detail", "yes 'it is'", "no 'it is not'"},
         "yes=it is,no=it is not",
         "",
         ""},
        {"loop with the detail first",
         {"loop_ _example_detail _example", "'first one' 1", "'second one' 2"},
         "",
         "1=first one,2=second one",
         ""},
        {"loop of values only", {"loop_ _enumeration", "a", "b", "c"}, "a=,b=,c=", "", ""},
        {"related loop",
         {"loop_ _related_item _related_function", "'_y' alternate", "'_z' replace"},
         "",
         "",
         "_y=1,_z=8"},
        {"all three pair fields",
         {"_enumeration only", "loop_ _example _example_detail", "e1 d1", "e2 d2", "_related_item '_w'",
          "_related_function convention"},
         "only=",
         "e1=d1,e2=d2",
         "_w=2"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        std::string text = lines({"data_x", "_name '_x'"});
        for (const char* line : c.body)
            text += std::string(line) + "\n";
        HCifConcreteDictionary d = load_clean(text);
        EXPECT_EQ(pairs_text(d->enumeration("_x")), c.enumeration);
        EXPECT_EQ(pairs_text(d->example("_x")), c.example);
        EXPECT_EQ(related_text(d->related("_x")), c.related);
    }
}

TEST(DictionaryReader, ListFieldsTakeEveryValue)
{
    HCifConcreteDictionary d = load_clean(lines({
        "data_x",
        "_name '_x'",
        "loop_ _list_link_child",
        "'_child_one'",
        "'_child_two'",
        "_list_reference '_ref'",
        "data_y",
        "_name '_y'",
        "_list_link_child '_only_child'",
        "loop_ _list_reference",
        "'_r1'",
        "'_r2'",
        "'_r3'",
    }));
    EXPECT_EQ(joined(d->list_link_child("_x")), "_child_one,_child_two");
    EXPECT_EQ(joined(d->list_reference("_x")), "_ref");
    EXPECT_EQ(joined(d->list_link_child("_y")), "_only_child");
    EXPECT_EQ(joined(d->list_reference("_y")), "_r1,_r2,_r3");
}

TEST(DictionaryReader, TextValuesAreNormalised)
{
    struct Case {
        const char* what;
        std::string value; // as written after "_definition"
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"blank lines at both ends and the common indent go",
         "\n;\n\n    First line.\n      Indented more.\n\n;", "First line.\n  Indented more."},
        {"the first line of the field counts", "\n; Starts here.\n   Goes on.\n;",
         "Starts here.\n  Goes on."},
        {"lines of white space at the ends go", "\n;   \n\t\n  a\n  b\n   \n;", "a\nb"},
        {"tabs count as white space", "\n;\n\ta\n\t\tb\n;", "a\n\tb"},
        {"an empty inner line has no indent, so nothing is removed", "\n;\n   a\n\n   b\n;", "   a\n\n   b"},
        {"inner white-space lines keep what is beyond the indent", "\n;\n  a\n      \n  b\n;", "a\n    \nb"},
        {"no final line end", "\n;\nonly\n;", "only"},
        {"a quoted value loses its leading blanks", "'   lead'", "lead"},
        {"trailing blanks of a line stay", "'tail   '", "tail   "},
        {"nothing but white space reads as empty", "\n;\n   \n\n;", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        HCifConcreteDictionary d = load_clean("data_x\n_name '_x'\n_definition " + c.value + "\n");
        EXPECT_EQ(d->definition("_x"), c.expected);
    }

    // The same form applies to every field read from the file, not only to definitions.
    HCifConcreteDictionary d = load_clean(lines({"data_x",
                                                 "_name",
                                                 ";",
                                                 "   _spaced_name",
                                                 ";",
                                                 "_units",
                                                 ";",
                                                 "   K",
                                                 ";",
                                                 "_enumeration",
                                                 ";",
                                                 "   v",
                                                 ";",
                                                 "_enumeration_detail",
                                                 ";",
                                                 "    detail",
                                                 "    text",
                                                 ";",
                                                 "_list_link_child",
                                                 ";",
                                                 "  _child",
                                                 ";"}));
    EXPECT_TRUE(d->exists("_spaced_name"));
    EXPECT_EQ(d->units("_spaced_name"), "K");
    EXPECT_EQ(pairs_text(d->enumeration("_spaced_name")), "v=detail\ntext");
    EXPECT_EQ(joined(d->list_link_child("_spaced_name")), "_child");
}

// A finding of the CIF reading itself rejects the whole dictionary: nothing is built.
TEST(DictionaryReader, AnyReadFindingLeavesNoEntries)
{
    const std::string long_line = "# " + std::string(79, 'x'); // 81 characters
    struct Case {
        const char* what;
        std::string text;
        const char* findings;
    };
    const std::vector<Case> cases = {
        {"a line of 81 characters",
         lines({"data_h", "_dictionary_name d", "data_a", "_name '_a'", long_line.c_str()}), "347@5[80]"},
        {"a stray value",
         lines({"data_h", "_dictionary_name d", "data_a", "_name '_a'", "_category a stray"}),
         "312@5[stray]"},
        {"an item set twice", lines({"data_h", "_dictionary_name d", "data_a", "_name '_a'", "_name '_b'"}),
         "318@5[_name|4]"},
        {"a ragged loop", lines({"data_h", "_dictionary_name d", "data_a", "loop_ _name _category", "'_a'"}),
         "322@4"},
        {"an unterminated quote", lines({"data_h", "_dictionary_name d", "data_a", "_name '_a"}), "350@4[']"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Loaded loaded = load(c.text);
        EXPECT_EQ(findings(*loaded.errors), c.findings);
        EXPECT_EQ(loaded.dictionary->entry_count(), 0u);
        EXPECT_FALSE(loaded.dictionary->exists("_a"));
        EXPECT_EQ(loaded.dictionary->header().name, "");
        std::vector<std::string> categories;
        loaded.dictionary->category_names(categories);
        EXPECT_TRUE(categories.empty());
    }

    // The same text without the long line is a good dictionary.
    Loaded good =
        load(lines({"data_h", "_dictionary_name d", "data_a", "_name '_a'", std::string(80, '#').c_str()}));
    EXPECT_EQ(findings(*good.errors), "");
    EXPECT_TRUE(good.dictionary->exists("_a"));
}

TEST(DictionaryReader, UnreadableOrEmptyInput)
{
    struct Case {
        const char* what;
        std::string text;
        bool bad_stream;
        const char* findings;
    };
    const std::vector<Case> cases = {
        {"a stream that is not good", lines({"data_a", "_name '_a'"}), true, "301@-1"},
        {"no text at all", "", false, "302@-1"},
        {"only comments", lines({"# a dictionary", "# with nothing in it"}), false, "302@-1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        std::istringstream in(c.text);
        if (c.bad_stream)
            in.setstate(std::ios::failbit);
        HCifConcreteDictionary d(new CifConcreteDictionary);
        HCifErrorList errors(new CifErrorList);
        d->read(in, errors);
        EXPECT_EQ(findings(*errors), c.findings);
        EXPECT_EQ(d->entry_count(), 0u);
    }

    std::ifstream missing("/nonexistent/cifward/none.dic");
    HCifConcreteDictionary d(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    d->read(missing, errors);
    EXPECT_EQ(findings(*errors), "301@-1");
}

TEST(DictionaryReader, ComparesFindingCountsWithTheListAsItWas)
{
    // Findings already in the list before the read are not the dictionary's: a good file still
    // builds.
    HCifErrorList errors(new CifErrorList);
    errors->add(CifError(312, "earlier", 3));
    HCifConcreteDictionary d(new CifConcreteDictionary);
    std::istringstream in(lines({"data_a", "_name '_a'"}));
    d->read(in, errors);
    EXPECT_EQ(findings(*errors), "312@3[earlier]");
    EXPECT_TRUE(d->exists("_a"));
}

TEST(DictionaryReader, LeavesTheSuppressionOfCreatedItemsAsItWas)
{
    for (bool suppressed_before : {false, true}) {
        SCOPED_TRACE(suppressed_before);
        HCifErrorList errors(new CifErrorList);
        if (suppressed_before)
            errors->suppress(320);
        HCifConcreteDictionary d(new CifConcreteDictionary);
        std::istringstream in(lines({"data_a", "_name '_a'", "_category a", "_type char"}));
        d->read(in, errors);
        // No 320 for the dictionary's own names, which no dictionary defines.
        EXPECT_EQ(findings(*errors), "");
        EXPECT_EQ(errors->is_suppressed(320), suppressed_before);
        EXPECT_TRUE(d->exists("_a"));
    }
}

TEST(DictionaryReader, ReadingAgainReplacesEverything)
{
    HCifConcreteDictionary d(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    std::istringstream first(
        lines({"data_h", "_dictionary_name one.dic", "data_a", "_name '_a'", "_category a"}));
    d->read(first, errors);
    ASSERT_TRUE(d->exists("_a"));

    std::istringstream second(
        lines({"data_h", "_dictionary_version 2", "data_b", "_name '_b'", "_category b"}));
    d->read(second, errors);
    EXPECT_EQ(findings(*errors), "");
    EXPECT_FALSE(d->exists("_a"));
    EXPECT_TRUE(d->exists("_b"));
    EXPECT_EQ(d->header().name, "");
    EXPECT_EQ(d->header().version, "2");
    EXPECT_FALSE(d->has_category("a"));
    EXPECT_TRUE(d->has_category("b"));

    std::istringstream bad(lines({"data_c", "_name '_c'", "stray"}));
    d->read(bad, errors);
    EXPECT_EQ(d->entry_count(), 0u);
    EXPECT_FALSE(d->has_category("b"));
    EXPECT_EQ(d->header().version, "");
}

// ---------------------------------------------------------------------------------------------
// Pool

struct PoolFixture {
    // Both define _shared; only the first has no units for it.
    HCifConcreteDictionary first = load_clean(lines({
        "data_h",
        "_dictionary_name first.dic",
        "_dictionary_version 1",
        "data_shared",
        "_name '_shared'",
        "_category Cell",
        "_type char",
        "data_only_first",
        "_name '_only_first'",
        "_category cell",
        "_units K",
    }));
    HCifConcreteDictionary second = load_clean(lines({
        "data_h",
        "_dictionary_name second.dic",
        "_dictionary_version 2",
        "data_shared",
        "_name '_SHARED'",
        "_category cell",
        "_type numb",
        "_units A",
        "_enumeration_range 0:",
        "_type_conditions esd",
        "data_only_second",
        "_name '_only_second'",
        "_category atom_site",
        "_units deg",
    }));
};

TEST(DictionaryPool, FirstAddedDictionaryAnswersWhollyForAName)
{
    PoolFixture f;
    HCifDictionaryPool pool(new CifDictionaryPool);
    pool->add(f.first);
    pool->add(f.second);
    struct Case {
        const char* name;
        bool exists;
        const char* units;
        int type;
        int type_conditions;
        const char* range;
        const char* header_name;
        const CifConcreteDictionary* owner;
    };
    const std::vector<Case> cases = {
        {"_shared", true, "", CifDictionaryEntry::Char, 0, "", "first.dic", f.first.get()},
        {"_Shared", true, "", CifDictionaryEntry::Char, 0, "", "first.dic", f.first.get()},
        {"_only_first", true, "K", CifDictionaryEntry::UnknownType, 0, "", "first.dic", f.first.get()},
        {"_only_second", true, "deg", CifDictionaryEntry::UnknownType, 0, "", "second.dic", f.second.get()},
        {"_nowhere", false, "", CifDictionaryEntry::UnknownType, 0, "", "", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(pool->exists(c.name), c.exists);
        EXPECT_EQ(pool->units(c.name), c.units);
        EXPECT_EQ(pool->type(c.name), c.type);
        EXPECT_EQ(pool->type_conditions(c.name), c.type_conditions);
        EXPECT_EQ(pool->enumeration_range(c.name), c.range);
        EXPECT_EQ(pool->header(c.name).name, c.header_name);
        EXPECT_EQ(pool->find_entry(c.name), c.owner ? c.owner->entry(c.name) : nullptr);
    }
    EXPECT_EQ(pool->size(), 2u);
    std::vector<const CifConcreteDictionary*> order;
    for (const HCifConcreteDictionary& d : *pool)
        order.push_back(d.get());
    EXPECT_EQ(order, (std::vector<const CifConcreteDictionary*>{f.first.get(), f.second.get()}));
}

TEST(DictionaryPool, RemoveAndAddAgainChangesWhoAnswers)
{
    PoolFixture f;
    HCifDictionaryPool pool(new CifDictionaryPool);
    pool->add(f.first);
    pool->add(f.second);
    struct Step {
        const char* what;
        int action; // 0 remove first, 1 add first, 2 remove second, 3 remove first again
        const char* shared_units;
        int shared_type;
        bool only_first;
        bool only_second;
    };
    const std::vector<Step> steps = {
        {"first removed: the second answers", 0, "A", CifDictionaryEntry::Numb, false, true},
        {"first added again goes last", 1, "A", CifDictionaryEntry::Numb, true, true},
        {"second removed: the first answers", 2, "", CifDictionaryEntry::Char, true, false},
        {"first removed: only the fallback is left", 3, "", CifDictionaryEntry::UnknownType, false, false},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(s.what);
        if (s.action == 0 || s.action == 3)
            pool->remove(f.first);
        else if (s.action == 1)
            pool->add(f.first);
        else
            pool->remove(f.second);
        EXPECT_EQ(pool->units("_shared"), s.shared_units);
        EXPECT_EQ(pool->type("_shared"), s.shared_type);
        EXPECT_EQ(pool->exists("_shared"), s.shared_type != CifDictionaryEntry::UnknownType);
        EXPECT_EQ(pool->exists("_only_first"), s.only_first);
        EXPECT_EQ(pool->exists("_only_second"), s.only_second);
        EXPECT_EQ(pool->units("_only_first"), s.only_first ? "K" : "");
    }
    EXPECT_EQ(pool->size(), 0u);
    // Removing what is not there changes nothing.
    pool->remove(f.second);
    EXPECT_EQ(pool->size(), 0u);
}

TEST(DictionaryPool, CategoryQueriesCoverEveryDictionary)
{
    PoolFixture f;
    HCifDictionaryPool pool(new CifDictionaryPool);
    pool->add(f.first);
    pool->add(f.second);
    std::vector<std::string> names;
    pool->category_names(names);
    // "Cell" of the first and "cell" of the second are one category.
    ASSERT_EQ(names.size(), 2u) << joined(names);
    EXPECT_EQ(names[0], "_atom_site_[]");
    EXPECT_TRUE(names[1] == "_cell_[]" || names[1] == "_Cell_[]") << names[1];

    struct Case {
        const char* category;
        bool known;
        const char* items;
    };
    const std::vector<Case> cases = {
        {"cell", true, "_only_first,_shared"},
        {"atom_site", true, "_only_second"},
        {"_atom_site_[]", true, "_only_second"},
        {"geom", false, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.category);
        EXPECT_EQ(pool->has_category(c.category), c.known);
        std::vector<std::string> items;
        pool->category_items(c.category, items);
        // A name in the category of both dictionaries is listed once.
        std::vector<std::string> lowered;
        for (std::string item : items) {
            std::transform(item.begin(), item.end(), item.begin(), ::tolower);
            lowered.push_back(item);
        }
        EXPECT_EQ(joined(sorted(lowered)), c.items);
    }
    EXPECT_TRUE(pool->in_category("cell", "_only_first"));
    EXPECT_TRUE(pool->in_category("atom_site", "_only_second"));
    EXPECT_FALSE(pool->in_category("atom_site", "_only_first"));

    // The sorting is over all dictionaries, whatever the order of addition.
    HCifConcreteDictionary early = load_clean(
        lines({"data_z", "_name '_z'", "_category zeta", "data_b", "_name '_b'", "_category beta"}));
    HCifDictionaryPool other(new CifDictionaryPool);
    other->add(early);
    other->add(f.second);
    names.clear();
    other->category_names(names);
    EXPECT_EQ(joined(names), "_atom_site_[],_beta_[],_cell_[],_zeta_[]");
}

// A data item asks its dictionary afresh when the pool changes, even after it has checked values
// with the old answer.
TEST(DictionaryPool, DataItemChecksFollowThePool)
{
    HCifConcreteDictionary numbers =
        load_clean(lines({"data_x", "_name '_x'", "_type numb", "_enumeration_range 0:10"}));
    HCifConcreteDictionary narrower =
        load_clean(lines({"data_x", "_name '_x'", "_type numb", "_enumeration_range 0:5"}));
    HCifConcreteDictionary words =
        load_clean(lines({"data_x", "_name '_x'", "_type char", "loop_ _enumeration", "a", "b"}));
    HCifDictionaryPool pool(new CifDictionaryPool);
    CifDataItem item("_x", pool);
    struct Step {
        const char* what;
        const HCifConcreteDictionary* add;
        const HCifConcreteDictionary* remove;
        int abc;   // result for "abc"
        int seven; // result for "7"
        int a;     // result for "a"
    };
    const std::vector<Step> steps = {
        {"no dictionary: nothing is checked", nullptr, nullptr, 0, 0, 0},
        {"numbers up to 10", &numbers, nullptr, 3, 0, 3},
        {"a later definition does not answer", &words, nullptr, 3, 0, 3},
        {"the enumeration answers once the first is gone", nullptr, &numbers, 1, 1, 0},
        {"numbers up to 5: the range is read again", &narrower, &words, 3, 5, 3},
        {"back to numbers up to 10", &numbers, &narrower, 3, 0, 3},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(s.what);
        if (s.add)
            pool->add(*s.add);
        if (s.remove)
            pool->remove(*s.remove);
        EXPECT_EQ(item.check("abc"), s.abc);
        EXPECT_EQ(item.check("7"), s.seven);
        EXPECT_EQ(item.set_single_value("a"), s.a);
        EXPECT_EQ(item.first_value(), "a");
    }

    // The same through reading: the second read of the same text sees the new definition.
    HCifDictionaryPool read_pool(new CifDictionaryPool);
    Cif cif(read_pool);
    cif.errors()->suppress(320);
    const std::string text = lines({"data_t", "_x 7"});
    std::istringstream in1(text);
    cif.read(in1);
    EXPECT_EQ(findings(*cif.errors()), "");
    read_pool->add(narrower);
    std::istringstream in2(text);
    cif.read(in2);
    EXPECT_EQ(findings(*cif.errors()), "328@2[_x]");
}

// ---------------------------------------------------------------------------------------------
// The real core dictionary

class CoreDictionary : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        dictionary_ = new HCifConcreteDictionary(new CifConcreteDictionary);
        errors_ = new HCifErrorList(new CifErrorList);
        std::ifstream in(core_path);
        if (in)
            (*dictionary_)->read(in, *errors_);
    }
    static void TearDownTestSuite()
    {
        delete dictionary_;
        delete errors_;
    }
    void SetUp() override
    {
        if (!fs::exists(core_path))
            GTEST_SKIP() << core_path << " not found: set CIFWARD_SHARED_DIR to the shared dir";
    }
    static const CifConcreteDictionary& core() { return **dictionary_; }

    static HCifConcreteDictionary* dictionary_;
    static HCifErrorList* errors_;
};
HCifConcreteDictionary* CoreDictionary::dictionary_ = nullptr;
HCifErrorList* CoreDictionary::errors_ = nullptr;

TEST_F(CoreDictionary, LoadsWithoutFindings)
{
    EXPECT_EQ(findings(**errors_), "");
    EXPECT_EQ(core().header().name, "cif_core.dic");
    EXPECT_EQ(core().header().version, "2.4.5");
    EXPECT_EQ(core().header().update, "2014-11-21");
    EXPECT_NE(core().header().history.find("1991-05-27  Created from CIF Dictionary text. SRH"),
              std::string::npos)
        << core().header().history.substr(0, 80);
    EXPECT_EQ(core().header("_cell_length_a").version, "2.4.5");
}

// Every name that a block of the file gives under _name is defined, with the category of its
// block; the file is read here as a plain CIF to know them.
TEST_F(CoreDictionary, DefinesEveryNameOfTheFile)
{
    HCifDictionary none(new CifConcreteDictionary);
    Cif plain(none);
    std::ifstream in(core_path);
    plain.read(in);
    std::size_t names = 0;
    for (const HCifDataBlock& block : plain) {
        HCifDataItem item = block->item("_name");
        if (!item)
            continue;
        const std::string category = block->first_value("_category");
        for (std::size_t row = 0; row < item->value_count(); ++row) {
            const std::string name = item->value(row);
            ++names;
            SCOPED_TRACE(name);
            ASSERT_TRUE(core().exists(name));
            EXPECT_EQ(core().category(name), category);
            if (!category.empty()) {
                EXPECT_TRUE(core().in_category(category, name));
            }
        }
    }
    EXPECT_GT(names, 700u);
    EXPECT_EQ(core().entry_count(), names);
}

TEST_F(CoreDictionary, AnswersAboutRealNames)
{
    const CifConcreteDictionary& d = core();
    // _cell_length_a: a number with standard uncertainties, not below zero, in angstroms.
    EXPECT_EQ(d.type("_cell_length_a"), CifDictionaryEntry::Numb);
    EXPECT_EQ(d.type_conditions("_cell_length_a"), CifDictionaryEntry::Esd);
    EXPECT_EQ(d.enumeration_range("_cell_length_a"), "0.0:");
    EXPECT_EQ(d.units("_cell_length_a"), "A");
    EXPECT_EQ(d.category("_cell_length_a"), "cell");
    EXPECT_EQ(d.list("_cell_length_a"), CifDictionaryEntry::ListBoth);
    EXPECT_TRUE(d.in_category("cell", "_Cell_Length_A"));
    EXPECT_TRUE(d.in_category("_cell_[]", "_cell_length_b"));
    // The three lengths share one definition.
    EXPECT_EQ(d.entry("_cell_length_a"), d.entry("_cell_length_c"));
    EXPECT_NE(d.definition("_cell_length_a").find("Unit-cell lengths"), std::string::npos)
        << d.definition("_cell_length_a");
    EXPECT_NE(d.definition("_cell_length_a").back(), '\n');

    // An enumeration, with its details and its default.
    std::string values;
    for (const auto& [value, detail] : d.enumeration("_atom_site_calc_flag"))
        values += (values.empty() ? "" : ",") + value;
    EXPECT_EQ(values, "d,calc,c,dum");
    EXPECT_EQ(d.enumeration_default("_atom_site_calc_flag"), "d");
    EXPECT_EQ(d.type("_atom_site_calc_flag"), CifDictionaryEntry::Char);
    EXPECT_EQ(d.list("_atom_site_calc_flag"), CifDictionaryEntry::ListYes);
    EXPECT_FALSE(d.enumeration("_atom_site_calc_flag").front().second.empty());

    // Related items: the old symmetry name is replaced by its space-group successor.
    bool replaced = false;
    for (const auto& [name, function] : d.related("_symmetry_cell_setting"))
        if (name == "_space_group_crystal_system" && function == CifDictionaryEntry::Replace)
            replaced = true;
    EXPECT_TRUE(replaced) << related_text(d.related("_symmetry_cell_setting"));

    // "su" is read as "esd" in the three definitions that use it.
    EXPECT_EQ(d.type_conditions("_diffrn_radiation_wavelength"), CifDictionaryEntry::Esd);

    // Mandatory keys of looped categories.
    EXPECT_TRUE(d.list_mandatory("_atom_site_label"));
    EXPECT_FALSE(d.list_mandatory("_atom_site_fract_x"));

    // The category overview entries.
    EXPECT_TRUE(d.exists("_cell_[]"));
    EXPECT_TRUE(d.has_category("category_overview"));
    EXPECT_TRUE(d.in_category("category_overview", "_cell_[]"));
    EXPECT_TRUE(d.in_category("_category_overview_[]", "_atom_site_[]"));
    std::vector<std::string> categories;
    d.category_names(categories);
    for (const std::string& category : categories) {
        SCOPED_TRACE(category);
        EXPECT_EQ(category.front(), '_');
        EXPECT_EQ(category.substr(category.size() - 3), "_[]");
        EXPECT_TRUE(d.has_category(category));
    }
    for (const char* category : {"journal", "publ", "atom_site", "atom_sites", "atom_type", "cell",
                                 "chemical", "diffrn", "exptl", "geom", "refine", "reflns", "symmetry"})
        EXPECT_TRUE(d.has_category(category)) << category;
}

// ---------------------------------------------------------------------------------------------
// The loader

std::string text_of(const QString& text)
{
    return text.toStdString();
}

void write_file(const QString& path, const std::string& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    std::ofstream out(path.toStdString(), std::ios::binary);
    out << text;
}

std::string small_dictionary(const char* name, const char* defined, const char* units)
{
    return "data_h\n_dictionary_name " + std::string(name) + "\ndata_d\n_name '" + defined + "'\n_units " +
           units + "\n";
}

// Everything the loader sends to the output pane, one entry a message.
struct Output {
    explicit Output(QcbsDictionaryLoader& loader)
    {
        QObject::connect(&loader, &QcbsDictionaryLoader::outputMessageRequest,
                         [this](const QString& text, bool newline) {
                             messages.push_back(text.toStdString());
                             all_newlines = all_newlines && newline;
                         });
    }
    std::vector<std::string> messages;
    bool all_newlines = true;
};

// Sets or clears an environment variable for the life of the object.
struct ScopedEnvironment {
    ScopedEnvironment(const char* name, const char* value) : name_(name)
    {
        if (const char* old = std::getenv(name))
            old_ = old;
        if (value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    ~ScopedEnvironment()
    {
        if (old_)
            setenv(name_, old_->c_str(), 1);
        else
            unsetenv(name_);
    }
    const char* name_;
    std::optional<std::string> old_;
};

TEST(DictionaryLoader, SearchesTheProgramsDirectoriesInOrder)
{
    {
        ScopedEnvironment none("CIFWARD_DICT_PATH", nullptr);
        const QStringList dirs = QcbsDictionaryLoader::searchDirectories("/opt/cw/bin");
        ASSERT_EQ(dirs.size(), 6);
        const std::vector<std::string> relative = {
            "/opt/cw/bin/dict", "/opt/cw/bin/../../dict", "/opt/cw/bin/../Resources/dict",
            "/opt/cw/bin/../../../libCif/dictionaries", "/opt/cw/bin/../../libCif/dictionaries"};
        for (std::size_t i = 0; i < relative.size(); ++i)
            EXPECT_EQ(text_of(dirs[static_cast<int>(i)]), relative[i]);
        // Then the install prefix's data directory.
        EXPECT_TRUE(dirs[5].endsWith("/cifward/dict")) << text_of(dirs[5]);
    }
    {
        ScopedEnvironment extra("CIFWARD_DICT_PATH", "/first/dicts::/second/dicts");
        const QStringList dirs = QcbsDictionaryLoader::searchDirectories("/opt/cw/bin");
        ASSERT_EQ(dirs.size(), 8);
        EXPECT_EQ(text_of(dirs[6]), "/first/dicts");
        EXPECT_EQ(text_of(dirs[7]), "/second/dicts");
    }
}

TEST(DictionaryLoader, LoadsGoodFilesAndReportsBadOnes)
{
    QTemporaryDir temp;
    ASSERT_TRUE(temp.isValid());
    const QString first = temp.filePath("first"), second = temp.filePath("second");
    write_file(first + "/a.dic", small_dictionary("a.dic", "_x", "from_a"));
    write_file(first + "/b.dic", small_dictionary("b.dic", "_x", "from_b") + "_type text\n");
    // A warning rejects the file as much as an error does.
    write_file(first + "/c.dic", small_dictionary("c.dic", "_c", "K") + "# " + std::string(79, '-') + "\n");
    write_file(first + "/notes.txt", small_dictionary("notes", "_notes", "K"));
    write_file(second + "/0.dic", small_dictionary("0.dic", "_x", "from_0") + "data_w\n_name '_w'\n");

    QcbsDictionaryLoader loader;
    Output output(loader);
    loader.setSearchDirectories({first, temp.filePath("missing"), second});
    const HCifDictionaryPool pool = loader.load("/nowhere");
    ASSERT_TRUE(pool);

    const std::string a = text_of(first + "/a.dic"), b = text_of(first + "/b.dic"),
                      c = text_of(first + "/c.dic"), zero = text_of(second + "/0.dic");
    const std::vector<std::string> expected = {
        "Loaded dictionary: " + a,
        "Errors loading dictionary: " + b,
        "Error: Line 3 : Invalid value for _type 'text' : expected 'numb', 'char' or 'null'",
        "Errors loading dictionary: " + c,
        "Warning: Line 6 : More than 80 characters long",
        "Loaded dictionary: " + zero,
    };
    EXPECT_EQ(output.messages, expected);
    EXPECT_TRUE(output.all_newlines);

    // Directories in the order given, files by name within one: a.dic answers for _x.
    EXPECT_EQ(pool->size(), 2u);
    EXPECT_EQ(pool->units("_x"), "from_a");
    EXPECT_TRUE(pool->exists("_w"));
    EXPECT_FALSE(pool->exists("_c"));
    EXPECT_FALSE(pool->exists("_notes"));
    EXPECT_EQ(pool->header("_w").name, "0.dic");
    ASSERT_EQ(loader.loaded().size(), 2u);
    EXPECT_EQ(text_of(loader.loaded()[0].path), a);
    EXPECT_EQ(text_of(loader.loaded()[1].path), zero);
    ASSERT_EQ(loader.rejected().size(), 2u);
    EXPECT_EQ(text_of(loader.rejected()[0].path), b);
    ASSERT_EQ(loader.rejected()[0].findings.size(), 1u);
    EXPECT_EQ(loader.rejected()[0].findings[0].code, 339u);
    ASSERT_EQ(loader.rejected()[1].findings.size(), 1u);
    EXPECT_EQ(loader.rejected()[1].findings[0].code, 347u);

    // Loading happens once: later calls give the same pool and read nothing new.
    write_file(first + "/d.dic", small_dictionary("d.dic", "_d", "K"));
    const HCifDictionaryPool again = loader.load("/elsewhere");
    EXPECT_TRUE(again == pool);
    EXPECT_EQ(output.messages.size(), expected.size());
    EXPECT_FALSE(pool->exists("_d"));
}

// Without directories given, the loader searches beside the program, then the environment's.
TEST(DictionaryLoader, FindsDictionariesRelativeToTheProgram)
{
    QTemporaryDir temp;
    ASSERT_TRUE(temp.isValid());
    const QString root = temp.path();
    const QString program = root + "/x/a/bin";
    QDir().mkpath(program);
    // One file in each place, all defining _x; each also defines a name of its own.
    const std::vector<std::pair<QString, const char*>> places = {
        {program + "/dict/one.dic", "_one"},
        {root + "/x/dict/two.dic", "_two"},
        {root + "/x/a/Resources/dict/three.dic", "_three"},
        {root + "/libCif/dictionaries/four.dic", "_four"},
        {root + "/x/libCif/dictionaries/five.dic", "_five"},
        {root + "/extra/six.dic", "_six"},
    };
    for (const auto& [path, own] : places)
        write_file(path, small_dictionary("d", "_x", own + 1) + "data_own\n_name '" + own + "'\n");

    ScopedEnvironment extra("CIFWARD_DICT_PATH", (root + "/extra").toStdString().c_str());
    QcbsDictionaryLoader loader;
    const HCifDictionaryPool pool = loader.load(program);
    std::vector<std::string> order;
    for (const auto& loaded : loader.loaded())
        if (loaded.path.startsWith(root))
            order.push_back(text_of(QFileInfo(loaded.path).fileName()));
    EXPECT_EQ(order, (std::vector<std::string>{"one.dic", "two.dic", "three.dic", "four.dic", "five.dic",
                                               "six.dic"}));
    EXPECT_EQ(pool->units("_x"), "one");
    for (const auto& [path, own] : places)
        EXPECT_TRUE(pool->exists(own)) << own;
    EXPECT_TRUE(loader.rejected().empty()) << text_of(loader.rejected().front().path);
}

TEST(DictionaryLoader, NothingFoundGivesAnEmptyPool)
{
    QcbsDictionaryLoader loader;
    Output output(loader);
    loader.setSearchDirectories({"/nonexistent/cifward/dict"});
    const HCifDictionaryPool pool = loader.load("/nowhere");
    ASSERT_TRUE(pool);
    EXPECT_EQ(pool->size(), 0u);
    EXPECT_TRUE(output.messages.empty());
    // The fallback answers.
    EXPECT_EQ(pool->type("_cell_length_a"), CifDictionaryEntry::UnknownType);
}

} // namespace

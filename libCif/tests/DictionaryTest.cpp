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
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

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

const fs::path core_path = fs::path(CIFWARD_SHARED_DIR) / "dict" / "cif_core.dic";

// ---------------------------------------------------------------------------------------------
// Header

TEST(DictionaryReader, FirstBlockIsHeaderOnlyIfItHoldsAHeaderItem)
{
    struct Case {
        std::string text;
        CifDictionaryHeader header;
        std::vector<std::string> defined;
    };
    const std::vector<Case> cases = {
        // The header's own _name is no definition.
        {"data_h _dictionary_name mine.dic _name '_in_header' data_a _name '_a'",
         {"mine.dic", "", "", ""},
         {"_a"}},
        {"data_h _dictionary_history 'long ago' data_a _name '_a'", {"", "long ago", "", ""}, {"_a"}},
        {"data_h _dictionary_update 2014-11-21 data_a _name '_a'", {"", "", "2014-11-21", ""}, {"_a"}},
        {"data_h _dictionary_version 2.4.5 data_a _name '_a'", {"", "", "", "2.4.5"}, {"_a"}},
        {"data_h _dictionary_name d.dic _dictionary_version 1.0\n_dictionary_update 2000-01-01 "
         "_dictionary_history 'made' data_a _name '_a'",
         {"d.dic", "made", "2000-01-01", "1.0"},
         {"_a"}},
        // Without a header item, or with an empty one, the first block is a definition.
        {"data_first _name '_first' data_second _name '_second'", {"", "", "", ""}, {"_first", "_second"}},
        {"data_first _dictionary_name '' _name '_first' data_second _name '_second'",
         {"", "", "", ""},
         {"_first", "_second"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        HCifConcreteDictionary d = dictionary_from(c.text + "\n");
        const CifDictionaryHeader& h = d->header();
        EXPECT_EQ(h.name + "|" + h.history + "|" + h.update + "|" + h.version,
                  c.header.name + "|" + c.header.history + "|" + c.header.update + "|" + c.header.version);
        // Any defined name leads to the header of its dictionary.
        for (const std::string& name : c.defined)
            EXPECT_EQ(d->header(name).name + "|" + d->header(name).version,
                      c.header.name + "|" + c.header.version)
                << name;
        EXPECT_EQ(d->entry_count(), c.defined.size());
        EXPECT_EQ(d->header("_never_defined").name + d->header("_never_defined").version, "");
    }
}

// ---------------------------------------------------------------------------------------------
// Names and lookup

TEST(DictionaryReader, NameLoopGivesOneEntryUnderEveryName)
{
    HCifConcreteDictionary d = dictionary_from(
        "data_head _dictionary_name t.dic\ndata_uij loop_ _name '_atom_site_aniso_U_11'\n"
        "'_atom_site_aniso_U_22' '_atom_site_aniso_U_33'\n_category atom_site_aniso _type numb _units A^2^\n"
        "data_other _name '_other' _units K\n");
    const CifDictionaryEntry* first = d->entry("_atom_site_aniso_U_11");
    ASSERT_NE(first, nullptr);
    for (const char* name : {"_atom_site_aniso_U_22", "_atom_site_aniso_U_33"}) {
        EXPECT_EQ(d->entry(name), first) << name;
        EXPECT_EQ(d->units(name), "A^2^") << name;
    }
    EXPECT_NE(d->entry("_other"), first);
    EXPECT_EQ(d->units("_other"), "K");
    EXPECT_EQ(d->entry_count(), 4u);
    std::size_t names = 0;
    d->each_name([&](const std::string&, const CifDictionaryEntry&) { ++names; });
    EXPECT_EQ(names, 4u);
}

TEST(DictionaryReader, LookupIgnoresCaseOfTheDataName)
{
    HCifConcreteDictionary d = dictionary_from("data_a _name '_cell_length_a' _type numb _units A\n"
                                               "data_b _name '_Chemical_Formula_Sum' _type char\n");
    struct Case {
        const char* asked;
        int type; // UnknownType when the name is not defined
    };
    const std::vector<Case> cases = {{"_cell_length_a", CifDictionaryEntry::Numb},
                                     {"_CELL_LENGTH_A", CifDictionaryEntry::Numb},
                                     {"_chemical_formula_sum", CifDictionaryEntry::Char},
                                     {"_cell_length", CifDictionaryEntry::UnknownType},
                                     {"_cell_length_a_", CifDictionaryEntry::UnknownType},
                                     {"cell_length_a", CifDictionaryEntry::UnknownType}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.asked);
        const bool found = c.type != CifDictionaryEntry::UnknownType;
        EXPECT_EQ(d->exists(c.asked), found);
        EXPECT_EQ(d->entry(c.asked) != nullptr, found);
        EXPECT_EQ(d->find_entry(c.asked) != nullptr, found);
        EXPECT_EQ(d->type(c.asked), c.type);
        EXPECT_EQ(d->units(c.asked), c.type == CifDictionaryEntry::Numb ? "A" : "");
    }
}

// Every field of a definition is read, and a name that is not defined gets the defaults.
TEST(DictionaryReader, UndefinedNamesGetTheDefaults)
{
    HCifConcreteDictionary filled =
        dictionary_from("data_x _name '_x' _category c _definition 'a definition' _type numb\n"
                        "_type_conditions esd _list yes _list_mandatory yes _units K\n"
                        "_enumeration_range 0: _list_link_child '_y' _list_reference '_z'\n"
                        "_enumeration_default 1 _list_link_parent '_p' _list_uniqueness '_u'\n"
                        "_type_construct '[0-9]+' _units_detail kelvins _example 5 _enumeration 5\n"
                        "_related_item '_w' _related_function alternate\n");
    const CifConcreteDictionary empty;
    HCifDictionaryPool pool(new CifDictionaryPool);
    HCifDictionaryPool filled_pool = pool_of(filled);
    for (const CifDictionary* d :
         {static_cast<const CifDictionary*>(&empty), static_cast<const CifDictionary*>(filled.get()),
          static_cast<const CifDictionary*>(pool.get()),
          static_cast<const CifDictionary*>(filled_pool.get())}) {
        const std::string name = "_not_there";
        EXPECT_FALSE(d->exists(name));
        EXPECT_EQ(d->find_entry(name), nullptr);
        EXPECT_EQ(d->category(name) + d->list_link_parent(name) + d->enumeration_default(name) +
                      d->enumeration_range(name) + d->definition(name) + d->units(name) +
                      d->units_detail(name) + d->type_construct(name) + d->list_uniqueness(name) +
                      d->header(name).name,
                  "");
        EXPECT_EQ(d->type(name), 3);
        EXPECT_EQ(d->type_conditions(name), 0);
        EXPECT_EQ(d->list(name), 1);
        EXPECT_FALSE(d->list_mandatory(name));
        EXPECT_TRUE(d->list_reference(name).empty() && d->list_link_child(name).empty());
        EXPECT_TRUE(d->example(name).empty() && d->enumeration(name).empty() && d->related(name).empty());
    }

    // The filled definition is read field by field, so that the defaults are not merely what
    // every query answers.
    EXPECT_EQ(filled->category("_x") + "|" + filled->definition("_x") + "|" + filled->units("_x") + "|" +
                  filled->units_detail("_x") + "|" + filled->enumeration_range("_x") + "|" +
                  filled->enumeration_default("_x") + "|" + filled->list_link_parent("_x") + "|" +
                  filled->list_uniqueness("_x") + "|" + filled->type_construct("_x"),
              "c|a definition|K|kelvins|0:|1|_p|_u|[0-9]+");
    // The other fields of the filled definition are read as the tables below show.
    EXPECT_EQ(filled_pool->units("_x"), "K");
}

// ---------------------------------------------------------------------------------------------
// Categories

TEST(DictionaryReader, CategoriesAreKeptInTheirOverviewForm)
{
    HCifConcreteDictionary d =
        dictionary_from("data_cell_[] _name '_cell_[]' _category category_overview _type null\n"
                        "data_cell_length_a _name '_cell_length_a' _category cell\n"
                        "data_cell_volume _name '_cell_volume' _category cell\n"
                        "data_atom_site_label _name '_atom_site_label' _category '_atom_site'\n"
                        "data_geom_bond _name '_geom_bond_distance' _category '_geom_bond_[]'\n"
                        "data_no_category _name '_no_category'\n");
    std::vector<std::string> names;
    d->category_names(names);
    EXPECT_EQ(comma_joined(sorted(names)), "_atom_site_[],_category_overview_[],_cell_[],_geom_bond_[]");
    // The entry keeps the category as written; only the category index uses the overview form.
    EXPECT_EQ(d->category("_cell_length_a"), "cell");

    struct Case {
        const char* category;
        std::vector<std::string> items; // none for an unknown category
    };
    const std::vector<Case> cases = {
        {"cell", {"_cell_length_a", "_cell_volume"}},
        {"_cell_[]", {"_cell_length_a", "_cell_volume"}},
        {"category_overview", {"_cell_[]"}},
        {"atom_site", {"_atom_site_label"}},
        {"_atom_site_[]", {"_atom_site_label"}},
        {"geom_bond", {"_geom_bond_distance"}},
        {"geom", {}},
        {"cel", {}},
        {"", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.category);
        EXPECT_EQ(d->has_category(c.category), !c.items.empty());
        std::vector<std::string> items;
        d->category_items(c.category, items);
        EXPECT_EQ(comma_joined(sorted(items)), comma_joined(c.items));
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
        std::string text;
        std::string findings;
        std::string message; // of the first finding
    };
    const std::vector<Case> cases = {
        {"data_a _name '_a'\n\ndata_b _category b\n", "331@3", "Dictionary entry has no _name"},
        // Header items in a later block make no header.
        {"data_a _name '_a'\n\ndata_late_header _dictionary_name late.dic\n", "331@3",
         "Dictionary entry has no _name"},
        {"data_a _name '_a'\ndata_b _name '_A'\n", "332@-1[_A]", "Duplicate dictionary item _A ignored"},
        {"data_a loop_ _name '_a' '_b' '_a'\n", "332@-1[_a]", "Duplicate dictionary item _a ignored"},
        {"data_a _name '_a' loop_ _enumeration _enumeration_detail _zzz x y z\n", "333@1",
         "Loop contains too many labels, expected one or two"},
        {"data_h _dictionary_name d\n\ndata_a _name '_a' loop_ _units A B\n", "334@3",
         "Only a single value expected"},
        {"data_a _name '_a' loop_ _enumeration _units x y\n", "337@1[_units|_enumeration_detail]",
         "Item _units unexpected in loop, expected _enumeration_detail"},
        {"data_a _name '_a' loop_ _example _enumeration_detail x y\n",
         "337@1[_enumeration_detail|_example_detail]",
         "Item _enumeration_detail unexpected in loop, expected _example_detail"},
        {"data_a _name '_a' loop_ _related_item _related_detail '_b' x\n",
         "337@1[_related_detail|_related_function]",
         "Item _related_detail unexpected in loop, expected _related_function"},
        {"data_a _name '_a' _list_mandatory maybe\n", "338@1[maybe]",
         "Invalid value for item maybe : expected 'yes' or 'no'"},
        {"data_a _name '_a' _type text\n", "339@1[text]",
         "Invalid value for _type 'text' : expected 'numb', 'char' or 'null'"},
        // "null" is named by the message but not accepted.
        {"data_a _name '_a' _type_conditions null\n", "340@1[null]",
         "Invalid value for _type_conditions 'null' : expected 'esd', 'seq' or 'null'"},
        {"data_a _name '_a' _list maybe\n", "341@1[maybe]",
         "Invalid value for _list 'maybe' : expected 'yes', 'no' or 'both'"},
        {"data_a _name '_a' _related_item '_b' _related_function sibling\n", "342@1[sibling]",
         "Invalid value for _related_function 'sibling' : expected 'alternate', 'conversion', "
         "'convention' or 'replace'"},
        // In a related loop, for the bad row only.
        {"data_h _dictionary_version 1\n\ndata_a _name '_a' loop_ _related_item _related_function\n"
         "'_b' alternate '_c' cousin '_d' replace\n",
         "342@3[cousin]",
         "Invalid value for _related_function 'cousin' : expected 'alternate', 'conversion', "
         "'convention' or 'replace'"},
        // Findings of several blocks, in file order.
        {"data_a _name '_a' _type text\n\n\ndata_b _category b\n\ndata_c _name '_c' _list never\n",
         "339@1[text] 331@4 341@6[never]",
         "Invalid value for _type 'text' : expected 'numb', 'char' or 'null'"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        Loaded loaded = load(c.text);
        EXPECT_EQ(findings(*loaded.errors), c.findings);
        ASSERT_FALSE(loaded.errors->is_empty());
        EXPECT_EQ(loaded.errors->at(0).message(), c.message);
        for (const CifError& e : *loaded.errors)
            EXPECT_EQ(e.severity(), e.code == 332 ? 1 : 2) << e.code;
    }
}

TEST(DictionaryReader, FindingsWhileBuildingLeaveTheRestOfTheDefinition)
{
    // 331 skips its block only; 332 keeps the first definition; 333 and 337 leave their pair
    // field empty; 334 takes the first value.
    // The blocks start on lines 1, 4, 6, 9, 17 and 23.
    Loaded loaded = load("data_a\n_name '_a'\n_units first\ndata_b\n_category b\ndata_c\n_name '_A'\n"
                         "_units second\ndata_d\n_name '_d'\n_units K\n"
                         "loop_ _enumeration _enumeration_detail _zzz\nx y z\n_example 12\n"
                         "_related_item '_a'\n_related_function replace\ndata_e\n_name '_e'\n"
                         "loop_ _example _example_detail\nex1 'first example'\nloop_ _enumeration _units\n"
                         "u v\ndata_f\n_name '_f'\nloop_ _definition\none\ntwo\n");
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
    EXPECT_EQ(comma_joined(categories), "");
}

// The enumerated fields read the first accepted word, in the order of the accepted words, that
// occurs anywhere in the value, ignoring case.
TEST(DictionaryReader, EnumeratedFieldsTakeTheFirstAcceptedWordThatOccurs)
{
    using E = CifDictionaryEntry;
    struct Case {
        std::string item;
        std::string value; // as written
        int expected;      // as read
        int code;          // of the finding, 0 for none
    };
    const std::vector<Case> cases = {
        {"_type", "Numbers", E::Numb, 0},
        {"_type", "CHAR", E::Char, 0},
        {"_type", "null", E::Null, 0},
        {"_type", "'char or numb'", E::Numb, 0},
        {"_type", "nullchar", E::Char, 0},
        {"_type", "text", E::UnknownType, 339},
        {"_type_conditions", "NONE", E::NoConditions, 0},
        {"_type_conditions", "ESDs", E::Esd, 0},
        {"_type_conditions", "seq", E::Seq, 0},
        {"_type_conditions", "'seq esd'", E::Esd, 0},
        {"_type_conditions", "'esd none'", E::NoConditions, 0},
        {"_type_conditions", "su", E::Esd, 0},
        {"_type_conditions", "sux", E::NoConditions, 340},
        {"_type_conditions", "'s u'", E::NoConditions, 340},
        {"_type_conditions", "usu", E::NoConditions, 340},
        {"_list", "both", E::ListBoth, 0},
        {"_list", "Yes", E::ListYes, 0},
        {"_list", "'yes or no'", E::ListNo, 0},
        {"_list", "'yes both'", E::ListBoth, 0},
        {"_list", "nobody", E::ListNo, 0},
        {"_list", "maybe", E::ListBoth, 341},
        {"_list_mandatory", "YES", 1, 0},
        {"_list_mandatory", "no", 0, 0},
        {"_list_mandatory", "'yes and not'", 0, 0},
        {"_list_mandatory", "known", 0, 0},
        {"_list_mandatory", "eyes", 1, 0},
        {"_list_mandatory", "'   '", 0, 0},
        {"_list_mandatory", "maybe", 0, 338},
        {"_related_function", "convention", E::Convention, 0},
        {"_related_function", "conversion", E::Conversion, 0},
        {"_related_function", "Replaces", E::Replace, 0},
        {"_related_function", "'replace alternate'", E::Alternate, 0},
        {"_related_function", "'conversion convention'", E::Convention, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.item + " " + c.value);
        Loaded loaded =
            load("data_h\n_dictionary_name d\ndata_x _name '_x' _related_item '_r'\n" + c.item + " " +
                 c.value + (c.item == "_related_function" ? "\n" : "\n_related_function alternate\n"));
        const bool quoted = c.value.front() == '\'';
        const std::string unquoted = quoted ? c.value.substr(1, c.value.size() - 2) : c.value;
        EXPECT_EQ(findings(*loaded.errors), c.code ? std::to_string(c.code) + "@3[" + unquoted + "]" : "");
        const HCifConcreteDictionary& d = loaded.dictionary;
        if (c.item == "_type")
            EXPECT_EQ(d->type("_x"), c.expected);
        else if (c.item == "_type_conditions")
            EXPECT_EQ(d->type_conditions("_x"), c.expected);
        else if (c.item == "_list")
            EXPECT_EQ(d->list("_x"), c.expected);
        else if (c.item == "_list_mandatory")
            EXPECT_EQ(d->list_mandatory("_x"), c.expected != 0);
        else
            EXPECT_EQ(related_text(d->related("_x")), "_r=" + std::to_string(c.expected));
    }
}

// Pair fields (value and detail) and list fields, single or looped.
TEST(DictionaryReader, FieldsOfSeveralValues)
{
    struct Case {
        const char* body; // after "data_x _name '_x'"
        const char* enumeration;
        const char* example;
        const char* related;
        const char* children;
        const char* references;
    };
    const std::vector<Case> cases = {
        {"_enumeration a _enumeration_detail 'the a'", "a=the a", "", "", "", ""},
        {"_example 1.5 _list_link_child '_c' _list_reference '_r'", "", "1.5=", "", "_c", "_r"},
        {"_related_item '_y' _related_function conversion", "", "", "_y=4", "", ""},
        {"loop_ _enumeration _enumeration_detail yes 'it is' no 'it is not'", "yes=it is,no=it is not", "",
         "", "", ""},
        {"loop_ _example_detail _example 'first one' 1 'second one' 2", "", "1=first one,2=second one", "",
         "", ""},
        {"loop_ _enumeration a b c", "a=,b=,c=", "", "", "", ""},
        {"loop_ _related_item _related_function '_y' alternate '_z' replace", "", "", "_y=1,_z=8", "", ""},
        {"loop_ _list_link_child '_c1' '_c2' loop_ _list_reference '_r1' '_r2' '_r3'", "", "", "", "_c1,_c2",
         "_r1,_r2,_r3"},
        {"_enumeration only loop_ _example _example_detail e1 d1 e2 d2\n"
         "_related_item '_w' _related_function convention",
         "only=", "e1=d1,e2=d2", "_w=2", "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.body);
        HCifConcreteDictionary d = dictionary_from(std::string("data_x _name '_x'\n") + c.body + "\n");
        EXPECT_EQ(pairs_text(d->enumeration("_x")), c.enumeration);
        EXPECT_EQ(pairs_text(d->example("_x")), c.example);
        EXPECT_EQ(related_text(d->related("_x")), c.related);
        EXPECT_EQ(comma_joined(d->list_link_child("_x")), c.children);
        EXPECT_EQ(comma_joined(d->list_reference("_x")), c.references);
    }
}

TEST(DictionaryReader, TextValuesAreNormalised)
{
    struct Case {
        std::string value; // as written after "_definition"
        std::string expected;
    };
    const std::vector<Case> cases = {
        // Blank lines at both ends and the common indent go; the first line of the field counts.
        {"\n;\n\n    First line.\n      Indented more.\n\n;", "First line.\n  Indented more."},
        {"\n; Starts here.\n   Goes on.\n;", "Starts here.\n  Goes on."},
        {"\n;   \n\t\n  a\n  b\n   \n;", "a\nb"},
        {"\n;\n\ta\n\t\tb\n;", "a\n\tb"},
        // An empty inner line has no indent, so nothing is removed; white-space lines keep the rest.
        {"\n;\n   a\n\n   b\n;", "   a\n\n   b"},
        {"\n;\n  a\n      \n  b\n;", "a\n    \nb"},
        {"\n;\nonly\n;", "only"},
        {"'   lead'", "lead"},
        {"'tail   '", "tail   "},
        {"\n;\n   \n\n;", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        HCifConcreteDictionary d = dictionary_from("data_x\n_name '_x'\n_definition " + c.value + "\n");
        EXPECT_EQ(d->definition("_x"), c.expected);
    }

    // The same form applies to every field read from the file, not only to definitions.
    HCifConcreteDictionary d = dictionary_from("data_x\n_name\n;\n   _spaced_name\n;\n_units\n;\n   K\n;\n"
                                               "_enumeration\n;\n   v\n;\n_enumeration_detail\n;\n"
                                               "    detail\n    text\n;\n_list_link_child\n;\n  _child\n;\n");
    EXPECT_EQ(d->units("_spaced_name"), "K");
    EXPECT_EQ(pairs_text(d->enumeration("_spaced_name")), "v=detail\ntext");
    EXPECT_EQ(comma_joined(d->list_link_child("_spaced_name")), "_child");
}

// A finding of the CIF reading itself, or input that cannot be read, leaves nothing built.
TEST(DictionaryReader, AnyReadFindingLeavesNoEntries)
{
    const std::string head = "data_h\n_dictionary_name d\ndata_a\n";
    struct Case {
        std::string text;
        const char* findings;
        bool bad_stream = false;
    };
    const std::vector<Case> cases = {
        {head + "_name '_a'\n# " + std::string(79, 'x') + "\n", "347@5[80]"}, // 81 characters
        {head + "_name '_a'\n_category a stray\n", "312@5[stray]"},
        {head + "_name '_a'\n_name '_b'\n", "318@5[_name|4]"},
        {head + "loop_ _name _category\n'_a'\n", "322@4"},
        {head + "_name '_a\n", "350@4[']"},
        {head + "_name '_a'\n", "301@-1", true},
        {"", "302@-1"},
        {"# a dictionary\n# with nothing in it\n", "302@-1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        std::istringstream in(c.text);
        if (c.bad_stream)
            in.setstate(std::ios::failbit);
        Loaded loaded;
        loaded.dictionary->read(in, loaded.errors);
        EXPECT_EQ(findings(*loaded.errors), c.findings);
        EXPECT_EQ(loaded.dictionary->entry_count(), 0u);
        EXPECT_EQ(loaded.dictionary->header().name, "");
        std::vector<std::string> categories;
        loaded.dictionary->category_names(categories);
        EXPECT_TRUE(categories.empty());
    }

    std::ifstream missing("/nonexistent/cifward/none.dic");
    Loaded loaded;
    loaded.dictionary->read(missing, loaded.errors);
    EXPECT_EQ(findings(*loaded.errors), "301@-1");
    // A line of 80 characters is no finding.
    EXPECT_TRUE(dictionary_from(head + "_name '_a'\n" + std::string(80, '#') + "\n")->exists("_a"));
}

// Findings and suppressions already in the list before the read are not the dictionary's: a
// good file still builds, and the suppression of 320 is left as it was.
TEST(DictionaryReader, LeavesTheErrorListAsItWas)
{
    for (bool suppressed_before : {false, true}) {
        SCOPED_TRACE(suppressed_before);
        HCifErrorList errors(new CifErrorList);
        errors->add(CifError(312, "earlier", 3));
        if (suppressed_before)
            errors->suppress(320);
        HCifConcreteDictionary d(new CifConcreteDictionary);
        std::istringstream in("data_a\n_name '_a'\n_category a\n_type char\n");
        d->read(in, errors);
        EXPECT_EQ(findings(*errors), "312@3[earlier]");
        EXPECT_EQ(errors->is_suppressed(320), suppressed_before);
        EXPECT_TRUE(d->exists("_a"));
    }
}

TEST(DictionaryReader, ReadingAgainReplacesEverything)
{
    HCifConcreteDictionary d(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    auto read = [&](const char* text) {
        std::istringstream in(text);
        d->read(in, errors);
    };
    read("data_h _dictionary_name one.dic\ndata_a _name '_a' _category a\n");
    ASSERT_TRUE(d->exists("_a"));
    read("data_h _dictionary_version 2\ndata_b _name '_b' _category b\n");
    EXPECT_EQ(findings(*errors), "");
    EXPECT_FALSE(d->exists("_a") || d->has_category("a"));
    EXPECT_TRUE(d->exists("_b") && d->has_category("b"));
    EXPECT_EQ(d->header().name + "|" + d->header().version, "|2");
    read("data_c\n_name '_c'\nstray\n");
    EXPECT_EQ(d->entry_count(), 0u);
    EXPECT_FALSE(d->has_category("b"));
    EXPECT_EQ(d->header().version, "");
}

// ---------------------------------------------------------------------------------------------
// Pool

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
    HCifDictionaryPool pool = both();
    HCifDictionaryPool both()
    {
        HCifDictionaryPool out = pool_of(first);
        out->add(second);
        return out;
    }
};

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

// The first dictionary added that defines a name answers wholly for it, and removing or adding
// one again changes who answers.
TEST(DictionaryPool, FirstAddedDictionaryAnswersWhollyForAName)
{
    PoolFixture f;
    HCifDictionaryPool& pool = f.pool;
    EXPECT_EQ(pool->find_entry("_Shared"), f.first->entry("_shared"));
    EXPECT_EQ(pool->find_entry("_only_second"), f.second->entry("_only_second"));
    EXPECT_EQ(pool->find_entry("_nowhere"), nullptr);
    EXPECT_EQ(answer(*pool, "_nowhere"), "-");
    std::vector<const CifConcreteDictionary*> order;
    for (const HCifConcreteDictionary& d : *pool)
        order.push_back(d.get());
    EXPECT_EQ(order, (std::vector<const CifConcreteDictionary*>{f.first.get(), f.second.get()}));

    struct Step {
        const char* what;
        HCifConcreteDictionary* add;
        HCifConcreteDictionary* remove;
        const char* shared;
        const char* only_first;
        const char* only_second;
    };
    const std::vector<Step> steps = {
        {"both", nullptr, nullptr, "|1|0||first.dic", "K|3|0||first.dic", "deg|3|0||second.dic"},
        {"first removed", nullptr, &f.first, "A|0|1|0:|second.dic", "-", "deg|3|0||second.dic"},
        {"first added again goes last", &f.first, nullptr, "A|0|1|0:|second.dic", "K|3|0||first.dic",
         "deg|3|0||second.dic"},
        {"second removed", nullptr, &f.second, "|1|0||first.dic", "K|3|0||first.dic", "-"},
        {"none left", nullptr, &f.first, "-", "-", "-"},
        {"removing what is not there", nullptr, &f.second, "-", "-", "-"},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(s.what);
        if (s.add)
            pool->add(*s.add);
        if (s.remove)
            pool->remove(*s.remove);
        EXPECT_EQ(answer(*pool, "_SHARED"), s.shared);
        EXPECT_EQ(answer(*pool, "_only_first"), s.only_first);
        EXPECT_EQ(answer(*pool, "_only_second"), s.only_second);
    }
    EXPECT_EQ(pool->size(), 0u);
}

TEST(DictionaryPool, CategoryQueriesCoverEveryDictionary)
{
    PoolFixture f;
    HCifDictionaryPool& pool = f.pool;
    std::vector<std::string> names;
    pool->category_names(names);
    // "Cell" of the first and "cell" of the second are one category.
    ASSERT_EQ(names.size(), 2u) << comma_joined(names);
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
        EXPECT_EQ(comma_joined(sorted(lowered)), c.items);
    }
    EXPECT_TRUE(pool->in_category("cell", "_only_first") && pool->in_category("atom_site", "_only_second"));
    EXPECT_FALSE(pool->in_category("atom_site", "_only_first"));

    // The sorting is over all dictionaries, whatever the order of addition.
    HCifConcreteDictionary early =
        dictionary_from("data_z _name '_z' _category zeta\ndata_b _name '_b' _category beta\n");
    HCifDictionaryPool other(new CifDictionaryPool);
    other->add(early);
    other->add(f.second);
    names.clear();
    other->category_names(names);
    EXPECT_EQ(comma_joined(names), "_atom_site_[],_beta_[],_cell_[],_zeta_[]");
}

// A data item asks its dictionary afresh when the pool changes, even after it has checked values
// with the old answer.
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
    const std::string text = "data_t\n_x 7\n";
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

// The core dictionary of the shared data, read once, and the findings of its reading.
class CoreDictionary : public testing::Test {
protected:
    void SetUp() override
    {
        if (!fs::exists(core_path))
            GTEST_SKIP() << core_path << " not found: set CIFWARD_SHARED_DIR to the shared dir";
    }
    static const Loaded& loaded()
    {
        static const Loaded core = [] {
            Loaded out;
            std::ifstream in(core_path);
            out.dictionary->read(in, out.errors);
            return out;
        }();
        return core;
    }
    static const CifConcreteDictionary& core() { return *loaded().dictionary; }
};

TEST_F(CoreDictionary, LoadsWithoutFindings)
{
    EXPECT_EQ(findings(*loaded().errors), "");
    const CifDictionaryHeader& h = core().header("_cell_length_a");
    EXPECT_EQ(h.name + "|" + h.version + "|" + h.update, "cif_core.dic|2.4.5|2014-11-21");
    EXPECT_NE(h.history.find("1991-05-27  Created from CIF Dictionary text. SRH"), std::string::npos)
        << h.history.substr(0, 80);
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
    EXPECT_EQ(d.list("_cell_length_a"), CifDictionaryEntry::ListBoth);
    EXPECT_EQ(d.enumeration_range("_cell_length_a") + "|" + d.units("_cell_length_a") + "|" +
                  d.category("_cell_length_a"),
              "0.0:|A|cell");
    EXPECT_TRUE(d.in_category("cell", "_Cell_Length_A") && d.in_category("_cell_[]", "_cell_length_b"));
    // The three lengths share one definition.
    EXPECT_EQ(d.entry("_cell_length_a"), d.entry("_cell_length_c"));
    const std::string definition = d.definition("_cell_length_a");
    EXPECT_NE(definition.find("Unit-cell lengths"), std::string::npos) << definition;
    EXPECT_NE(definition.back(), '\n');

    // An enumeration, with its details and its default.
    std::string values;
    for (const auto& [value, detail] : d.enumeration("_atom_site_calc_flag"))
        values += (values.empty() ? "" : ",") + value + (detail.empty() ? "" : "+");
    EXPECT_EQ(values, "d+,calc+,c+,dum+");
    EXPECT_EQ(d.enumeration_default("_atom_site_calc_flag"), "d");
    EXPECT_EQ(d.type("_atom_site_calc_flag"), CifDictionaryEntry::Char);
    EXPECT_EQ(d.list("_atom_site_calc_flag"), CifDictionaryEntry::ListYes);

    // Related items: the old symmetry name is replaced by its space-group successor.
    const std::string related = related_text(d.related("_symmetry_cell_setting"));
    EXPECT_NE(("," + related + ",").find(",_space_group_crystal_system=8,"), std::string::npos) << related;

    // "su" is read as "esd" in the three definitions that use it.
    EXPECT_EQ(d.type_conditions("_diffrn_radiation_wavelength"), CifDictionaryEntry::Esd);
    EXPECT_TRUE(d.list_mandatory("_atom_site_label"));
    EXPECT_FALSE(d.list_mandatory("_atom_site_fract_x"));

    // The category overview entries, and every category in its overview form.
    EXPECT_TRUE(d.exists("_cell_[]"));
    EXPECT_TRUE(d.in_category("category_overview", "_cell_[]"));
    EXPECT_TRUE(d.in_category("_category_overview_[]", "_atom_site_[]"));
    std::vector<std::string> categories;
    d.category_names(categories);
    for (const std::string& category : categories) {
        EXPECT_EQ(category.front(), '_') << category;
        EXPECT_EQ(category.substr(category.size() - 3), "_[]") << category;
        EXPECT_TRUE(d.has_category(category)) << category;
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
    const std::string relative =
        "/opt/cw/bin/dict,/opt/cw/bin/../../dict,/opt/cw/bin/../Resources/dict,"
        "/opt/cw/bin/../../../libCif/dictionaries,/opt/cw/bin/../../libCif/dictionaries,";
    for (const char* extra : {static_cast<const char*>(nullptr), "/first/dicts::/second/dicts"}) {
        ScopedEnvironment environment("CIFWARD_DICT_PATH", extra);
        const std::string dirs = text_of(QcbsDictionaryLoader::searchDirectories("/opt/cw/bin").join(","));
        // Then the install prefix's data directory, then those of the environment.
        const std::string end = extra ? "/cifward/dict,/first/dicts,/second/dicts" : "/cifward/dict";
        EXPECT_EQ(dirs.substr(0, relative.size()), relative);
        ASSERT_GE(dirs.size(), end.size());
        EXPECT_EQ(dirs.substr(dirs.size() - end.size()), end);
        EXPECT_EQ(std::count(dirs.begin(), dirs.end(), ','), extra ? 7 : 5) << dirs;
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
    EXPECT_EQ(answer(*pool, "_x") + " " + answer(*pool, "_w"), "from_a|3|0||a.dic |3|0||0.dic");
    EXPECT_EQ(answer(*pool, "_c") + answer(*pool, "_notes"), "--");
    std::string files;
    for (const auto& loaded : loader.loaded())
        files += text_of(loaded.path) + " ";
    for (const auto& rejected : loader.rejected()) {
        files += text_of(rejected.path);
        for (const CifError& e : rejected.findings)
            files += "=" + std::to_string(e.code);
        files += " ";
    }
    EXPECT_EQ(files, a + " " + zero + " " + b + "=339 " + c + "=347 ");

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

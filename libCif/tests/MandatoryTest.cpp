// The check of mandatory data items over a read CIF, and the reader of the list file, with a
// small dictionary that gives the categories and related items the check relies on.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDictionaryPool.h"
#include "CifMandatoryItems.h"
#include "CifTestSupport.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

const char* const test_dictionary = R"(
data_on_this_dictionary
    _dictionary_name    mandatory_test.dic
data_journal_name_full
    _name '_journal_name_full'              _category journal   _type char
data_publ_section_title
    _name '_publ_section_title'             _category publ      _type char
data_cell_length_a
    _name '_cell_length_a'                  _category cell      _type numb
data_cell_volume
    _name '_cell_volume'                    _category cell      _type numb
data_atom_site_label
    _name '_atom_site_label'                _category atom_site _type char
data_chemical_formula_sum
    _name '_chemical_formula_sum'           _category chemical  _type char
data_symmetry_space_group_name_H-M
    _name '_symmetry_space_group_name_H-M'  _category symmetry  _type char
    _related_item '_space_group_name_H-M_alt'
    _related_function replace
data_space_group_name_H-M_alt
    _name '_space_group_name_H-M_alt'       _category space_group  _type char
data_atom_site_fract_x
    _name '_atom_site_fract_x'              _category atom_site _type numb
    loop_ _related_item _related_function
          '_atom_site_Cartn_x'    alternate
          '_atom_site_aniso_x'    conversion
data_atom_site_Cartn_x
    _name '_atom_site_Cartn_x'              _category atom_site _type numb
data_refine_ls_R_factor_all
    _name '_refine_ls_R_factor_all'         _category refine    _type numb
    _related_item '_refine_ls_R_factor_obs'
    _related_function convention
data_refine_ls_R_factor_obs
    _name '_refine_ls_R_factor_obs'         _category refine    _type numb
data_computing_structure_solution
    _name '_computing_structure_solution'   _category computing _type char
)";

HCifDictionaryPool make_pool()
{
    static const HCifConcreteDictionary dictionary = [] {
        HCifConcreteDictionary d(new CifConcreteDictionary);
        HCifErrorList errors(new CifErrorList);
        std::istringstream in(test_dictionary);
        d->read(in, errors);
        EXPECT_TRUE(errors->is_empty()) << errors->at(0).text();
        return d;
    }();
    HCifDictionaryPool pool(new CifDictionaryPool);
    pool->add(dictionary);
    return pool;
}

// Reads `text`, forgets the findings of the read, then runs the check.
std::string check(const std::string& text, const std::vector<std::string>& publication,
                  const std::vector<std::string>& crystal)
{
    Cif cif(make_pool());
    std::istringstream in(text);
    cif.read(in);
    const std::size_t before = cif.errors()->count();
    cif.check_mandatory(publication, crystal);
    CifErrorList added;
    for (std::size_t i = before; i < cif.errors()->count(); ++i)
        added.add(cif.errors()->at(i));
    for (const CifError& e : added)
        EXPECT_EQ(e.severity(), 0) << e.text();
    return findings(added);
}

// One block of crystal data (the cell length puts it in the crystal set), checked for one name.
TEST(MandatoryCheck, OneName)
{
    struct Case {
        const char* what;
        std::vector<const char*> body; // after "data_t" and "_cell_length_a 5.0"
        const char* name;
        const char* findings;
    };
    const std::vector<Case> cases = {
        {"absent", {}, "_cell_volume", "343@1[_cell_volume|data_t]"},
        {"a real value", {"_cell_volume 125.0"}, "_cell_volume", ""},
        {"a '?'", {"_cell_volume ?"}, "_cell_volume", "303@1[_cell_volume|data_t]"},
        {"a '?' with blanks and tabs",
         {"_cell_volume ' \t?  '"},
         "_cell_volume",
         "303@1[_cell_volume|data_t]"},
        {"a '.' is known", {"_cell_volume ."}, "_cell_volume", ""},
        {"a doubled question mark is known", {"_cell_volume ??"}, "_cell_volume", ""},
        {"an empty value is no value", {"_cell_volume ''"}, "_cell_volume", "343@1[_cell_volume|data_t]"},
        {"the listed name's case does not matter", {"_CELL_volume 1"}, "_Cell_Volume", ""},
        {"absent, named as listed", {}, "_Cell_Volume", "343@1[_Cell_Volume|data_t]"},
        {"a name no dictionary defines", {"_my_own_item 1"}, "_my_own_item", ""},
        {"an absent name no dictionary defines", {}, "_my_own_item", "343@1[_my_own_item|data_t]"},
        {"an empty name is skipped", {}, "", ""},
        {"a loop whose first value is '?'",
         {"loop_", "_atom_site_label", "?", "C1"},
         "_atom_site_label",
         "303@1[_atom_site_label|data_t]"},
        {"a loop with a later '?'", {"loop_", "_atom_site_label", "C1", "?"}, "_atom_site_label", ""},
        // Related items with the function alternate or replace stand in for the name.
        {"absent, with its alternate set", {"loop_", "_atom_site_Cartn_x", "1.0"}, "_atom_site_fract_x", ""},
        {"absent, with its alternate '?'", {"loop_", "_atom_site_Cartn_x", "?"}, "_atom_site_fract_x", ""},
        {"'?', with its alternate set",
         {"loop_", "_atom_site_fract_x", "_atom_site_Cartn_x", "? 1.0"},
         "_atom_site_fract_x",
         ""},
        {"'?', with its alternate '?' too",
         {"loop_", "_atom_site_fract_x", "_atom_site_Cartn_x", "? ?"},
         "_atom_site_fract_x",
         ""},
        {"'?', with its alternate absent",
         {"loop_", "_atom_site_fract_x", "?"},
         "_atom_site_fract_x",
         "303@1[_atom_site_fract_x|data_t]"},
        {"absent, with its replacement set",
         {"_space_group_name_H-M_alt 'P 1'"},
         "_symmetry_space_group_name_H-M",
         ""},
        {"absent, with its replacement absent",
         {},
         "_symmetry_space_group_name_H-M",
         "343@1[_symmetry_space_group_name_H-M|data_t]"},
        // Other functions do not stand in.
        {"absent, with a conversion set",
         {"_atom_site_aniso_x 1"},
         "_atom_site_fract_x",
         "343@1[_atom_site_fract_x|data_t]"},
        {"absent, with a convention set",
         {"_refine_ls_R_factor_obs 0.05"},
         "_refine_ls_R_factor_all",
         "343@1[_refine_ls_R_factor_all|data_t]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        std::string text = "data_t\n_cell_length_a 5.0\n";
        for (const char* line : c.body)
            text += std::string(line) + "\n";
        EXPECT_EQ(check(text, {}, {c.name}), c.findings);
        // The same name in the publication list is checked on the same block, which has no
        // publication data and is the first.
        EXPECT_EQ(check(text, {c.name}, {}), c.findings);
    }
}

TEST(MandatoryCheck, WhichBlocksAreChecked)
{
    const std::vector<std::string> publication = {"_journal_name_full", "_publ_section_title"};
    const std::vector<std::string> crystal = {"_cell_volume", "_chemical_formula_sum"};
    struct Case {
        const char* what;
        std::string text;
        const char* findings;
    };
    const std::vector<Case> cases = {
        {"one crystal block: both lists on it, the crystal list first", "data_x\n_cell_length_a 5\n",
         "343@1[_cell_volume|data_x] 343@1[_chemical_formula_sum|data_x] "
         "343@1[_journal_name_full|data_x] 343@1[_publ_section_title|data_x]"},
        {"one block with both kinds of data: the publication list first",
         "data_x\n_cell_length_a 5\n_publ_section_title 'A title'\n",
         "343@1[_journal_name_full|data_x] 343@1[_cell_volume|data_x] 343@1[_chemical_formula_sum|data_x]"},
        {"a publication block and a crystal block, each with its list",
         "data_pub\n_journal_name_full 'Acta'\n\ndata_xtal\n_chemical_formula_sum 'C H'\n",
         "343@1[_publ_section_title|data_pub] 343@4[_cell_volume|data_xtal]"},
        {"two crystal blocks, both checked",
         "data_a\n_publ_section_title t\n_journal_name_full j\ndata_b\n_cell_volume "
         "1\ndata_c\n_cell_length_a 2\n",
         "343@4[_chemical_formula_sum|data_b] 343@6[_cell_volume|data_c] "
         "343@6[_chemical_formula_sum|data_c]"},
        {"no crystal block: the crystal list goes to the first block, whatever it holds",
         "data_first\n_computing_structure_solution SHELXS\ndata_pub\n_journal_name_full "
         "j\n_publ_section_title t\n",
         "343@1[_cell_volume|data_first] 343@1[_chemical_formula_sum|data_first]"},
        {"no block of either kind: both lists on the first block only",
         "data_first\n_computing_structure_solution x\ndata_second\n_other_item y\n",
         "343@1[_journal_name_full|data_first] 343@1[_publ_section_title|data_first] "
         "343@1[_cell_volume|data_first] 343@1[_chemical_formula_sum|data_first]"},
        {"names no dictionary defines put a block in no category",
         "data_first\n_journal_unknown 1\n_cell_unknown 2\ndata_xtal\n_cell_volume 1\n_chemical_formula_sum "
         "C\n",
         "343@1[_journal_name_full|data_first] 343@1[_publ_section_title|data_first]"},
        {"a category found through a looped item",
         "data_a\n_journal_name_full j\n_publ_section_title t\n"
         "data_b\nloop_\n_atom_site_label\nC1\n",
         "343@4[_cell_volume|data_b] 343@4[_chemical_formula_sum|data_b]"},
        {"everything present",
         "data_a\n_journal_name_full j\n_publ_section_title t\n_cell_volume 1\n"
         "_chemical_formula_sum C\n",
         ""},
        {"no block at all", "# nothing\n", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(check(c.text, publication, crystal), c.findings);
    }
}

TEST(MandatoryCheck, AddsToTheFindingsOfTheRead)
{
    Cif cif(make_pool());
    std::istringstream in("data_t\n_cell_length_a abc\n");
    cif.read(in);
    ASSERT_EQ(findings(*cif.errors()), "326@2[_cell_length_a]");
    cif.check_mandatory({}, {"_cell_volume"});
    EXPECT_EQ(findings(*cif.errors()), "326@2[_cell_length_a] 343@1[_cell_volume|data_t]");
    EXPECT_EQ(cif.errors()->at(1).text(),
              "Remark: Line 1 : Data item _cell_volume not found in block data_t");
    cif.check_mandatory({}, {});
    EXPECT_EQ(cif.errors()->count(), 2u);

    Cif unknown(make_pool());
    std::istringstream in2("data_t\n_cell_length_a 1\n_cell_volume ?\n");
    unknown.read(in2);
    unknown.check_mandatory({"_cell_volume"}, {});
    EXPECT_EQ(unknown.errors()->at(unknown.errors()->count() - 1).text(),
              "Remark: Line 1 : Data item _cell_volume not set in block data_t");
}

// With the real core dictionary, the replaced symmetry names are satisfied by their successors.
TEST(MandatoryCheck, CoreDictionaryRelatedItems)
{
    const fs::path core_path = fs::path(CIFWARD_SHARED_DIR) / "dict" / "cif_core.dic";
    if (!fs::exists(core_path))
        GTEST_SKIP() << core_path << " not found";
    HCifConcreteDictionary core(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    std::ifstream file(core_path);
    core->read(file, errors);
    ASSERT_TRUE(errors->is_empty());
    HCifDictionaryPool pool(new CifDictionaryPool);
    pool->add(core);

    struct Case {
        const char* what;
        const char* text;
        const char* findings;
    };
    const std::vector<Case> cases = {
        {"the old name", "data_t\n_symmetry_cell_setting monoclinic\n", ""},
        {"its successor", "data_t\n_space_group_crystal_system monoclinic\n", ""},
        {"neither", "data_t\n_cell_length_a 5\n", "343@1[_symmetry_cell_setting|data_t]"},
        {"the old name unknown", "data_t\n_symmetry_cell_setting ?\n",
         "303@1[_symmetry_cell_setting|data_t]"},
        {"the old name unknown, the successor set",
         "data_t\n_symmetry_cell_setting ?\n_space_group_crystal_system monoclinic\n", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Cif cif(pool);
        std::istringstream in(c.text);
        cif.read(in);
        const std::size_t before = cif.errors()->count();
        cif.check_mandatory({}, {"_symmetry_cell_setting"});
        CifErrorList added;
        for (std::size_t i = before; i < cif.errors()->count(); ++i)
            added.add(cif.errors()->at(i));
        EXPECT_EQ(findings(added), c.findings);
    }
}

std::string joined(const std::vector<std::string>& names)
{
    std::string out;
    for (const std::string& name : names)
        out += (out.empty() ? "" : ",") + name;
    return out;
}

TEST(MandatoryItemsFile, Lines)
{
    struct Case {
        const char* what;
        std::string text;
        const char* publication;
        const char* crystal;
    };
    const std::vector<Case> cases = {
        {"names before the first data_ line go nowhere", "_early\ndata_crystal\n_cell_volume\n", "",
         "_cell_volume"},
        {"data_all puts a name once in each list", "data_all\n_audit_creation_method\n",
         "_audit_creation_method", "_audit_creation_method"},
        {"the three headings in turn",
         "data_publication\n_journal_name_full\n_publ_section_title\ndata_crystal\n_cell_volume\n"
         "data_all\n_audit_creation_date\ndata_publication\n_publ_contact_author_name\n",
         "_journal_name_full,_publ_section_title,_audit_creation_date,_publ_contact_author_name",
         "_cell_volume,_audit_creation_date"},
        {"any other data_ line chooses no list",
         "data_crystal\n_a\ndata_other\n_b\ndata_\n_c\ndata_crystal\n_d\n", "", "_a,_d"},
        {"the first word of a name line", "data_crystal\n_cell_volume  the volume\n_cell_length_a\tlength\n",
         "", "_cell_volume,_cell_length_a"},
        {"comments, empty lines and other lines are ignored",
         "# list of items\n\ndata_crystal\n# _commented_out\n_kept\n  _indented\nnot a name\n\n_also_kept\n",
         "", "_kept,_also_kept"},
        {"line ends of a file written on another system", "data_all\r\n_name_one\r\n# note\r\n_name_two\r\n",
         "_name_one,_name_two", "_name_one,_name_two"},
        {"no final line end", "data_publication\n_last", "_last", ""},
        {"an empty file", "", "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        CifMandatoryItems items;
        std::istringstream in(c.text);
        items.read(in);
        EXPECT_EQ(joined(items.publication_items), c.publication);
        EXPECT_EQ(joined(items.crystal_items), c.crystal);
    }
}

TEST(MandatoryItemsFile, ReadingReplacesTheLists)
{
    CifMandatoryItems items;
    std::istringstream first("data_all\n_one\n");
    items.read(first);
    std::istringstream second("data_crystal\n_two\n");
    items.read(second);
    EXPECT_EQ(joined(items.publication_items), "");
    EXPECT_EQ(joined(items.crystal_items), "_two");

    // A file that cannot be opened leaves both lists empty.
    EXPECT_FALSE(items.read_file("/nonexistent/cifward/mandatory.txt"));
    EXPECT_TRUE(items.publication_items.empty());
    EXPECT_TRUE(items.crystal_items.empty());

    const fs::path path =
        fs::temp_directory_path() / ("cifward-mandatory-" + std::to_string(getpid()) + ".txt");
    {
        std::ofstream out(path);
        out << "data_publication\n_journal_name_full\ndata_crystal\n_cell_volume\n";
    }
    EXPECT_TRUE(items.read_file(path.string()));
    EXPECT_EQ(joined(items.publication_items), "_journal_name_full");
    EXPECT_EQ(joined(items.crystal_items), "_cell_volume");
    fs::remove(path);

    // The lists read from a file drive the check.
    Cif cif(make_pool());
    std::istringstream in("data_t\n_cell_length_a 5\n");
    cif.read(in);
    cif.check_mandatory(items.publication_items, items.crystal_items);
    EXPECT_EQ(findings(*cif.errors()), "343@1[_cell_volume|data_t] 343@1[_journal_name_full|data_t]");
}

} // namespace

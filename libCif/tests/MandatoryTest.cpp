// The check of mandatory data items over a read CIF, and the reader of the list file, with a
// small dictionary that gives the categories and related items the check relies on.

#include "CifTestSupport.h"

namespace {

const char* const test_dictionary = R"(
data_on_this_dictionary  _dictionary_name mandatory_test.dic
data_journal_name_full
    _name '_journal_name_full'      _category journal   _type char
data_publ_section_title
    _name '_publ_section_title'     _category publ      _type char
data_cell_length_a
    _name '_cell_length_a'          _category cell      _type numb
data_cell_volume
    _name '_cell_volume'            _category cell      _type numb
data_atom_site_label
    _name '_atom_site_label'        _category atom_site _type char
data_chemical_formula_sum
    _name '_chemical_formula_sum' _category chemical  _type char
data_symmetry_space_group_name_H-M
    _name '_symmetry_space_group_name_H-M'  _category symmetry  _type char
    _related_item '_space_group_name_H-M_alt'  _related_function replace
data_space_group_name_H-M_alt
    _name '_space_group_name_H-M_alt'  _category space_group  _type char
data_atom_site_fract_x
    _name '_atom_site_fract_x'      _category atom_site _type numb
    loop_ _related_item _related_function  '_atom_site_Cartn_x' alternate
    '_atom_site_aniso_x' conversion
data_atom_site_Cartn_x
    _name '_atom_site_Cartn_x'      _category atom_site _type numb
data_refine_ls_R_factor_all
    _name '_refine_ls_R_factor_all'  _category refine  _type numb
    _related_item '_refine_ls_R_factor_obs'  _related_function convention
data_refine_ls_R_factor_obs
    _name '_refine_ls_R_factor_obs'  _category refine  _type numb
data_computing_structure_solution
    _name '_computing_structure_solution'  _category computing _type char
)";

HCifDictionaryPool make_pool()
{
    static const HCifConcreteDictionary dictionary = dictionary_from(test_dictionary);
    return pool_of(dictionary);
}

// Reads `text`, forgets the findings of the read, then runs the check.
std::string check(const std::string& text, const std::vector<std::string>& publication,
                  const std::vector<std::string>& crystal, const HCifDictionaryPool& pool = make_pool())
{
    Cif cif(pool);
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
        const char* body; // after "data_t" and "_cell_length_a 5.0"
        const char* name;
        const char* findings;
    };
    const std::vector<Case> cases = {
        {"", "_cell_volume", "343@1[_cell_volume|data_t]"},
        {"_cell_volume ?", "_cell_volume", "303@1[_cell_volume|data_t]"},
        // In a loop only the first value counts.
        {"loop_ _atom_site_label ? C1", "_atom_site_label", "303@1[_atom_site_label|data_t]"},
        // Related items with the function alternate or replace stand in for the name.
        {"loop_ _atom_site_Cartn_x 1.0", "_atom_site_fract_x", ""},
        {"loop_ _atom_site_fract_x ?", "_atom_site_fract_x", "303@1[_atom_site_fract_x|data_t]"},
        {"_space_group_name_H-M_alt 'P 1'", "_symmetry_space_group_name_H-M", ""},
        // Other functions do not stand in.
        {"_atom_site_aniso_x 1", "_atom_site_fract_x", "343@1[_atom_site_fract_x|data_t]"},
        {"_refine_ls_R_factor_obs 0.05", "_refine_ls_R_factor_all", "343@1[_refine_ls_R_factor_all|data_t]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.body) + " / " + c.name);
        const std::string text = "data_t\n_cell_length_a 5.0\n" + std::string(c.body) + "\n";
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
        {"no crystal block: the crystal list goes to the first block, whatever it holds",
         "data_first\n_computing_structure_solution SHELXS\ndata_pub\n_journal_name_full "
         "j\n_publ_section_title t\n",
         "343@1[_cell_volume|data_first] 343@1[_chemical_formula_sum|data_first]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(check(c.text, publication, crystal), c.findings);
    }
}

TEST(MandatoryCheck, AddsToTheFindingsOfTheRead)
{
    Cif cif(make_pool());
    std::istringstream in("data_t\n_cell_length_a abc\n_cell_volume ?\n");
    cif.read(in);
    ASSERT_EQ(findings(*cif.errors()), "326@2[_cell_length_a]");
    cif.check_mandatory({"_cell_volume"}, {"_chemical_formula_sum"});
    EXPECT_EQ(findings(*cif.errors()),
              "326@2[_cell_length_a] 343@1[_chemical_formula_sum|data_t] 303@1[_cell_volume|data_t]");
    EXPECT_EQ(cif.errors()->at(2).text(), "Remark: Line 1 : Data item _cell_volume not set in block data_t");
    EXPECT_EQ(cif.errors()->at(1).text(),
              "Remark: Line 1 : Data item _chemical_formula_sum not found in block data_t");
    cif.check_mandatory({}, {});
    EXPECT_EQ(cif.errors()->count(), 3u);
}

} // namespace

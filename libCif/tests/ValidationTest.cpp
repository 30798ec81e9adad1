// The value checks, seen as a user sees them: a CIF is read with a small dictionary written
// here, and the findings (code, line, data name) and the stored values are compared.

#include "CifDataItem.h"
#include "CifTestSupport.h"
#include "CifValueCheck.h"

namespace {

// One definition a block, each named after what it is there to test: "_low_20" is a number with
// uncertainties allowed and a lower limit of 20, "_bad_range" has a range text that cannot be
// read, and so on. The last four are the names whose values are never checked.
const char* const test_dictionary = R"(
data_on_this_dictionary
    _dictionary_name validation_test.dic _dictionary_version 1
data_numb       _name '_numb'       _type numb
data_numb_su    _name '_numb_su'    _type numb   _type_conditions su
data_range      _name '_range'      _type numb   _enumeration_range 0:10
data_range_esd
    _name '_range_esd'  _type numb  _type_conditions esd  _enumeration_range 0:1
data_low_20
    _name '_low_20'     _type numb  _type_conditions esd  _enumeration_range 20:
data_float_high _name '_float_high' _type numb   _enumeration_range 0.0:1.0
data_bad_range  _name '_bad_range'  _type numb   _enumeration_range abc
data_scanned_range  _name '_scanned_range'   _type numb   _enumeration_range 2.5
data_char_range _name '_char_range' _type char   _enumeration_range 0:10
data_enum
    _name '_enum'   _type char   loop_ _enumeration _enumeration_detail
    yes 'it is'  no 'it is not'
data_enum_range
    _name '_enum_range'  _type numb   _enumeration_range abc
    loop_ _enumeration 1 2 20
data_flags   _name '_atom_site_refinement_flags'   _type char   _enumeration S
data_scheme
    _name '_refine_ls_weighting_scheme'   _type char
    loop_ _enumeration sigma unit calc abc
data_free
    loop_ _name '_publ_contact_author_phone'  '_publ_contact_author_fax'
                '_audit_contact_author_phone' '_audit_contact_author_fax'
    _type numb   _enumeration_range 0:1   _enumeration 1
)";

HCifDictionaryPool make_pool()
{
    static const HCifConcreteDictionary dictionary = dictionary_from(test_dictionary);
    return pool_of(dictionary);
}

// Reads `text` with the test dictionary. Names that no dictionary defines raise 320, which is
// not what these tests are about.
struct Read {
    explicit Read(const std::string& text) : cif(make_pool())
    {
        cif.errors()->suppress(320);
        std::istringstream in(text);
        cif.read(in);
    }
    Cif cif;
};

// Each row is one file: "data_t", then the name and the value on line 2. Whatever the check
// says, the value is stored.
TEST(Validation, SingleValues)
{
    struct Case {
        const char* name;
        // Each value as written in the file (it is stored without its quotes), with the code of
        // its finding, 0 for none.
        std::vector<std::pair<std::string, int>> values;
    };
    const std::vector<Case> cases = {
        // Numbers and their form; "?" and "." pass whatever the type, and an empty text is not checked.
        {"_numb", {{"1.5D2", 0}, {"abc", 326}, {"1.2abc", 325}, {"'1.5 x'", 325}, {"?", 0}, {"''", 0}}},
        // An uncertainty needs "esd" (or its later spelling "su") in the dictionary.
        {"_numb", {{"12(3)", 329}}},
        {"_numb_su", {{"1.5(3)", 0}}},
        // The data name's case does not matter.
        {"_NUMB", {{"abc", 326}}},
        // Ranges; the limits belong to the range; the D exponent is read as E; the comparison
        // runs before the uncertainty test.
        {"_range",
         {{"0", 0}, {"10", 0}, {"-1", 327}, {"10.5", 328}, {"1.5d1", 328}, {"-0.02(1)", 327}, {"5(1)", 329}}},
        // A range text of one number reads as its lower limit, as the scan of "%f:" reads it.
        {"_scanned_range", {{"2", 327}, {"3", 0}}},
        // A text item is compared as far as its text reads as a number.
        {"_char_range", {{"abc", 0}, {"11abc", 328}, {"5(1)", 0}}},
        // The value and the limits are 32-bit floats: a difference below their precision is none.
        {"_float_high", {{"1.00000001", 0}, {"1.0000002", 328}}},
        // With "esd", a value may lie up to three uncertainties outside the range; the
        // uncertainty counts in units of the value's last digit, the exponent included.
        {"_range_esd",
         {{"-0.03(1)", 0}, {"-0.05(1)", 327}, {"1.02(1)", 0}, {"1.05(1)", 328}, {"-0.01", 327}}},
        {"_low_20", {{"12(3)", 0}, {"10(3)", 327}, {"12.0(3)", 327}, {"1.2E1(3)", 0}, {"1.20E1(3)", 327}}},
        // A range that cannot be read stops every value that reaches the comparison; an
        // enumeration decides before it.
        {"_bad_range", {{"5", 344}, {"?", 0}, {"abc", 326}}},
        {"_enum_range", {{"20", 0}, {"5", 324}}},
        {"_enum", {{"YES", 0}, {"'yes '", 324}, {"ye", 324}}},
        // Refinement flags: any string of S, G, R, D, T, U, P (upper case), or ".", whatever the
        // dictionary enumerates.
        {"_atom_site_refinement_flags", {{"SGRDTUP", 0}, {".", 0}, {"?", 324}, {"s", 324}, {"'S G'", 324}}},
        // The weighting scheme is judged by its first word, and a value under four characters is
        // refused, so "?" and "." are refused here although they pass everywhere else.
        {"_Refine_LS_Weighting_Scheme",
         {{"'calc w=1/[\\s^2^(Fo^2^)]'", 0}, {"unit", 0}, {"calcx", 324}, {"abc", 324}, {"?", 324}}},
        // Contact numbers are never checked, though their entry says a number from 0 to 1.
        {"_publ_contact_author_phone", {{"'+44 (0)1234 567890'", 0}}},
    };
    for (const Case& c : cases)
        for (const auto& [written, code] : c.values) {
            SCOPED_TRACE(c.name + (" " + written));
            Read read("data_t\n" + (c.name + (" " + written)) + "\n");
            EXPECT_EQ(findings(*read.cif.errors()), code ? std::to_string(code) + "@2[" + c.name + "]" : "");
            const bool quoted = written.size() >= 2 && written.front() == '\'';
            EXPECT_EQ(read.cif.block(0).first_value(c.name),
                      quoted ? written.substr(1, written.size() - 2) : written);
        }
}

// In a loop each value is checked as it is stored, and its finding is at the value's line, under
// the name as written.
TEST(Validation, LoopValues)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"data_t\nloop_\n_range\n_ENUM\n5 yes\n11 maybe\n-1 no\n? .\n",
         "328@6[_range] 324@6[_ENUM] 327@7[_range]"},
        {"data_t\nloop_\n_atom_site_refinement_flags\n_refine_ls_weighting_scheme\nS calc\n? ?\n",
         "324@6[_atom_site_refinement_flags] 324@6[_refine_ls_weighting_scheme]"},
        // Every value gives 344 in turn, however many have been checked.
        {"data_t\nloop_\n_bad_range\n1\n2\n?\n3\n", "344@4[_bad_range] 344@5[_bad_range] 344@7[_bad_range]"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(findings(*Read(text).cif.errors()), expected) << text;
}

// An editing tool gets the same result directly from the item, which stores the value whatever
// the result; an empty value passes the standard check and fails the other two.
TEST(Validation, DataItemGivesTheResultAndStoresTheValue)
{
    const std::vector<std::tuple<const char*, const char*, int>> cases = {
        {"_numb", "1.5", 0},
        {"_enum", "maybe", 1},
        {"_numb", "1.2.3", 2},
        {"_numb", "abc", 3},
        {"_range", "-1", 4},
        {"_range", "11", 5},
        {"_numb", "1.5(3)", 6},
        {"_bad_range", "5", 7},
        {"_numb", "", 0},
        {"_atom_site_refinement_flags", "", 1},
        {"_refine_ls_weighting_scheme", "", 1}};
    for (const auto& [name, value, result] : cases) {
        SCOPED_TRACE(std::string(name) + " '" + value + "'");
        CifDataItem single(name, make_pool());
        EXPECT_EQ(single.check(value), result);
        EXPECT_FALSE(single.has_value()); // check only judges
        EXPECT_EQ(single.set_single_value(value), result);
        EXPECT_EQ(single.first_value(), value);
        CifDataItem looped(name, make_pool());
        looped.set_looped();
        EXPECT_EQ(looped.set_value(2, value), result);
        EXPECT_EQ(looped.value(2) + std::to_string(looped.value_count()), value + std::string("3"));
    }
}

TEST(Validation, WellFormedNumbers)
{
    for (const char* good : {"1", "-1.5", ".5", "5.", "1.5(3)", "1d-3", "1.5E3(2)", "+.5e-3", "1.e3", "1e+05",
                             "1.5(3) ", "1.5(15)", "007"})
        EXPECT_TRUE(cif_is_well_formed_number(good)) << good;
    for (const char* bad :
         {"",    ".",       "+",       "1.5(",   "1.5()",   "E3",    "1e",   ".e3", "1.5e+", "1.2.3", "1.5-3",
          "+-1", "1.5(3)x", "1.5(-3)", "1(2)e3", "1.5 (3)", "1.5 3", " 1.5", "1,5", "inf",   "0x1A"})
        EXPECT_FALSE(cif_is_well_formed_number(bad)) << bad;
}

} // namespace

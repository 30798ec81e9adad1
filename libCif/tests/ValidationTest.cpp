// The value checks, seen as a user sees them: a CIF is read with a small dictionary written
// here, and the findings (code, line, data name) and the stored values are compared.

#include "Cif.h"
#include "CifDataItem.h"
#include "CifTestSupport.h"
#include "CifValueCheck.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

// One definition a block, each named after what it is there to test: "_low_20" is a number with
// uncertainties allowed and a lower limit of 20, "_bad_range" has a range text that cannot be
// read, and so on. The last four are the names whose values are never checked.
const char* const test_dictionary = R"(
data_on_this_dictionary
    _dictionary_name validation_test.dic _dictionary_version 1
data_numb       _name '_numb'       _type numb
data_numb_esd   _name '_numb_esd'   _type numb   _type_conditions esd
data_numb_su    _name '_numb_su'    _type numb   _type_conditions su
data_numb_seq   _name '_numb_seq'   _type numb   _type_conditions seq
data_char       _name '_char'       _type char
data_null       _name '_null'       _type null
data_untyped    _name '_untyped'    _enumeration a   _enumeration_range 0:1
data_range      _name '_range'      _type numb   _enumeration_range 0:10
data_range_esd
    _name '_range_esd'  _type numb   _type_conditions esd
    _enumeration_range 0.0:1.0
data_low_2
    _name '_low_2'      _type numb   _type_conditions esd
    _enumeration_range 2.0:
data_low_20
    _name '_low_20'     _type numb   _type_conditions esd
    _enumeration_range 20:
data_low_200
    _name '_low_200'    _type numb   _type_conditions esd
    _enumeration_range 200:
data_high_10
    _name '_high_10'    _type numb   _type_conditions esd
    _enumeration_range :10
data_low_5      _name '_low_5'      _type numb   _enumeration_range 5:
data_float_high _name '_float_high' _type numb   _enumeration_range 0.0:1.0
data_float_low  _name '_float_low'  _type numb   _enumeration_range 0.1:
data_bad_range  _name '_bad_range'  _type numb   _enumeration_range abc
data_bad_range_char _name '_bad_range_char'  _type char   _enumeration_range x:y
data_bad_range_enum
    _name '_bad_range_enum'  _type char   _enumeration_range abc
    loop_ _enumeration a b
data_scanned_range  _name '_scanned_range'   _type numb   _enumeration_range 2.5
data_char_range
    _name '_char_range'      _type char   _enumeration_range 0:10
data_enum
    _name '_enum'   _type char   loop_ _enumeration _enumeration_detail
    yes 'it is'  no 'it is not'
data_enum_numb   _name '_enum_numb'   _type numb   loop_ _enumeration 1 2 3
data_enum_range
    _name '_enum_range'  _type numb   _enumeration_range 0:10
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
    std::string found() const { return findings(*cif.errors()); }
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
        // Numbers, their form and their uncertainty.
        {"_numb",
         {{"1.5D2", 0}, {"abc", 326}, {"-", 326}, {"1.2abc", 325}, {"1.5()", 325}, {"'1.5 x'", 325}}},
        // "?" and "." pass whatever the type; an empty text is not checked.
        {"_numb", {{"?", 0}, {".", 0}, {"''", 0}, {"'2.5'", 0}}},
        // An uncertainty needs "esd" (or its later spelling "su") in the dictionary.
        {"_numb", {{"12(3)", 329}}},
        {"_numb_esd", {{"1.5(3)", 0}}},
        {"_numb_su", {{"1.5(3)", 0}}},
        {"_numb_seq", {{"1.5(3)", 0}}},
        {"_char", {{"1.5(3)", 0}}},
        {"_null", {{"abc", 0}}},
        // No type, or no definition: not checked at all.
        {"_untyped", {{"5", 0}}},
        {"_not_defined", {{"1.5(3)", 0}}},
        // The data name's case does not matter, and the finding names it as written.
        {"_NUMB", {{"abc", 326}}},
        // Ranges without uncertainty; the limits belong to the range.
        {"_range", {{"0", 0}, {"10", 0}, {"-1", 327}, {"10.5", 328}, {"?", 0}}},
        // The D exponent is read as E for the comparison.
        {"_range", {{"1.5D1", 328}, {"1.5d1", 328}, {"0.5D1", 0}}},
        // The comparison runs before the uncertainty test: out of range wins over 329.
        {"_range", {{"-0.02(1)", 327}, {"5(1)", 329}}},
        {"_low_5", {{"4", 327}, {"1e9", 0}}},
        {"_high_10", {{"10.5", 328}, {"-1000", 0}}},
        // A range text of one number reads as its lower limit, as the scan of "%f:" reads it.
        {"_scanned_range", {{"2", 327}, {"3", 0}}},
        // A text item is compared as far as its text reads as a number.
        {"_char_range", {{"abc", 0}, {"11abc", 328}, {"-1", 327}, {"5(1)", 0}}},
        // The value and the limits are 32-bit floats: a difference below their precision is none.
        {"_float_high", {{"1.00000001", 0}, {"1.0000002", 328}}},
        {"_float_low", {{"0.099999999", 0}, {"0.0999", 327}}},
        // With "esd", a value may lie up to three uncertainties outside the range; the
        // uncertainty counts in units of the value's last digit.
        {"_range_esd",
         {{"-0.03(1)", 0},
          {"-0.05(1)", 327},
          {"1.02(1)", 0},
          {"1.05(1)", 328},
          {"-0.01", 327},
          {"1.5", 328}}},
        {"_low_2", {{"1.2(3)", 0}, {"1.0(3)", 327}}},
        {"_low_20", {{"12(3)", 0}, {"10(3)", 327}, {"12.0(30)", 0}, {"12.0(3)", 327}}},
        // Exponents: 1.2E1(3) is 12 with s = 3; 1.20E1(3) is 12 with s = 0.3.
        {"_low_20",
         {{"1.2E1(3)", 0}, {"1.2d1(3)", 0}, {"0.12E2(3)", 0}, {"1.20E1(3)", 327}, {"120E-1(3)", 327}}},
        {"_low_200", {{"1.2E2(3)", 0}, {"1.0E2(3)", 327}}},
        {"_high_10", {{"11(1)", 0}, {"14(1)", 328}}},
        // A range that cannot be read stops every value that reaches the comparison.
        {"_bad_range", {{"5", 344}, {"?", 0}, {"abc", 326}, {"1.2.3", 325}}},
        {"_bad_range_char", {{"abc", 344}}},
        // An enumeration decides before the range, the type and the uncertainty are looked at.
        {"_bad_range_enum", {{"a", 0}, {"c", 324}}},
        {"_enum", {{"YES", 0}, {"'yes '", 324}, {"ye", 324}, {".", 0}}},
        {"_enum_numb", {{"abc", 324}, {"1.0", 324}, {"2(1)", 324}}},
        {"_enum_range", {{"20", 0}, {"5", 324}}},
        // Refinement flags: any string of S, G, R, D, T, U, P (upper case), or ".", whatever the
        // dictionary enumerates.
        {"_atom_site_refinement_flags",
         {{"SGRDTUP", 0}, {".", 0}, {"?", 324}, {"s", 324}, {"SX", 324}, {"'S G'", 324}, {"..", 324}}},
        {"_Atom_Site_Refinement_Flags", {{"?", 324}}},
        // The weighting scheme is judged by its first word, and a value under four characters is
        // refused, so "?" and "." are refused here although they pass everywhere else.
        {"_refine_ls_weighting_scheme",
         {{"'calc w=1/[\\s^2^(Fo^2^)]'", 0},
          {"'Calc w=1'", 0},
          {"unit", 0},
          {"calcx", 324},
          {"'w=1 calc'", 324},
          {"abc", 324},
          {"?", 324},
          {".", 324}}},
        // The part before the first blank is empty here, and an empty text passes.
        {"_refine_ls_weighting_scheme", {{"' calcx'", 0}}},
        {"_REFINE_LS_WEIGHTING_SCHEME", {{"abc", 324}}},
        // Contact numbers are never checked, though their entry says a number from 0 to 1.
        {"_publ_contact_author_phone", {{"'+44 (0)1234 567890'", 0}}},
        {"_publ_contact_author_fax", {{"abc", 0}}},
        {"_audit_contact_author_phone", {{"5(1)", 0}}},
        {"_audit_contact_author_fax", {{"1.2.3", 0}}},
        {"_PUBL_CONTACT_AUTHOR_FAX", {{"abc", 0}}},
    };
    for (const Case& c : cases)
        for (const auto& [written, code] : c.values) {
            SCOPED_TRACE(c.name + (" " + written));
            Read read("data_t\n" + (c.name + (" " + written)) + "\n");
            EXPECT_EQ(read.found(), code ? std::to_string(code) + "@2[" + c.name + "]" : std::string());
            ASSERT_EQ(read.cif.block_count(), 1u);
            const bool quoted = written.size() >= 2 && written.front() == '\'';
            EXPECT_EQ(read.cif.block(0).first_value(c.name),
                      quoted ? written.substr(1, written.size() - 2) : written);
        }
}

// In a loop each value is checked as it is stored, and its finding is at the value's line.
TEST(Validation, LoopValues)
{
    struct Case {
        const char* what;
        const char* text;
        const char* findings;
    };
    const std::vector<Case> cases = {
        {"two columns, one finding per bad value",
         "data_t\nloop_\n_range\n_enum\n5 yes\n11 maybe\n-1 no\n? .\n",
         "328@6[_range] 324@6[_enum] 327@7[_range]"},
        {"a row over several lines", "data_t\nloop_\n_range\n_enum\n5\nmaybe\n11\nYES\n",
         "324@6[_enum] 328@7[_range]"},
        {"flags and first word in a loop",
         "data_t\nloop_\n_atom_site_refinement_flags\n_refine_ls_weighting_scheme\nS calc\n? ?\nPD 'sigma "
         "w'\n",
         "324@6[_atom_site_refinement_flags] 324@6[_refine_ls_weighting_scheme]"},
        {"uncertainties and ranges", "data_t\nloop_\n_range_esd\n_numb\n-0.02(1) 1\n-0.05(1) 1(1)\n1.5D0 x\n",
         "327@6[_range_esd] 329@6[_numb] 328@7[_range_esd] 326@7[_numb]"},
        {"names as written", "data_t\nloop_\n_Range\n_ENUM\n11 no\n", "328@5[_Range]"},
        {"contact numbers in a loop", "data_t\nloop_\n_publ_contact_author_phone\nabc\n2\n", ""},
        // Every value gives 344 in turn, however many have been checked.
        {"an unreadable range", "data_t\nloop_\n_bad_range\n1\n2\n?\n3\n",
         "344@4[_bad_range] 344@5[_bad_range] 344@7[_bad_range]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Read read(c.text);
        EXPECT_EQ(read.found(), c.findings);
    }

    Read read("data_t\nloop_\n_range\n_enum\n_bad_range\n5 yes 1\n11 maybe 2\n");
    ASSERT_EQ(read.cif.block_count(), 1u);
    EXPECT_EQ(read.cif.block(0).item("_range")->value(1), "11");
    EXPECT_EQ(read.cif.block(0).item("_enum")->value(1), "maybe");
    ASSERT_EQ(read.cif.errors()->count(), 4u);
    EXPECT_EQ(read.cif.errors()->at(1).message(),
              "Data value should be smaller than a defined limit : _range");
    EXPECT_EQ(read.cif.errors()->at(2).message(), "Data value is not in dictionary enumeration list : _enum");
    EXPECT_EQ(read.cif.errors()->at(3).message(),
              "Could not validate enumeration due to bad range, check dictionary for _bad_range");
}

// An editing tool gets the same result directly from the item.
TEST(Validation, DataItemGivesTheResultAndStoresTheValue)
{
    HCifDictionaryPool pool = make_pool();
    struct Case {
        const char* name;
        const char* value;
        int result;
        int question; // the result for "?"
    };
    const std::vector<Case> cases = {
        {"_numb", "1.5", 0, 0},
        {"_enum", "maybe", 1, 0},
        {"_numb", "1.2.3", 2, 0},
        {"_numb", "abc", 3, 0},
        {"_range", "-1", 4, 0},
        {"_range", "11", 5, 0},
        {"_numb", "1.5(3)", 6, 0},
        {"_bad_range", "5", 7, 0},
        // An empty value passes the standard check, and fails the other two.
        {"_numb", "", 0, 0},
        {"_atom_site_refinement_flags", "", 1, 1},
        {"_refine_ls_weighting_scheme", "", 1, 1},
        {"_publ_contact_author_fax", "", 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " '" + c.value + "'");
        CifDataItem single(c.name, pool);
        EXPECT_EQ(single.check(c.value), c.result);
        EXPECT_FALSE(single.has_value()); // check only judges
        EXPECT_EQ(single.set_single_value(c.value), c.result);
        EXPECT_EQ(single.first_value(), c.value);

        CifDataItem looped(c.name, pool);
        looped.set_looped();
        EXPECT_EQ(looped.set_value(0, "?"), c.question);
        EXPECT_EQ(looped.set_value(2, c.value), c.result);
        EXPECT_EQ(looped.value_count(), 3u);
        EXPECT_EQ(looped.value(2), c.value);
    }
}

TEST(Validation, CheckKindIsChosenByNameIgnoringCase)
{
    struct Case {
        const char* name;
        CifValueCheckKind kind;
    };
    const std::vector<Case> cases = {
        {"_ATOM_SITE_REFINEMENT_FLAGS", CifValueCheckKind::Flags},
        {"_Refine_LS_Weighting_Scheme", CifValueCheckKind::FirstWord},
        {"_publ_contact_author_phone", CifValueCheckKind::None},
        {"_publ_contact_author_fax", CifValueCheckKind::None},
        {"_audit_contact_author_phone", CifValueCheckKind::None},
        {"_Audit_Contact_Author_Fax", CifValueCheckKind::None},
        {"_atom_site_refinement_flags_posn", CifValueCheckKind::Standard},
        {"_atom_site_refinement", CifValueCheckKind::Standard},
        {"_refine_ls_weighting_details", CifValueCheckKind::Standard},
        {"_publ_contact_author", CifValueCheckKind::Standard},
        {"", CifValueCheckKind::Standard},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(cif_value_check_kind(c.name), c.kind);
        EXPECT_EQ(CifDataItem(c.name, HCifDictionary(new CifConcreteDictionary)).check_kind(), c.kind);
    }
}

TEST(Validation, WellFormedNumbers)
{
    struct Case {
        const char* value;
        bool good;
    };
    const std::vector<Case> cases = {
        {"1", true},        {"-1.5", true},     {".5", true},         {"5.", true},       {"1.5(3)", true},
        {"1E3", true},      {"1d-3", true},     {"1.5E3(2)", true},   {"12(3)", true},    {"+1", true},
        {"-.5", true},      {"+.5e-3", true},   {"1.e3", true},       {"1.5D2", true},    {"1e+05", true},
        {"1.5 ", true},     {"1.5(3) ", true},  {"1.5(15)", true},    {"0", true},        {"007", true},
        {"", false},        {".", false},       {"+", false},         {"-", false},       {"1.5(", false},
        {"1.5()", false},   {"E3", false},      {"1e", false},        {"1.5(3", false},   {".e3", false},
        {"1.5e+", false},   {"1.2.3", false},   {".5.3", false},      {"1.5-3", false},   {"1.5+3", false},
        {"+-1", false},     {"1.5(3)x", false}, {"1.5(3)(4)", false}, {"1.5(-3)", false}, {"1(2)e3", false},
        {"1.5 (3)", false}, {"1.5 3", false},   {" 1.5", false},      {"1,5", false},     {"inf", false},
        {"nan", false},     {"0x1A", false},    {"1.5x", false},      {"1.5e3.2", false}, {"(3)", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string("'") + c.value + "'");
        EXPECT_EQ(cif_is_well_formed_number(c.value), c.good);
    }
}

// The range is read once per item: a bad range text is not remembered as read, a good one is
// kept for the following values, and each item keeps its own.
TEST(Validation, RangeIsReadPerItem)
{
    CifDictionaryEntry bad;
    bad.type = CifDictionaryEntry::Numb;
    bad.enumeration_range = "nothing";
    CifDictionaryEntry good = bad;
    good.enumeration_range = "1:2";
    CifValueRange bad_range, good_range, none;
    for (const char* value : {"1", "1", "?"})
        EXPECT_EQ(cif_check_value(CifValueCheckKind::Standard, &bad, bad_range, value),
                  *value == '?' ? 0 : 7);
    EXPECT_EQ(cif_check_value(CifValueCheckKind::Standard, &good, good_range, "3"), 5);
    EXPECT_EQ(cif_check_value(CifValueCheckKind::Standard, &good, good_range, "0"), 4);
    EXPECT_EQ(cif_check_value(CifValueCheckKind::Standard, &good, good_range, "1.5"), 0);
    EXPECT_FALSE(bad_range.parsed);
    EXPECT_TRUE(good_range.parsed && good_range.has_low && good_range.has_high);
    EXPECT_FLOAT_EQ(good_range.low, 1.0f);
    EXPECT_FLOAT_EQ(good_range.high, 2.0f);
    // No entry: nothing is checked.
    EXPECT_EQ(cif_check_value(CifValueCheckKind::Standard, nullptr, none, "abc"), 0);
}

} // namespace

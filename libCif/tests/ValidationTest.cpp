// The value checks, seen as a user sees them: a CIF is read with a small dictionary written
// here, and the findings (code, line, data name) and the stored values are compared.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDataItem.h"
#include "CifDictionaryPool.h"
#include "CifTestSupport.h"
#include "CifValueCheck.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

// One definition a block, each named after what it is there to test: "_low_20" is a number with
// uncertainties allowed and a lower limit of 20, "_bad_range" has a range text that cannot be
// read, and so on. The last four are the names whose values are never checked.
const char* const test_dictionary = R"(
data_on_this_dictionary
    _dictionary_name      validation_test.dic
    _dictionary_version   1

data_numb
    _name '_numb'             _type numb
data_numb_esd
    _name '_numb_esd'         _type numb   _type_conditions esd
data_numb_su
    _name '_numb_su'          _type numb   _type_conditions su
data_numb_seq
    _name '_numb_seq'         _type numb   _type_conditions seq
data_char
    _name '_char'             _type char
data_null
    _name '_null'             _type null
data_untyped
    _name '_untyped'          _enumeration a   _enumeration_range 0:1
data_range
    _name '_range'            _type numb   _enumeration_range 0:10
data_range_esd
    _name '_range_esd'
    _type numb
    _type_conditions esd
    _enumeration_range 0.0:1.0
data_low_2
    _name '_low_2'
    _type numb
    _type_conditions esd
    _enumeration_range 2.0:
data_low_20
    _name '_low_20'
    _type numb
    _type_conditions esd
    _enumeration_range 20:
data_low_200
    _name '_low_200'
    _type numb
    _type_conditions esd
    _enumeration_range 200:
data_high_10
    _name '_high_10'
    _type numb
    _type_conditions esd
    _enumeration_range :10
data_low_5
    _name '_low_5'            _type numb   _enumeration_range 5:
data_float_high
    _name '_float_high'       _type numb   _enumeration_range 0.0:1.0
data_float_low
    _name '_float_low'        _type numb   _enumeration_range 0.1:
data_bad_range
    _name '_bad_range'        _type numb   _enumeration_range abc
data_bad_range_char
    _name '_bad_range_char'   _type char   _enumeration_range x:y
data_bad_range_enum
    _name '_bad_range_enum'   _type char   _enumeration_range abc
    loop_ _enumeration a b
data_scanned_range
    _name '_scanned_range'    _type numb   _enumeration_range 2.5
data_char_range
    _name '_char_range'       _type char   _enumeration_range 0:10
data_enum
    _name '_enum'             _type char
    loop_ _enumeration _enumeration_detail  yes 'it is'  no 'it is not'
data_enum_numb
    _name '_enum_numb'        _type numb   loop_ _enumeration 1 2 3
data_enum_range
    _name '_enum_range'       _type numb   _enumeration_range 0:10
    loop_ _enumeration 1 2 20
data_flags
    _name '_atom_site_refinement_flags'   _type char   _enumeration S
data_scheme
    _name '_refine_ls_weighting_scheme'   _type char
    loop_ _enumeration sigma unit calc abc
data_free
    loop_ _name '_publ_contact_author_phone'  '_publ_contact_author_fax'
                '_audit_contact_author_phone' '_audit_contact_author_fax'
    _type numb   _enumeration_range 0:1   _enumeration 1
)";

HCifConcreteDictionary make_dictionary()
{
    HCifConcreteDictionary d(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    std::istringstream in(test_dictionary);
    d->read(in, errors);
    EXPECT_TRUE(errors->is_empty()) << errors->at(0).text();
    return d;
}

HCifDictionaryPool make_pool()
{
    static const HCifConcreteDictionary dictionary = make_dictionary();
    HCifDictionaryPool pool(new CifDictionaryPool);
    pool->add(dictionary);
    return pool;
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

std::string finding(int code, int line, const std::string& name)
{
    return code == 0 ? std::string() : std::to_string(code) + "@" + std::to_string(line) + "[" + name + "]";
}

struct ValueCase {
    const char* name;
    const char* written; // as written in the file
    int code;            // the finding's code, 0 for none
    const char* stored;  // the value as stored, when it differs from `written`
};

// Each case is one file: "data_t", then the name and the value on line 2. Whatever the check
// says, the value is stored.
void run_single_values(const std::vector<ValueCase>& cases)
{
    for (const ValueCase& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + c.written);
        Read read(std::string("data_t\n") + c.name + " " + c.written + "\n");
        EXPECT_EQ(read.found(), finding(c.code, 2, c.name));
        ASSERT_EQ(read.cif.block_count(), 1u);
        const std::string stored = c.stored ? c.stored : c.written;
        EXPECT_EQ(read.cif.block(0).first_value(c.name), stored);
    }
}

TEST(Validation, NumbersTheirFormAndUncertainty)
{
    run_single_values({
        {"_numb", "1.5", 0, nullptr},
        {"_numb", "-12", 0, nullptr},
        {"_numb", ".5", 0, nullptr},
        {"_numb", "5.", 0, nullptr},
        {"_numb", "1E3", 0, nullptr},
        {"_numb", "1d-3", 0, nullptr},
        {"_numb", "1.5D2", 0, nullptr},
        {"_numb", "abc", 326, nullptr},
        {"_numb", "-", 326, nullptr},
        {"_numb", "E3", 326, nullptr},
        {"_numb", "x1.5", 326, nullptr},
        {"_numb", "1.2.3", 325, nullptr},
        {"_numb", "1.2abc", 325, nullptr},
        {"_numb", "1.5(", 325, nullptr},
        {"_numb", "1.5()", 325, nullptr},
        {"_numb", "1.5(3", 325, nullptr},
        {"_numb", "1,5", 325, nullptr},
        {"_numb", "1.5-3", 325, nullptr},
        {"_numb", "inf", 325, nullptr},
        {"_numb", "'1.5 x'", 325, "1.5 x"},
        // "?" and "." pass whatever the type; an empty text is not checked.
        {"_numb", "?", 0, nullptr},
        {"_numb", ".", 0, nullptr},
        {"_numb", "''", 0, ""},
        // A quoted number is the same text to the check.
        {"_numb", "'2.5'", 0, "2.5"},
        // An uncertainty needs "esd" (or its later spelling "su") in the dictionary.
        {"_numb", "1.5(3)", 329, nullptr},
        {"_numb", "12(3)", 329, nullptr},
        {"_numb_esd", "1.5(3)", 0, nullptr},
        {"_numb_su", "1.5(3)", 0, nullptr},
        {"_numb_seq", "1.5(3)", 0, nullptr},
        {"_char", "1.5(3)", 0, nullptr},
        {"_null", "1.5(3)", 0, nullptr},
        {"_char", "abc", 0, nullptr},
        {"_null", "abc", 0, nullptr},
        // No type: not checked at all, not even against its enumeration and range.
        {"_untyped", "b", 0, nullptr},
        {"_untyped", "5", 0, nullptr},
        // No definition: not checked.
        {"_not_defined", "1.5(3)", 0, nullptr},
        // The data name's case does not matter, and the finding names it as written.
        {"_NUMB", "abc", 326, nullptr},
    });
}

TEST(Validation, RangesWithoutUncertainty)
{
    run_single_values({
        {"_range", "5", 0, nullptr},
        {"_range", "0", 0, nullptr},
        {"_range", "10", 0, nullptr},
        {"_range", "-1", 327, nullptr},
        {"_range", "11", 328, nullptr},
        {"_range", "10.5", 328, nullptr},
        {"_range", "?", 0, nullptr},
        {"_range", ".", 0, nullptr},
        // The D exponent is read as E for the comparison.
        {"_range", "1.5D1", 328, nullptr},
        {"_range", "1.5d1", 328, nullptr},
        {"_range", "0.5D1", 0, nullptr},
        {"_range", "1.5E1", 328, nullptr},
        // The comparison runs before the uncertainty test: out of range wins over 329.
        {"_range", "-0.02(1)", 327, nullptr},
        {"_range", "5(1)", 329, nullptr},
        {"_low_5", "4", 327, nullptr},
        {"_low_5", "5", 0, nullptr},
        {"_low_5", "1e9", 0, nullptr},
        {"_high_10", "10.5", 328, nullptr},
        {"_high_10", "-1000", 0, nullptr},
        // A range text of one number reads as its lower limit, as the scan of "%f:" reads it.
        {"_scanned_range", "2", 327, nullptr},
        {"_scanned_range", "3", 0, nullptr},
        // A text item is compared as far as its text reads as a number.
        {"_char_range", "abc", 0, nullptr},
        {"_char_range", "11", 328, nullptr},
        {"_char_range", "11abc", 328, nullptr},
        {"_char_range", "-1", 327, nullptr},
        {"_char_range", "5(1)", 0, nullptr},
    });
}

// The value and the limits are 32-bit floats: a difference below their precision is no
// difference.
TEST(Validation, RangeComparisonIsInSinglePrecision)
{
    run_single_values({
        {"_float_high", "1.00000001", 0, nullptr},
        {"_float_high", "1.0000002", 328, nullptr},
        {"_float_high", "1.000001", 328, nullptr},
        {"_float_low", "0.099999999", 0, nullptr},
        {"_float_low", "0.1", 0, nullptr},
        {"_float_low", "0.0999", 327, nullptr},
    });
}

// With "esd", a value with an uncertainty may lie up to three uncertainties outside the range;
// the uncertainty counts in units of the value's last digit.
TEST(Validation, RangesWithUncertainty)
{
    run_single_values({
        {"_range_esd", "-0.02(1)", 0, nullptr},
        {"_range_esd", "-0.03(1)", 0, nullptr},
        {"_range_esd", "-0.05(1)", 327, nullptr},
        {"_range_esd", "1.02(1)", 0, nullptr},
        {"_range_esd", "1.05(1)", 328, nullptr},
        {"_range_esd", "0.5(1)", 0, nullptr},
        // Without an uncertainty the plain comparison applies.
        {"_range_esd", "-0.01", 327, nullptr},
        {"_range_esd", "1.5", 328, nullptr},
        // 1.2(3): s = 0.3, so down to 2.0 - 0.9 = 1.1 is allowed.
        {"_low_2", "1.2(3)", 0, nullptr},
        {"_low_2", "1.0(3)", 327, nullptr},
        // 12(3): s = 3, allowed down to 11.
        {"_low_20", "12(3)", 0, nullptr},
        {"_low_20", "10(3)", 327, nullptr},
        {"_low_20", "12.0(30)", 0, nullptr},
        {"_low_20", "12.0(3)", 327, nullptr},
        // Exponents: 1.2E1(3) is 12 with s = 3; 1.20E1(3) is 12 with s = 0.3.
        {"_low_20", "1.2E1(3)", 0, nullptr},
        {"_low_20", "1.2e1(3)", 0, nullptr},
        {"_low_20", "1.2D1(3)", 0, nullptr},
        {"_low_20", "1.2d1(3)", 0, nullptr},
        {"_low_20", "0.12E2(3)", 0, nullptr},
        {"_low_20", "1.20E1(3)", 327, nullptr},
        {"_low_20", "120E-1(3)", 327, nullptr},
        // 1.2E2(3): s = 30, allowed down to 110.
        {"_low_200", "1.2E2(3)", 0, nullptr},
        {"_low_200", "1.0E2(3)", 327, nullptr},
        {"_high_10", "11(1)", 0, nullptr},
        {"_high_10", "14(1)", 328, nullptr},
    });
}

// A range that cannot be read stops every value that reaches the comparison.
TEST(Validation, UnreadableRange)
{
    run_single_values({
        {"_bad_range", "5", 344, nullptr},
        {"_bad_range", "-5", 344, nullptr},
        {"_bad_range", "?", 0, nullptr},
        {"_bad_range", "abc", 326, nullptr},
        {"_bad_range", "1.2.3", 325, nullptr},
        {"_bad_range_char", "5", 344, nullptr},
        {"_bad_range_char", "abc", 344, nullptr},
        // An enumeration decides before the range is looked at.
        {"_bad_range_enum", "a", 0, nullptr},
        {"_bad_range_enum", "c", 324, nullptr},
    });

    // Every value of a loop gives 344 in turn, however many have been checked.
    Read read("data_t\nloop_\n_bad_range\n1\n2\n?\n3\n");
    EXPECT_EQ(read.found(), "344@4[_bad_range] 344@5[_bad_range] 344@7[_bad_range]");
    ASSERT_EQ(read.cif.block_count(), 1u);
    EXPECT_EQ(read.cif.block(0).item("_bad_range")->value_count(), 4u);
    EXPECT_EQ(read.cif.errors()->at(0).message(),
              "Could not validate enumeration due to bad range, check dictionary for _bad_range");
}

TEST(Validation, Enumerations)
{
    run_single_values({
        {"_enum", "yes", 0, nullptr},
        {"_enum", "YES", 0, nullptr},
        {"_enum", "No", 0, nullptr},
        {"_enum", "maybe", 324, nullptr},
        {"_enum", "'yes '", 324, "yes "},
        {"_enum", "ye", 324, nullptr},
        {"_enum", "?", 0, nullptr},
        {"_enum", ".", 0, nullptr},
        // With an enumeration nothing else is tested, whatever the type.
        {"_enum_numb", "1", 0, nullptr},
        {"_enum_numb", "abc", 324, nullptr},
        {"_enum_numb", "1.0", 324, nullptr},
        {"_enum_numb", "2(1)", 324, nullptr},
        {"_enum_range", "20", 0, nullptr},
        {"_enum_range", "5", 324, nullptr},
    });
}

// _atom_site_refinement_flags takes any string of the letters S, G, R, D, T, U, P (upper case),
// or ".", whatever its dictionary enumerates.
TEST(Validation, RefinementFlags)
{
    run_single_values({
        {"_atom_site_refinement_flags", "S", 0, nullptr},
        {"_atom_site_refinement_flags", "PD", 0, nullptr},
        {"_atom_site_refinement_flags", "SGRDTUP", 0, nullptr},
        {"_atom_site_refinement_flags", ".", 0, nullptr},
        {"_atom_site_refinement_flags", "?", 324, nullptr},
        {"_atom_site_refinement_flags", "s", 324, nullptr},
        {"_atom_site_refinement_flags", "SX", 324, nullptr},
        {"_atom_site_refinement_flags", "'S G'", 324, "S G"},
        {"_atom_site_refinement_flags", "..", 324, nullptr},
        {"_Atom_Site_Refinement_Flags", "?", 324, nullptr},
    });
}

// _refine_ls_weighting_scheme is judged by its first word, and a value under four characters is
// refused, so "?" and "." are refused here although they pass everywhere else.
TEST(Validation, WeightingSchemeFirstWord)
{
    run_single_values({
        {"_refine_ls_weighting_scheme", "calc", 0, nullptr},
        {"_refine_ls_weighting_scheme", "'calc w=1/[\\s^2^(Fo^2^)]'", 0, "calc w=1/[\\s^2^(Fo^2^)]"},
        {"_refine_ls_weighting_scheme", "'Calc w=1'", 0, "Calc w=1"},
        {"_refine_ls_weighting_scheme", "sigma", 0, nullptr},
        {"_refine_ls_weighting_scheme", "unit", 0, nullptr},
        {"_refine_ls_weighting_scheme", "calcx", 324, nullptr},
        {"_refine_ls_weighting_scheme", "'calcx w=1'", 324, "calcx w=1"},
        {"_refine_ls_weighting_scheme", "'w=1 calc'", 324, "w=1 calc"},
        {"_refine_ls_weighting_scheme", "abc", 324, nullptr},
        {"_refine_ls_weighting_scheme", "?", 324, nullptr},
        {"_refine_ls_weighting_scheme", ".", 324, nullptr},
        // The part before the first blank is empty here, and an empty text passes.
        {"_refine_ls_weighting_scheme", "' calcx'", 0, " calcx"},
        {"_REFINE_LS_WEIGHTING_SCHEME", "abc", 324, nullptr},
    });
}

TEST(Validation, ContactNumbersAreNeverChecked)
{
    // Their dictionary entry says a number from 0 to 1 out of an enumeration of "1".
    run_single_values({
        {"_publ_contact_author_phone", "'+44 (0)1234 567890'", 0, "+44 (0)1234 567890"},
        {"_publ_contact_author_fax", "abc", 0, nullptr},
        {"_audit_contact_author_phone", "5(1)", 0, nullptr},
        {"_audit_contact_author_fax", "1.2.3", 0, nullptr},
        {"_PUBL_CONTACT_AUTHOR_FAX", "abc", 0, nullptr},
        // Any other name of the same definition is checked.
        {"_numb", "abc", 326, nullptr},
    });
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
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Read read(c.text);
        EXPECT_EQ(read.found(), c.findings);
    }

    Read read("data_t\nloop_\n_range\n_enum\n5 yes\n11 maybe\n");
    ASSERT_EQ(read.cif.block_count(), 1u);
    const HCifDataItem range = read.cif.block(0).item("_range");
    ASSERT_TRUE(range);
    EXPECT_EQ(range->value(1), "11");
    EXPECT_EQ(read.cif.block(0).item("_enum")->value(1), "maybe");
    EXPECT_EQ(read.cif.errors()->at(0).message(),
              "Data value should be smaller than a defined limit : _range");
    EXPECT_EQ(read.cif.errors()->at(1).message(), "Data value is not in dictionary enumeration list : _enum");
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
        {"_atom_site_refinement_flags", CifValueCheckKind::Flags},
        {"_ATOM_SITE_REFINEMENT_FLAGS", CifValueCheckKind::Flags},
        {"_refine_ls_weighting_scheme", CifValueCheckKind::FirstWord},
        {"_Refine_LS_Weighting_Scheme", CifValueCheckKind::FirstWord},
        {"_publ_contact_author_phone", CifValueCheckKind::None},
        {"_publ_contact_author_fax", CifValueCheckKind::None},
        {"_audit_contact_author_phone", CifValueCheckKind::None},
        {"_Audit_Contact_Author_Fax", CifValueCheckKind::None},
        {"_atom_site_refinement_flags_posn", CifValueCheckKind::Standard},
        {"_atom_site_refinement", CifValueCheckKind::Standard},
        {"_refine_ls_weighting_details", CifValueCheckKind::Standard},
        {"_publ_contact_author_email", CifValueCheckKind::Standard},
        {"_publ_contact_author", CifValueCheckKind::Standard},
        {"_cell_length_a", CifValueCheckKind::Standard},
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
    CifDictionaryEntry good;
    good.type = CifDictionaryEntry::Numb;
    good.enumeration_range = "1:2";
    CifValueRange bad_range, good_range;
    struct Case {
        const CifDictionaryEntry* entry;
        CifValueRange* range;
        const char* value;
        int result;
    };
    const std::vector<Case> cases = {
        {&bad, &bad_range, "1", 7},   {&bad, &bad_range, "1", 7},     {&good, &good_range, "3", 5},
        {&good, &good_range, "0", 4}, {&good, &good_range, "1.5", 0}, {&bad, &bad_range, "?", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        EXPECT_EQ(cif_check_value(CifValueCheckKind::Standard, c.entry, *c.range, c.value), c.result);
    }
    EXPECT_FALSE(bad_range.parsed);
    EXPECT_TRUE(good_range.parsed);
    EXPECT_TRUE(good_range.has_low);
    EXPECT_TRUE(good_range.has_high);
    EXPECT_FLOAT_EQ(good_range.low, 1.0f);
    EXPECT_FLOAT_EQ(good_range.high, 2.0f);
    // No entry: nothing is checked.
    CifValueRange none;
    EXPECT_EQ(cif_check_value(CifValueCheckKind::Standard, nullptr, none, "abc"), 0);
}

} // namespace

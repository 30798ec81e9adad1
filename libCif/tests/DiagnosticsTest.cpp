#include "CifError.h"
#include "CifErrorException.h"
#include "CifErrorList.h"
#include "CifMessageTable.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

struct MessageRow {
    std::uint32_t code;
    int severity;
    const char* text;
};

// The whole fixed table, word for word: the editor's error list and the batch checker both show
// these texts to users, and a wrong severity changes the totals that gate the wizards.
const std::vector<MessageRow> expected_table = {
    {301, 2, "File could not be read"},
    {302, 2, "CIF contains no data_ blocks"},
    {303, 0, "Data item <1> not set in block <2>"},
    {304, 0, "Related item <1> not set in block <2>"},
    {305, 1, "Data item found before the first data_ block"},
    {306, 2, "Data name <1> more than 75 characters long"},
    {307, 2, "Data name <1> immediately followed by another data name"},
    {308, 2, "Data name <1> not followed by data value"},
    {309, 1, "Missing identifier for data_ block"},
    {310, 2, "CIF contains more than one data block called <1>"},
    {311, 1, "Ignored string (possible semi-colon mismatch) <1>"},
    {312, 1, "Ignored string <1>"},
    {313, 1, "Ignoring uncommented string(s) before first data block"},
    {314, 2, "<1>"},
    {315, 1, "<1>"},
    {316, 2, "Internal error in CIF read: <1>"},
    {318, 2, "Data item <1> has already been set in this data_ block at line: <2>"},
    {319, 1, "Repeated keyword <1>"},
    {320, 1, "Created non-standard data item <1>"},
    {321, 2, "No data items in loop_"},
    {322, 2, "Too many or too few data values in the loop"},
    {323, 1, "Item validated OK : <1>"},
    {324, 1, "Data value is not in dictionary enumeration list : <1>"},
    {325, 1, "Data value is not a correctly formatted number : <1>"},
    {326, 1, "Data value should be a number : <1>"},
    {327, 1, "Data value should be greater than a defined limit : <1>"},
    {328, 1, "Data value should be smaller than a defined limit : <1>"},
    {329, 1, "Data value should not have a standard uncertainty (ESD) : <1>"},
    {331, 2, "Dictionary entry has no _name"},
    {332, 1, "Duplicate dictionary item <1> ignored"},
    {333, 2, "Loop contains too many labels, expected one or two"},
    {334, 2, "Only a single value expected"},
    {335, 2, "Multiple values must be in a loop"},
    {336, 2, "Incorrect loop master"},
    {337, 2, "Item <1> unexpected in loop, expected <2>"},
    {338, 2, "Invalid value for item <1> : expected 'yes' or 'no'"},
    {339, 2, "Invalid value for _type '<1>' : expected 'numb', 'char' or 'null'"},
    {340, 2, "Invalid value for _type_conditions '<1>' : expected 'esd', 'seq' or 'null'"},
    {341, 2, "Invalid value for _list '<1>' : expected 'yes', 'no' or 'both'"},
    {342, 2,
     "Invalid value for _related_function '<1>' : expected 'alternate', 'conversion', 'convention' or "
     "'replace'"},
    {343, 0, "Data item <1> not found in block <2>"},
    {344, 1, "Could not validate enumeration due to bad range, check dictionary for <1>"},
    {345, 2, "Internal error: Action invalid as data item not looped, action: <1>, name: <2>"},
    {346, 2, "More than <1> characters long"},
    {347, 1, "More than <1> characters long"},
    {348, 1, "Invalid non-printable character <1>"},
    {349, 1, "Invalid printable character <1>"},
    {350, 2, "No terminating (<1>) quote"},
    {351, 2, "Opening (;) semicolon not first character on line"},
    {352, 2, "Closing (;) semicolon not first character on line"},
    {353, 2, "Text block finished at end of file without final ';'"},
};

TEST(MessageTable, HoldsEveryRowInCodeOrder)
{
    // 301 to 353 without 317 and 330: 51 rows.
    ASSERT_EQ(expected_table.size(), 51u);
    ASSERT_EQ(cif_message_table_size(), expected_table.size());
    const CifMessage* table = cif_message_table_begin();
    for (std::size_t i = 0; i < expected_table.size(); ++i) {
        const MessageRow& want = expected_table[i];
        SCOPED_TRACE(want.code);
        EXPECT_EQ(table[i].code, want.code);
        EXPECT_EQ(table[i].severity, want.severity);
        EXPECT_STREQ(table[i].text, want.text);
        // The lookup is a binary search, so each row must also be found through it.
        const CifMessage& found = cif_message(want.code);
        EXPECT_EQ(found.code, want.code);
        EXPECT_EQ(found.severity, want.severity);
        EXPECT_STREQ(found.text, want.text);
    }
}

TEST(MessageTable, CodesOutsideTheTableGiveTheFallbackRow)
{
    // 317 and 330 are holes inside the range; the others sit before, after and far beyond it.
    for (std::uint32_t code : {317u, 330u, 0u, 300u, 354u, 9999u}) {
        SCOPED_TRACE(code);
        const CifMessage& row = cif_message(code);
        EXPECT_EQ(row.severity, 1);
        EXPECT_STREQ(row.text, "Unknown error <1> <2>");
        CifError error(code, "a", "b", 3);
        EXPECT_EQ(error.severity(), 1);
        EXPECT_EQ(error.message(), "Unknown error a b");
    }
}

TEST(CifError, RendersMessageAndFullText)
{
    struct Case {
        CifError error;
        std::string severity_text;
        std::string message;
        std::string text;
    };
    const std::vector<Case> cases = {
        {CifError(308, "_x", 12), "Error", "Data name _x not followed by data value",
         "Error: Line 12 : Data name _x not followed by data value"},
        {CifError(301, -1), "Error", "File could not be read", "Error: File could not be read"},
        // Only -1 means "no line": line 0 is printed.
        {CifError(301, 0), "Error", "File could not be read", "Error: Line 0 : File could not be read"},
        {CifError(303, "_a", "data_x", 3), "Remark", "Data item _a not set in block data_x",
         "Remark: Line 3 : Data item _a not set in block data_x"},
        {CifError(318, "_a", "12", 40), "Error",
         "Data item _a has already been set in this data_ block at line: 12",
         "Error: Line 40 : Data item _a has already been set in this data_ block at line: 12"},
        {CifError(9999, 5), "Warning", "Unknown error  ", "Warning: Line 5 : Unknown error  "},
        // A text without placeholders ignores both texts.
        {CifError(321, "x", "y", 7), "Error", "No data items in loop_",
         "Error: Line 7 : No data items in loop_"},
        // The replacements run one after the other, so a <2> brought in by <1> is filled.
        {CifError(312, "<2>", "X", 1), "Warning", "Ignored string X", "Warning: Line 1 : Ignored string X"},
        // Only the first occurrence of each placeholder is replaced.
        {CifError(318, "a<2>b", "Z", -1), "Error",
         "Data item aZb has already been set in this data_ block at line: <2>",
         "Error: Data item aZb has already been set in this data_ block at line: <2>"},
        {CifError(312, "<1>", 2), "Warning", "Ignored string <1>", "Warning: Line 2 : Ignored string <1>"},
        {CifError(347, "80", 9), "Warning", "More than 80 characters long",
         "Warning: Line 9 : More than 80 characters long"},
        {CifError(346, "80", 9), "Error", "More than 80 characters long",
         "Error: Line 9 : More than 80 characters long"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.error.severity_text(), c.severity_text);
        EXPECT_EQ(c.error.message(), c.message);
        EXPECT_EQ(c.error.text(), c.text);
    }
}

TEST(CifError, ConstructorsFillTheFields)
{
    const CifError a(305, 4);
    EXPECT_EQ(a.code, 305u);
    EXPECT_EQ(a.line, 4);
    EXPECT_EQ(a.first, "");
    EXPECT_EQ(a.second, "");
    const CifError b(312, "word", 6);
    EXPECT_EQ(b.first, "word");
    EXPECT_EQ(b.second, "");
    EXPECT_EQ(b.line, 6);
    const CifError c(318, "_a", "3", -1);
    EXPECT_EQ(c.code, 318u);
    EXPECT_EQ(c.first, "_a");
    EXPECT_EQ(c.second, "3");
    EXPECT_EQ(c.line, -1);
}

TEST(CifError, SeverityLabelsAndCheckResultCodes)
{
    const std::vector<std::pair<int, std::string>> labels = {
        {0, "Remark"}, {1, "Warning"}, {2, "Error"}, {3, "Unknown"}, {-1, "Unknown"}};
    for (const auto& [severity, label] : labels) {
        SCOPED_TRACE(severity);
        EXPECT_EQ(CifError::severity_label(severity), label);
    }
    const std::vector<std::pair<int, std::uint32_t>> results = {
        {1, 324}, {2, 325}, {3, 326}, {4, 327}, {5, 328}, {6, 329}, {7, 344}, {0, 323}, {8, 323}, {-1, 323}};
    for (const auto& [result, code] : results) {
        SCOPED_TRACE(result);
        EXPECT_EQ(cif_check_result_code(result), code);
    }
}

TEST(CifErrorException, CarriesTheFindingAndItsFullText)
{
    const CifErrorException e(CifError(316, "boom", -1));
    EXPECT_STREQ(e.what(), "Error: Internal error in CIF read: boom");
    EXPECT_EQ(e.error().code, 316u);
    EXPECT_EQ(e.error().first, "boom");
    const std::runtime_error& base = e;
    EXPECT_STREQ(base.what(), "Error: Internal error in CIF read: boom");
}

std::string codes(const CifErrorList& list)
{
    std::string out;
    for (const CifError& e : list)
        out += std::to_string(e.code) + "@" + std::to_string(e.line) + " ";
    return out;
}

TEST(CifErrorList, SuppressionDropsFindingsForGood)
{
    CifErrorList list;
    EXPECT_TRUE(list.is_empty());
    list.add(CifError(305, 1));
    list.suppress(350);
    EXPECT_TRUE(list.is_suppressed(350));
    list.add(CifError(350, "'", 2));
    list.add(CifError(312, "x", 3));
    EXPECT_EQ(codes(list), "305@1 312@3 ");
    // A dropped finding leaves no trace that unsuppress could bring back.
    list.unsuppress(350);
    EXPECT_FALSE(list.is_suppressed(350));
    EXPECT_EQ(list.count(), 2u);
    list.add(CifError(350, "\"", 4));
    EXPECT_EQ(codes(list), "305@1 312@3 350@4 ");
    EXPECT_EQ(list.at(2).first, "\"");

    list.suppress(320);
    list.clear();
    EXPECT_TRUE(list.is_empty());
    EXPECT_EQ(list.count(), 0u);
    EXPECT_TRUE(list.is_suppressed(320));
    list.add(CifError(320, "_a", 1));
    EXPECT_TRUE(list.is_empty());
}

TEST(CifErrorList, CountsBySeverity)
{
    CifErrorList list;
    for (std::uint32_t code : {301u, 305u, 303u, 312u, 322u, 343u, 347u, 9999u})
        list.add(CifError(code, 1));
    EXPECT_EQ(list.count_of_severity(0), 2u);
    EXPECT_EQ(list.count_of_severity(1), 4u); // 305, 312, 347 and the unknown code
    EXPECT_EQ(list.count_of_severity(2), 2u);
    EXPECT_EQ(list.count_of_severity(3), 0u);
    EXPECT_EQ(list.count(), 8u);
}

} // namespace

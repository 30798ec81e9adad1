#include "CifError.h"
#include "CifErrorException.h"
#include "CifErrorList.h"
#include "CifMessageTable.h"
#include "CifTestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

TEST(MessageTable, RowsAreSortedUniqueAndFoundByTheirCode)
{
    // 301 to 353 without 317 and 330.
    ASSERT_EQ(cif_message_table_size(), 51u);
    const CifMessage* table = cif_message_table_begin();
    EXPECT_EQ(table[0].code, 301u);
    EXPECT_EQ(table[50].code, 353u);
    for (std::size_t i = 0; i < cif_message_table_size(); ++i) {
        SCOPED_TRACE(table[i].code);
        // The lookup is a binary search: it finds each row only while the codes ascend.
        if (i > 0) {
            EXPECT_LT(table[i - 1].code, table[i].code);
        }
        EXPECT_EQ(&cif_message(table[i].code), &table[i]);
        EXPECT_TRUE(table[i].severity >= 0 && table[i].severity <= 2);
    }
    // Codes outside the table, holes inside the range among them, give the fallback row.
    for (std::uint32_t code : {317u, 330u, 0u, 300u, 354u, 9999u}) {
        SCOPED_TRACE(code);
        EXPECT_EQ(cif_message(code).severity, 1);
        EXPECT_EQ(CifError(code, "a", "b", 3).text(), "Warning: Line 3 : Unknown error a b");
    }
}

// The error list and the batch checker show these texts to users, and a wrong severity changes
// the totals that gate the wizards.
TEST(CifError, RendersSeverityMessageAndFullText)
{
    const std::vector<std::pair<CifError, std::string>> cases = {
        {CifError(308, "_x", 12), "Error: Line 12 : Data name _x not followed by data value"},
        {CifError(301, -1), "Error: File could not be read"},
        // Only -1 means "no line": line 0 is printed.
        {CifError(302, 0), "Error: Line 0 : CIF contains no data_ blocks"},
        {CifError(303, "_a", "data_x", 3), "Remark: Line 3 : Data item _a not set in block data_x"},
        {CifError(304, "_a", "data_x", 3), "Remark: Line 3 : Related item _a not set in block data_x"},
        {CifError(343, "_a", "data_x", 3), "Remark: Line 3 : Data item _a not found in block data_x"},
        {CifError(305, 2), "Warning: Line 2 : Data item found before the first data_ block"},
        {CifError(318, "_a", "12", 40),
         "Error: Line 40 : Data item _a has already been set in this data_ block at line: 12"},
        {CifError(320, "_q", 4), "Warning: Line 4 : Created non-standard data item _q"},
        {CifError(9999, 5), "Warning: Line 5 : Unknown error  "},
        // A text without placeholders ignores both texts.
        {CifError(321, "x", "y", 7), "Error: Line 7 : No data items in loop_"},
        {CifError(322, 7), "Error: Line 7 : Too many or too few data values in the loop"},
        // The replacements run one after the other, so a <2> brought in by <1> is filled.
        {CifError(312, "<2>", "X", 1), "Warning: Line 1 : Ignored string X"},
        // Only the first occurrence of each placeholder is replaced.
        {CifError(318, "a<2>b", "Z", -1),
         "Error: Data item aZb has already been set in this data_ block at line: <2>"},
        {CifError(312, "<1>", 2), "Warning: Line 2 : Ignored string <1>"},
        {CifError(347, "80", 9), "Warning: Line 9 : More than 80 characters long"},
        {CifError(346, "80", 9), "Error: Line 9 : More than 80 characters long"},
        {CifError(324, "_f", 9), "Warning: Line 9 : Data value is not in dictionary enumeration list : _f"},
        {CifError(345, "add_value", "_s", 9), "Error: Line 9 : Internal error: Action invalid as data item "
                                              "not looped, action: add_value, name: _s"},
        {CifError(350, "'", 9), "Error: Line 9 : No terminating (') quote"},
        {CifError(353, 9), "Error: Line 9 : Text block finished at end of file without final ';'"},
    };
    for (const auto& [error, text] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(error.text(), text);
        EXPECT_EQ(error.severity_text() + ": " +
                      (error.line == -1 ? "" : "Line " + std::to_string(error.line) + " : ") +
                      error.message(),
                  text);
    }
}

TEST(CifError, SeverityLabelsAndCheckResultCodes)
{
    const std::vector<std::pair<int, std::string>> labels = {
        {0, "Remark"}, {1, "Warning"}, {2, "Error"}, {3, "Unknown"}, {-1, "Unknown"}};
    for (const auto& [severity, label] : labels)
        EXPECT_EQ(CifError::severity_label(severity), label) << severity;
    const std::vector<std::pair<int, std::uint32_t>> results = {
        {1, 324}, {2, 325}, {3, 326}, {4, 327}, {5, 328}, {6, 329}, {7, 344}, {0, 323}, {8, 323}, {-1, 323}};
    for (const auto& [result, code] : results)
        EXPECT_EQ(cif_check_result_code(result), code) << result;
}

TEST(CifErrorException, CarriesTheFindingAndItsFullText)
{
    const CifErrorException e(CifError(316, "boom", -1));
    EXPECT_EQ(std::to_string(e.error().code) + e.error().first, "316boom");
    const std::runtime_error& base = e;
    EXPECT_STREQ(base.what(), "Error: Internal error in CIF read: boom");
}

TEST(CifErrorList, SuppressionDropsFindingsForGoodAndCountsBySeverity)
{
    CifErrorList list;
    list.add(CifError(305, 1));
    list.suppress(350);
    list.add(CifError(350, "'", 2));
    list.add(CifError(312, "x", 3));
    // A dropped finding leaves no trace that unsuppress could bring back.
    list.unsuppress(350);
    EXPECT_FALSE(list.is_suppressed(350));
    list.add(CifError(350, "\"", 4));
    EXPECT_EQ(findings(list), "305@1 312@3[x] 350@4[\"]");

    list.suppress(320);
    list.clear();
    EXPECT_TRUE(list.is_empty());
    EXPECT_TRUE(list.is_suppressed(320));
    list.add(CifError(320, "_a", 1));
    EXPECT_TRUE(list.is_empty());

    for (std::uint32_t code : {301u, 305u, 303u, 312u, 322u, 343u, 347u, 9999u})
        list.add(CifError(code, 1));
    const std::vector<std::size_t> by_severity = {list.count_of_severity(0), list.count_of_severity(1),
                                                  list.count_of_severity(2), list.count_of_severity(3)};
    EXPECT_EQ(by_severity, (std::vector<std::size_t>{2, 4, 2, 0})); // the unknown code is a warning
    EXPECT_EQ(list.count(), 8u);
}

} // namespace

#include "CifErrorException.h"
#include "CifMessageTable.h"
#include "CifTestSupport.h"

namespace {

// The lookup is a binary search: it finds each row only while the codes ascend. Codes outside
// the table, holes inside its range among them, give the fallback row, a warning.
TEST(MessageTable, EveryRowIsFoundByItsCodeAndOthersFallBack)
{
    const CifMessage* table = cif_message_table_begin();
    for (std::size_t i = 0; i < cif_message_table_size(); ++i) {
        EXPECT_TRUE(i == 0 || table[i - 1].code < table[i].code) << table[i].code;
        EXPECT_EQ(&cif_message(table[i].code), &table[i]);
    }
    EXPECT_EQ(cif_message_table_size(), 51u); // 301 to 353 without 317 and 330
    for (std::uint32_t code : {317u, 330u, 0u, 300u, 354u})
        EXPECT_EQ(CifError(code, "a", "b", 3).text(), "Warning: Line 3 : Unknown error a b") << code;
}

TEST(CifErrorList, SuppressionDropsFindingsForGoodAndCountsBySeverity)
{
    CifErrorList list;
    list.suppress(350);
    list.add(CifError(350, "'", 2));
    list.add(CifError(312, "x", 3));
    // A dropped finding leaves no trace that unsuppress could bring back.
    list.unsuppress(350);
    list.add(CifError(350, "\"", 4));
    EXPECT_EQ(findings(list), "312@3[x] 350@4[\"]");
    list.suppress(320);
    list.clear();
    list.add(CifError(320, "_a", 1)); // a suppression outlives a clear
    for (std::uint32_t code : {301u, 305u, 303u, 312u, 322u, 343u, 347u, 9999u})
        list.add(CifError(code, 1));
    EXPECT_EQ(std::to_string(list.count_of_severity(0)) + std::to_string(list.count_of_severity(1)) +
                  std::to_string(list.count_of_severity(2)) + std::to_string(list.count()),
              "2428");
}

} // namespace

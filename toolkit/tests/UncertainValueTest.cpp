#include "UncertainValue.h"

#include "MoleculeError.h"
#include "NumberText.h"
#include "Regex.h"

#include <gtest/gtest.h>
#include <sstream>
#include <tuple>
#include <vector>

TEST(UncertainValue, ReadsTheNumberSyntax)
{
    // Text, value, precision, uncertainty.
    const std::vector<std::tuple<const char*, double, int, int>> cases = {
        {"12", 12, 0, 0},          {"-0.5", -0.5, 1, 0},  {"+.25", 0.25, 2, 0},
        {"10.3(12)", 10.3, 1, 12}, {"1.5e3", 1500, 1, 0}, {"2.50D-2(3)", 0.025, 2, 3},
        {"7.1,4", 7.1, 1, 4},      {"7.1(4", 7.1, 1, 4},  {"3.", 3, 0, 0}};
    for (const auto& [text, value, precision, uncertainty] : cases) {
        SCOPED_TRACE(text);
        const auto v = UncertainValue::parse(text);
        ASSERT_TRUE(v.has_value());
        EXPECT_DOUBLE_EQ(v->value, value);
        EXPECT_EQ(v->precision, precision);
        EXPECT_EQ(v->uncertainty, uncertainty);
    }
    for (const char* text : {"", ".", "?", "abc", "1.2.3", "1.2(3)x", "1.2 (3)", "e5", "--1", "1.2()", "(3)"})
        EXPECT_FALSE(UncertainValue::parse(text).has_value()) << text;
}

TEST(UncertainValue, PrintsAsRead)
{
    const std::vector<std::tuple<UncertainValue, const char*, const char*>> cases = {
        {{1.2345, 4, 6}, "1.2345(6)", "Precision: 4 Uncertainty: 6"},
        {{1.5, 3, 0}, "1.500", "Precision: 3 Uncertainty: 0"},
        {{0.125}, "0.125", "Precision: null Uncertainty: 0"},
        {{90, 0, 2}, "90(2)", "Precision: 0 Uncertainty: 2"}};
    for (const auto& [value, text, debug] : cases) {
        std::ostringstream out;
        out << std::fixed << value;
        EXPECT_EQ(out.str(), text);
        EXPECT_EQ(value.debug_text(), debug);
        EXPECT_TRUE(out.flags() & std::ios::fixed) << "the stream's own format survives";
    }
    EXPECT_NE(UncertainValue(1.0, 2, 1), UncertainValue(1.0, 3, 1));
}

TEST(NumberText, RegexCapturesAndPlainNumbers)
{
    const Regex re(R"(^(\w+)=(\d+)?$)");
    EXPECT_EQ(re.capture_count(), 2u);
    const auto m = re.match("cell=42");
    ASSERT_TRUE(m.has_value());
    EXPECT_EQ((*m)[1], "cell");
    EXPECT_EQ((*m)[2], "42");
    EXPECT_FALSE(re.matches("cell=4x"));
    EXPECT_THROW(Regex("(unclosed"), molecule_error);
    // A plain number is the run around the first digit.
    const std::vector<std::pair<const char*, double>> plain = {
        {"12", 12}, {"-1", -1}, {"+0.25", 0.25}, {"ab3.5cd", 3.5}, {"- 2", -2}, {"", 0}, {"-", 0}, {"4-", 4}};
    for (const auto& [text, value] : plain)
        EXPECT_DOUBLE_EQ(read_plain_number(text), value) << text;
}

#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

// A measured number as a CIF gives it: "1.2345(6)" keeps its four decimals and its uncertainty
// of 6 in the last place, so that it can be written back as it was read.
class UncertainValue {
public:
    static constexpr int32_t null_precision = 1000000;

    double value = 0.0;
    int32_t precision = null_precision;
    int32_t uncertainty = 0;

    UncertainValue() = default;
    UncertainValue(double value, int32_t precision = null_precision, int32_t uncertainty = 0)
        : value(value), precision(precision), uncertainty(uncertainty)
    {
    }

    // Reads "-1.25e3(4)", "0.5,2", ".5"... The whole text must be one number; anything else, a
    // text with no digit among them, gives nothing.
    static std::optional<UncertainValue> parse(const std::string& text);

    bool has_precision() const { return precision != null_precision; }
    bool same_precision(const UncertainValue& o) const
    {
        return precision == o.precision && uncertainty == o.uncertainty;
    }
    bool operator==(const UncertainValue& o) const { return value == o.value && same_precision(o); }
    bool operator!=(const UncertainValue& o) const { return !(*this == o); }

    std::string debug_text() const;
};

std::ostream& operator<<(std::ostream& out, const UncertainValue& v);

#include "UncertainValue.h"

#include "Regex.h"

#include <cstdlib>
#include <ostream>
#include <sstream>

namespace {

const Regex& number_syntax()
{
    // sign, digits, point, captured decimals; exponent letter E, e, D or d; uncertainty opened by a
    // bracket or a comma, its closing bracket optional.
    static const Regex syntax(R"(^([+-]?[0-9]*\.?([0-9]*))(?:[EeDd]([+-]?[0-9]+))?(?:[(,]([0-9]+)\)?)?$)");
    return syntax;
}

} // namespace

std::optional<UncertainValue> UncertainValue::parse(const std::string& text)
{
    if (text.find_first_not_of("0123456789.EeDd+-(),") != std::string::npos)
        return std::nullopt;
    const auto groups = number_syntax().match(text);
    if (!groups)
        return std::nullopt;
    const std::string& mantissa = (*groups)[1];
    if (mantissa.find_first_of("0123456789") == std::string::npos)
        return std::nullopt;
    std::string number = mantissa;
    if (!(*groups)[3].empty())
        number += "e" + (*groups)[3];
    UncertainValue v;
    v.value = std::strtod(number.c_str(), nullptr);
    v.precision = static_cast<int32_t>((*groups)[2].size());
    if (!(*groups)[4].empty())
        v.uncertainty = static_cast<int32_t>(std::strtol((*groups)[4].c_str(), nullptr, 10));
    return v;
}

std::string UncertainValue::debug_text() const
{
    std::ostringstream out;
    out << "Precision: ";
    if (has_precision())
        out << precision;
    else
        out << "null";
    out << " Uncertainty: " << uncertainty;
    return out.str();
}

std::ostream& operator<<(std::ostream& out, const UncertainValue& v)
{
    const auto flags = out.flags();
    const auto old_precision = out.precision();
    if (v.has_precision()) {
        out.setf(std::ios::fixed, std::ios::floatfield);
        out.precision(v.precision);
    } else {
        out.unsetf(std::ios::floatfield);
    }
    out << v.value;
    out.flags(flags);
    out.precision(old_precision);
    if (v.uncertainty != 0)
        out << '(' << v.uncertainty << ')';
    return out;
}

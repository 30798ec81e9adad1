#include "SymmOp.h"

#include "MoleculeError.h"
#include "NumberText.h"

#include <cctype>
#include <cmath>
#include <sstream>
#include <vector>

namespace {

double read_translation(const std::string& text, const std::string& op_text)
{
    const auto slash = text.find('/');
    if (slash == std::string::npos)
        return read_plain_number(text);
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const auto next = text.find('/', start);
        parts.push_back(text.substr(start, next - start));
        if (next == std::string::npos)
            break;
        start = next + 1;
    }
    if (parts.size() != 2)
        throw molecule_error("Cannot read symmetry operator: Illegal fraction (" + text +
                             ") in symmetry operator (" + op_text + ")");
    const double bottom = read_plain_number(parts[1]);
    if (std::fabs(bottom) < SymmOp::tolerance)
        throw molecule_error("Cannot read symmetry operator: Illegal bottom half of fraction (" + parts[1] +
                             ") in symmetry operator (" + op_text + ")");
    return read_plain_number(parts[0]) / bottom;
}

bool near(double a, double b)
{
    return std::fabs(a - b) < SymmOp::tolerance;
}

// Brings a translation into [0, 1); a value a rounding error below 1 is the lattice point 0.
double wrap_unit(double t)
{
    while (t < 0.0)
        t += 1.0;
    while (t >= 1.0)
        t -= 1.0;
    if (t > 1.0 - SymmOp::tolerance)
        t = 0.0;
    return t;
}

// -1 when a < b, +1 when a > b, 0 when equal within tolerance.
int compare(double a, double b)
{
    const double d = a - b;
    if (d < -SymmOp::tolerance)
        return -1;
    if (d > SymmOp::tolerance)
        return 1;
    return 0;
}

const char* const twelfths[] = {"",     "1/12", "1/6", "1/4", "1/3",   "5/12", "1/2",
                                "7/12", "2/3",  "3/4", "5/6", "11/12", "1"};

} // namespace

SymmOp::SymmOp(const std::string& text)
{
    std::string s;
    for (char c : text)
        if (c != ' ' && c != '\t')
            s += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));

    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const auto comma = s.find(',', start);
        fields.push_back(s.substr(start, comma - start));
        if (comma == std::string::npos)
            break;
        start = comma + 1;
    }
    if (fields.size() != 3)
        throw molecule_error("Could not read symmetry operator: " + text);

    const char axes[] = {'x', 'y', 'z'};
    for (int i = 0; i < 3; ++i) {
        std::string& field = fields[i];
        for (int j = 0; j < 3; ++j) {
            m_[i][j] = 0.0;
        }
        for (int j = 0; j < 3 && !field.empty(); ++j) {
            const std::string minus = std::string("-") + axes[j];
            const std::string plus = std::string("+") + axes[j];
            auto pos = field.find(minus);
            if (pos != std::string::npos) {
                m_[i][j] = -1.0;
                field.erase(pos, 2);
            }
            pos = field.find(plus);
            if (pos != std::string::npos) {
                m_[i][j] = 1.0;
                field.erase(pos, 2);
            }
            pos = field.find(axes[j]);
            if (pos != std::string::npos) {
                if (pos != 0)
                    throw molecule_error("Invalid symmetry operator: " + text);
                m_[i][j] = 1.0;
                field.erase(0, 1);
            }
        }
        if (field.find_first_not_of("0123456789+-./") != std::string::npos)
            throw molecule_error("Could not read symmetry operator: " + text);
        m_[i][3] = field.empty() ? 0.0 : read_translation(field, text);
    }

    if (!near(std::fabs(determinant()), 1.0))
        throw molecule_error("Invalid symmetry operator: " + text);
    const double abs_trace = std::fabs(trace());
    if (!near(abs_trace, 0.0) && !near(abs_trace, 1.0) && !near(abs_trace, 2.0) && !near(abs_trace, 3.0))
        throw molecule_error("Invalid symmetry operator: " + text);
}

std::string SymmOp::text() const
{
    const char axes[] = {'x', 'y', 'z'};
    std::string result;
    for (int i = 0; i < 3; ++i) {
        std::string field;
        const double t = m_[i][3];
        const double n = std::round(12.0 * t);
        if (t >= -1.0 && t <= 1.0 && std::fabs(12.0 * t - n) < tolerance) {
            if (t < 0.0 && n != 0.0)
                field += "-";
            field += twelfths[static_cast<int>(std::fabs(n))];
        } else {
            std::ostringstream number;
            number << t;
            field += number.str();
        }
        for (int j = 0; j < 3; ++j) {
            if (near(m_[i][j], -1.0))
                field += std::string("-") + axes[j];
            else if (near(m_[i][j], 1.0))
                field += std::string("+") + axes[j];
        }
        if (!field.empty() && field[0] == '+')
            field.erase(0, 1);
        if (i > 0)
            result += ",";
        result += field;
    }
    return result;
}

int SymmOp::element_type() const
{
    const double t = trace();
    const bool positive = determinant() > tolerance;
    if (near(t, 3.0))
        return 1;
    if (near(t, -3.0))
        return -1;
    if (near(t, 2.0))
        return 6;
    if (near(t, -2.0))
        return -6;
    if (near(t, 0.0))
        return positive ? 3 : -3;
    if (near(t, 1.0))
        return positive ? 4 : -2;
    if (near(t, -1.0))
        return positive ? 2 : -4;
    throw molecule_error("SymmOp::element_type(): unknown element type.");
}

int SymmOp::order() const
{
    switch (element_type()) {
    case 1:
        return 1;
    case -1:
    case 2:
    case -2:
        return 2;
    case 3:
        return 3;
    case 4:
    case -4:
        return 4;
    case 6:
    case -6:
    case -3:
        return 6;
    default:
        throw molecule_error("SymmOp::order(): unknown element type.");
    }
}

bool SymmOp::operator<(const SymmOp& o) const
{
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            if (const int c = compare(m_[i][j], o.m_[i][j]))
                return c < 0;
    for (int i = 0; i < 3; ++i)
        if (const int c = compare(wrap_unit(m_[i][3]), wrap_unit(o.m_[i][3])))
            return c < 0;
    for (int j = 0; j < 4; ++j)
        if (const int c = compare(m_[3][j], o.m_[3][j]))
            return c < 0;
    return false;
}

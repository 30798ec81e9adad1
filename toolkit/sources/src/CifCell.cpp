#include "CifCell.h"

#include "CifDataItem.h"
#include "Logger.h"
#include "MoleculeError.h"
#include "NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

// A CIF null value ("?" unknown, "." inapplicable) stands for no value at all.
bool is_null(const std::string& value)
{
    return value.empty() || value == "?" || value == ".";
}

bool holds_value(const HCifDataItem& item)
{
    return item && item->has_value() && !is_null(item->first_value());
}

std::string without(const std::string& text, const char* characters)
{
    std::string out;
    for (char c : text)
        if (!std::strchr(characters, c))
            out += c;
    return out;
}

HCifDataItem first_found(const CifDataBlock& block, std::initializer_list<const char*> names)
{
    for (const char* name : names)
        if (HCifDataItem item = block.item(name))
            return item;
    return HCifDataItem();
}

void warn(std::vector<std::string>* warnings, const std::string& text)
{
    logWarning("%s", text.c_str());
    if (warnings)
        warnings->push_back(text);
}

// Fails unless every product of two operators is one of them.
void require_group(const std::vector<SymmOp>& ops)
{
    std::vector<SymmOp> sorted = ops;
    std::sort(sorted.begin(), sorted.end());
    const auto holds = [&sorted](const SymmOp& op) {
        const auto it = std::lower_bound(sorted.begin(), sorted.end(), op);
        return it != sorted.end() && it->equivalent(op);
    };
    if (!holds(SymmOp("x,y,z")))
        throw molecule_error(
            "Reading symmetry from Cif failed: the symmetry operators do not form a group (the "
            "identity x,y,z is not among them)");
    for (const SymmOp& a : ops)
        for (const SymmOp& b : ops)
            if (!holds(SymmOp(a * b)))
                throw molecule_error(
                    "Reading symmetry from Cif failed: the symmetry operators do not form a group (" +
                    a.text() + " after " + b.text() + " is none of them)");
}

UncertainValue parameter(const HCifDataItem& item, const char* what)
{
    const std::string value = item->first_value();
    const std::optional<UncertainValue> v = UncertainValue::parse(value);
    if (!v)
        throw molecule_error("Reading cell from Cif failed, could not interpret '" + value +
                             "' as a valid value for " + what);
    return *v;
}

} // namespace

CifCell::SymmetryItems CifCell::symmetry_items(const CifDataBlock& block)
{
    return {first_found(block, {"_symmetry_space_group_name_H-M", "_space_group_name_H-M_alt"}),
            first_found(block, {"_space_group_IT_number", "_symmetry_Int_Tables_number"}),
            first_found(block, {"_space_group_symop_operation_xyz", "_symmetry_equiv_pos_as_xyz"})};
}

bool CifCell::same_operators(std::vector<SymmOp> a, std::vector<SymmOp> b)
{
    if (a.size() != b.size())
        return false;
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    return std::equal(a.begin(), a.end(), b.begin(),
                      [](const SymmOp& x, const SymmOp& y) { return x.equivalent(y); });
}

Spacegroup CifCell::spacegroup_from_symbol(const CifDataBlock& block)
{
    const SymmetryItems items = symmetry_items(block);
    if (!holds_value(items.name))
        return Spacegroup();
    const std::string name = Spacegroup::canonical_name(without(items.name->first_value(), "()~ \t"));
    try {
        return Spacegroup(name, -1);
    } catch (const molecule_error&) {
        return Spacegroup();
    }
}

Spacegroup CifCell::extract_spacegroup_and_symmops(const CifDataBlock& block,
                                                   std::vector<std::string>* warnings)
{
    const SymmetryItems items = symmetry_items(block);
    if (!items.name && !items.number && !items.symops)
        throw molecule_error(
            "Reading symmetry from Cif failed: could not retrieve _symmetry_space_group_name_H-M, "
            "nor _space_group_IT_number, nor _symmetry_Int_Tables_number, nor "
            "_space_group_symop_operation_xyz, nor _symmetry_equiv_pos_as_xyz");
    const std::string name = holds_value(items.name) ? without(items.name->first_value(), "()~ \t") : "";
    const int number =
        holds_value(items.number) ? static_cast<int>(read_plain_number(items.number->first_value())) : 0;
    std::vector<SymmOp> ops;
    if (items.symops)
        for (std::size_t row = 0; row < items.symops->value_count(); ++row) {
            const std::string text = without(items.symops->value(row), " \t");
            if (text.find_first_of("xyzXYZ") == std::string::npos) {
                logDebug(2, "CifCell::extract_spacegroup_and_symmops ignoring text: %s", text.c_str());
                continue;
            }
            SymmOp op(text);
            // "0.6667" is how some programs write 2/3: a translation within 0.0005 of a twelfth
            // is that twelfth, so that such operators still close into their group.
            Vector3D t = op.trans();
            for (int k = 0; k < 3; ++k) {
                const double twelfths = std::round(t[k] * 12);
                if (std::fabs(t[k] * 12 - twelfths) < 0.006)
                    t[k] = twelfths / 12;
            }
            op.set_trans(t);
            ops.push_back(op);
        }
    Spacegroup group;
    if (!ops.empty()) {
        require_group(ops);
        group = Spacegroup(ops, number);
        if (group.row() < 0 && number != 0)
            group = Spacegroup(ops);
    } else {
        // The first row of the name, not setting 1 of its number: that would take "P21/n" to
        // setting 1 of number 14, "P21/b11", whose operators are another setting's.
        group = Spacegroup(name, -1);
    }
    if (!name.empty() && name != group.name()) {
        const std::string canonical = Spacegroup::canonical_name(name);
        bool same = canonical == group.name();
        if (!same && canonical != "Unknown") {
            try {
                same = same_operators(Spacegroup(canonical, -1).symmops(), group.symmops());
            } catch (const molecule_error&) {
                same = false;
            }
        }
        if (!same) {
            char text[512];
            std::snprintf(
                text, sizeof text,
                "Ignoring supplied spacegroup (%s); using spacegroup generated from symmetry operators (%s)",
                name.c_str(), group.name().c_str());
            warn(warnings, text);
        }
    }
    if (number != 0 && number != group.number()) {
        char text[256];
        std::snprintf(
            text, sizeof text,
            "Ignoring supplied international tables number (%d); using number generated from symmetry "
            "operators (%d)",
            number, group.number());
        warn(warnings, text);
    }
    return group;
}

Cell CifCell::cell(const CifDataBlock& block, std::vector<std::string>* warnings)
{
    static const char* const names[6] = {"_cell_length_a",    "_cell_length_b",   "_cell_length_c",
                                         "_cell_angle_alpha", "_cell_angle_beta", "_cell_angle_gamma"};
    static const char* const labels[6] = {"a", "b", "c", "alpha", "beta", "gamma"};
    HCifDataItem items[6];
    for (int k = 0; k < 6; ++k) {
        items[k] = block.item(names[k]);
        if (!items[k])
            throw molecule_error(std::string("Reading cell from Cif failed,  could not retrieve '") +
                                 names[k] + "'");
    }
    UncertainValue values[6];
    for (int group = 0; group < 6; group += 3) {
        if (!holds_value(items[group]) || !holds_value(items[group + 1]) || !holds_value(items[group + 2]))
            continue;
        for (int k = group; k < group + 3; ++k)
            values[k] = parameter(items[k], labels[k]);
    }
    const Spacegroup group = extract_spacegroup_and_symmops(block, warnings);
    return Cell(values[0], values[1], values[2], values[3], values[4], values[5], group);
}

#include "StructureReport.h"

#include "BondDetector.h"
#include "Cif.h"
#include "CifCell.h"
#include "CifDataItem.h"
#include "CifMolecule.h"
#include "JsonWriter.h"
#include "Logger.h"
#include "MoleculeError.h"

#include <cmath>
#include <cstdio>
#include <ostream>
#include <sstream>

namespace {

constexpr double degrees = 57.29577951308232;

// A parameter as the file gave it; an angle is held in radians and shown in degrees.
std::string parameter_text(const UncertainValue& v, bool angle)
{
    const double value = angle ? v.value * degrees : v.value;
    char text[64];
    if (v.has_precision() && v.precision >= 0 && v.precision < 12)
        std::snprintf(text, sizeof text, "%.*f", v.precision, value);
    else
        std::snprintf(text, sizeof text, "%g", value);
    std::string out = text;
    if (v.uncertainty != 0)
        out += "(" + std::to_string(v.uncertainty) + ")";
    return out;
}

std::string number(double v, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, v);
    return text;
}

std::string group_text(const Spacegroup& g)
{
    return g.name() + (g.number() > 0 ? " (" + std::to_string(g.number()) + ")" : "");
}

std::string agreement_note(const std::optional<MoietyFormula::Agreement>& a)
{
    if (a == MoietyFormula::Agrees)
        return " (agrees)";
    if (a == MoietyFormula::AgreesInSum)
        return " (agrees in sum: the file gives its moieties as one formula)";
    return "";
}

std::string agreement_word(const std::optional<MoietyFormula::Agreement>& a)
{
    if (!a)
        return "null";
    return *a == MoietyFormula::Agrees        ? "\"agrees\""
           : *a == MoietyFormula::AgreesInSum ? "\"agrees in sum\""
                                              : "\"differs\"";
}

bool is_null(const std::string& v)
{
    return v.empty() || v == "?" || v == ".";
}

// A cell with lengths or angles given as null whose values the space group fixes: 90 degrees in
// the orthorhombic, tetragonal and cubic systems and for alpha and beta on hexagonal axes, 120
// for gamma there, and the equal lengths of the higher systems. Gives the cell unchanged when
// nothing can be filled in.
Cell filled_in(const CifDataBlock& block, const Cell& cell, std::vector<std::string>& warnings)
{
    const Spacegroup& g = cell.spacegroup();
    const int n = g.number();
    const bool rhombohedral_axes = !g.name().empty() && g.name().back() == 'r';
    if (n < 16 || n > 230 || rhombohedral_axes)
        return cell;
    const char* names[6] = {"_cell_length_a",    "_cell_length_b",   "_cell_length_c",
                            "_cell_angle_alpha", "_cell_angle_beta", "_cell_angle_gamma"};
    const char* labels[6] = {"a", "b", "c", "alpha", "beta", "gamma"};
    const bool hexagonal = n >= 143 && n <= 194;
    const double fixed_angle[3] = {90.0, 90.0, hexagonal ? 120.0 : 90.0};
    std::optional<UncertainValue> v[6];
    for (int k = 0; k < 6; ++k)
        if (const HCifDataItem item = block.item(names[k]))
            if (item->has_value() && !is_null(item->first_value()))
                v[k] = UncertainValue::parse(item->first_value());
    std::vector<std::string> filled;
    for (int k = 3; k < 6; ++k)
        if (!v[k]) {
            v[k] = UncertainValue(fixed_angle[k - 3]);
            filled.push_back(labels[k]);
        }
    // a = b from the tetragonal system up, and c too in the cubic.
    const int equal_lengths = n >= 195 ? 3 : n >= 75 ? 2 : 1;
    for (int k = 1; k < equal_lengths; ++k)
        if (!v[k] && v[0]) {
            v[k] = v[0];
            filled.push_back(labels[k]);
        }
    if (filled.empty() || !v[0] || !v[1] || !v[2])
        return cell;
    const Cell out(*v[0], *v[1], *v[2], *v[3], *v[4], *v[5], g);
    if (!out.valid())
        return cell;
    std::string list;
    for (const std::string& f : filled)
        list += (list.empty() ? "" : ", ") + f;
    warnings.push_back("the cell gives no value for " + list + ", which the space group " + g.name() +
                       " fixes");
    return out;
}

void write_group_line(std::ostream& out, const StructureReport::Block& b)
{
    if (!b.spacegroup && !b.from_symbol)
        return;
    out << "  space group: ";
    if (b.spacegroup)
        out << group_text(*b.spacegroup) << " from the operators" << (b.from_symbol ? "; " : "");
    if (b.from_symbol)
        out << "the symbol gives " << group_text(*b.from_symbol);
    out << '\n';
}

void write_group_json(std::ostream& out, const StructureReport::Block& b)
{
    out << ", \"spacegroup\": ";
    if (!b.spacegroup && !b.from_symbol) {
        out << "null";
        return;
    }
    if (b.spacegroup)
        out << "{\"name\": " << json_string(b.spacegroup->name())
            << ", \"number\": " << b.spacegroup->number();
    else
        out << "{\"name\": null, \"number\": null";
    out << ", \"from_symbol\": ";
    if (b.from_symbol)
        out << "{\"name\": " << json_string(b.from_symbol->name())
            << ", \"number\": " << b.from_symbol->number() << "}";
    else
        out << "null";
    out << "}";
}

void write_warnings_json(std::ostream& out, const StructureReport::Block& b)
{
    out << ", \"warnings\": [";
    for (std::size_t k = 0; k < b.warnings.size(); ++k)
        out << (k ? ", " : "") << json_string(b.warnings[k]);
    out << "]";
}

} // namespace

StructureReport::Block StructureReport::analyse(const CifDataBlock& block)
{
    Block out;
    out.name = block.name();
    const CifMolecule::AtomItems items = CifMolecule::atom_items(block);
    out.has_atoms = items.x && items.x->value_count() > 0;
    if (!out.has_atoms)
        return out;
    if (const HCifDataItem given = block.item("_chemical_formula_moiety"))
        if (given->has_value() && !is_null(given->first_value()))
            out.moiety_given = given->first_value();
    const Spacegroup symbol = CifCell::spacegroup_from_symbol(block);
    if (symbol.row() >= 0)
        out.from_symbol = symbol;
    try {
        out.cell = CifCell::cell(block, &out.warnings);
        out.spacegroup = out.cell.spacegroup();
        // The table holds some operator sets under more than one name ("C2/a" before "C2/m"):
        // where the file's symbol is one of them, that is the name to show.
        if (out.from_symbol && out.from_symbol->number() == out.spacegroup->number() &&
            CifCell::same_operators(out.from_symbol->symmops(), out.spacegroup->symmops()))
            out.spacegroup = *out.from_symbol;
        if (!out.cell.valid())
            out.cell = filled_in(block, out.cell, out.warnings);
        if (!out.cell.valid())
            out.warnings.push_back(
                "the cell is missing a value or is impossible: fractional coordinates are taken "
                "as Angstroms, and bonds and molecules mean little");
        const std::vector<HAtom> atoms = CifMolecule::atoms(items);
        out.atoms = static_cast<int>(atoms.size());
        const BondDetector::Pairs pairs =
            out.cell.valid() ? BondDetector().detect(atoms, out.cell) : BondDetector::Pairs();
        out.bonds = static_cast<int>(pairs.size());
        const CrystalMaker maker(block.name(), out.cell, {},
                                 CifMolecule::components(block.name(), atoms, pairs));
        out.moiety = MoietyFormula::computed(maker);
    } catch (const std::exception& e) {
        out.failure = e.what();
        // A label that names no element or a cell without its lengths says nothing against the
        // operators: the group is still worth knowing.
        if (!out.spacegroup)
            try {
                out.spacegroup = CifCell::extract_spacegroup_and_symmops(block, &out.warnings);
            } catch (const std::exception&) {
            }
        return out;
    }
    if (!out.moiety_given.empty()) {
        const MoietyFormula given = MoietyFormula::parse(out.moiety_given);
        out.moiety_agreement = out.moiety.compare(given);
        if (*out.moiety_agreement == MoietyFormula::Differs)
            out.warnings.push_back("the computed moiety formula differs from _chemical_formula_moiety" +
                                   std::string(given.parts().empty() ? " (which could not be read)" : ""));
    }
    return out;
}

std::vector<StructureReport::Block> StructureReport::analyse(const Cif& cif)
{
    // The toolkit logs its warnings; here they belong to the report, and are written there once.
    FILE* const warnings = warningStream();
    setWarningStream(nullptr);
    std::vector<Block> out;
    for (const HCifDataBlock& block : cif)
        out.push_back(analyse(*block));
    setWarningStream(warnings);
    return out;
}

void StructureReport::write_text(std::ostream& out, const std::string& file, const std::vector<Block>& blocks)
{
    for (const Block& b : blocks) {
        const std::string head = file + ": " + b.name;
        if (!b.has_atoms) {
            out << head << ": no atom sites, skipped\n";
            continue;
        }
        if (!b.failure.empty()) {
            out << head << ": cannot build the structure: " << b.failure << '\n';
            write_group_line(out, b);
            for (const std::string& w : b.warnings)
                out << "  warning: " << w << '\n';
            continue;
        }
        const Cell& c = b.cell;
        out << head << '\n';
        write_group_line(out, b);
        out << "  cell: a " << parameter_text(c.a(), false) << ", b " << parameter_text(c.b(), false)
            << ", c " << parameter_text(c.c(), false) << ", alpha " << parameter_text(c.alpha(), true)
            << ", beta " << parameter_text(c.beta(), true) << ", gamma " << parameter_text(c.gamma(), true)
            << "; volume " << number(c.volume(), 1) << " A^3\n";
        out << "  atoms in the asymmetric unit: " << b.atoms << ", bonds: " << b.bonds << '\n';
        out << "  molecules: " << b.moiety.parts().size() << '\n';
        for (const MoietyFormula::Part& p : b.moiety.parts())
            out << "    " << p.formula() << " x " << number(p.count, 2) << '\n';
        out << "  moiety: " << b.moiety.text() << '\n';
        if (!b.moiety_given.empty())
            out << "  moiety given: " << b.moiety_given << agreement_note(b.moiety_agreement) << '\n';
        for (const std::string& w : b.warnings)
            out << "  warning: " << w << '\n';
    }
}

void StructureReport::write_json(std::ostream& out, const std::string& file, const std::vector<Block>& blocks,
                                 bool one_line)
{
    // The same object in both forms; only the line breaks between blocks differ.
    const char* const first_break = one_line ? "{" : "\n      {";
    const char* const block_break = one_line ? ", {" : ",\n      {";
    out << "{\"file\": " << json_string(file) << ", \"blocks\": [";
    bool first_block = true;
    for (const Block& b : blocks) {
        out << (first_block ? first_break : block_break) << "\"block\": " << json_string(b.name);
        first_block = false;
        if (!b.has_atoms) {
            out << ", \"skipped\": \"no atom sites\"}";
            continue;
        }
        if (!b.failure.empty()) {
            out << ", \"error\": " << json_string(b.failure);
            write_group_json(out, b);
            write_warnings_json(out, b);
            out << "}";
            continue;
        }
        const Cell& c = b.cell;
        write_group_json(out, b);
        out << ", \"cell\": {\"a\": " << json_string(parameter_text(c.a(), false))
            << ", \"b\": " << json_string(parameter_text(c.b(), false))
            << ", \"c\": " << json_string(parameter_text(c.c(), false))
            << ", \"alpha\": " << json_string(parameter_text(c.alpha(), true))
            << ", \"beta\": " << json_string(parameter_text(c.beta(), true))
            << ", \"gamma\": " << json_string(parameter_text(c.gamma(), true))
            << ", \"volume\": " << number(c.volume(), 2) << ", \"valid\": " << (c.valid() ? "true" : "false")
            << "}";
        out << ", \"atoms\": " << b.atoms << ", \"bonds\": " << b.bonds << ", \"molecules\": [";
        for (std::size_t k = 0; k < b.moiety.parts().size(); ++k) {
            const MoietyFormula::Part& p = b.moiety.parts()[k];
            out << (k ? ", " : "") << "{\"formula\": " << json_string(p.formula())
                << ", \"count\": " << number(p.count, 3) << "}";
        }
        out << "], \"moiety\": " << json_string(b.moiety.text()) << ", \"moiety_given\": "
            << (b.moiety_given.empty() ? std::string("null") : json_string(b.moiety_given))
            << ", \"moiety_agreement\": " << agreement_word(b.moiety_agreement);
        write_warnings_json(out, b);
        out << "}";
    }
    out << (first_block || one_line ? "]}" : "\n    ]}");
    if (one_line)
        out << '\n';
}

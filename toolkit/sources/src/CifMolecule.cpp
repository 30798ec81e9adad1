#include "CifMolecule.h"

#include "Atom3d.h"
#include "Bond3d.h"
#include "CifDataItem.h"
#include "Logger.h"
#include "Molecule3d.h"
#include "MoleculeError.h"
#include "NumberText.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace {

std::string value_at(const HCifDataItem& item, int row)
{
    return item && static_cast<std::size_t>(row) < item->value_count()
               ? item->value(static_cast<std::size_t>(row))
               : std::string();
}

std::string without(const std::string& text, const char* characters)
{
    std::string out;
    for (char c : text)
        if (std::string(characters).find(c) == std::string::npos)
            out += c;
    return out;
}

UncertainValue coordinate(const HCifDataItem& item, int row, const char* axis)
{
    if (!item || static_cast<std::size_t>(row) >= item->value_count())
        return UncertainValue(0.0);
    const std::string value = item->value(static_cast<std::size_t>(row));
    const std::optional<UncertainValue> v = UncertainValue::parse(value);
    if (!v)
        throw molecule_error("Reading atom coordinate from Cif failed, could not interpret '" + value +
                             "' as a valid value for " + axis);
    return *v;
}

// The standard uncertainty a value carries: its bracketed digits in units of its last decimal.
double uncertainty_of(const UncertainValue& v)
{
    if (!v.has_precision() || v.uncertainty == 0)
        return 0.0;
    double u = v.uncertainty;
    for (int k = 0; k < v.precision; ++k)
        u /= 10;
    return u;
}

std::string refcode_of(const CifDataBlock& block)
{
    const std::string& name = block.name();
    return name.compare(0, 5, "data_") == 0 ? name.substr(5) : name;
}

} // namespace

CifMolecule::AtomItems CifMolecule::atom_items(const CifDataBlock& block)
{
    return {block.item("_atom_site_label"),         block.item("_atom_site_type_symbol"),
            block.item("_atom_site_fract_x"),       block.item("_atom_site_fract_y"),
            block.item("_atom_site_fract_z"),       block.item("_atom_site_occupancy"),
            block.item("_atom_site_disorder_group")};
}

Element CifMolecule::element_of(const std::string& type, const std::string& label)
{
    // A null type symbol says nothing; the label speaks then.
    const std::string stripped_type = without(type, "?.");
    std::string text = without(stripped_type.empty() ? label : stripped_type, " \t");
    std::size_t letters = 0;
    while (letters < text.size() && std::isalpha(static_cast<unsigned char>(text[letters])))
        ++letters;
    if (letters == 1 || letters == 2)
        text = text.substr(0, letters);
    if (text.size() == 2 && std::tolower(static_cast<unsigned char>(text[0])) == 'o' &&
        std::tolower(static_cast<unsigned char>(text[1])) == 'w')
        text = "O";
    return Element(text);
}

std::vector<HAtom> CifMolecule::atoms(const AtomItems& items)
{
    if (!items.x || items.x->value_count() == 0)
        throw molecule_error("CifMolecule::atoms: no atoms found.");
    std::vector<HAtom> out;
    const int rows = static_cast<int>(items.x->value_count());
    for (int i = 0; i < rows; ++i) {
        const std::string label = value_at(items.label, i);
        try {
            const Element element = element_of(value_at(items.type, i), label);
            const UncertainValue x = coordinate(items.x, i, "x"), y = coordinate(items.y, i, "y"),
                                 z = coordinate(items.z, i, "z");
            // An occupancy that is absent or a CIF null ("?", ".") is a whole atom.
            const std::string occupancy = value_at(items.occupancy, i);
            const double sof = occupancy.empty() || occupancy == "?" || occupancy == "."
                                   ? 1.0
                                   : read_plain_number(occupancy);
            HSite site(new Site({x.value, y.value, z.value},
                                {uncertainty_of(x), uncertainty_of(y), uncertainty_of(z)}, sof));
            auto* atom = new Atom3d(element, label, site);
            atom->set_symmtag(i);
            out.emplace_back(atom);
        } catch (const std::exception& e) {
            throw molecule_error("Failed to read atom " + label + " :reason: " + e.what());
        }
    }
    return out;
}

bool CifMolecule::minor_disorder(const AtomItems& items, int row)
{
    if (!items.disorder_group || static_cast<std::size_t>(row) >= items.disorder_group->value_count())
        return false;
    const std::string group = without(items.disorder_group->value(static_cast<std::size_t>(row)), " \t");
    if (group == "." || group == "0" || group == "1" || group.empty())
        return false;
    return std::isdigit(static_cast<unsigned char>(group[0])) != 0;
}

BondDetector::Pairs CifMolecule::bonds(const AtomItems& items, const std::vector<HAtom>& atoms,
                                       const Cell& cell)
{
    logDebug(3, "CifMolecule::bonds entered");
    if (atoms.empty())
        throw molecule_error("CifMolecule::bonds: no atoms found.");
    // Fractional coordinates taken as Angstroms put every atom within bonding distance of every
    // other: such bonds would mean nothing and could be millions.
    if (!cell.valid()) {
        logWarning("CifMolecule::bonds: the cell is not valid, so no bonds are found");
        return {};
    }
    std::vector<HAtom> main;
    std::vector<int> row_of;
    for (std::size_t i = 0; i < atoms.size(); ++i)
        if (!minor_disorder(items, static_cast<int>(i))) {
            main.push_back(atoms[i]);
            row_of.push_back(static_cast<int>(i));
        }
    BondDetector::Pairs pairs;
    for (const auto& [a, b] : BondDetector().detect(main, cell))
        pairs.emplace_back(row_of[static_cast<std::size_t>(a)], row_of[static_cast<std::size_t>(b)]);
    logDebug(3, "CifMolecule::bonds finished - found %d bonds", static_cast<int>(pairs.size()));
    return pairs;
}

HMolecule CifMolecule::molecule(const CifDataBlock& block, const Cell& cell)
{
    const AtomItems items = atom_items(block);
    const std::vector<HAtom> all = atoms(items);
    return HMolecule(new Molecule3d(refcode_of(block), all, bonds(items, all, cell)));
}

std::vector<HMolecule> CifMolecule::components(const std::string& refcode, const std::vector<HAtom>& atoms,
                                               const BondDetector::Pairs& pairs)
{
    std::vector<int> part(atoms.size(), -1);
    std::vector<std::vector<int>> neighbours(atoms.size());
    for (const auto& [a, b] : pairs) {
        neighbours[static_cast<std::size_t>(a)].push_back(b);
        neighbours[static_cast<std::size_t>(b)].push_back(a);
    }
    std::vector<std::vector<int>> parts;
    for (std::size_t start = 0; start < atoms.size(); ++start) {
        if (part[start] >= 0)
            continue;
        parts.emplace_back();
        std::vector<int> stack{static_cast<int>(start)};
        part[start] = static_cast<int>(parts.size() - 1);
        while (!stack.empty()) {
            const int i = stack.back();
            stack.pop_back();
            parts.back().push_back(i);
            for (int n : neighbours[static_cast<std::size_t>(i)])
                if (part[static_cast<std::size_t>(n)] < 0) {
                    part[static_cast<std::size_t>(n)] = part[start];
                    stack.push_back(n);
                }
        }
    }
    std::vector<BondDetector::Pairs> part_bonds(parts.size());
    for (const auto& [a, b] : pairs)
        part_bonds[static_cast<std::size_t>(part[static_cast<std::size_t>(a)])].emplace_back(a, b);
    std::vector<HMolecule> out;
    for (std::size_t p = 0; p < parts.size(); ++p) {
        std::vector<int> rows = parts[p];
        std::sort(rows.begin(), rows.end());
        std::map<int, int> local;
        std::vector<HAtom> members;
        for (int r : rows) {
            local[r] = static_cast<int>(members.size());
            members.push_back(atoms[static_cast<std::size_t>(r)]);
        }
        std::vector<std::pair<int, int>> local_bonds;
        for (const auto& [a, b] : part_bonds[p])
            local_bonds.emplace_back(local[a], local[b]);
        out.emplace_back(new Molecule3d(refcode, members, local_bonds));
    }
    return out;
}

HCrystalMaker CifMolecule::crystal_maker(const CifDataBlock& block, const Cell& cell)
{
    const AtomItems items = atom_items(block);
    const std::vector<HAtom> all = atoms(items);
    const BondDetector::Pairs pairs = bonds(items, all, cell);
    logDebug(3, "CifMolecule::crystal_maker %d base atoms", static_cast<int>(all.size()));

    const std::string refcode = refcode_of(block);
    std::vector<HMolecule> ordered, disordered;
    for (const HMolecule& m : components(refcode, all, pairs))
        if (m->natoms() == 1 && minor_disorder(items, m->atom(0)->symmtag()))
            disordered.push_back(m);
        else
            ordered.push_back(m);
    logDebug(3, "CifMolecule::crystal_maker %d base molecules",
             static_cast<int>(ordered.size() + disordered.size()));
    logDebug(3, "CifMolecule::crystal_maker created %d base molecules", static_cast<int>(ordered.size()));

    const HCrystalMaker first(new CrystalMaker(refcode, cell, {}, ordered));
    logDebug(3,
             "CifMolecule::crystal_maker - created CrystalMaker with %d molecules after applying symmetry "
             "operators",
             first->nmolecules());
    // The atoms of minor disorder parts join as they are: no search reaches them.
    HCrystalMaker maker(new CrystalMaker(*first));
    for (const HMolecule& m : disordered)
        maker->add_molecule(m);
    if (!disordered.empty())
        logDebug(3, "CifMolecule::crystal_maker - added disordered atoms - now have %d molecules",
                 maker->nmolecules());
    logDebug(3, "CifMolecule::crystal_maker about to create CrystalMaker with %s mols = %d", refcode.c_str(),
             maker->nmolecules());
    logDebug(
        3, "CifMolecule::crystal_maker finished - after creating final CrystalMaker, there are %d molecules",
        maker->nmolecules());
    return maker;
}

#include "CrystalMaker.h"

#include "Archive.h"
#include "Atom3d.h"
#include "Bond3d.h"
#include "BondDetector.h"
#include "BondedCriterion.h"
#include "LogAddress.h"
#include "Logger.h"
#include "Molecule3d.h"
#include "MoleculeError.h"
#include "NewCrystal.h"
#include "SymmetryImages.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>
#include <set>

namespace {

// The connected parts of a molecule, each a molecule of its own, keeping the atoms' order.
std::vector<HMolecule> components(const Molecule& m)
{
    std::vector<int> part(static_cast<std::size_t>(m.natoms()), -1);
    int parts = 0;
    for (int start = 0; start < m.natoms(); ++start) {
        if (part[static_cast<std::size_t>(start)] >= 0)
            continue;
        std::vector<int> stack{start};
        part[static_cast<std::size_t>(start)] = parts;
        while (!stack.empty()) {
            const int i = stack.back();
            stack.pop_back();
            for (int n : m.neighbours(i))
                if (part[static_cast<std::size_t>(n)] < 0) {
                    part[static_cast<std::size_t>(n)] = parts;
                    stack.push_back(n);
                }
        }
        ++parts;
    }
    if (parts <= 1)
        return {m.clone()};
    std::vector<THandle<Molecule3d>> out;
    for (int p = 0; p < parts; ++p) {
        out.emplace_back(new Molecule3d);
        out.back()->set_refcode(m.refcode());
    }
    std::map<const Atom*, HAtom> copies;
    for (int i = 0; i < m.natoms(); ++i) {
        HAtom copy(new Atom3d(*m.atom(i)));
        out[static_cast<std::size_t>(part[static_cast<std::size_t>(i)])]->add(copy);
        copies.emplace(m.atom(i).get(), copy);
    }
    for (int b = 0; b < m.nbonds(); ++b) {
        const HBond bond = m.bond(b);
        out[static_cast<std::size_t>(part[static_cast<std::size_t>(bond->atom1()->index())])]->add(
            HBond(new Bond3d(bond->type())), copies.at(bond->atom1().get()), copies.at(bond->atom2().get()));
    }
    return std::vector<HMolecule>(out.begin(), out.end());
}

bool near(const Vector3D& a, const Vector3D& b)
{
    return std::fabs(a.x - b.x) <= 1e-4 && std::fabs(a.y - b.y) <= 1e-4 && std::fabs(a.z - b.z) <= 1e-4;
}

bool integral(const Vector3D& v)
{
    return near(v, Vector3D(std::round(v.x), std::round(v.y), std::round(v.z)));
}

// Whether some operator and lattice translation take every atom of `part` onto an atom of
// `whole` with the same tag.
bool symmetry_copy_within(const Cell& cell, const Molecule& part, const Molecule& whole)
{
    if (part.natoms() == 0 || part.natoms() > whole.natoms() || !part.atom(0)->has_site())
        return false;
    std::multimap<int32_t, Vector3D> sites;
    for (int i = 0; i < whole.natoms(); ++i)
        if (whole.atom(i)->has_site())
            sites.emplace(whole.atom(i)->symmtag(), whole.atom(i)->site()->frac);
    const HAtom first = part.atom(0);
    const int nops = std::max(cell.nsymmops(), 1);
    for (int k = 0; k < nops; ++k) {
        const Transformation op = cell.nsymmops() ? Transformation(cell.symmop(k)) : Transformation();
        const Vector3D image = op * first->site()->frac;
        const auto candidates = sites.equal_range(first->symmtag());
        for (auto c = candidates.first; c != candidates.second; ++c) {
            const Vector3D shift = c->second - image;
            if (!integral(shift))
                continue;
            const Vector3D t(std::round(shift.x), std::round(shift.y), std::round(shift.z));
            bool all = true;
            for (int i = 1; i < part.natoms() && all; ++i) {
                const HAtom a = part.atom(i);
                if (!a->has_site())
                    continue;
                const Vector3D p = op * a->site()->frac + t;
                const auto range = sites.equal_range(a->symmtag());
                all =
                    std::any_of(range.first, range.second, [&](const auto& s) { return near(s.second, p); });
            }
            if (all)
                return true;
        }
    }
    return false;
}

} // namespace

CrystalMaker::CrystalMaker()
{
    logDebug(3, "Entered CrystalMaker::CrystalMaker() - %08X", log_address(this));
}

CrystalMaker::CrystalMaker(const CrystalMaker& other)
    : Cell(other), refcode_(other.refcode_), molecules_(other.molecules_), polymeric_(other.polymeric_),
      selection_(other.selection_), matched_(other.matched_), unmatched_2d_(other.unmatched_2d_)
{
    logDebug(3, "Entered CrystalMaker::CrystalMaker(const CrystalMaker& other) - %08X", log_address(this));
}

HCrystalMaker CrystalMaker::deep_copy() const
{
    HCrystalMaker copy(new CrystalMaker(*this));
    for (HMolecule& m : copy->molecules_)
        m = m->clone();
    return copy;
}

CrystalMaker::CrystalMaker(const Cell& cell, const std::vector<HMolecule>& molecules_2d,
                           const std::vector<HMolecule>& molecules_3d)
    : CrystalMaker("", cell, molecules_2d, molecules_3d)
{
}

CrystalMaker::CrystalMaker(const std::string& refcode, const Cell& cell,
                           const std::vector<HMolecule>& molecules_2d,
                           const std::vector<HMolecule>& molecules_3d)
    : Cell(cell), refcode_(refcode), unmatched_2d_(molecules_2d)
{
    logDebug(3, "Entered CrystalMaker::CrystalMaker(refcode %s, molecules %d) - %08X", refcode.c_str(),
             static_cast<int>(molecules_3d.size()), log_address(this));
    for (const HMolecule& m : molecules_3d)
        add_molecule(m);
    symmetry_connectivity_search();
}

CrystalMaker::~CrystalMaker()
{
    logDebug(3, "Entered CrystalMaker::~CrystalMaker() - %08X", log_address(this));
}

void CrystalMaker::set_selection(const std::vector<int>& selection)
{
    for (int i : selection)
        if (i < 0 || i >= nmolecules())
            throw molecule_error("Invalid Selection!");
    selection_ = selection;
}

std::vector<HMolecule> CrystalMaker::selected() const
{
    std::vector<HMolecule> out;
    for (int i : selection_)
        out.push_back(molecules_[static_cast<std::size_t>(i)]);
    return out;
}

void CrystalMaker::add_molecule(const HMolecule& molecule, bool polymeric)
{
    selection_.push_back(nmolecules());
    molecules_.push_back(molecule);
    polymeric_.push_back(polymeric);
}

void CrystalMaker::replace_molecules(const std::vector<HMolecule>& molecules,
                                     const std::vector<bool>& polymeric)
{
    molecules_ = molecules;
    polymeric_ = polymeric;
    polymeric_.resize(molecules_.size(), false);
    selection_.clear();
    for (int i = 0; i < nmolecules(); ++i)
        selection_.push_back(i);
}

int CrystalMaker::molecule_of(const HAtom& atom) const
{
    for (int i : selection_)
        if (atom && molecules_[static_cast<std::size_t>(i)]->has_atom(atom))
            return i;
    return -1;
}

void CrystalMaker::add(const HBond& bond, const HAtom& atom1, const HAtom& atom2)
{
    const int m1 = molecule_of(atom1), m2 = molecule_of(atom2);
    if (m1 < 0)
        throw molecule_error("CrystalMaker::add(HBond, HAtom, HAtom): atom1 is not in any of the "
                             "currently-selected molecules");
    if (m2 < 0)
        throw molecule_error("CrystalMaker::add(HBond, HAtom, HAtom): atom2 is not in any of the "
                             "currently-selected molecules");
    if (m1 != m2)
        throw molecule_error(
            "CrystalMaker::add(HBond, HAtom, HAtom): atom1 and atom2 are in different molecules");
    molecules_[static_cast<std::size_t>(m1)]->add(bond, atom1, atom2);
}

void CrystalMaker::remove(const HAtom& atom)
{
    const int m = molecule_of(atom);
    if (m < 0)
        throw molecule_error(
            "CrystalMaker::remove(HAtom): atom is not in any of the currently-selected molecules");
    molecules_[static_cast<std::size_t>(m)]->remove(atom);
}

void CrystalMaker::remove(const HBond& bond)
{
    for (int i : selection_)
        if (bond && molecules_[static_cast<std::size_t>(i)]->has_bond(bond)) {
            molecules_[static_cast<std::size_t>(i)]->remove(bond);
            return;
        }
    throw molecule_error(
        "CrystalMaker::remove(HBond): bond is not in any of the currently-selected molecules");
}

void CrystalMaker::symmetry_connectivity_search()
{
    logDebug(3, "CrystalMaker::symmetry_connectivity_search entered");
    // Without a cell, positions in different cells cannot be compared: nothing is related.
    if (!valid()) {
        logDebug(3, "CrystalMaker::symmetry_connectivity_search - no work to do");
        return;
    }
    NewCrystal working(HCrystalMaker(new CrystalMaker(*this)));
    working.set_criteria({HContactCriterion(new BondedCriterion(ContactCriterion::Inter))});
    working.find_contacts();
    if (working.ncontacts() == 0) {
        logDebug(3, "CrystalMaker::symmetry_connectivity_search - no work to do");
        return;
    }
    working.expand_fully();
    working.convert_contacts_to_bonds();
    const HCrystal result = working.current();
    std::vector<HMolecule> molecules;
    std::vector<bool> polymeric;
    for (int i = 0; i < result->nmolecules(); ++i) {
        const HMolecule& m = result->molecule(i);
        // The atom left at the far end of a skipped contact is no molecule of the maker.
        if (working.is_placeholder(i))
            continue;
        BondDetector::prune(*m, *this);
        for (const HMolecule& part : components(*m)) {
            molecules.push_back(part);
            polymeric.push_back(working.polymeric(i));
        }
    }
    replace_molecules(molecules, polymeric);
    drop_symmetry_copies();
    logDebug(3, "CrystalMaker::symmetry_connectivity_search completed");
}

void CrystalMaker::drop_symmetry_copies()
{
    // Larger molecules first, so that a part of a completed molecule finds the whole.
    std::vector<int> order(static_cast<std::size_t>(nmolecules()));
    for (int i = 0; i < nmolecules(); ++i)
        order[static_cast<std::size_t>(i)] = i;
    std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
        return molecules_[static_cast<std::size_t>(a)]->natoms() >
               molecules_[static_cast<std::size_t>(b)]->natoms();
    });
    // Only a kept molecule that holds the tag of a molecule's first atom can hold a copy of it.
    std::multimap<int32_t, int> holders;
    std::vector<bool> keep(order.size(), false);
    for (int i : order) {
        const Molecule& m = *molecules_[static_cast<std::size_t>(i)];
        bool copy = false;
        if (m.natoms() > 0) {
            const auto range = holders.equal_range(m.atom(0)->symmtag());
            for (auto it = range.first; it != range.second && !copy; ++it)
                copy = symmetry_copy_within(*this, m, *molecules_[static_cast<std::size_t>(it->second)]);
        }
        if (copy)
            continue;
        keep[static_cast<std::size_t>(i)] = true;
        std::set<int32_t> tags;
        for (int a = 0; a < m.natoms(); ++a)
            if (tags.insert(m.atom(a)->symmtag()).second)
                holders.emplace(m.atom(a)->symmtag(), i);
    }
    std::vector<HMolecule> molecules;
    std::vector<bool> polymeric;
    for (int i = 0; i < nmolecules(); ++i)
        if (keep[static_cast<std::size_t>(i)]) {
            molecules.push_back(molecules_[static_cast<std::size_t>(i)]);
            polymeric.push_back(polymeric_[static_cast<std::size_t>(i)]);
        }
    replace_molecules(molecules, polymeric);
}

void CrystalMaker::write(Archive& archive) const
{
    Cell::write(archive);
    archive.write_string(refcode_);
    archive.write_int32(nmolecules());
    for (int i = 0; i < nmolecules(); ++i) {
        molecules_[static_cast<std::size_t>(i)]->write(archive);
        archive.write_bool(polymeric_[static_cast<std::size_t>(i)]);
    }
    archive.write_int32(static_cast<int32_t>(selection_.size()));
    for (int i : selection_)
        archive.write_int32(i);
}

void CrystalMaker::read(Archive& archive)
{
    Cell cell;
    cell.read(archive);
    const std::string refcode = archive.read_string();
    const int32_t n = archive.read_int32();
    if (n < 0)
        throw molecule_error("CrystalMaker::read - bad molecule count: " + std::to_string(n));
    std::vector<HMolecule> molecules;
    std::vector<bool> polymeric;
    for (int32_t i = 0; i < n; ++i) {
        THandle<Molecule3d> m(new Molecule3d);
        m->read(archive);
        molecules.push_back(m);
        polymeric.push_back(archive.read_bool());
    }
    const int32_t s = archive.read_int32();
    if (s < 0)
        throw molecule_error("CrystalMaker::read - bad selection count: " + std::to_string(s));
    std::vector<int> selection;
    for (int32_t i = 0; i < s; ++i) {
        selection.push_back(archive.read_int32());
        if (selection.back() < 0 || selection.back() >= n)
            throw molecule_error("Invalid Selection!");
    }
    static_cast<Cell&>(*this) = cell;
    refcode_ = refcode;
    molecules_ = molecules;
    polymeric_ = polymeric;
    selection_ = selection;
}

void CrystalMaker::print(std::ostream& out) const
{
    out << "refcode: " << refcode_ << "\nselection: ";
    for (int i : selection_)
        out << i << ' ';
    const auto list = [&out](const char* heading, const std::vector<HMolecule>& molecules) {
        out << '\n' << heading;
        for (std::size_t i = 0; i < molecules.size(); ++i)
            out << "\nmolecule " << i << " natoms: " << molecules[i]->natoms()
                << " nbonds: " << molecules[i]->nbonds();
    };
    list("matched molecules:", matched_);
    list("unmatched molecules 2d:", unmatched_2d_);
    list("unmatched molecules 3d:", molecules_);
    list("current molecules:", molecules_);
    out << '\n';
}

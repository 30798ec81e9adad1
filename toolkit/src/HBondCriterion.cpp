#include "HBondCriterion.h"

#include "Archive.h"
#include "Molecule.h"
#include "MoleculeError.h"
#include "MoleculeGraphImpl.h"

#include <algorithm>
#include <cmath>
#include <ostream>

namespace {

constexpr double degrees_to_radians = 0.017453292519943295;
// A nitrogen whose two bonds are straighter than this is linear (an azide, a carbodiimide) and
// accepts nothing; one whose three bond angles add up to more than this is planar and has given
// its lone pair to a neighbour.
constexpr double linear_nitrogen = 3.0543262;
constexpr double planar_nitrogen = 6.1959188;

const char* const donor_names[] = {"+nitrogen",
                                   "metal bound N",
                                   "imine N",
                                   "aromatic (6-ring) N",
                                   "amide or thioamide N",
                                   "planar N",
                                   "pyramidal N",
                                   "ammonium N (NH4+, RNH3+ etc.)",
                                   "unclassified  N",
                                   "-nitrogen",
                                   "+oxygen",
                                   "metal bound O",
                                   "water O",
                                   "hydroxyl O",
                                   "unclassified  O",
                                   "-oxygen",
                                   "+sulphur",
                                   "metal bound S",
                                   "non metal bound S",
                                   "-sulphur",
                                   "not donor"};

const char* const acceptor_names[] = {"+nitrogen",
                                      "metal bound N",
                                      "terminal N (cyano, etc.)",
                                      "aromatic (6-ring) N",
                                      "other 2-coordinate N",
                                      "3-coordinate N",
                                      "unclassified N",
                                      "-nitrogen",
                                      "+oxygen",
                                      "metal bound O",
                                      "carboxylate O",
                                      "other terminal O (C=O, S=O ...)",
                                      "water O",
                                      "hydroxyl O",
                                      "bridging O (ether, etc.)",
                                      "unclassified O",
                                      "-oxygen",
                                      "+sulphur",
                                      "metal bound S",
                                      "terminal S",
                                      "unclassified S",
                                      "-sulphur",
                                      "+fluorine",
                                      "metal bound F",
                                      "fluoride ion (F-)",
                                      "unclassified F",
                                      "-fluorine",
                                      "+chlorine",
                                      "metal bound Cl",
                                      "chloride ion (Cl-)",
                                      "unclassified Cl",
                                      "-chlorine",
                                      "+bromine",
                                      "metal bound Br",
                                      "bromide ion (Br-)",
                                      "unclassified Br",
                                      "-bromine",
                                      "+iodine",
                                      "metal bound I",
                                      "iodide ion (I-)",
                                      "unclassified I",
                                      "-iodine",
                                      "non acceptor"};

// Group rows carry no flag; every other row takes part unless it is the catch-all, or, for a
// nitrogen acceptor, its lone pair is already given to a metal.
int starting_flag(const char* name, int catch_all, int index, int also_off)
{
    return (name[0] == '+' || name[0] == '-' || index == catch_all || index == also_off) ? 0 : 1;
}

// What an atom's surroundings say about it.
struct Surroundings {
    int hydrogens = 0;
    int heavy = 0;
    bool metal = false;
    std::vector<int> neighbours;
};

Surroundings surroundings(const Molecule& m, int i)
{
    Surroundings s;
    s.neighbours = m.neighbours(i);
    for (int n : s.neighbours) {
        const Element e = m.atom(n)->element();
        if (e.atomic_number() == 1)
            ++s.hydrogens;
        else
            ++s.heavy;
        if (!e.is_nonmetal() && e.atomic_number() != 0)
            s.metal = true;
    }
    return s;
}

double angle(const Vector3D& apex, const Vector3D& a, const Vector3D& b)
{
    const Vector3D u = a - apex, v = b - apex;
    const double lu = u.length(), lv = v.length();
    return (lu == 0 || lv == 0) ? 0.0 : std::acos(std::clamp(u.dot(v) / (lu * lv), -1.0, 1.0));
}

// The sum of the angles between each pair of an atom's neighbours.
double angle_sum(const ContactSide& side, int i, const std::vector<int>& neighbours)
{
    double sum = 0;
    for (std::size_t p = 0; p < neighbours.size(); ++p)
        for (std::size_t q = p + 1; q < neighbours.size(); ++q)
            sum += angle(side.orthogonal[static_cast<std::size_t>(i)],
                         side.orthogonal[static_cast<std::size_t>(neighbours[p])],
                         side.orthogonal[static_cast<std::size_t>(neighbours[q])]);
    return sum;
}

int ring_size(const Molecule& m, int i)
{
    const auto* graph = dynamic_cast<const MoleculeGraphImpl*>(&m);
    return graph ? graph->ring_size(m.atom(i)) : 0;
}

// Whether a neighbour carries a terminal oxygen or sulphur other than `except`: the carbon of an
// amide or a carboxylate.
bool carries_terminal_chalcogen(const Molecule& m, int neighbour, int except)
{
    for (int n : m.neighbours(neighbour)) {
        const int z = m.atom(n)->element().atomic_number();
        if (n != except && (z == 8 || z == 16) && m.atom(n)->nbonds() == 1)
            return true;
    }
    return false;
}

} // namespace

void HBondCriterion::AtomTypeProperties::print(std::ostream& out) const
{
    out << (index < 0 ? std::string("unset") : name);
}

const std::vector<HBondCriterion::DonorAtomTypeProperties>& HBondCriterion::donor_table()
{
    static const std::vector<DonorAtomTypeProperties> table = [] {
        std::vector<DonorAtomTypeProperties> rows;
        for (int i = 0; i <= not_donor; ++i)
            rows.emplace_back(i, donor_names[i], starting_flag(donor_names[i], not_donor, i, -1));
        return rows;
    }();
    return table;
}

const std::vector<HBondCriterion::AcceptorAtomTypeProperties>& HBondCriterion::acceptor_table()
{
    static const std::vector<AcceptorAtomTypeProperties> table = [] {
        std::vector<AcceptorAtomTypeProperties> rows;
        for (int i = 0; i <= non_acceptor; ++i)
            rows.emplace_back(i, acceptor_names[i], starting_flag(acceptor_names[i], non_acceptor, i, 1));
        return rows;
    }();
    return table;
}

HBondCriterion::HBondCriterion(double tolerance, double min_angle, bool degrees, bool vdw_corrected,
                               bool no_hydrogens, int type)
    : ContactCriterion(type), donors_(donor_table()), acceptors_(acceptor_table()), tolerance_(tolerance),
      min_angle_(degrees ? min_angle * degrees_to_radians : min_angle), vdw_corrected_(vdw_corrected),
      no_hydrogens_(no_hydrogens)
{
}

int HBondCriterion::donor_row(const ContactSide& side, int i) const
{
    const Molecule& m = *side.molecule;
    const Surroundings s = surroundings(m, i);
    const int n = s.hydrogens + s.heavy;
    switch (m.atom(i)->element().atomic_number()) {
    case 7:
        if (s.metal)
            return 1;
        if (n >= 4)
            return 7;
        if (n == 2 && ring_size(m, i) == 6)
            return 3;
        if (n == 2)
            return 2;
        if (n == 3) {
            for (int nb : s.neighbours)
                if (m.atom(nb)->element().atomic_number() == 6 && carries_terminal_chalcogen(m, nb, -1))
                    return 4;
            return angle_sum(side, i, s.neighbours) > planar_nitrogen ? 5 : 6;
        }
        return 8;
    case 8:
        if (s.metal)
            return 11;
        if (n == 2 && s.hydrogens == 2)
            return 12;
        if (n == 2 && s.hydrogens == 1)
            return 13;
        return 14;
    case 16:
        return s.metal ? 17 : 18;
    default:
        return not_donor;
    }
}

int HBondCriterion::acceptor_row(const ContactSide& side, int i) const
{
    const Molecule& m = *side.molecule;
    const Surroundings s = surroundings(m, i);
    const int n = s.hydrogens + s.heavy;
    // Halides: metal bound, a lone ion, or anything else; the rows run in fives from fluorine.
    const auto halide = [&](int first) { return s.metal ? first : n == 0 ? first + 1 : first + 2; };
    switch (m.atom(i)->element().atomic_number()) {
    case 7:
        if (s.metal)
            return 1;
        if (n == 1)
            return 2;
        if (n == 2) {
            const std::size_t at = static_cast<std::size_t>(i);
            if (angle(side.orthogonal[at], side.orthogonal[static_cast<std::size_t>(s.neighbours[0])],
                      side.orthogonal[static_cast<std::size_t>(s.neighbours[1])]) > linear_nitrogen)
                return non_acceptor;
            return ring_size(m, i) == 6 ? 3 : 4;
        }
        if (n == 3)
            return angle_sum(side, i, s.neighbours) > planar_nitrogen ? non_acceptor : 5;
        return n == 0 ? 6 : non_acceptor;
    case 8:
        if (s.metal)
            return 9;
        if (n == 1 && s.heavy == 1) {
            const int nb = s.neighbours[0];
            if (m.atom(nb)->element().atomic_number() == 6 && carries_terminal_chalcogen(m, nb, i))
                return 10;
            return 11;
        }
        if (n == 2 && s.hydrogens == 2)
            return 12;
        if (n == 2 && s.hydrogens == 1)
            return 13;
        if (n == 2)
            return 14;
        return 15;
    case 16:
        return s.metal ? 18 : n == 1 ? 19 : 20;
    case 9:
        return halide(23);
    case 17:
        return halide(28);
    case 35:
        return halide(33);
    case 53:
        return halide(38);
    default:
        return non_acceptor;
    }
}

std::vector<int> HBondCriterion::roles(const ContactSide& side) const
{
    const Molecule& m = *side.molecule;
    std::vector<int> out(static_cast<std::size_t>(m.natoms()), 0);
    for (int i = 0; i < m.natoms(); ++i) {
        const int z = m.atom(i)->element().atomic_number();
        if (z == 6)
            continue;
        if (z == 1) {
            const std::vector<int> n = m.neighbours(i);
            if (n.size() == 1 && m.atom(n[0])->element().atomic_number() != 6 &&
                donors_[static_cast<std::size_t>(donor_row(side, n[0]))].flag == 1)
                out[static_cast<std::size_t>(i)] = DonorHydrogen;
            continue;
        }
        int role = 0;
        if (donors_[static_cast<std::size_t>(donor_row(side, i))].flag == 1)
            role |= DonorAtom;
        if (acceptors_[static_cast<std::size_t>(acceptor_row(side, i))].flag == 1)
            role |= Acceptor;
        out[static_cast<std::size_t>(i)] = role;
    }
    return out;
}

void HBondCriterion::prepare(ContactSide& side) const
{
    side.roles = roles(side);
}

std::vector<int> HBondCriterion::active_atoms(const ContactSide& side) const
{
    std::vector<int> out;
    for (std::size_t i = 0; i < side.roles.size(); ++i)
        if (side.roles[i] != 0)
            out.push_back(static_cast<int>(i));
    return out;
}

double HBondCriterion::max_distance(const ContactScope& scope) const
{
    return vdw_corrected_ ? tolerance_ + 2 * scope.largest_vdw : tolerance_;
}

bool HBondCriterion::contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                             double& strength) const
{
    if (!is_active() || a.roles.empty() || b.roles.empty())
        return false;
    const int ra = a.roles[static_cast<std::size_t>(i)], rb = b.roles[static_cast<std::size_t>(j)];
    const int near = no_hydrogens_ ? DonorAtom : DonorHydrogen;
    // Which side holds the donor end.
    const ContactSide* donor_side = nullptr;
    int donor = -1, acceptor = -1;
    const ContactSide* acceptor_side = nullptr;
    if ((ra & near) && (rb & Acceptor)) {
        donor_side = &a, donor = i, acceptor_side = &b, acceptor = j;
    } else if ((rb & near) && (ra & Acceptor)) {
        donor_side = &b, donor = j, acceptor_side = &a, acceptor = i;
    } else {
        return false;
    }
    const Element ed = donor_side->molecule->atom(donor)->element();
    const Element ea = acceptor_side->molecule->atom(acceptor)->element();
    const double base = vdw_corrected_ ? ed.vdw_radius() + ea.vdw_radius() : 0.0;
    if (!(distance < tolerance_ + base))
        return false;
    if (!no_hydrogens_) {
        const std::vector<int> d = donor_side->molecule->neighbours(donor);
        if (d.size() != 1 ||
            !(angle(donor_side->orthogonal[static_cast<std::size_t>(donor)],
                    donor_side->orthogonal[static_cast<std::size_t>(d[0])],
                    acceptor_side->orthogonal[static_cast<std::size_t>(acceptor)]) > min_angle_))
            return false;
    }
    strength = distance - base;
    return true;
}

void HBondCriterion::write(Archive& archive) const
{
    ContactCriterion::write(archive);
    archive.write_double(tolerance_);
    archive.write_double(min_angle_);
    archive.write_bool(vdw_corrected_);
    archive.write_bool(no_hydrogens_);
    for (const DonorAtomTypeProperties& d : donors_)
        archive.write_int32(d.flag);
    for (const AcceptorAtomTypeProperties& a : acceptors_)
        archive.write_int32(a.flag);
}

void HBondCriterion::read(Archive& archive)
{
    ContactCriterion::read(archive);
    HBondCriterion h;
    h.tolerance_ = archive.read_double();
    h.min_angle_ = archive.read_double();
    h.vdw_corrected_ = archive.read_bool();
    h.no_hydrogens_ = archive.read_bool();
    for (DonorAtomTypeProperties& d : h.donors_)
        d.flag = archive.read_int32();
    for (AcceptorAtomTypeProperties& a : h.acceptors_)
        a.flag = archive.read_int32();
    donors_ = h.donors_;
    acceptors_ = h.acceptors_;
    tolerance_ = h.tolerance_;
    min_angle_ = h.min_angle_;
    vdw_corrected_ = h.vdw_corrected_;
    no_hydrogens_ = h.no_hydrogens_;
}

void HBondCriterion::print(std::ostream& out) const
{
    out << "HBondCriterion Contacts must be closer than " << tolerance_
        << (vdw_corrected_ ? " + sum of vdw radii Angstroms" : " Angstroms");
    if (no_hydrogens_)
        out << ", D-H ... A angle tolerance ignored: ";
    else
        out << ", D-H ... A angle must be greater than " << min_angle_ / degrees_to_radians << " degrees, ";
    ContactCriterion::print(out);
}

bool HBondCriterion::operator==(const ContactCriterion& other) const
{
    const auto* o = dynamic_cast<const HBondCriterion*>(&other);
    return o && ContactCriterion::operator==(other) && donors_ == o->donors_ && acceptors_ == o->acceptors_ &&
           tolerance_ == o->tolerance_ && min_angle_ == o->min_angle_ &&
           vdw_corrected_ == o->vdw_corrected_ && no_hydrogens_ == o->no_hydrogens_;
}

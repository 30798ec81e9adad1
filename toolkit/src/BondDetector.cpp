#include "BondDetector.h"

#include "Cell.h"
#include "ElementSet.h"
#include "Molecule.h"
#include "MoleculeError.h"
#include "NeighbourGrid.h"
#include "Site.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace {

constexpr double radians_to_degrees = 57.29577951308232;

// The one test both searches share, so that the grid and the plain loop agree to the last bit.
inline bool bonded_at(const Vector3D& a, const Vector3D& b, const Element& ea, const Element& eb)
{
    const Vector3D d = a - b;
    return BondDetector::bonded(std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z), ea, eb);
}

bool finite(const Vector3D& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

ElementSet set_of(std::initializer_list<const char*> symbols)
{
    ElementSet set;
    for (const char* s : symbols)
        set.add(Element(s));
    return set;
}

// Atoms that hold their bonds in fixed directions: a bond that closes a triangle at one of them
// lies across one of its bond angles.
const ElementSet& central_set()
{
    static const ElementSet set =
        set_of({"B", "Ga", "In", "C", "Si", "Ge", "Sn", "P", "As", "Sb", "S", "Se"});
    return set;
}

// Atoms that chelate through a neighbour: a metal held by the oxygen of a carboxylate or a
// borate comes close to the carbon or boron behind it without bonding to it.
const ElementSet& chelate_backbone_set()
{
    static const ElementSet set = set_of({"B", "C", "N"});
    return set;
}

// Atoms that bridge two metals; two metals that only share one of them across a wide angle are
// not bonded to each other.
const ElementSet& bridge_set()
{
    static const ElementSet set = set_of({"C", "N", "O"});
    return set;
}

// Ring pass: a triangle with an angle this wide is a bond angle whose far ends came within reach.
constexpr double wide_angle = 110.0;
// Below this at every corner a triangle is compact: a three-membered ring or a cluster face.
constexpr double sharp_angle = 45.1;
// First test: a metal that sees a bond under less than this, held at the near end at an angle of
// 80 to 105 degrees, reaches past that end.
constexpr double chelate_sharp = 45.0;
constexpr double chelate_near_min = 80.0;
constexpr double chelate_near_max = 105.0;
// Second test: two metals bridged by one atom at more than this angle are apart.
constexpr double bridge_open = 92.5;

double angle_at(const Vector3D& apex, const Vector3D& a, const Vector3D& b)
{
    const Vector3D u = a - apex, v = b - apex;
    const double lu = u.length(), lv = v.length();
    if (lu == 0.0 || lv == 0.0)
        return 0.0;
    return std::acos(std::clamp(u.dot(v) / (lu * lv), -1.0, 1.0)) * radians_to_degrees;
}

// Which edge of the triangle (a, b, c), if any, is false; the edge is given by the corner
// opposite it (0, 1, 2), or -1 for none.
int false_edge(const Vector3D* p[3], const Element* e[3])
{
    double angle[3];
    for (int k = 0; k < 3; ++k)
        angle[k] = angle_at(*p[k], *p[(k + 1) % 3], *p[(k + 2) % 3]);
    const int widest = static_cast<int>(std::max_element(angle, angle + 3) - angle);
    if (angle[widest] >= wide_angle)
        return widest;
    const int sharpest = static_cast<int>(std::min_element(angle, angle + 3) - angle);
    if (angle[sharpest] >= sharp_angle)
        return -1;
    // First test: the sharp corner s sees the short edge (y, x); x of the chelate backbone, held
    // at y's angle of a chelate, is out of s's reach.
    const int s = sharpest;
    if (angle[s] < chelate_sharp && !central_set().contains(*e[s]))
        for (int k = 1; k <= 2; ++k) {
            const int x = (s + k) % 3, y = (s + 3 - k) % 3;
            if (chelate_backbone_set().contains(*e[x]) && angle[y] >= chelate_near_min &&
                angle[y] <= chelate_near_max)
                return y; // the edge s-x lies opposite y
        }
    // Second test: a bridge of C, N or O at the widest corner between two atoms of no fixed bond
    // directions.
    const int w = widest;
    if (bridge_set().contains(*e[w]) && angle[w] > bridge_open && !central_set().contains(*e[(w + 1) % 3]) &&
        !central_set().contains(*e[(w + 2) % 3]))
        return w;
    return -1;
}

} // namespace

bool BondDetector::bonded(double distance, const Element& a, const Element& b)
{
    const double limit = Element::max_bond_distance(a, b);
    return limit != 0.0 && !(a.atomic_number() == 1 && b.atomic_number() == 1) &&
           distance >= Element::min_bond_distance && distance < limit;
}

BondDetector::BondDetector(int mode)
{
    if (mode != 0)
        throw molecule_error("BondDetector::Mode not implemented!");
}

BondDetector::Pairs BondDetector::detect_all_pairs(const std::vector<Vector3D>& positions,
                                                   const std::vector<Element>& elements)
{
    Pairs pairs;
    const int n = static_cast<int>(positions.size());
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            if (bonded_at(positions[static_cast<std::size_t>(i)], positions[static_cast<std::size_t>(j)],
                          elements[static_cast<std::size_t>(i)], elements[static_cast<std::size_t>(j)]))
                pairs.emplace_back(i, j);
    return pairs;
}

BondDetector::Pairs BondDetector::detect_positions(const std::vector<Vector3D>& positions,
                                                   const std::vector<Element>& elements)
{
    // Only atoms that can bond go into the grid, and its cubes are as wide as the longest bond
    // among them.
    double longest_radius = 0.0;
    std::vector<Vector3D> binned(positions.size(), Vector3D(std::nan(""), 0, 0));
    for (std::size_t i = 0; i < positions.size(); ++i)
        if (finite(positions[i]) && elements[i].bond_radius() > 0.0) {
            binned[i] = positions[i];
            longest_radius = std::max(longest_radius, elements[i].bond_radius());
        }
    const NeighbourGrid grid(binned, 2 * longest_radius + 0.45);
    // No real structure packs more than a few atoms into each cubic Angstrom: positions crowded
    // beyond that come from a wrong cell or wrong coordinates, and would bond by the million.
    const double most = std::max(1000.0, 2 * std::pow(grid.width(), 3));
    if (static_cast<double>(grid.fullest_cube()) > most)
        throw molecule_error("BondDetector: " + std::to_string(grid.fullest_cube()) + " atoms lie within " +
                             std::to_string(static_cast<int>(std::ceil(grid.width()))) +
                             " Angstroms of one another; the coordinates or the cell cannot be right");
    Pairs pairs;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (!finite(binned[i]))
            continue;
        grid.for_each_near(positions[i], [&](std::size_t j) {
            if (j > i && bonded_at(positions[i], positions[j], elements[i], elements[j]))
                pairs.emplace_back(static_cast<int>(i), static_cast<int>(j));
        });
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

BondDetector::Pairs BondDetector::detect(const std::vector<HAtom>& atoms, const Cell& cell) const
{
    std::vector<Vector3D> positions;
    std::vector<Element> elements;
    for (const HAtom& a : atoms) {
        elements.push_back(a->element());
        positions.push_back(a->has_site() ? cell.orthogonal(a->site()->frac)
                                          : Vector3D(std::nan(""), std::nan(""), std::nan("")));
    }
    return prune(detect_positions(positions, elements), positions, elements);
}

BondDetector::Pairs BondDetector::prune(const Pairs& pairs, const std::vector<Vector3D>& positions,
                                        const std::vector<Element>& elements)
{
    std::map<int, std::vector<int>> neighbours;
    for (const auto& [i, j] : pairs) {
        neighbours[i].push_back(j);
        neighbours[j].push_back(i);
    }
    std::set<std::pair<int, int>> bonds(pairs.begin(), pairs.end());
    std::set<std::pair<int, int>> removed;
    // Each triangle once, from its edge of the two lowest numbers; judged on the bonds as found,
    // so the order of the triangles does not change the answer.
    for (const auto& [i, j] : pairs)
        for (int k : neighbours[j]) {
            if (k <= j || !bonds.count({i, k}))
                continue;
            const int corner[3] = {i, j, k};
            const Vector3D* p[3];
            const Element* e[3];
            for (int c = 0; c < 3; ++c) {
                p[c] = &positions[static_cast<std::size_t>(corner[c])];
                e[c] = &elements[static_cast<std::size_t>(corner[c])];
            }
            const int opposite = false_edge(p, e);
            if (opposite >= 0)
                removed.insert(std::minmax(corner[(opposite + 1) % 3], corner[(opposite + 2) % 3]));
        }
    Pairs kept;
    for (const auto& pair : pairs)
        if (!removed.count(pair))
            kept.push_back(pair);
    return kept;
}

void BondDetector::prune(Molecule& molecule, const Cell& cell)
{
    std::vector<Vector3D> positions;
    std::vector<Element> elements;
    for (int i = 0; i < molecule.natoms(); ++i) {
        const HAtom a = molecule.atom(i);
        elements.push_back(a->element());
        positions.push_back(a->has_site() ? cell.orthogonal(a->site()->frac) : Vector3D());
    }
    Pairs pairs;
    for (int b = 0; b < molecule.nbonds(); ++b) {
        const HBond bond = molecule.bond(b);
        const int i = bond->atom1()->index(), j = bond->atom2()->index();
        pairs.emplace_back(std::min(i, j), std::max(i, j));
    }
    std::sort(pairs.begin(), pairs.end());
    const Pairs kept = prune(pairs, positions, elements);
    // Walked from the end, so that removing a bond leaves the numbers still to come as they were.
    for (int b = molecule.nbonds() - 1; b >= 0; --b) {
        const HBond bond = molecule.bond(b);
        const int i = bond->atom1()->index(), j = bond->atom2()->index();
        if (!std::binary_search(kept.begin(), kept.end(), std::make_pair(std::min(i, j), std::max(i, j))))
            molecule.remove_bond(b);
    }
}

#include "NewCrystalPrivate.h"

#include "Atom3d.h"
#include "Bond3d.h"
#include "FractionalSolid.h"
#include "IfAnyIncluded.h"
#include "IfCentroidIncluded.h"
#include "LogAddress.h"
#include "Logger.h"
#include "Molecule3d.h"
#include "MoleculeError.h"
#include "NeighbourGrid.h"
#include "OrthogonalSolid.h"
#include "Slab.h"
#include "TransformedSolidComposite.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <iostream>
#include <limits>
#include <sstream>

namespace {

enum Link { MakerLink = 0, PackingLink = 1, SlicingLink = 2, CurrentLink = 3 };

// A packing or an expansion that would make more atoms than this is refused rather than left to
// exhaust the machine.
constexpr double most_atoms = 5e6;
constexpr int most_expansions = 20000;
// Positions of symmetry copies that differ by no more than this are one point.
constexpr double same_point = 1e-4;

ContactScope scope_of(const CrystalMaker& maker)
{
    ContactScope scope;
    for (const HMolecule& m : maker.molecules())
        for (int i = 0; i < m->natoms(); ++i) {
            const Element e = m->atom(i)->element();
            scope.largest_vdw = std::max(scope.largest_vdw, e.vdw_radius());
            scope.largest_bond_radius = std::max(scope.largest_bond_radius, e.bond_radius());
        }
    return scope;
}

std::vector<Vector3D> fractional_positions(const Molecule& m)
{
    std::vector<Vector3D> out;
    for (int i = 0; i < m.natoms(); ++i) {
        const HAtom a = m.atom(i);
        out.push_back(a->has_site() ? a->site()->frac : Vector3D(std::nan(""), 0, 0));
    }
    return out;
}

// The number of bonds on the shortest path between two atoms of a molecule, or -1.
int bond_path(const Molecule& m, int from, int to)
{
    std::vector<int> depth(static_cast<std::size_t>(m.natoms()), -1);
    std::deque<int> queue{from};
    depth[static_cast<std::size_t>(from)] = 0;
    while (!queue.empty()) {
        const int i = queue.front();
        queue.pop_front();
        if (i == to)
            return depth[static_cast<std::size_t>(i)];
        for (int n : m.neighbours(i))
            if (depth[static_cast<std::size_t>(n)] < 0) {
                depth[static_cast<std::size_t>(n)] = depth[static_cast<std::size_t>(i)] + 1;
                queue.push_back(n);
            }
    }
    return -1;
}

bool near(const Vector3D& a, const Vector3D& b, double tolerance)
{
    return std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance &&
           std::fabs(a.z - b.z) <= tolerance;
}

// The atom of a molecule with the given tag at the given fractional position, or null.
HAtom atom_at(const Molecule& m, int32_t tag, const Vector3D& position)
{
    for (int i = 0; i < m.natoms(); ++i) {
        const HAtom a = m.atom(i);
        if (a->symmtag() == tag && a->has_site() && near(a->site()->frac, position, same_point))
            return a;
    }
    return HAtom();
}

} // namespace

NewCrystalPrivate::NewCrystalPrivate(const HCrystalMaker& maker)
    : packing_condition(new IfCentroidIncluded), slicing_condition(new IfAnyIncluded)
{
    set_maker(maker);
}

void NewCrystalPrivate::set_maker(const HCrystalMaker& maker)
{
    crystal_maker = maker ? maker : HCrystalMaker(new CrystalMaker);
    images = std::make_unique<SymmetryImages>(*crystal_maker);
    maker_centroids.clear();
    for (const HMolecule& m : crystal_maker->molecules())
        maker_centroids.push_back(m->centroid());
    contacts.clear();
    expansions.clear();
    expansion_copies.clear();
    placeholder_copies.clear();
    deleted.clear();
    joined.clear();
    polymer_groups.clear();
    base_contacts_valid = false;
    invalidate_from(MakerLink);
}

void NewCrystalPrivate::invalidate_from(int link)
{
    for (int k = link; k < 4; ++k)
        valid[k] = false;
    converted = false;
    crystal = HCrystal();
}

NewCrystalPrivate::PlacementKey NewCrystalPrivate::key_of(const SymmMap& map) const
{
    const Vector3D c = images->transformation(map) * maker_centroids.at(static_cast<std::size_t>(map.id));
    return PlacementKey(map.id, std::llround(c.x * 1e4), std::llround(c.y * 1e4), std::llround(c.z * 1e4));
}

SymmMap NewCrystalPrivate::absolute_to(const MolecularContact& contact) const
{
    SymmMap to = images->compose(contact.from_map, contact.symmmap);
    to.id = contact.symmmap.id;
    return to;
}

NewCrystalPrivate::Snapshot NewCrystalPrivate::pack(const Snapshot& from, const TransformedSolid& region,
                                                    const SymmetryInclusionCondition& condition) const
{
    std::vector<HMolecule> molecules;
    std::vector<int> ids;
    std::set<int> seen;
    for (const Placement& p : from)
        if (!p.placeholder && seen.insert(p.map.id).second) {
            ids.push_back(p.map.id);
            molecules.push_back(crystal_maker->molecule(p.map.id));
        }
    const std::vector<SymmMap> copies = condition.copies(*crystal_maker, molecules, region);
    double atoms = 0;
    for (const SymmMap& map : copies)
        atoms += molecules[static_cast<std::size_t>(map.id)]->natoms();
    if (atoms > most_atoms)
        throw molecule_error("NewCrystal: packing would make " +
                             std::to_string(static_cast<long long>(atoms)) + " atoms, more than " +
                             std::to_string(static_cast<long long>(most_atoms)));
    Snapshot out;
    for (SymmMap map : copies) {
        map.id = ids[static_cast<std::size_t>(map.id)];
        out.push_back({images->copy(*crystal_maker->molecule(map.id), map), map});
    }
    return out;
}

const NewCrystalPrivate::Snapshot& NewCrystalPrivate::current()
{
    if (!valid[MakerLink]) {
        Snapshot& s = snapshots[MakerLink];
        s.clear();
        for (int i : crystal_maker->selection()) {
            const SymmMap map = images->identity_map(i);
            s.push_back({images->copy(*crystal_maker->molecule(i), map), map});
        }
        valid[MakerLink] = true;
    }
    if (!valid[PackingLink]) {
        snapshots[PackingLink] =
            packing ? pack(snapshots[MakerLink], FractionalSolid(HSolid(new Box(box))), *packing_condition)
                    : snapshots[MakerLink];
        valid[PackingLink] = true;
    }
    if (!valid[SlicingLink]) {
        if (slicing) {
            const Box outline = packing ? box : Box({0, 0, 0}, {1, 1, 1});
            const Plane shifted(plane.normal, plane.distance + displacement);
            const TransformedSolidComposite region(
                {HTransformedSolid(new FractionalSolid(HSolid(new Box(outline)))),
                 HTransformedSolid(new OrthogonalSolid(HSolid(new Slab(shifted, thickness))))});
            snapshots[SlicingLink] = pack(snapshots[MakerLink], region, *slicing_condition);
        } else {
            snapshots[SlicingLink] = snapshots[PackingLink];
        }
        valid[SlicingLink] = true;
    }
    if (!valid[CurrentLink] && !converted)
        build_current();
    return snapshots[CurrentLink];
}

void NewCrystalPrivate::build_current()
{
    Snapshot& cur = snapshots[CurrentLink];
    cur.clear();
    current_index.clear();
    placeholder_index.clear();
    const auto place = [&](const Placement& p) {
        const PlacementKey key = key_of(p.map);
        if (deleted.count(key) || !current_index.emplace(key, static_cast<int>(cur.size())).second)
            return;
        cur.push_back(p);
        cur.back().polymeric = polymer_groups.count(group_of(key)) != 0;
    };
    for (const Placement& p : snapshots[SlicingLink])
        place(p);
    for (const SymmMap& map : expansions) {
        HMolecule& copy = expansion_copies[key_of(map)];
        if (!copy)
            copy = images->copy(*crystal_maker->molecule(map.id), map);
        place({copy, map});
    }
    for (const HMolecularContact& c : contacts) {
        if (!c->active || !current_index.count(key_of(c->from_map)))
            continue;
        const SymmMap to = absolute_to(*c);
        const PlacementKey key = key_of(to);
        if (current_index.count(key) || placeholder_index.count({key, c->to_atom}))
            continue;
        // The far atom alone, where the whole molecule would stand.
        HMolecule& copy = placeholder_copies[{key, c->to_atom}];
        if (!copy) {
            Molecule3d single;
            single.add(HAtom(new Atom3d(*crystal_maker->molecule(to.id)->atom(c->to_atom))));
            copy = images->copy(single, to);
        }
        placeholder_index.emplace(std::make_pair(key, c->to_atom), static_cast<int>(cur.size()));
        cur.push_back({copy, to, true});
    }
    valid[CurrentLink] = true;
    crystal = HCrystal();
}

HCrystal NewCrystalPrivate::current_crystal()
{
    if (crystal && valid[CurrentLink])
        return crystal;
    const Snapshot& cur = current();
    Hvector_HMolecule molecules(new std::vector<HMolecule>);
    for (const Placement& p : cur)
        molecules->push_back(p.molecule);
    Hvector_HMolecularContact resolved(new std::vector<HMolecularContact>);
    for (const HMolecularContact& c : contacts) {
        HMolecularContact copy(new MolecularContact(*c));
        if (resolve(*copy))
            resolved->push_back(copy);
    }
    crystal = HCrystal(new Crystal(*crystal_maker, molecules, resolved));
    crystal->set_refcode(crystal_maker->refcode());
    return crystal;
}

bool NewCrystalPrivate::resolve(MolecularContact& c)
{
    const Snapshot& cur = current();
    const auto from = current_index.find(key_of(c.from_map));
    if (from == current_index.end())
        return false;
    const PlacementKey to_key = key_of(absolute_to(c));
    int to = -1, to_atom = c.to_atom;
    const auto present = current_index.find(to_key);
    if (present != current_index.end()) {
        to = present->second;
    } else {
        const auto placeholder = placeholder_index.find({to_key, c.to_atom});
        if (placeholder == placeholder_index.end())
            return false;
        to = placeholder->second;
        to_atom = 0;
    }
    const Placement& pf = cur[static_cast<std::size_t>(from->second)];
    const Placement& pt = cur[static_cast<std::size_t>(to)];
    if (c.from_atom >= pf.molecule->natoms() || to_atom >= pt.molecule->natoms()) {
        logDebug(1, "NewCrystalPrivate::find_contacts Unable to find atom");
        return false;
    }
    c.atom1 = pf.molecule->atom(c.from_atom);
    c.molecule1 = from->second;
    c.atom2 = pt.molecule->atom(to_atom);
    c.molecule2 = to;
    return true;
}

bool NewCrystalPrivate::hanging(const MolecularContact& c)
{
    current();
    return current_index.count(key_of(absolute_to(c))) == 0;
}

void NewCrystalPrivate::calculate_base_contacts()
{
    base_contacts.clear();
    const CrystalMaker& maker = *crystal_maker;
    const ContactScope scope = scope_of(maker);
    const Matrix& to_frac = maker.fractional_matrix();
    const std::vector<int>& selection = maker.selection();
    const int nops = std::max(maker.nsymmops(), 1);
    const int identity_op = maker.nsymmops() ? images->identity() : 0;

    // Every atom of the molecules in force, in place: the near ends of all contacts.
    std::vector<std::vector<Vector3D>> fractions(static_cast<std::size_t>(maker.nmolecules()));
    std::vector<Vector3D> near_positions;
    std::vector<std::pair<int, int>> owner; // molecule, atom
    Vector3D lo(1e300, 1e300, 1e300), hi(-1e300, -1e300, -1e300);
    for (int m : selection) {
        fractions[static_cast<std::size_t>(m)] = fractional_positions(*maker.molecule(m));
        const std::vector<Vector3D>& f = fractions[static_cast<std::size_t>(m)];
        for (std::size_t i = 0; i < f.size(); ++i) {
            near_positions.push_back(maker.orthogonal(f[i]));
            owner.emplace_back(m, static_cast<int>(i));
            for (int k = 0; k < 3; ++k)
                if (std::isfinite(f[i][k])) {
                    lo[k] = std::min(lo[k], f[i][k]);
                    hi[k] = std::max(hi[k], f[i][k]);
                }
        }
    }
    if (lo.x > hi.x) {
        base_contacts_valid = true;
        return;
    }

    for (const HContactCriterion& criterion : criteria) {
        if (!criterion->is_active())
            continue;
        const double reach = criterion->max_distance(scope);
        if (!(reach > 0))
            continue;
        // How far a fractional coordinate moves over the reach, along each axis.
        Vector3D margin;
        for (int k = 0; k < 3; ++k)
            margin[k] = reach * std::sqrt(to_frac(k, 0) * to_frac(k, 0) + to_frac(k, 1) * to_frac(k, 1) +
                                          to_frac(k, 2) * to_frac(k, 2));
        const Vector3D reach_lo = lo - margin, reach_hi = hi + margin;
        std::map<int, ContactSide> sides;
        std::map<int, std::vector<bool>> near_active;
        for (int m : selection) {
            ContactSide side{maker.molecule(m), {}, {}};
            for (const Vector3D& f : fractions[static_cast<std::size_t>(m)])
                side.orthogonal.push_back(maker.orthogonal(f));
            criterion->prepare(side);
            std::vector<bool> active(side.orthogonal.size(), false);
            for (int i : criterion->active_atoms(side))
                active[static_cast<std::size_t>(i)] = true;
            near_active.emplace(m, active);
            sides.emplace(m, std::move(side));
        }
        const NeighbourGrid grid(near_positions, reach);
        for (int m : selection) {
            const ContactSide& far_side = sides.at(m);
            const std::vector<int> far_active = criterion->active_atoms_other(far_side);
            const PlacementKey home = key_of(images->identity_map(m));
            for (int k = 0; k < nops; ++k) {
                const Transformation op =
                    maker.nsymmops() ? Transformation(maker.symmop(k)) : Transformation();
                std::vector<Vector3D> image;
                Vector3D ilo(1e300, 1e300, 1e300), ihi(-1e300, -1e300, -1e300);
                for (const Vector3D& f : fractions[static_cast<std::size_t>(m)]) {
                    image.push_back(op * f);
                    for (int a = 0; a < 3; ++a)
                        if (std::isfinite(image.back()[a])) {
                            ilo[a] = std::min(ilo[a], image.back()[a]);
                            ihi[a] = std::max(ihi[a], image.back()[a]);
                        }
                }
                if (ilo.x > ihi.x)
                    continue;
                long from[3], to[3];
                double count = 1;
                for (int a = 0; a < 3; ++a) {
                    const double f = std::ceil(reach_lo[a] - ihi[a]), t = std::floor(reach_hi[a] - ilo[a]);
                    if (!(t - f < 1e4))
                        throw molecule_error(
                            "NewCrystalPrivate::calculate_base_contacts: the search spans too many "
                            "cells; is the cell right?");
                    from[a] = static_cast<long>(f);
                    to[a] = static_cast<long>(t);
                    count *= std::max(0.0, t - f + 1);
                }
                if (count > 1e6)
                    throw molecule_error(
                        "NewCrystalPrivate::calculate_base_contacts: the search spans too many "
                        "cells; is the cell right?");
                for (long x = from[0]; x <= to[0]; ++x)
                    for (long y = from[1]; y <= to[1]; ++y)
                        for (long z = from[2]; z <= to[2]; ++z) {
                            const Vector3D t(static_cast<double>(x), static_cast<double>(y),
                                             static_cast<double>(z));
                            const SymmMap map(m, maker.nsymmops() ? k : 0, t);
                            const bool identity = k == identity_op && x == 0 && y == 0 && z == 0;
                            const bool lies_on_itself = key_of(map) == home;
                            // A copy that lies on the molecule itself repeats its own contacts.
                            if (lies_on_itself && !identity)
                                continue;
                            ContactSide placed{far_side.molecule, {}, far_side.roles};
                            placed.orthogonal.resize(image.size());
                            bool all_placed = false;
                            for (int j : far_active) {
                                const Vector3D f = image[static_cast<std::size_t>(j)] + t;
                                if (!(f.x >= reach_lo.x && f.x <= reach_hi.x && f.y >= reach_lo.y &&
                                      f.y <= reach_hi.y && f.z >= reach_lo.z && f.z <= reach_hi.z))
                                    continue;
                                const Vector3D pj = maker.orthogonal(f);
                                placed.orthogonal[static_cast<std::size_t>(j)] = pj;
                                grid.for_each_near(pj, [&](std::size_t n) {
                                    const auto [b, i] = owner[n];
                                    const bool same = identity && b == m;
                                    if (!near_active.at(b)[static_cast<std::size_t>(i)] || (same && i >= j) ||
                                        !criterion->type_match(same))
                                        return;
                                    const double d = (near_positions[n] - pj).length();
                                    if (d > reach || d < same_point)
                                        return;
                                    if (same && !criterion->path_match(bond_path(*far_side.molecule, i, j)))
                                        return;
                                    // The far side's positions are filled as they are met; a
                                    // criterion that looks at a far atom's neighbours needs them all.
                                    if (!placed.roles.empty() && !all_placed) {
                                        for (std::size_t q = 0; q < image.size(); ++q)
                                            placed.orthogonal[q] = maker.orthogonal(image[q] + t);
                                        all_placed = true;
                                    }
                                    double strength = 0;
                                    if (criterion->contact(sides.at(b), i, placed, j, d, strength))
                                        base_contacts[b].push_back({i, map, j, strength, criterion});
                                });
                            }
                        }
            }
        }
    }
    base_contacts_valid = true;
}

std::vector<HMolecularContact> NewCrystalPrivate::contacts_from(const Placement& p)
{
    if (!base_contacts_valid)
        calculate_base_contacts();
    std::vector<HMolecularContact> out;
    const auto found = base_contacts.find(p.map.id);
    if (found == base_contacts.end())
        return out;
    for (const BaseContact& bc : found->second) {
        HMolecularContact c(new MolecularContact);
        c->from_map = p.map;
        c->from_atom = bc.from_atom;
        c->symmmap = bc.to;
        c->to_atom = bc.to_atom;
        c->criterion = bc.criterion;
        c->set_strength(bc.strength);
        out.push_back(c);
    }
    return out;
}

int NewCrystalPrivate::add_contacts(const std::vector<HMolecularContact>& found)
{
    using Id = std::tuple<PlacementKey, int, PlacementKey, int>;
    const auto id_of = [this](const MolecularContact& c) {
        const Id forward(key_of(c.from_map), c.from_atom, key_of(absolute_to(c)), c.to_atom);
        const Id backward(std::get<2>(forward), c.to_atom, std::get<0>(forward), c.from_atom);
        return std::min(forward, backward);
    };
    std::set<Id> known;
    for (const HMolecularContact& c : contacts)
        known.insert(id_of(*c));
    int added = 0;
    for (const HMolecularContact& c : found)
        if (known.insert(id_of(*c)).second) {
            contacts.push_back(c);
            ++added;
        }
    if (added)
        invalidate_from(CurrentLink);
    return added;
}

void NewCrystalPrivate::expand_contact(int index)
{
    if (index < 0 || index >= static_cast<int>(contacts.size()))
        throw molecule_error("NewCrystalPrivate::expand_contact - Illegal symm_from_index " +
                             std::to_string(index));
    const MolecularContact& c = *contacts[static_cast<std::size_t>(index)];
    logDebug(3, "NewCrystalPrivate::expand_contact expanding contact at %08x", log_address(&c));
    if (c.from_map.id < 0 || c.from_map.id >= crystal_maker->nmolecules())
        throw molecule_error("NewCrystalPrivate::expand_contact - No such base molecule");
    if (c.symmmap.id < 0 || c.symmmap.id >= crystal_maker->nmolecules())
        throw molecule_error("NewCrystalPrivate::expand_contact - Cannot find cm_to_mol");
    current();
    const SymmMap to = absolute_to(c);
    const PlacementKey key = key_of(to);
    join(key_of(c.from_map), key);
    deleted.erase(key);
    if (current_index.count(key))
        return;
    expansions.push_back(to);
    invalidate_from(CurrentLink);
}

NewCrystalPrivate::PlacementKey NewCrystalPrivate::group_of(const PlacementKey& key)
{
    PlacementKey k = key;
    for (auto it = joined.find(k); it != joined.end() && it->second != k; it = joined.find(k))
        k = it->second;
    return k;
}

void NewCrystalPrivate::join(const PlacementKey& a, const PlacementKey& b)
{
    const PlacementKey ga = group_of(a), gb = group_of(b);
    if (ga == gb)
        return;
    joined[gb] = ga;
    if (polymer_groups.erase(gb))
        polymer_groups.insert(ga);
}

bool NewCrystalPrivate::polymeric_step(const MolecularContact& c)
{
    const SymmMap to = absolute_to(c);
    const HAtom far = crystal_maker->molecule(to.id)->atom(c.to_atom);
    const HSymmMap own = far->symmmap();
    const Transformation far_place =
        images->transformation(images->compose(to, own ? *own : images->identity_map(to.id)));
    const PlacementKey group = group_of(key_of(c.from_map));
    for (const Placement& p : current()) {
        if (p.placeholder || group_of(key_of(p.map)) != group)
            continue;
        for (int i = 0; i < p.molecule->natoms(); ++i) {
            const HAtom a = p.molecule->atom(i);
            if (a->symmtag() != far->symmtag())
                continue;
            const HSymmMap map = a->symmmap();
            const Transformation there = images->transformation(map ? *map : images->identity_map(p.map.id));
            if (!SymmetryImages::finite_order(far_place * there.inverse()))
                return true;
        }
    }
    return false;
}

void NewCrystalPrivate::expand_fully()
{
    std::deque<int> queue;
    for (int i = 0; i < static_cast<int>(contacts.size()); ++i)
        queue.push_back(i);
    int expanded = 0;
    while (!queue.empty()) {
        const int k = queue.front();
        queue.pop_front();
        const MolecularContact& c = *contacts[static_cast<std::size_t>(k)];
        if (logLevel() > 2) {
            std::ostringstream text;
            text << "NewCrystal::expand_fully processing contact between atoms " << c.from_atom << " and "
                 << c.to_atom;
            logDebug(3, "%s", text.str().c_str());
            logDebug(3, "NewCrystal::expand_fully contacts left in queue = %d",
                     static_cast<int>(queue.size()));
        }
        current();
        const SymmMap to = absolute_to(c);
        if (current_index.count(key_of(to))) {
            // Both ends are in: they belong together, and nothing is brought in.
            join(key_of(c.from_map), key_of(to));
            continue;
        }
        if (polymeric_step(c)) {
            logDebug(3, "NewCrystal::expand_fully Skipping polymeric expansion");
            polymer_groups.insert(group_of(key_of(c.from_map)));
            continue;
        }
        if (++expanded > most_expansions) {
            logError("NewCrystal::expand_fully - stopped after %d expansions", most_expansions);
            break;
        }
        const std::size_t contacts_before = contacts.size();
        expand_contact(k);
        const Snapshot& after = current();
        const auto brought = current_index.find(key_of(to));
        if (brought == current_index.end()) {
            logDebug(3, "NewCrystal::expand_fully - Expansion of contact did not change crystal");
        } else {
            add_contacts(contacts_from(after[static_cast<std::size_t>(brought->second)]));
            for (std::size_t n = contacts_before; n < contacts.size(); ++n)
                queue.push_back(static_cast<int>(n));
        }
        logDebug(3, "NewCrystal::expand_fully - Finished this contact - contacts left in queue = %d",
                 static_cast<int>(queue.size()));
    }
    // The polymers found are marked when the snapshot is next built.
    invalidate_from(CurrentLink);
}

void NewCrystalPrivate::convert_contacts_to_bonds()
{
    Snapshot cur = current();
    logDebug(3, "NewCrystal::convert_contacts_to_bonds entered. nmolecules = %d",
             static_cast<int>(cur.size()));
    std::vector<int> root(cur.size());
    for (std::size_t i = 0; i < root.size(); ++i)
        root[i] = static_cast<int>(i);
    const auto find = [&root](int i) {
        while (root[static_cast<std::size_t>(i)] != i)
            i = root[static_cast<std::size_t>(i)] =
                root[static_cast<std::size_t>(root[static_cast<std::size_t>(i)])];
        return i;
    };
    struct Link {
        int from, from_atom, to, to_atom;
    };
    std::vector<Link> links;
    std::vector<HMolecularContact> left;
    for (const HMolecularContact& c : contacts) {
        MolecularContact r(*c);
        if (!c->active || !resolve(r) || cur[static_cast<std::size_t>(r.molecule2)].placeholder) {
            left.push_back(c);
            continue;
        }
        links.push_back({r.molecule1, c->from_atom, r.molecule2, c->to_atom});
        root[static_cast<std::size_t>(find(r.molecule2))] = find(r.molecule1);
    }
    Snapshot merged;
    std::map<int, std::size_t> group_place;
    for (std::size_t i = 0; i < cur.size(); ++i) {
        if (cur[i].placeholder)
            continue;
        const int g = find(static_cast<int>(i));
        const auto at = group_place.find(g);
        if (at == group_place.end()) {
            THandle<Molecule3d> m(new Molecule3d);
            m->set_refcode(cur[i].molecule->refcode());
            m->merge(*cur[i].molecule);
            group_place.emplace(g, merged.size());
            merged.push_back({m, cur[i].map, false, cur[i].polymeric});
        } else {
            Placement& p = merged[at->second];
            p.molecule->merge(*cur[i].molecule);
            p.polymeric = p.polymeric || cur[i].polymeric;
        }
    }
    for (const Link& l : links) {
        const Placement& p = merged[group_place.at(find(l.from))];
        const HAtom a = cur[static_cast<std::size_t>(l.from)].molecule->atom(l.from_atom);
        const HAtom b = cur[static_cast<std::size_t>(l.to)].molecule->atom(l.to_atom);
        const HAtom ma = atom_at(*p.molecule, a->symmtag(), a->site()->frac);
        const HAtom mb = atom_at(*p.molecule, b->symmtag(), b->site()->frac);
        if (!ma || !mb) {
            std::cerr << "Failed to find contact in mol2 " << l.to_atom << '\n';
            continue;
        }
        if (ma != mb && p.molecule->bond_index(ma->index(), mb->index()) < 0)
            p.molecule->add(HBond(new Bond3d(BondUnknown)), ma, mb);
    }
    for (const Placement& p : cur)
        if (p.placeholder)
            merged.push_back(p);
    contacts = left;
    snapshots[CurrentLink] = merged;
    current_index.clear();
    placeholder_index.clear();
    converted = true;
    crystal = HCrystal();
    logDebug(3, "NewCrystal::convert_contacts_to_bonds finished. nmolecules = %d",
             static_cast<int>(merged.size()));
}

int NewCrystalPrivate::placement_of(const HAtom& atom)
{
    const Snapshot& cur = current();
    for (std::size_t i = 0; i < cur.size(); ++i)
        if (!cur[i].placeholder && cur[i].molecule->has_atom(atom))
            return static_cast<int>(i);
    return -1;
}

int NewCrystalPrivate::placement_of(const HBond& bond)
{
    const Snapshot& cur = current();
    for (std::size_t i = 0; i < cur.size(); ++i)
        if (!cur[i].placeholder && cur[i].molecule->has_bond(bond))
            return static_cast<int>(i);
    return -1;
}

HAtom NewCrystalPrivate::base_atom(const HAtom& atom, int& placement)
{
    placement = atom ? placement_of(atom) : -1;
    if (placement < 0 || !atom->has_site())
        return HAtom();
    const Placement& p = current()[static_cast<std::size_t>(placement)];
    const Vector3D base = images->transformation(p.map).inverse() * atom->site()->frac;
    return atom_at(*crystal_maker->molecule(p.map.id), atom->symmtag(), base);
}

void NewCrystalPrivate::validate() const
{
    const Snapshot& cur = snapshots[CurrentLink];
    for (std::size_t i = 0; i < cur.size(); ++i)
        for (std::size_t j = i + 1; j < cur.size(); ++j)
            if (cur[i].molecule->natoms() == cur[j].molecule->natoms() &&
                near(cur[i].molecule->centroid(), cur[j].molecule->centroid(), 1e-7))
                logDebug(1,
                         "NewCrystalPrivate::validate: Duplicate molecules in current snapshot: %d at %08X "
                         "and %d at %08X",
                         static_cast<int>(i), log_address(cur[i].molecule.get()), static_cast<int>(j),
                         log_address(cur[j].molecule.get()));
    if (!crystal)
        return;
    for (int k = 0; k < crystal->ncontacts(); ++k) {
        const MolecularContact& c = *crystal->contact(k);
        if (c.molecule1 < 0 || c.molecule1 >= static_cast<int>(cur.size()))
            logDebug(1,
                     "NewCrystalPrivate::validate: 'from' molecule at %08X from contact at %08X not found in "
                     "current snapshot",
                     0u, log_address(&c));
        if (c.molecule2 < 0 || c.molecule2 >= static_cast<int>(cur.size())) {
            logDebug(1,
                     "NewCrystalPrivate::validate: 'to' molecule at %08X from contact at %08X not found in "
                     "current snapshot",
                     0u, log_address(&c));
            continue;
        }
        const Placement& to = cur[static_cast<std::size_t>(c.molecule2)];
        if (to.placeholder && to.molecule->natoms() != 1)
            logDebug(1,
                     "NewCrystalPrivate::validate: 'to' molecule at %08X from contact at %08X should have "
                     "exactly one atom: it has %d",
                     log_address(to.molecule.get()), log_address(&c), to.molecule->natoms());
    }
}

void NewCrystalPrivate::print(std::ostream& out) const
{
    const char* headings[4] = {"Current CrystalMaker snapshot:", "Current Packing snapshot:",
                               "Current Slicing snapshot:", "Current snapshot:"};
    out << std::string(60, '>') << "\nCurrent Box:\n";
    box.print(out);
    out << '\n';
    for (int k = 0; k < 4; ++k) {
        out << headings[k] << (valid[k] ? " (valid)" : " (invalid)") << '\n';
        for (const Placement& p : snapshots[k]) {
            const Vector3D c = p.molecule->centroid();
            out << "  (centroid: " << c << " " << p.molecule->natoms() << " atoms)"
                << (p.placeholder ? " placeholder" : "") << '\n';
        }
    }
    out << "Current Contacts:\n";
    for (const HMolecularContact& c : contacts) {
        c->print(out);
        out << '\n';
    }
    out << "Current Criteria:\n";
    for (const HContactCriterion& c : criteria)
        out << *c << '\n';
    out << std::string(60, '<') << '\n';
}

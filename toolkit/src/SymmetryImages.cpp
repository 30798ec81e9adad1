#include "SymmetryImages.h"

#include "Atom3d.h"
#include "Bond3d.h"
#include "Molecule3d.h"
#include "MoleculeError.h"
#include "SymmOp.h"

#include <cmath>

namespace {

constexpr double tolerance = 1e-4;

bool integral(double v)
{
    return std::fabs(v - std::round(v)) <= tolerance;
}

bool same_rotation(const Transformation& a, const Transformation& b)
{
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            if (std::fabs(a(r, c) - b(r, c)) > tolerance)
                return false;
    return true;
}

} // namespace

SymmetryImages::SymmetryImages(const Cell& cell) : cell_(cell)
{
    const Transformation unit;
    for (int k = 0; k < cell.nsymmops(); ++k) {
        const Vector3D t = cell.symmop(k).trans();
        if (same_rotation(cell.symmop(k), unit) && integral(t.x) && integral(t.y) && integral(t.z)) {
            identity_ = k;
            break;
        }
    }
}

Transformation SymmetryImages::transformation(const SymmMap& map) const
{
    if (cell_.nsymmops() == 0) {
        Transformation t;
        t.set_trans(map.trans);
        return t;
    }
    return cell_.symmop(map);
}

std::pair<int, Vector3D> SymmetryImages::product(int outer, int inner) const
{
    const auto known = products_.find({outer, inner});
    if (known != products_.end())
        return known->second;
    const Transformation p = cell_.symmop(outer) * cell_.symmop(inner);
    for (int k = 0; k < cell_.nsymmops(); ++k) {
        if (!same_rotation(cell_.symmop(k), p))
            continue;
        const Vector3D d = p.trans() - cell_.symmop(k).trans();
        if (integral(d.x) && integral(d.y) && integral(d.z)) {
            const std::pair<int, Vector3D> result(
                k, Vector3D(std::round(d.x), std::round(d.y), std::round(d.z)));
            products_.emplace(std::make_pair(outer, inner), result);
            return result;
        }
    }
    throw molecule_error("SymmetryImages: the symmetry operators do not form a group");
}

SymmMap SymmetryImages::map_of(const Transformation& t, int32_t id) const
{
    if (cell_.nsymmops() == 0)
        return SymmMap(id, 0, t.trans());
    for (int k = 0; k < cell_.nsymmops(); ++k) {
        if (!same_rotation(cell_.symmop(k), t))
            continue;
        const Vector3D d = t.trans() - cell_.symmop(k).trans();
        if (integral(d.x) && integral(d.y) && integral(d.z))
            return SymmMap(id, k, Vector3D(std::round(d.x), std::round(d.y), std::round(d.z)));
    }
    throw molecule_error("SymmetryImages: the symmetry operators do not form a group");
}

SymmMap SymmetryImages::compose(const SymmMap& outer, const SymmMap& inner) const
{
    if (cell_.nsymmops() == 0)
        return SymmMap(outer.id, 0, outer.trans + inner.trans);
    const auto [k, offset] = product(outer.op, inner.op);
    // (R_o, t_o + n_o) after (R_i, t_i + n_i) is op k with n_o + R_o n_i added to its own offset.
    const Transformation rotation_only(cell_.symmop(outer.op).rot(), Vector3D());
    return SymmMap(outer.id, k, offset + rotation_only * inner.trans + outer.trans);
}

HMolecule SymmetryImages::copy(const Molecule& molecule, const SymmMap& map) const
{
    const Transformation t = transformation(map);
    THandle<Molecule3d> out(new Molecule3d);
    out->set_refcode(molecule.refcode());
    std::vector<HAtom> atoms;
    for (int i = 0; i < molecule.natoms(); ++i) {
        const HAtom source = molecule.atom(i);
        auto* a = new Atom3d(*source);
        if (a->has_site())
            a->site()->frac = t * a->site()->frac;
        const HSymmMap own = source->symmmap();
        a->set_symmmap(HSymmMap(new SymmMap(compose(map, own ? *own : identity_map(map.id)))));
        atoms.emplace_back(a);
        out->add(atoms.back());
    }
    for (int i = 0; i < molecule.nbonds(); ++i) {
        const HBond b = molecule.bond(i);
        out->add(HBond(new Bond3d(b->type())), atoms[static_cast<std::size_t>(b->atom1()->index())],
                 atoms[static_cast<std::size_t>(b->atom2()->index())]);
    }
    return out;
}

bool SymmetryImages::finite_order(const Transformation& q)
{
    Transformation power = q;
    // A crystallographic rotation has order 1, 2, 3, 4 or 6, all of which divide 12: the twelfth
    // power of an operator of finite order is the identity, and one that drifts keeps a translation.
    for (int n = 1; n < 12; ++n)
        power = power * q;
    const Vector3D t = power.trans();
    return same_rotation(power, Transformation()) && std::fabs(t.x) <= tolerance &&
           std::fabs(t.y) <= tolerance && std::fabs(t.z) <= tolerance;
}

#include "SymmetryInclusionCondition.h"

#include "Cell.h"
#include "IfAnyIncluded.h"
#include "IfCentroidIncluded.h"
#include "Molecule.h"
#include "MoleculeError.h"
#include "Site.h"
#include "TransformedSolid.h"

#include <cmath>

namespace {

constexpr double edge = 1e-7;
constexpr double most_translations = 1e6;

bool same_point(const Vector3D& a, const Vector3D& b)
{
    return std::fabs(a.x - b.x) <= edge && std::fabs(a.y - b.y) <= edge && std::fabs(a.z - b.z) <= edge;
}

} // namespace

HSymmetryInclusionCondition SymmetryInclusionCondition::by_name(const std::string& name)
{
    if (name == "IfCentroidIncluded")
        return HSymmetryInclusionCondition(new IfCentroidIncluded);
    if (name == "IfAnyIncluded")
        return HSymmetryInclusionCondition(new IfAnyIncluded);
    return HSymmetryInclusionCondition();
}

std::vector<SymmMap> SymmetryInclusionCondition::copies(const Cell& cell,
                                                        const std::vector<HMolecule>& molecules,
                                                        const TransformedSolid& solid) const
{
    Vector3D lo, hi;
    if (!solid.fractional_bounds(cell, lo, hi))
        throw molecule_error("SymmetryInclusionCondition: cannot pack a region without bounds");
    std::vector<SymmMap> out;
    const int nops = std::max(cell.nsymmops(), 1);
    for (std::size_t m = 0; m < molecules.size(); ++m) {
        std::vector<Vector3D> atoms;
        for (int i = 0; i < molecules[m]->natoms(); ++i)
            if (molecules[m]->atom(i)->has_site())
                atoms.push_back(molecules[m]->atom(i)->site()->frac);
        if (atoms.empty())
            continue;
        const Vector3D centroid = molecules[m]->centroid();
        std::vector<Vector3D> kept; // centroids of this molecule's copies so far
        for (int k = 0; k < nops; ++k) {
            const Transformation op = cell.nsymmops() ? Transformation(cell.symmop(k)) : Transformation();
            std::vector<Vector3D> image;
            Vector3D amin = op * atoms[0], amax = amin;
            for (const Vector3D& a : atoms) {
                image.push_back(op * a);
                for (int c = 0; c < 3; ++c) {
                    amin[c] = std::min(amin[c], image.back()[c]);
                    amax[c] = std::max(amax[c], image.back()[c]);
                }
            }
            const Vector3D c0 = op * centroid;
            long from[3], to[3];
            double count = 1;
            for (int c = 0; c < 3; ++c) {
                const double reach_low = by_centroid() ? c0[c] : amax[c];
                const double reach_high = by_centroid() ? c0[c] : amin[c];
                const double f = std::ceil(lo[c] - reach_low - edge),
                             t = std::floor(hi[c] - reach_high + edge);
                if (!(t - f < most_translations) || !std::isfinite(f) || !std::isfinite(t))
                    throw molecule_error(
                        "SymmetryInclusionCondition: the region spans too many cells to pack");
                from[c] = static_cast<long>(f);
                to[c] = static_cast<long>(t);
                count *= std::max(0.0, t - f + 1);
            }
            if (count > most_translations)
                throw molecule_error("SymmetryInclusionCondition: the region spans too many cells to pack");
            std::vector<Vector3D> moved(image.size());
            for (long x = from[0]; x <= to[0]; ++x)
                for (long y = from[1]; y <= to[1]; ++y)
                    for (long z = from[2]; z <= to[2]; ++z) {
                        const Vector3D t(static_cast<double>(x), static_cast<double>(y),
                                         static_cast<double>(z));
                        const Vector3D c = c0 + t;
                        if (!by_centroid())
                            for (std::size_t i = 0; i < image.size(); ++i)
                                moved[i] = image[i] + t;
                        if (!included(cell, moved, c, solid))
                            continue;
                        bool seen = false;
                        for (const Vector3D& other : kept)
                            seen = seen || same_point(other, c);
                        if (seen)
                            continue;
                        kept.push_back(c);
                        out.emplace_back(static_cast<int32_t>(m), cell.nsymmops() ? k : 0, t);
                    }
        }
    }
    return out;
}

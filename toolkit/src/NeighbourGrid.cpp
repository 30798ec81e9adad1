#include "NeighbourGrid.h"

#include <algorithm>
#include <cmath>
#include <limits>

NeighbourGrid::NeighbourGrid(const std::vector<Vector3D>& positions, double reach)
{
    std::vector<std::size_t> finite;
    Vector3D high;
    for (int k = 0; k < 3; ++k) {
        low_[k] = std::numeric_limits<double>::max();
        high[k] = std::numeric_limits<double>::lowest();
    }
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const Vector3D& p = positions[i];
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z))
            continue;
        finite.push_back(i);
        for (int k = 0; k < 3; ++k) {
            low_[k] = std::min(low_[k], p[k]);
            high[k] = std::max(high[k], p[k]);
        }
    }
    if (finite.empty())
        return;
    width_ = reach > 0 ? reach : 1.0;
    const double budget = 4.0 * static_cast<double>(finite.size()) + 64.0;
    for (;;) {
        double cubes = 1;
        for (int k = 0; k < 3; ++k) {
            dims_[k] = static_cast<long>(std::min((high[k] - low_[k]) / width_, 1e9)) + 1;
            cubes *= static_cast<double>(dims_[k]);
        }
        if (cubes <= budget)
            break;
        width_ *= std::max(1.01, std::cbrt(cubes / budget));
    }
    // Counting sort by cube: start_[c] to start_[c + 1] are the members of cube c.
    std::vector<std::size_t> cube_of(finite.size());
    start_.assign(static_cast<std::size_t>(dims_[0] * dims_[1] * dims_[2]) + 1, 0);
    for (std::size_t n = 0; n < finite.size(); ++n) {
        long c[3];
        for (int k = 0; k < 3; ++k)
            c[k] = std::min(dims_[k] - 1, static_cast<long>((positions[finite[n]][k] - low_[k]) / width_));
        cube_of[n] = flat(c[0], c[1], c[2]);
        ++start_[cube_of[n] + 1];
    }
    for (std::size_t c = 1; c < start_.size(); ++c) {
        fullest_ = std::max(fullest_, start_[c]);
        start_[c] += start_[c - 1];
    }
    std::vector<std::size_t> fill(start_.begin(), start_.end() - 1);
    members_.resize(finite.size());
    for (std::size_t n = 0; n < finite.size(); ++n)
        members_[fill[cube_of[n]]++] = finite[n];
}

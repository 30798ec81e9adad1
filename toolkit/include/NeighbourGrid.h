#pragma once

#include "Vector3D.h"

#include <cstddef>
#include <vector>

// Positions binned in a grid of cubes, so that the positions near a point are found among a few
// cubes rather than all of them. Cubes are at least as wide as the reach asked for, and wider
// where the positions are so spread that a fine grid would be mostly empty: memory stays in
// proportion to the positions. Positions that are not finite are left out.
class NeighbourGrid {
public:
    NeighbourGrid(const std::vector<Vector3D>& positions, double reach);

    // Calls f(index) for each position in the cube of p and the 26 around it, which hold every
    // position within the reach of p (and some beyond it).
    template <class F> void for_each_near(const Vector3D& p, F f) const
    {
        if (members_.empty())
            return;
        long c[3];
        for (int k = 0; k < 3; ++k) {
            const double x = (p[k] - low_[k]) / width_;
            if (!(x > -2.0 && x < static_cast<double>(dims_[k]) + 1.0))
                return;
            c[k] = static_cast<long>(x < 0 ? -1 : x);
        }
        for (long x = c[0] - 1; x <= c[0] + 1; ++x)
            for (long y = c[1] - 1; y <= c[1] + 1; ++y)
                for (long z = c[2] - 1; z <= c[2] + 1; ++z) {
                    if (x < 0 || y < 0 || z < 0 || x >= dims_[0] || y >= dims_[1] || z >= dims_[2])
                        continue;
                    const std::size_t cube = flat(x, y, z);
                    for (std::size_t m = start_[cube]; m < start_[cube + 1]; ++m)
                        f(members_[m]);
                }
    }

    // The most positions one cube holds, and the cubes' width.
    std::size_t fullest_cube() const { return fullest_; }
    double width() const { return width_; }

private:
    std::size_t flat(long x, long y, long z) const
    {
        return static_cast<std::size_t>((x * dims_[1] + y) * dims_[2] + z);
    }

    Vector3D low_;
    double width_ = 1.0;
    long dims_[3] = {1, 1, 1};
    std::vector<std::size_t> start_;
    std::vector<std::size_t> members_;
    std::size_t fullest_ = 0;
};

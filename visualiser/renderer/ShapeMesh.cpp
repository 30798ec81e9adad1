#include "ShapeMesh.h"

#include <array>
#include <cmath>
#include <map>

namespace {

// Even counts, for an even number of points in every strip.
constexpr std::array<int, 8> resolutions = {4, 6, 8, 12, 16, 24, 32, 48};

// A polygon of n sides inscribed in a circle of radius r falls short of it by r (1 - cos(pi / n))
// at the middle of a side: keep that under half a pixel.
double largest_radius(int slices)
{
    return 0.5 / (1 - std::cos(M_PI / slices));
}

// Bands between rings of `slices` + 1 points (the last repeats the first): a band runs upper,
// lower, upper, lower, and two repeated points join it to the next without a visible triangle.
ShapeMesh bands(int slices, int stacks, const std::vector<Point>& rings, const std::vector<Vector3D>& normals)
{
    ShapeMesh mesh;
    const auto emit = [&](int ring, int j) {
        const std::size_t at = static_cast<std::size_t>(ring * (slices + 1) + j);
        mesh.points.push_back(rings[at]);
        mesh.normals.push_back(normals[at]);
    };
    for (int i = 0; i < stacks; ++i) {
        if (i > 0)
            emit(i + 1, 0);
        for (int j = 0; j <= slices; ++j) {
            emit(i + 1, j);
            emit(i, j);
        }
        if (i + 1 < stacks)
            emit(i, slices);
    }
    return mesh;
}

// Latitude bands from the south pole to the north, as many as half the slices, so that a facet
// spans the same angle both ways.
ShapeMesh make_sphere(int slices)
{
    const int stacks = slices / 2;
    std::vector<Point> rings;
    for (int i = 0; i <= stacks; ++i) {
        const double phi = M_PI * (static_cast<double>(i) / stacks - 0.5);
        for (int j = 0; j <= slices; ++j) {
            const double theta = 2 * M_PI * j / slices;
            rings.emplace_back(std::cos(theta) * std::cos(phi), std::sin(theta) * std::cos(phi),
                               std::sin(phi));
        }
    }
    return bands(slices, stacks, rings, rings);
}

// One band: with lights at infinity the shading does not change along the axis, so more would
// only cost points.
ShapeMesh make_cylinder(int slices)
{
    std::vector<Point> rings(static_cast<std::size_t>(2 * (slices + 1)));
    std::vector<Vector3D> normals(rings.size());
    for (int i = 0; i <= 1; ++i)
        for (int j = 0; j <= slices; ++j) {
            const double theta = 2 * M_PI * j / slices;
            const std::size_t at = static_cast<std::size_t>(i * (slices + 1) + j);
            normals[at] = Vector3D(std::cos(theta), std::sin(theta), 0);
            rings[at] = Point(normals[at].x, normals[at].y, i);
        }
    return bands(slices, 1, rings, normals);
}

// The polygon zigzags across from its first point: 0, 1, n - 1, 2, n - 2, ...
ShapeMesh make_disk(int slices)
{
    ShapeMesh mesh;
    const auto emit = [&](int j) {
        const double theta = 2 * M_PI * j / slices;
        mesh.points.emplace_back(std::cos(theta), std::sin(theta), 0);
        mesh.normals.emplace_back(0, 0, 1);
    };
    emit(0);
    for (int k = 1; k <= slices / 2; ++k) {
        emit(k);
        if (k < slices - k)
            emit(slices - k);
    }
    return mesh;
}

template <class Make> const ShapeMesh& cached(std::map<int, ShapeMesh>& meshes, int slices, Make make)
{
    auto it = meshes.find(slices);
    if (it == meshes.end())
        it = meshes.emplace(slices, make(slices)).first;
    return it->second;
}

} // namespace

const ShapeMesh& ShapeMesh::sphere(int slices)
{
    static std::map<int, ShapeMesh> meshes;
    return cached(meshes, slices, make_sphere);
}

const ShapeMesh& ShapeMesh::cylinder(int slices)
{
    static std::map<int, ShapeMesh> meshes;
    return cached(meshes, slices, make_cylinder);
}

const ShapeMesh& ShapeMesh::disk(int slices)
{
    static std::map<int, ShapeMesh> meshes;
    return cached(meshes, slices, make_disk);
}

int ShapeMesh::slices_for(double pixels)
{
    for (int slices : resolutions)
        if (pixels < largest_radius(slices))
            return slices;
    return resolutions.back();
}

void ShapeMesh::pixel_range(int slices, double& lower, double& upper)
{
    lower = 0;
    upper = HUGE_VAL;
    for (std::size_t i = 0; i < resolutions.size(); ++i)
        if (resolutions[i] == slices) {
            if (i > 0)
                lower = largest_radius(resolutions[i - 1]);
            if (i + 1 < resolutions.size())
                upper = largest_radius(slices);
        }
}

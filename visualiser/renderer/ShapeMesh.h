#pragma once

#include "Vector3D.h"

#include <vector>

// A unit sphere, cylinder or disk as one triangle strip, counter-clockwise seen from outside, at
// one of a few resolutions. Every strip has an even number of points, so that the strips of many
// shapes can follow one another in a single strip, joined by repeated points, without turning
// their triangles round; Mesa then transforms and lights a whole crystal in a few draws.
class ShapeMesh {
public:
    // Radius 1 about the origin; a unit sphere's normals are its points.
    static const ShapeMesh& sphere(int slices);
    // Radius 1 about the z axis, from z = 0 to 1, open at both ends.
    static const ShapeMesh& cylinder(int slices);
    // Radius 1 in the z = 0 plane, facing +z.
    static const ShapeMesh& disk(int slices);

    // The fewest slices, of those the meshes come in, whose outline stays within about half a
    // pixel of a true circle of `pixels` radius on the screen.
    static int slices_for(double pixels);
    // The radii in pixels, from `lower` up to but not including `upper`, that get `slices`; a
    // drawing stays right while every shape in it stays in its range.
    static void pixel_range(int slices, double& lower, double& upper);

    std::vector<Point> points;
    std::vector<Vector3D> normals;
};

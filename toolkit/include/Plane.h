#pragma once

#include "Vector3D.h"

#include <iosfwd>
#include <vector>

class Archive;

// A plane in orthogonal coordinates: the points p with normal . p = distance, and two unit
// vectors that lie in it.
class Plane {
public:
    Vector3D normal{0, 0, 1};
    double distance = 0.0;
    Vector3D v1{1, 0, 0};
    Vector3D v2{0, 1, 0};

    Plane() = default;
    // The normal is made a unit vector (a zero normal fails); v1 and v2 are chosen in the plane.
    Plane(const Vector3D& normal, double distance);

    // The mean plane of the points: the one that makes the sum of their squared heights
    // smallest, through their centroid. Fails with "A mean plane needs at least three points"
    // for fewer; points on one line give one of the planes that hold it.
    static Plane fit(const std::vector<Vector3D>& points);

    // Signed distance of a point from the plane.
    double height(const Vector3D& point) const { return normal.dot(point) - distance; }

    // "normal: ", ", distance: ", then "    v1: " and "    v2: ".
    void print(std::ostream& out) const;
    void write(Archive& archive) const;
    void read(Archive& archive);

    bool operator==(const Plane& o) const
    {
        return normal == o.normal && distance == o.distance && v1 == o.v1 && v2 == o.v2;
    }
};

#pragma once

#include "RGBA.h"
#include "ShapeMesh.h"

// Writes shapes placed in the scene into one GL triangle strip, each shape's points already moved
// to where they belong and coloured by glColor (for lit shapes, with GL_COLOR_MATERIAL on). A
// crystal drawn this way is a few long draws rather than a matrix change and a draw per atom,
// which on a software renderer cost more than the sphere itself once it is only a few pixels wide.
// GL state may change only after `finish`.
class ShapeStrip {
public:
    ShapeStrip() = default;
    ShapeStrip(const ShapeStrip&) = delete;
    ShapeStrip& operator=(const ShapeStrip&) = delete;
    ~ShapeStrip();

    // A point p of the mesh goes to origin + x p.x + y p.y + z p.z. The axes are perpendicular,
    // and x and y as long as each other, so that a normal turns with the unit axes.
    void add(const ShapeMesh& mesh, const Point& origin, const Vector3D& x, const Vector3D& y,
             const Vector3D& z, const RGBA& colour);
    // A sphere of the mesh, of `radius` about `centre`.
    void add(const ShapeMesh& mesh, const Point& centre, double radius, const RGBA& colour);
    void finish();

private:
    bool open_ = false;
    Point last_;
};

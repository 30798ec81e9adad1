#pragma once

#include "Box.h"
#include "GraphicsObject.h"
#include "Vector3D.h"

// The unit cell as drawn: the three cell vectors in orthogonal coordinates, an origin, and the
// box of unit cells whose edges are drawn. It starts white, one cell, and hidden.
class GraphicsCell : public GraphicsObject {
public:
    GraphicsCell(const Vector3D& a, const Vector3D& b, const Vector3D& c);
    GraphicsCell(const GraphicsCell& other) = default;

    const Vector3D& a() const { return a_; }
    const Vector3D& b() const { return b_; }
    const Vector3D& c() const { return c_; }
    const Point& origin() const { return origin_; }
    const Box& box() const { return box_; }
    void set_box(const Box& box) { box_ = box; }
    // The orthogonal position of a fractional one.
    Point at(const Vector3D& fractional) const;

    void copy_display_properties(const GraphicsObject& from) override;
    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    // The object's own fields, then ", box:".
    void print(std::ostream& out) const override;

private:
    Vector3D a_, b_, c_;
    Point origin_;
    Box box_{{0, 0, 0}, {1, 1, 1}};
};

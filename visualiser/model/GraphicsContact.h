#pragma once

#include "GraphicsObject.h"
#include "Vector3D.h"

// A contact as drawn: a line between two positions. It holds no atoms, because the far end is
// often a placeholder that a rebuild replaces.
class GraphicsContact : public GraphicsObject {
public:
    GraphicsContact(const Point& ortho1, const Point& ortho2) : ortho1_(ortho1), ortho2_(ortho2) {}
    GraphicsContact(const GraphicsContact& other) = default;

    const Point& ortho1() const { return ortho1_; }
    const Point& ortho2() const { return ortho2_; }

    // The object's fields, then the two ends.
    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    // "ortho1:", ", ortho2:", then the object's own fields.
    void print(std::ostream& out) const override;

private:
    Point ortho1_;
    Point ortho2_;
};

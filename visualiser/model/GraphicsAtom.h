#pragma once

#include "GraphicsObject.h"
#include "Vector3D.h"

#include <vector>

// An atom as drawn: where it stands in orthogonal coordinates, its radius, and the bonds of the
// current picture that end at it. The bonds are kept by their crystal, which outlives them in
// its pool; a copy of an atom stands alone, with no bonds.
class GraphicsAtom : public GraphicsObject {
public:
    GraphicsAtom(const Point& ortho, double radius) : ortho_(ortho), radius_(radius) {}
    GraphicsAtom(const GraphicsAtom& other)
        : GraphicsObject(other), ortho_(other.ortho_), radius_(other.radius_)
    {
    }

    const Point& ortho() const { return ortho_; }
    double radius() const { return radius_; }

    const std::vector<GraphicsBond*>& bonds() const { return bonds_; }
    void clear_bonds() { bonds_.clear(); }
    void add_bond(GraphicsBond* bond) { bonds_.push_back(bond); }
    // A wireframe atom with no visible bond is drawn as a cross, so that it does not vanish.
    int visible_bonds() const;
    std::vector<GraphicsAtom*> bonded_atoms() const;

    // The object's fields, then the position and the radius.
    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    // "ortho:", ", radius:", ", visible_bonds:", then the object's own fields.
    void print(std::ostream& out) const override;

private:
    Point ortho_;
    double radius_;
    std::vector<GraphicsBond*> bonds_;
};

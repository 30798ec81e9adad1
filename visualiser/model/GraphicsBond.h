#pragma once

#include "GraphicsAtom.h"

#include <vector>

// A bond as drawn: two atoms, the bond type, and a second colour for the half at the second
// atom (the object's own colour is the first half's). It has no position of its own.
class GraphicsBond : public GraphicsObject {
public:
    GraphicsBond(const HGraphicsAtom& atom1, const HGraphicsAtom& atom2, int32_t type)
        : type_(type), atoms_{atom1, atom2}
    {
    }
    GraphicsBond(const GraphicsBond& other) = default;

    RGBA color2() const { return color2_; }
    void set_color2(const RGBA& color) { color2_ = color; }
    int32_t type() const { return type_; }
    void set_type(int32_t type) { type_ = type; }
    const std::vector<HGraphicsAtom>& atoms() const { return atoms_; }
    const HGraphicsAtom& atom1() const { return atoms_[0]; }
    const HGraphicsAtom& atom2() const { return atoms_[1]; }

    // Where the plane of a multiple bond is anchored: the mean position of the neighbours of
    // both atoms other than the bond's own; false when neither atom has another neighbour.
    bool reference_point(Point& point) const;

    void copy_display_properties(const GraphicsObject& from) override;
    // The object's fields, then the second colour and the type.
    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    // "atom1:", ", atom2:", ", ortho1:", ", ortho2:" (or "bonds undefined!"), ", color2:",
    // ", type:", then the object's own fields.
    void print(std::ostream& out) const override;

private:
    RGBA color2_;
    int32_t type_;
    std::vector<HGraphicsAtom> atoms_;
};

#pragma once

#include "GraphicsPrimitive.h"

// A straight segment between two positions.
class GraphicsLine : public GraphicsPrimitive {
public:
    GraphicsLine(const Point& ortho1, const Point& ortho2) : ortho1_(ortho1), ortho2_(ortho2) {}

    const Point& ortho1() const { return ortho1_; }
    const Point& ortho2() const { return ortho2_; }

    HGraphicsPrimitive clone() const override { return HGraphicsPrimitive(new GraphicsLine(*this)); }
    Type primitive_type() const override { return Line; }
    std::string class_name() const override { return "GraphicsLine"; }
    Point anchor() const override { return (ortho1_ + ortho2_) * 0.5; }
    // "ortho1:", ", ortho2:", then the object's own fields.
    void print(std::ostream& out) const override;

protected:
    void write_geometry(Archive& archive) const override;
    void read_geometry(Archive& archive) override;

private:
    Point ortho1_;
    Point ortho2_;
};

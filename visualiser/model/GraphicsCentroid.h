#pragma once

#include "GraphicsPrimitive.h"

// A sphere at the mean position of some atoms.
class GraphicsCentroid : public GraphicsPrimitive {
public:
    GraphicsCentroid(const Point& ortho, double radius) : ortho_(ortho), radius_(radius) {}

    const Point& ortho() const { return ortho_; }
    double radius() const { return radius_; }

    HGraphicsPrimitive clone() const override { return HGraphicsPrimitive(new GraphicsCentroid(*this)); }
    Type primitive_type() const override { return Centroid; }
    std::string class_name() const override { return "GraphicsCentroid"; }
    Point anchor() const override { return ortho_; }
    // "ortho:", ", radius:", then the object's own fields.
    void print(std::ostream& out) const override;

protected:
    void write_geometry(Archive& archive) const override;
    void read_geometry(Archive& archive) override;

private:
    Point ortho_;
    double radius_;
};

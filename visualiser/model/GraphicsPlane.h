#pragma once

#include "GraphicsPrimitive.h"
#include "Plane.h"

// A plane, drawn as the polygon where it cuts the crystal's bounding box.
class GraphicsPlane : public GraphicsPrimitive {
public:
    explicit GraphicsPlane(const ::Plane& plane) : plane_(plane) {}

    const ::Plane& plane() const { return plane_; }

    HGraphicsPrimitive clone() const override { return HGraphicsPrimitive(new GraphicsPlane(*this)); }
    Type primitive_type() const override { return Plane; }
    std::string class_name() const override { return "GraphicsPlane"; }
    Point anchor() const override { return plane_.normal * plane_.distance; }
    // "plane:", then the object's own fields.
    void print(std::ostream& out) const override;

protected:
    void write_geometry(Archive& archive) const override { plane_.write(archive); }
    void read_geometry(Archive& archive) override { plane_.read(archive); }

private:
    ::Plane plane_;
};

#pragma once

#include "GraphicsObject.h"
#include "Vector3D.h"

#include <string>

// An extra geometric object a user adds to one crystal: a mean plane, a centroid, a line. The
// crystal keeps its primitives as they are; a rebuild of the structure does not touch them.
class GraphicsPrimitive : public GraphicsObject {
public:
    enum Type : int32_t { Plane = 1, Centroid = 2, Line = 16 };

    GraphicsPrimitive() { set_label("Unnamed"); }
    GraphicsPrimitive(const GraphicsPrimitive& other) = default;

    virtual HGraphicsPrimitive clone() const = 0;
    virtual Type primitive_type() const = 0;
    virtual std::string class_name() const = 0;
    // Where its label stands.
    virtual Point anchor() const = 0;

    // The class name, then the object's fields and the primitive's own.
    void write(Archive& archive) const override;
    // Reads a primitive stored by write; another class name fails with "Unrecognised
    // primitive:" and the name.
    static HGraphicsPrimitive read_primitive(Archive& archive);

protected:
    virtual void write_geometry(Archive& archive) const = 0;
    virtual void read_geometry(Archive& archive) = 0;
};

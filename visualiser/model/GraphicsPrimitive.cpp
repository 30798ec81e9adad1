#include "GraphicsPrimitive.h"

#include "Archive.h"
#include "GraphicsCentroid.h"
#include "GraphicsLine.h"
#include "GraphicsPlane.h"
#include "MoleculeError.h"

void GraphicsPrimitive::write(Archive& archive) const
{
    archive.write_string(class_name());
    GraphicsObject::write(archive);
    write_geometry(archive);
}

HGraphicsPrimitive GraphicsPrimitive::read_primitive(Archive& archive)
{
    const std::string name = archive.read_string();
    HGraphicsPrimitive primitive;
    if (name == "GraphicsPlane")
        primitive = HGraphicsPrimitive(new GraphicsPlane(::Plane()));
    else if (name == "GraphicsCentroid")
        primitive = HGraphicsPrimitive(new GraphicsCentroid(Point(), 0.0));
    else if (name == "GraphicsLine")
        primitive = HGraphicsPrimitive(new GraphicsLine(Point(), Point()));
    else
        throw molecule_error("Unrecognised primitive:" + name);
    primitive->GraphicsObject::read(archive);
    primitive->read_geometry(archive);
    return primitive;
}

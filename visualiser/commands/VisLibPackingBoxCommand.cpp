#include "VisLibPackingBoxCommand.h"

#include "GraphicsCrystal.h"

namespace {

QString name_of(const Box& box)
{
    return QString("Packing Box %1 - %2, %3 - %4, %5 - %6")
        .arg(box.min.x)
        .arg(box.max.x)
        .arg(box.min.y)
        .arg(box.max.y)
        .arg(box.min.z)
        .arg(box.max.z);
}

} // namespace

VisLibPackingBoxCommand::VisLibPackingBoxCommand(QtCrystalManager* manager, const Box& box)
    : VisLibSnapshotCommand(manager, name_of(box)), box_(box)
{
}

void VisLibPackingBoxCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_packing_box(box_);
}

#include "IfCentroidIncluded.h"

#include "TransformedSolid.h"

bool IfCentroidIncluded::included(const Cell& cell, const std::vector<Vector3D>&, const Vector3D& centroid,
                                  const TransformedSolid& solid) const
{
    return solid.contains(cell, centroid);
}

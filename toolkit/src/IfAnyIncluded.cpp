#include "IfAnyIncluded.h"

#include "TransformedSolid.h"

bool IfAnyIncluded::included(const Cell& cell, const std::vector<Vector3D>& atoms, const Vector3D&,
                             const TransformedSolid& solid) const
{
    for (const Vector3D& a : atoms)
        if (solid.contains(cell, a))
            return true;
    return false;
}

#pragma once

#include "TransformedSolid.h"

// A solid given in fractional coordinates, such as a box of unit cells.
class FractionalSolid : public TransformedSolid {
public:
    using TransformedSolid::TransformedSolid;
    bool contains(const Cell&, const Vector3D& fractional) const override
    {
        return solid()->contains(fractional);
    }
    bool fractional_bounds(const Cell&, Vector3D& min, Vector3D& max) const override
    {
        return solid()->bounds(min, max);
    }
};

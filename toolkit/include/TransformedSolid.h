#pragma once

#include "Solid.h"

class Cell;
class TransformedSolid;
using HTransformedSolid = THandle<TransformedSolid>;

// A solid together with the coordinates it is given in, asked about fractional positions of a
// cell.
class TransformedSolid {
public:
    explicit TransformedSolid(const HSolid& solid) : solid_(solid) {}
    virtual ~TransformedSolid() = default;
    virtual bool contains(const Cell& cell, const Vector3D& fractional) const = 0;
    // Fractional bounds that hold the whole solid; false for an unbounded one.
    virtual bool fractional_bounds(const Cell& cell, Vector3D& min, Vector3D& max) const = 0;

    const HSolid& solid() const { return solid_; }

private:
    HSolid solid_;
};

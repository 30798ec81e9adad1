#pragma once

#include "SymmMap.h"
#include "Vector3D.h"

#include <iosfwd>

// A position together with the symmetry image it belongs to.
class SymmPoint {
public:
    SymmMap symmap;
    Vector3D point;

    SymmPoint() = default;
    SymmPoint(const SymmMap& symmap, const Vector3D& point) : symmap(symmap), point(point) {}
    virtual ~SymmPoint() = default;

    virtual void print(std::ostream& out) const;

    bool operator==(const SymmPoint& o) const { return symmap == o.symmap && point == o.point; }
};

std::ostream& operator<<(std::ostream& out, const SymmPoint& p);

#pragma once

#include "THandle.h"
#include "Vector3D.h"

#include <iosfwd>

class Archive;
class Solid;
using HSolid = THandle<Solid>;

// A region of space that decides which positions belong to it, in whatever coordinates its user
// works in.
class Solid {
public:
    virtual ~Solid() = default;
    virtual HSolid clone() const = 0;
    virtual bool contains(const Vector3D& point) const = 0;
    virtual void print(std::ostream&) const {}
    virtual void write(Archive&) const {}
    virtual void read(Archive&) {}

    // The box that holds the whole solid, when it is bounded: packing walks the lattice
    // translations that can reach it.
    virtual bool bounds(Vector3D& min, Vector3D& max) const = 0;
};

#pragma once

#include "Vector3D.h"

#include <cstdint>
#include <iosfwd>

class Archive;

// Which symmetry image of a base object this is: the object's id, the index of the operator in
// the cell's list, and the lattice translation added after it.
class SymmMap {
public:
    int32_t id = 0;
    int32_t op = 0;
    Vector3D trans;

    SymmMap() = default;
    SymmMap(int32_t id, int32_t op, const Vector3D& trans) : id(id), op(op), trans(trans) {}
    virtual ~SymmMap() = default;

    // id, op, then the translation's x, y and z.
    virtual void write(Archive& archive) const;
    virtual void read(Archive& archive);
    virtual void print(std::ostream& out) const;

    bool operator==(const SymmMap& o) const { return id == o.id && op == o.op && trans == o.trans; }
    bool operator!=(const SymmMap& o) const { return !(*this == o); }
};

std::ostream& operator<<(std::ostream& out, const SymmMap& m);

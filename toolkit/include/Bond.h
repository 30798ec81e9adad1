#pragma once

#include "Atom.h"
#include "BondType.h"

#include <iosfwd>

class Archive;

// What every bond answers: its two atoms, its kind and its place in a molecule. The setter of
// this base fails with "Bond::set_type Cannot modify this bond".
class Bond {
public:
    virtual ~Bond() = default;

    virtual HAtom atom1() const = 0;
    virtual HAtom atom2() const = 0;
    virtual BondType type() const = 0;
    virtual void set_type(BondType type);
    virtual int index() const = 0;
    virtual bool cyclic() const = 0;
    // A single bond outside any ring between two atoms that each have another bond: turning about
    // it moves something.
    virtual bool rotatable() const;
    virtual bool editable() const { return false; }
    virtual void print(std::ostream& out) const;
    virtual void write(Archive& archive) const;
    virtual void read(Archive& archive);

    HAtom other_atom(const HAtom& atom) const;
    HAtom other_atom(const Atom& atom) const;
};

std::ostream& operator<<(std::ostream& out, const Bond& bond);

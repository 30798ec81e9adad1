#pragma once

#include "Molecule.h"

#include <iosfwd>

// Two atoms in contact, with the numbers of the molecules that hold them, and a strength once
// one is known.
class BasicContact {
public:
    BasicContact() = default;
    BasicContact(const HAtom& atom1, int molecule1, const HAtom& atom2, int molecule2)
        : atom1(atom1), atom2(atom2), molecule1(molecule1), molecule2(molecule2)
    {
    }
    virtual ~BasicContact() = default;

    // Fails with "BasicContact - attempt to access unset contact strength" until one is set.
    double strength() const;
    void set_strength(double strength)
    {
        strength_ = strength;
        strength_set_ = true;
    }
    bool strength_set() const { return strength_set_; }
    virtual void print(std::ostream& out) const;

    HAtom atom1;
    HAtom atom2;
    int molecule1 = -1;
    int molecule2 = -1;

private:
    double strength_ = 0.0;
    bool strength_set_ = false;
};

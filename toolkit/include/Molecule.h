#pragma once

#include "Atom.h"
#include "Bond.h"
#include "MoleculeHandles.h"
#include "PolymorphicIterator.h"
#include "Vector3D.h"

#include <iosfwd>
#include <string>
#include <vector>

class Archive;

// A molecule as its users see it: atoms and bonds numbered in order, found by number or by
// handle, and the questions of chemistry asked of them. Only an editable molecule changes; in
// this base every editing operation fails with "Molecule::<operation>: this molecule can not be
// edited." (or "cannot", as each has always spelt it).
class Molecule {
public:
    using AtomIterator = PolymorphicIterator<HAtom>;
    using BondIterator = PolymorphicIterator<HBond>;

    virtual ~Molecule() = default;

    virtual std::string refcode() const = 0;
    virtual void set_refcode(const std::string& refcode);

    virtual int natoms() const = 0;
    virtual HAtom atom(int i) const = 0;
    virtual bool has_atom(const HAtom& atom) const = 0;
    virtual AtomIterator atoms_begin() const = 0;
    virtual AtomIterator atoms_end() const = 0;

    virtual int nbonds() const = 0;
    virtual HBond bond(int i) const = 0;
    // The bond between two atoms of this molecule; fails when there is none.
    virtual HBond bond(const HAtom& atom1, const HAtom& atom2) const = 0;
    virtual bool has_bond(const HBond& bond) const = 0;
    virtual BondIterator bonds_begin() const = 0;
    virtual BondIterator bonds_end() const = 0;

    // A deep copy: new atoms and bonds, the same values.
    virtual HMolecule clone() const = 0;

    // How many atoms are non-metals, and how many are hydrogen (or deuterium).
    virtual int n_nonmetals() const;
    virtual int n_hydrogens() const;
    // The numbers of the atoms bonded to atom i.
    virtual std::vector<int> neighbours(int i) const = 0;
    // The number of the bond between atoms i and j, or -1.
    virtual int bond_index(int i, int j) const = 0;

    virtual bool editable() const { return false; }
    // Adds the atoms and bonds of `other`, each atom only once: an atom with a site that has the
    // symmetry tag and position of one already here is that atom.
    virtual void merge(const Molecule& other);
    // Drops each hydrogen with exactly one bond; a lone or bridging hydrogen stays.
    virtual void remove_hydrogens();
    // Orders the atoms by atomic number, keeping the order within an element.
    virtual void sort_atoms();
    virtual void add(const HAtom& atom);
    virtual void add(const HBond& bond, const HAtom& atom1, const HAtom& atom2);
    // Copies the atoms and bonds of another molecule into this one.
    virtual void add(const Molecule& other);
    virtual void remove_atom(int i);
    virtual void remove(const HBond& bond);
    virtual void remove(const HAtom& atom);
    virtual void remove_bond(int i);
    // Cuts every bond of the atom.
    virtual void isolate(const HAtom& atom);
    virtual void clear();
    // Atom order[k] becomes atom k.
    virtual void reorder_atoms(const std::vector<int>& order);

    virtual void write(Archive& archive) const;
    virtual void read(Archive& archive);
    virtual void print(std::ostream& out) const;

    // The mean fractional position of the atoms that have a site; (0, 0, 0) when none has.
    Vector3D centroid() const;
};

std::ostream& operator<<(std::ostream& out, const Molecule& molecule);

#pragma once

#include "Cell.h"
#include "Crystal.h"
#include "CrystalMaker.h"
#include "Molecule.h"

#include <iosfwd>
#include <string>

class MoleculeFile;
using HMoleculeFile = THandle<MoleculeFile>;

// A file of one structure format, read into structures and written from them.
class MoleculeFile {
public:
    virtual ~MoleculeFile() = default;
    virtual void read(std::istream& in) = 0;
    virtual void write(std::ostream& out) const = 0;
    virtual void clear() = 0;
    virtual void add(const CrystalMaker& crystal_maker) = 0;
    virtual void add(const Crystal& crystal) = 0;
    virtual void add(const Molecule& molecule) = 0;
    virtual HMolecule molecule() const = 0;
    virtual Cell cell() const = 0;
    virtual std::string refcode() const = 0;
    virtual HCrystalMaker crystal_maker() const = 0;
};

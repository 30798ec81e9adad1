#pragma once

#include "Element.h"
#include "MoleculeHandles.h"
#include "Site.h"
#include "SymmMap.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

class Archive;

// What every atom answers: its chemistry, where it stands, which symmetry copy it is, and its
// place in a molecule. Only an editable atom changes; the setters of this base fail with
// "Atom::<setter> Cannot modify this atom".
class Atom {
public:
    virtual ~Atom() = default;

    virtual Element element() const = 0;
    virtual void set_element(const Element& element);
    virtual int formal_charge() const = 0;
    virtual void set_formal_charge(int charge);
    virtual double radius() const = 0;
    virtual void set_radius(double radius);
    virtual std::string label() const = 0;
    virtual void set_label(const std::string& label);
    // Null for an atom of the asymmetric unit as read.
    virtual HSymmMap symmmap() const = 0;
    virtual void set_symmmap(const HSymmMap& map);
    // The row of the asymmetric unit it comes from, shared by all its symmetry copies; -1 if none.
    virtual int32_t symmtag() const = 0;
    virtual void set_symmtag(int32_t tag);
    virtual HSite site() const = 0;
    virtual void set_site(const HSite& site);
    virtual bool has_site() const = 0;

    // Its place in the molecule that holds it.
    virtual int index() const = 0;
    virtual int nbonds() const = 0;
    virtual bool cyclic() const = 0;
    virtual std::vector<HAtom> neighbours() const = 0;
    virtual std::vector<HBond> bonds() const = 0;

    virtual bool editable() const { return false; }
    virtual void print(std::ostream& out) const;
    virtual void write(Archive& archive) const;
    virtual void read(Archive& archive);
};

std::ostream& operator<<(std::ostream& out, const Atom& atom);

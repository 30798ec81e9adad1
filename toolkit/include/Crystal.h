#pragma once

#include "Cell.h"
#include "MolecularContact.h"
#include "Molecule.h"

#include <string>

class Crystal;
using HCrystal = THandle<Crystal>;

// One finished state of a crystal: a cell with its molecules and the contacts among them.
class Crystal : public Cell {
public:
    Crystal();
    Crystal(const Cell& cell, Hvector_HMolecule molecules);
    Crystal(const Cell& cell, Hvector_HMolecule molecules, Hvector_HMolecularContact contacts);
    Crystal(const Crystal& x);
    ~Crystal() override;

    const std::string& refcode() const { return refcode_; }
    void set_refcode(const std::string& refcode) { refcode_ = refcode; }
    int nmolecules() const { return static_cast<int>(molecules_->size()); }
    const HMolecule& molecule(int i) const { return molecules_->at(static_cast<std::size_t>(i)); }
    const std::vector<HMolecule>& molecules() const { return *molecules_; }
    int natoms() const;
    int nbonds() const;
    int ncontacts() const { return static_cast<int>(contacts_->size()); }
    const HMolecularContact& contact(int i) const { return contacts_->at(static_cast<std::size_t>(i)); }
    // Adds a molecule unless one with the same number of atoms and the same centroid (within
    // 1e-7) is there already; true when it was added.
    bool merge(const HMolecule& molecule);

    void print(std::ostream& out) const override;

private:
    std::string refcode_;
    Hvector_HMolecule molecules_;
    Hvector_HMolecularContact contacts_;
};

#pragma once

#include "MoleculeGraphEditableImpl.h"

#include <utility>

// The editable molecule of the program: a graph of Atom3d and Bond3d with a reference code,
// stored and read back through an Archive.
class Molecule3d : public MoleculeGraphEditableImpl {
public:
    Molecule3d();
    // The atoms, and bonds between the atoms numbered in each pair; the bonds are new and of
    // unknown type.
    Molecule3d(const std::string& refcode, const std::vector<HAtom>& atoms,
               const std::vector<std::pair<int, int>>& bonds);
    ~Molecule3d() override;

    std::string refcode() const override { return refcode_; }
    void set_refcode(const std::string& refcode) override { refcode_ = refcode; }
    HMolecule clone() const override;

    // The refcode, the atoms, then each bond as its two atom numbers and its kind.
    void write(Archive& archive) const override;
    // Reads into a new molecule first, so that a damaged archive leaves this one as it was.
    void read(Archive& archive) override;

private:
    std::string refcode_;
};

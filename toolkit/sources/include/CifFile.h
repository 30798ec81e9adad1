#pragma once

#include "Cif.h"
#include "MoleculeFile.h"

// A CIF read as a structure file: the first data block that holds a structure, or the block
// asked for, becomes a molecule, a cell and a crystal maker. Data names unknown to any
// dictionary are expected here, so their finding (320) is not raised by such a read.
class CifFile : public MoleculeFile {
public:
    CifFile();
    // Over a document already read, such as the one an editor holds.
    explicit CifFile(const HCif& cif);

    // Fails with "CifFile::read: data names defined before first data block. Possible missing
    // data_ line?" or "CifFile::read: no structure available, probable syntax error."
    void read(std::istream& in) override;
    // Fails with "CifFile::read: no structure available, block number out of range."
    void read(int block);
    void write(std::ostream& out) const override;
    void clear() override;
    // Each adds a block "data_KDB_CIF_" and the refcode, with the cell, the symmetry and the atoms.
    void add(const CrystalMaker& crystal_maker) override;
    void add(const Crystal& crystal) override;
    void add(const Molecule& molecule) override;

    // Each fails with "CifFile::<what>: No structure loaded" until a block is chosen.
    HMolecule molecule() const override;
    Cell cell() const override;
    std::string refcode() const override;
    HCrystalMaker crystal_maker() const override;

    const HCif& cif() const { return cif_; }
    const HCifDataBlock& block() const { return block_; }

private:
    HCifDataBlock new_block(const std::string& refcode);
    void write_cell(CifDataBlock& block, const Cell& cell) const;
    void write_atoms(CifDataBlock& block, const std::vector<HMolecule>& molecules) const;
    const CifDataBlock& loaded(const char* what) const;

    HCif cif_;
    HCifDataBlock block_;
};

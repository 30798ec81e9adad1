#include "Molecule3d.h"

#include "Archive.h"
#include "Atom3d.h"
#include "Bond3d.h"
#include "LogAddress.h"
#include "Logger.h"
#include "MoleculeError.h"

#include <algorithm>
#include <set>

Molecule3d::Molecule3d()
{
    logDebug(3, "Entered Molecule3d::Molecule3d() - %08X", log_address(this));
}

Molecule3d::Molecule3d(const std::string& refcode, const std::vector<HAtom>& atoms,
                       const std::vector<std::pair<int, int>>& bonds)
    : refcode_(refcode)
{
    logDebug(3, "Entered Molecule3d::Molecule3d(refcode %s, atoms %d, bonds %d- %08X", refcode.c_str(),
             static_cast<int>(atoms.size()), static_cast<int>(bonds.size()), log_address(this));
    for (const HAtom& a : atoms)
        add_node(a);
    for (const auto& [i, j] : bonds)
        add_edge(HBond(new Bond3d), atoms.at(static_cast<std::size_t>(i)),
                 atoms.at(static_cast<std::size_t>(j)));
}

Molecule3d::~Molecule3d()
{
    logDebug(3, "Entered Molecule3d::~Molecule3d() - %08X - %s - %d atoms & %d bonds", log_address(this),
             refcode_.c_str(), natoms(), nbonds());
}

HMolecule Molecule3d::clone() const
{
    THandle<Molecule3d> copy(new Molecule3d);
    copy->set_refcode(refcode_);
    copy->add(*this);
    return copy;
}

void Molecule3d::write(Archive& archive) const
{
    archive.write_string(refcode_);
    archive.write_int32(natoms());
    for (int i = 0; i < natoms(); ++i)
        atom(i)->write(archive);
    archive.write_int32(nbonds());
    for (int i = 0; i < nbonds(); ++i) {
        const HBond b = bond(i);
        archive.write_int32(b->atom1()->index());
        archive.write_int32(b->atom2()->index());
        b->write(archive);
    }
}

void Molecule3d::read(Archive& archive)
{
    const std::string refcode = archive.read_string();
    const int32_t natoms = archive.read_int32();
    if (natoms < 0)
        throw molecule_error("Molecule3d::read - bad atom count: " + std::to_string(natoms));
    // No reserve: a damaged count must run into the end of the data, not into memory.
    std::vector<HAtom> atoms;
    for (int32_t i = 0; i < natoms; ++i) {
        atoms.emplace_back(new Atom3d);
        atoms.back()->read(archive);
    }
    const int32_t nbonds = archive.read_int32();
    if (nbonds < 0)
        throw molecule_error("Molecule3d::read - bad bond count: " + std::to_string(nbonds));
    struct Read {
        int32_t a, b;
        HBond bond;
    };
    std::vector<Read> bonds;
    std::set<std::pair<int32_t, int32_t>> pairs;
    for (int32_t i = 0; i < nbonds; ++i) {
        const int32_t a = archive.read_int32(), b = archive.read_int32();
        if (a < 0 || b < 0 || a >= natoms || b >= natoms || a == b || !pairs.insert(std::minmax(a, b)).second)
            throw molecule_error("Molecule3d::read - bad atom number in a bond");
        HBond bond(new Bond3d);
        bond->read(archive);
        bonds.push_back({a, b, bond});
    }
    clear();
    refcode_ = refcode;
    for (const HAtom& a : atoms)
        add_node(a);
    for (const Read& r : bonds)
        add_edge(r.bond, atoms[static_cast<std::size_t>(r.a)], atoms[static_cast<std::size_t>(r.b)]);
}

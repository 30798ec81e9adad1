#include "Crystal.h"

#include "LogAddress.h"
#include "Logger.h"
#include "Molecule.h"

#include <cmath>
#include <ostream>

Crystal::Crystal() : molecules_(new std::vector<HMolecule>), contacts_(new std::vector<HMolecularContact>)
{
    logDebug(3, "Entered Crystal::Crystal() - %08X", log_address(this));
}

Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules)
    : Cell(cell), molecules_(molecules ? molecules : Hvector_HMolecule(new std::vector<HMolecule>)),
      contacts_(new std::vector<HMolecularContact>)
{
    logDebug(3, "Entered Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules) - %08X",
             log_address(this));
}

Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules, Hvector_HMolecularContact contacts)
    : Cell(cell), molecules_(molecules ? molecules : Hvector_HMolecule(new std::vector<HMolecule>)),
      contacts_(contacts ? contacts : Hvector_HMolecularContact(new std::vector<HMolecularContact>))
{
    logDebug(
        3,
        "Entered Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules, Hvector_HMolecularContact "
        "contacts) - %08X",
        log_address(this));
}

Crystal::Crystal(const Crystal& x)
    : Cell(x), refcode_(x.refcode_), molecules_(new std::vector<HMolecule>(*x.molecules_)),
      contacts_(new std::vector<HMolecularContact>(*x.contacts_))
{
    logDebug(3, "Entered Crystal::Crystal(const Crystal& x) - %08X", log_address(this));
}

Crystal::~Crystal()
{
    logDebug(3, "Entered Crystal::~Crystal() - %08X", log_address(this));
}

int Crystal::natoms() const
{
    int n = 0;
    for (const HMolecule& m : *molecules_)
        n += m->natoms();
    return n;
}

int Crystal::nbonds() const
{
    int n = 0;
    for (const HMolecule& m : *molecules_)
        n += m->nbonds();
    return n;
}

bool Crystal::merge(const HMolecule& molecule)
{
    logDebug(3, "Crystal::merge(HMolecule) entered - nmolecules = %d", nmolecules());
    const Vector3D c = molecule->centroid();
    for (const HMolecule& m : *molecules_) {
        const Vector3D d = m->centroid() - c;
        if (m->natoms() == molecule->natoms() && std::fabs(d.x) <= 1e-7 && std::fabs(d.y) <= 1e-7 &&
            std::fabs(d.z) <= 1e-7) {
            logDebug(3, "Crystal::merge(HMolecule) done - no change made");
            return false;
        }
    }
    molecules_->push_back(molecule);
    logDebug(3, "Crystal::merge(HMolecule) done    - nmolecules = %d", nmolecules());
    return true;
}

void Crystal::print(std::ostream& out) const
{
    out << "refcode: " << refcode_ << '\n';
    Cell::print(out);
    out << '\n';
    for (const HMolecule& m : *molecules_)
        out << "crystal molecule: " << *m;
    for (const HMolecularContact& c : *contacts_) {
        out << "contact: ";
        c->print(out);
        out << '\n';
    }
}

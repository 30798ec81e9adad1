#include "ContactCriterion.h"

#include "Archive.h"
#include "BondedCriterion.h"
#include "CombinedCriterion.h"
#include "DistanceCriterion.h"
#include "HBondCriterion.h"
#include "Molecule.h"
#include "MoleculeError.h"
#include "VdWCriterion.h"

#include <ostream>

void ContactCriterion::write(Archive& archive) const
{
    archive.write_string(name());
    archive.write_int32(type_);
    archive.write_int32(min_path_);
    archive.write_int32(max_path_);
    archive.write_bool(active_);
}

void ContactCriterion::read(Archive& archive)
{
    const int32_t type = archive.read_int32();
    const int32_t min_path = archive.read_int32();
    const int32_t max_path = archive.read_int32();
    const bool active = archive.read_bool();
    if (type < Inter || type > Both)
        throw molecule_error("ContactCriterion::read - bad contact type: " + std::to_string(type));
    type_ = type;
    min_path_ = min_path;
    max_path_ = max_path;
    active_ = active;
}

HContactCriterion ContactCriterion::read_criterion(Archive& archive)
{
    const std::string word = archive.read_string();
    HContactCriterion criterion;
    if (word == "DistanceCriterion")
        criterion = HContactCriterion(new DistanceCriterion);
    else if (word == "VdWCriterion")
        criterion = HContactCriterion(new VdWCriterion);
    else if (word == "BondedCriterion")
        criterion = HContactCriterion(new BondedCriterion);
    else if (word == "HBondCriterion")
        criterion = HContactCriterion(new HBondCriterion);
    else if (word == "CombinedCriterion")
        criterion = HContactCriterion(new CombinedCriterion);
    else
        throw molecule_error("Unrecognised contact definition: " + word);
    criterion->read(archive);
    return criterion;
}

std::vector<int> ContactCriterion::active_atoms(const ContactSide& side) const
{
    std::vector<int> all(static_cast<std::size_t>(side.molecule->natoms()));
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<int>(i);
    return all;
}

std::vector<int> ContactCriterion::active_atoms_other(const ContactSide& side) const
{
    return active_atoms(side);
}

bool ContactCriterion::type_match(bool same_molecule) const
{
    return type_ == Both || (type_ == Inter && !same_molecule) || (type_ == Intra && same_molecule);
}

void ContactCriterion::print(std::ostream& out) const
{
    out << "type: "
        << (type_ == Inter   ? "INTER"
            : type_ == Intra ? "INTRA"
                             : "INTRA and INTER")
        << ", min bond path: " << min_path_ << ", max bond path: " << max_path_;
}

bool ContactCriterion::operator==(const ContactCriterion& o) const
{
    return name() == o.name() && type_ == o.type_ && min_path_ == o.min_path_ && max_path_ == o.max_path_ &&
           active_ == o.active_;
}

std::ostream& operator<<(std::ostream& out, const ContactCriterion& criterion)
{
    criterion.print(out);
    return out;
}

#include "CombinedCriterion.h"

#include "Archive.h"
#include "MoleculeError.h"

#include <algorithm>
#include <ostream>

double CombinedCriterion::max_distance(const ContactScope& scope) const
{
    double d = VdWCriterion::max_distance(scope);
    for (const HContactCriterion& c : criteria_)
        d = std::max(d, c->max_distance(scope));
    return d;
}

bool CombinedCriterion::contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                                double& strength) const
{
    if (!is_active())
        return false;
    if (VdWCriterion::contact(a, i, b, j, distance, strength))
        return true;
    for (const HContactCriterion& c : criteria_)
        if (c->contact(a, i, b, j, distance, strength))
            return true;
    return false;
}

void CombinedCriterion::prepare(ContactSide& side) const
{
    for (const HContactCriterion& c : criteria_)
        c->prepare(side);
}

void CombinedCriterion::write(Archive& archive) const
{
    VdWCriterion::write(archive);
    archive.write_int32(static_cast<int32_t>(criteria_.size()));
    for (const HContactCriterion& c : criteria_)
        c->write(archive);
}

void CombinedCriterion::read(Archive& archive)
{
    VdWCriterion::read(archive);
    const int32_t n = archive.read_int32();
    if (n < 0)
        throw molecule_error("CombinedCriterion::read - bad criterion count: " + std::to_string(n));
    std::vector<HContactCriterion> criteria;
    for (int32_t k = 0; k < n; ++k)
        criteria.push_back(read_criterion(archive));
    criteria_ = criteria;
}

void CombinedCriterion::print(std::ostream& out) const
{
    out << "CombinedCriterion of " << criteria_.size() << ": ";
    VdWCriterion::print(out);
    for (const HContactCriterion& c : criteria_)
        out << "\n  " << *c;
}

bool CombinedCriterion::operator==(const ContactCriterion& other) const
{
    const auto* o = dynamic_cast<const CombinedCriterion*>(&other);
    if (!o || !VdWCriterion::operator==(other) || o->criteria_.size() != criteria_.size())
        return false;
    for (std::size_t k = 0; k < criteria_.size(); ++k)
        if (!(*criteria_[k] == *o->criteria_[k]))
            return false;
    return true;
}

HContactCriterion CombinedCriterion::clone() const
{
    auto* copy = new CombinedCriterion(*this);
    for (HContactCriterion& c : copy->criteria_)
        c = c->clone();
    return HContactCriterion(copy);
}

#pragma once

#include "DistanceCriterion.h"

// The bond detector's rule as a contact: the contacts it finds are bonds that cross from one
// symmetry copy to another. Its strength is how far the distance lies inside the bonding limit.
class BondedCriterion : public DistanceCriterion {
public:
    explicit BondedCriterion(int type = Inter) : DistanceCriterion(0.0, 0.0, type) {}

    std::string name() const override { return "BondedCriterion"; }
    double max_distance(const ContactScope& scope) const override
    {
        return 2 * scope.largest_bond_radius + 0.45;
    }
    bool contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                 double& strength) const override;
    HContactCriterion clone() const override { return HContactCriterion(new BondedCriterion(*this)); }
};

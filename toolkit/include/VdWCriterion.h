#pragma once

#include "DistanceCriterion.h"

// A distance measured from the sum of the two van der Waals radii: with tolerances -1000 and 0
// it finds every pair closer than the radii allow.
class VdWCriterion : public DistanceCriterion {
public:
    VdWCriterion(double min_tolerance = -1000.0, double max_tolerance = 0.0, int type = Inter)
        : DistanceCriterion(min_tolerance, max_tolerance, type)
    {
    }

    std::string name() const override { return "VdWCriterion"; }
    double base_distance(const Element& a, const Element& b) const override
    {
        return a.vdw_radius() + b.vdw_radius();
    }
    int strength_type() const override { return 1; }
    void print(std::ostream& out) const override;
    HContactCriterion clone() const override { return HContactCriterion(new VdWCriterion(*this)); }

protected:
    double largest_base(const ContactScope& scope) const override { return 2 * scope.largest_vdw; }
};

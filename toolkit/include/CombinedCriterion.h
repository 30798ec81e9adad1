#pragma once

#include "VdWCriterion.h"

#include <vector>

// Several criteria asked as one: a pair is a contact when its own van der Waals test or any of
// the criteria it holds finds one, with the strength of the first that does.
class CombinedCriterion : public VdWCriterion {
public:
    using VdWCriterion::VdWCriterion;

    void add(const HContactCriterion& criterion) { criteria_.push_back(criterion); }
    const std::vector<HContactCriterion>& criteria() const { return criteria_; }

    std::string name() const override { return "CombinedCriterion"; }
    double max_distance(const ContactScope& scope) const override;
    bool contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                 double& strength) const override;
    void prepare(ContactSide& side) const override;
    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    void print(std::ostream& out) const override;
    bool operator==(const ContactCriterion& other) const override;
    HContactCriterion clone() const override;

private:
    std::vector<HContactCriterion> criteria_;
};

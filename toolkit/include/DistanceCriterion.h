#pragma once

#include "ContactCriterion.h"
#include "Element.h"

#include <set>

// Two atoms are a contact when their distance less a base distance lies between the two
// tolerances; the strength is that difference. The base is 0 here; atomic numbers in `from` and
// `to` (empty: any) restrict the pair, in either direction.
class DistanceCriterion : public ContactCriterion {
public:
    DistanceCriterion(double min_tolerance = 0.0, double max_tolerance = 3.0, int type = Inter)
        : ContactCriterion(type), min_tolerance_(min_tolerance), max_tolerance_(max_tolerance)
    {
    }

    std::string name() const override { return "DistanceCriterion"; }
    double max_distance(const ContactScope& scope) const override;
    bool contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                 double& strength) const override;
    virtual double base_distance(const Element& a, const Element& b) const;
    // 1 for van der Waals contacts, 2 for plain distances.
    virtual int strength_type() const { return 2; }
    // Whether the elements may be the two ends at all.
    virtual bool contact_if_any(const Element& a, const Element& b) const;

    double min_tolerance() const { return min_tolerance_; }
    double max_tolerance() const { return max_tolerance_; }
    void set_tolerances(double min_tolerance, double max_tolerance);
    void set_from(const std::set<int>& atomic_numbers) { from_ = atomic_numbers; }
    void set_to(const std::set<int>& atomic_numbers) { to_ = atomic_numbers; }

    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    void print(std::ostream& out) const override;
    bool operator==(const ContactCriterion& other) const override;
    HContactCriterion clone() const override { return HContactCriterion(new DistanceCriterion(*this)); }

protected:
    // The largest base distance a pair in this crystal can have.
    virtual double largest_base(const ContactScope&) const { return 0.0; }

private:
    double min_tolerance_;
    double max_tolerance_;
    std::set<int> from_;
    std::set<int> to_;
};

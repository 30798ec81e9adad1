#include "DistanceCriterion.h"

#include "Archive.h"
#include "Molecule.h"
#include "MoleculeError.h"

#include <ostream>

double DistanceCriterion::max_distance(const ContactScope& scope) const
{
    return max_tolerance_ + largest_base(scope);
}

double DistanceCriterion::base_distance(const Element&, const Element&) const
{
    return 0.0;
}

bool DistanceCriterion::contact_if_any(const Element& a, const Element& b) const
{
    const auto admits = [](const std::set<int>& set, const Element& e) {
        return set.empty() || set.count(e.atomic_number()) != 0;
    };
    return (admits(from_, a) && admits(to_, b)) || (admits(from_, b) && admits(to_, a));
}

bool DistanceCriterion::contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                                double& strength) const
{
    const Element ea = a.molecule->atom(i)->element(), eb = b.molecule->atom(j)->element();
    if (!is_active() || !contact_if_any(ea, eb))
        return false;
    const double t = distance - base_distance(ea, eb);
    if (t > max_tolerance_ || t < min_tolerance_)
        return false;
    strength = t;
    return true;
}

void DistanceCriterion::set_tolerances(double min_tolerance, double max_tolerance)
{
    min_tolerance_ = min_tolerance;
    max_tolerance_ = max_tolerance;
}

void DistanceCriterion::write(Archive& archive) const
{
    ContactCriterion::write(archive);
    archive.write_double(min_tolerance_);
    archive.write_double(max_tolerance_);
    for (const std::set<int>* set : {&from_, &to_}) {
        archive.write_int32(static_cast<int32_t>(set->size()));
        for (int n : *set)
            archive.write_int32(n);
    }
}

void DistanceCriterion::read(Archive& archive)
{
    ContactCriterion::read(archive);
    const double min_tolerance = archive.read_double();
    const double max_tolerance = archive.read_double();
    std::set<int> sets[2];
    for (std::set<int>& set : sets) {
        const int32_t n = archive.read_int32();
        if (n < 0 || n > 256)
            throw molecule_error("DistanceCriterion::read - bad element count: " + std::to_string(n));
        for (int32_t k = 0; k < n; ++k)
            set.insert(archive.read_int32());
    }
    min_tolerance_ = min_tolerance;
    max_tolerance_ = max_tolerance;
    from_ = sets[0];
    to_ = sets[1];
}

void DistanceCriterion::print(std::ostream& out) const
{
    const auto numbers = [&out](const std::set<int>& set) {
        for (int n : set)
            out << ' ' << n;
    };
    out << "DistanceCriterion max tolerance: " << max_tolerance_ << ", min tolerance: " << min_tolerance_
        << ", from atomic numbers:";
    numbers(from_);
    out << ", to atomic numbers:";
    numbers(to_);
    out << ", ";
    ContactCriterion::print(out);
}

bool DistanceCriterion::operator==(const ContactCriterion& other) const
{
    const auto* o = dynamic_cast<const DistanceCriterion*>(&other);
    return o && ContactCriterion::operator==(other) && min_tolerance_ == o->min_tolerance_ &&
           max_tolerance_ == o->max_tolerance_ && from_ == o->from_ && to_ == o->to_;
}

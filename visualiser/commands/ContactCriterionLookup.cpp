#include "ContactCriterionLookup.h"

HContactCriterion ContactCriterionLookup::find(const std::vector<HContactCriterion>& criteria,
                                               const ContactCriterion& wanted, bool any_state)
{
    for (const HContactCriterion& c : criteria) {
        if (!any_state) {
            if (*c == wanted)
                return c;
            continue;
        }
        const HContactCriterion probe = wanted.clone();
        probe->set_active(c->is_active());
        if (*c == *probe)
            return c;
    }
    return HContactCriterion();
}

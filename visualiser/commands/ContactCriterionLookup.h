#pragma once

#include "ContactCriterion.h"

#include <vector>

// Contact definitions are found in a crystal by what they say, not by handle: a snapshot's
// restore gives a crystal copies of its definitions.
namespace ContactCriterionLookup {

// The first of `criteria` equal to `wanted`, on/off state aside when `any_state`; null if none.
HContactCriterion find(const std::vector<HContactCriterion>& criteria, const ContactCriterion& wanted,
                       bool any_state = false);

} // namespace ContactCriterionLookup

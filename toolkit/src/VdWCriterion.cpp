#include "VdWCriterion.h"

#include <ostream>

void VdWCriterion::print(std::ostream& out) const
{
    out << "VdWCriterion: ";
    DistanceCriterion::print(out);
}

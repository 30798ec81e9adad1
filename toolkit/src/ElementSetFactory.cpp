#include "ElementSetFactory.h"

#include "MoleculeError.h"

namespace {

// The source tables file the lanthanides and actinides under these two extra groups.
constexpr int lanthanide_group = 19;
constexpr int actinide_group = 20;
// Transition row 1 is the fourth period.
constexpr int first_transition_period = 4;

template <typename Predicate> ElementSet elements_where(Predicate wanted)
{
    ElementSet set;
    for (int c = 1; c < Element::count; ++c) {
        const Element e(c);
        if (wanted(e))
            set.add(e);
    }
    return set;
}

} // namespace

ElementSet ElementSetFactory::group(int g)
{
    if (g < 1 || g > 18)
        throw molecule_error("ElementSetFactory::group() - cannot access 1 > group > 18");
    return elements_where([g](const Element& e) { return e.periodic_group() == g; });
}

ElementSet ElementSetFactory::transition_row(int r)
{
    if (r < 1 || r > 4)
        throw molecule_error("ElementSetFactory::transition_row() - cannot access 1 > row > 4");
    return elements_where([r](const Element& e) {
        return e.period() == r + first_transition_period - 1 && e.periodic_group() >= 3 &&
               e.periodic_group() <= 12;
    });
}

ElementSet ElementSetFactory::lanthanides()
{
    return elements_where([](const Element& e) { return e.periodic_group() == lanthanide_group; });
}

ElementSet ElementSetFactory::actinides()
{
    return elements_where([](const Element& e) { return e.periodic_group() == actinide_group; });
}

ElementSet ElementSetFactory::nonmetals()
{
    return elements_where([](const Element& e) { return e.is_nonmetal(); });
}

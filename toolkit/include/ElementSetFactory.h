#pragma once

#include "ElementSet.h"

// Element sets for searches, read from the periodic group and period of each element.
class ElementSetFactory {
public:
    // Group 1 to 18 of the periodic table; fails with "ElementSetFactory::group() - cannot access
    // 1 > group > 18" outside.
    static ElementSet group(int g);
    // The d-block metals of transition row 1 (Sc to Zn) to 4; fails with
    // "ElementSetFactory::transition_row() - cannot access 1 > row > 4" outside.
    static ElementSet transition_row(int r);
    static ElementSet lanthanides();
    static ElementSet actinides();
    static ElementSet nonmetals();
};

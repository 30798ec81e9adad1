#pragma once

#include "Bond.h"
#include "InGraph.h"

// A bond that can stand in one molecule's graph, which knows its ends. Outside a graph those
// questions fail with "BondInGraph::<question> cannot work when graph_ == 0".
class BondInGraph : public InGraph<Bond> {
public:
    HAtom atom1() const override;
    HAtom atom2() const override;
    int index() const override;
    bool cyclic() const override;
};

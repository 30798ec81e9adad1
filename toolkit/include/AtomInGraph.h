#pragma once

#include "Atom.h"
#include "InGraph.h"

// An atom that can stand in one molecule's graph, which answers for it where it is and what it is
// bonded to. Outside a graph those questions fail with "AtomInGraph::<question> cannot work when
// graph_ == 0".
class AtomInGraph : public InGraph<Atom> {
public:
    int index() const override;
    int nbonds() const override;
    bool cyclic() const override;
    std::vector<HAtom> neighbours() const override;
    std::vector<HBond> bonds() const override;
};

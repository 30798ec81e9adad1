#pragma once

#include "Bond.h"

class MoleculeGraphImpl;

// A bond that can stand in one molecule's graph, which knows its ends. Outside a graph those
// questions fail with "BondInGraph::<question> cannot work when graph_ == 0".
class BondInGraph : public Bond {
public:
    // Fails unless graph and self are both set, with self this bond, or both clear.
    void set_graph(MoleculeGraphImpl* graph, const HBond& self);
    MoleculeGraphImpl* graph() const { return graph_; }

    HAtom atom1() const override;
    HAtom atom2() const override;
    int index() const override;
    bool cyclic() const override;

private:
    HBond in_graph(const char* question) const;

    MoleculeGraphImpl* graph_ = nullptr;
    TWeakHandle<Bond> self_;
};

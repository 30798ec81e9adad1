#pragma once

#include "Atom.h"

class MoleculeGraphImpl;

// An atom that can stand in one molecule's graph, which answers for it where it is and what it is
// bonded to. Outside a graph those questions fail with "AtomInGraph::<question> cannot work when
// graph_ == 0".
class AtomInGraph : public Atom {
public:
    // Fails unless graph and self are both set, with self this atom, or both clear.
    void set_graph(MoleculeGraphImpl* graph, const HAtom& self);
    MoleculeGraphImpl* graph() const { return graph_; }

    int index() const override;
    int nbonds() const override;
    bool cyclic() const override;
    std::vector<HAtom> neighbours() const override;
    std::vector<HBond> bonds() const override;

private:
    HAtom in_graph(const char* question) const;

    MoleculeGraphImpl* graph_ = nullptr;
    TWeakHandle<Atom> self_;
};

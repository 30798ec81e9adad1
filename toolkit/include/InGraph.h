#pragma once

#include "THandle.h"

class MoleculeGraphImpl;

// What lets an atom or a bond stand in one molecule's graph: the graph, and a weak handle on
// itself (weak, so that the object does not keep itself alive) by which it asks the graph about
// itself. Failures name the derived class: AtomInGraph for an Atom, BondInGraph for a Bond.
template <class Item> class InGraph : public Item {
public:
    // Fails unless graph and self are both set, with self this object, or both clear.
    void set_graph(MoleculeGraphImpl* graph, const THandle<Item>& self);
    MoleculeGraphImpl* graph() const { return graph_; }

protected:
    // The handle to ask the graph `question` with; fails with "<class>::<question> cannot work
    // when graph_ == 0" outside a graph.
    THandle<Item> in_graph(const char* question) const;

private:
    static const char* const class_name;
    MoleculeGraphImpl* graph_ = nullptr;
    TWeakHandle<Item> self_;
};

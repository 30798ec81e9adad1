#include "BondInGraph.h"

#include "MoleculeError.h"
#include "MoleculeGraphImpl.h"

void BondInGraph::set_graph(MoleculeGraphImpl* graph, const HBond& self)
{
    if (graph && !self)
        throw molecule_error("BondInGraph::set_graphgraph is non-zero: self cannot be zero");
    if (!graph && self)
        throw molecule_error("BondInGraph::set_graphgraph is zero: self cannot be non-zero");
    if (self && self.get() != static_cast<const Bond*>(this))
        throw molecule_error("BondInGraph::set_graphself does not point to this BondInGraph object");
    graph_ = graph;
    self_ = self;
}

HBond BondInGraph::in_graph(const char* question) const
{
    if (!graph_)
        throw molecule_error(std::string("BondInGraph::") + question + " cannot work when graph_ == 0");
    return self_.lock();
}

HAtom BondInGraph::atom1() const
{
    const HBond self = in_graph("atom1");
    return graph_->bond_atom1(self);
}

HAtom BondInGraph::atom2() const
{
    const HBond self = in_graph("atom2");
    return graph_->bond_atom2(self);
}

int BondInGraph::index() const
{
    const HBond self = in_graph("index");
    return graph_->bond_index(self);
}

bool BondInGraph::cyclic() const
{
    const HBond self = in_graph("cyclic");
    return graph_->bond_cyclic(self);
}

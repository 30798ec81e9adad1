#include "AtomInGraph.h"

#include "Bond.h"
#include "MoleculeError.h"
#include "MoleculeGraphImpl.h"

void AtomInGraph::set_graph(MoleculeGraphImpl* graph, const HAtom& self)
{
    if (graph && !self)
        throw molecule_error("AtomInGraph::set_graphgraph is non-zero: self cannot be zero");
    if (!graph && self)
        throw molecule_error("AtomInGraph::set_graphgraph is zero: self cannot be non-zero");
    if (self && self.get() != static_cast<const Atom*>(this))
        throw molecule_error("AtomInGraph::set_graphself does not point to this AtomInGraph object");
    graph_ = graph;
    self_ = self;
}

HAtom AtomInGraph::in_graph(const char* question) const
{
    if (!graph_)
        throw molecule_error(std::string("AtomInGraph::") + question + " cannot work when graph_ == 0");
    return self_.lock();
}

int AtomInGraph::index() const
{
    const HAtom self = in_graph("index");
    return graph_->atom_index(self);
}

int AtomInGraph::nbonds() const
{
    const HAtom self = in_graph("nbonds");
    return graph_->atom_nbonds(self);
}

bool AtomInGraph::cyclic() const
{
    const HAtom self = in_graph("cyclic");
    return graph_->atom_cyclic(self);
}

std::vector<HAtom> AtomInGraph::neighbours() const
{
    const HAtom self = in_graph("neighbours");
    return graph_->atom_neighbours(self);
}

std::vector<HBond> AtomInGraph::bonds() const
{
    const HAtom self = in_graph("bonds");
    return graph_->atom_bonds(self);
}

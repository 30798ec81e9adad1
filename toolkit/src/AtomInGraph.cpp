#include "AtomInGraph.h"

#include "Bond.h"
#include "MoleculeGraphImpl.h"

int AtomInGraph::index() const
{
    const HAtom self = in_graph("index");
    return graph()->atom_index(self);
}

int AtomInGraph::nbonds() const
{
    const HAtom self = in_graph("nbonds");
    return graph()->atom_nbonds(self);
}

bool AtomInGraph::cyclic() const
{
    const HAtom self = in_graph("cyclic");
    return graph()->atom_cyclic(self);
}

std::vector<HAtom> AtomInGraph::neighbours() const
{
    const HAtom self = in_graph("neighbours");
    return graph()->atom_neighbours(self);
}

std::vector<HBond> AtomInGraph::bonds() const
{
    const HAtom self = in_graph("bonds");
    return graph()->atom_bonds(self);
}

#include "BondInGraph.h"

#include "MoleculeGraphImpl.h"

HAtom BondInGraph::atom1() const
{
    const HBond self = in_graph("atom1");
    return graph()->bond_atom1(self);
}

HAtom BondInGraph::atom2() const
{
    const HBond self = in_graph("atom2");
    return graph()->bond_atom2(self);
}

int BondInGraph::index() const
{
    const HBond self = in_graph("index");
    return graph()->bond_index(self);
}

bool BondInGraph::cyclic() const
{
    const HBond self = in_graph("cyclic");
    return graph()->bond_cyclic(self);
}

#pragma once

#include "MoleculeError.h"

// An edge of a graph: two different node ids, in no particular order, and the edge's own id.
template <class Tn, class Te> struct Edge {
    Tn id1;
    Tn id2;
    Te id;

    Edge(const Tn& a, const Tn& b, const Te& edge) : id1(a), id2(b), id(edge)
    {
        if (!(a < b) && !(b < a))
            throw molecule_error("Edge::Edge - invalid edge: id1 equals id2");
    }
    const Tn& other(const Tn& n) const { return (!(n < id1) && !(id1 < n)) ? id2 : id1; }
};

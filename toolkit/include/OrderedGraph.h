#pragma once

#include "Graph.h"
#include "IndexedTable.h"

// A graph that remembers the order in which its nodes and edges came, so that they can be
// numbered: atom 0, atom 1 and so on.
template <class Tn, class Te> class OrderedGraph : public Graph<Tn, Te> {
public:
    void add_node(const Tn& n)
    {
        Graph<Tn, Te>::add_node(n);
        nodes_.add(n);
    }
    void remove_node(const Tn& n)
    {
        if (!this->has_node(n))
            return;
        for (const Te& e : std::vector<Te>(this->node_edges(n)))
            remove_edge(e);
        Graph<Tn, Te>::remove_node(n);
        nodes_.remove(n);
    }
    void add_edge(const Te& e, const Tn& a, const Tn& b)
    {
        Graph<Tn, Te>::add_edge(e, a, b);
        nodes_.add(a);
        nodes_.add(b);
        edges_.add(e);
    }
    void remove_edge(const Te& e)
    {
        if (!this->has_edge(e))
            return;
        Graph<Tn, Te>::remove_edge(e);
        edges_.remove(e);
    }

    int node_index(const Tn& n) const
    {
        if (!nodes_.contains(n))
            throw molecule_error("OrderedGraph::node_index:  no node with the specified id");
        return nodes_.index(n);
    }
    int edge_index(const Te& e) const
    {
        if (!edges_.contains(e))
            throw molecule_error("OrderedGraph::edge_index:  no edge with the specified id");
        return edges_.index(e);
    }
    const IndexedTable<Tn>& nodes() const { return nodes_; }
    const IndexedTable<Te>& edges() const { return edges_; }
    void reorder_nodes(const std::vector<Tn>& order) { nodes_.reorder(order); }

private:
    IndexedTable<Tn> nodes_;
    IndexedTable<Te> edges_;
};

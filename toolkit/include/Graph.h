#pragma once

#include "Edge.h"
#include "MoleculeError.h"

#include <algorithm>
#include <climits>
#include <deque>
#include <iterator>
#include <map>
#include <set>
#include <utility>
#include <vector>

// An undirected graph over node ids and edge ids of any ordered types: atoms and bonds in a
// molecule, integers in a connectivity table. It answers questions of neighbours, sides and
// smallest rings. The ring searches hide edges for a while instead of copying the graph, and
// always show them again before they return.
template <class Tn, class Te> class Graph {
    struct Node {
        std::vector<Te> edges;
        // Scratch of the ring search: the path from the root, and the node it was reached from.
        std::vector<Tn> path;
        const Tn* from = nullptr;
    };

public:
    // Walks the neighbours of a node through its edge list.
    class NeighbourIterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Tn;
        using difference_type = std::ptrdiff_t;
        using pointer = const Tn*;
        using reference = const Tn&;

        NeighbourIterator(const Graph* g, const Tn* node, typename std::vector<Te>::const_iterator it)
            : graph_(g), node_(node), it_(it)
        {
        }
        const Tn& operator*() const { return graph_->edges_.at(*it_).other(*node_); }
        NeighbourIterator& operator++()
        {
            ++it_;
            return *this;
        }
        bool operator!=(const NeighbourIterator& o) const { return it_ != o.it_; }
        bool operator==(const NeighbourIterator& o) const { return it_ == o.it_; }

    private:
        const Graph* graph_;
        const Tn* node_;
        typename std::vector<Te>::const_iterator it_;
    };

    int node_count() const { return static_cast<int>(nodes_.size()); }
    int edge_count() const { return static_cast<int>(edges_.size()); }
    bool has_node(const Tn& n) const { return nodes_.count(n) != 0; }
    bool has_edge(const Te& e) const { return edges_.count(e) != 0; }
    bool joined(const Tn& a, const Tn& b) const { return pairs_.count(ordered(a, b)) != 0; }

    void add_node(const Tn& n) { nodes_.emplace(n, Node()); }
    void remove_node(const Tn& n)
    {
        const auto it = nodes_.find(n);
        if (it == nodes_.end())
            return;
        const std::vector<Te> incident = it->second.edges;
        for (const Te& e : incident)
            remove_edge(e);
        nodes_.erase(n);
    }

    void add_edge(const Te& e, const Tn& a, const Tn& b)
    {
        const Edge<Tn, Te> edge(a, b, e);
        if (edges_.count(e))
            throw molecule_error("Graph::add_edge - duplicate edge identifier");
        if (joined(a, b))
            throw molecule_error("Graph::add_edge - attempt to add edge twice with different identifiers");
        add_node(a);
        add_node(b);
        edges_.emplace(e, edge);
        pairs_.emplace(ordered(a, b), e);
        nodes_[a].edges.push_back(e);
        nodes_[b].edges.push_back(e);
    }
    void remove_edge(const Te& e)
    {
        const auto it = edges_.find(e);
        if (it == edges_.end())
            return;
        for (const Tn* n : {&it->second.id1, &it->second.id2}) {
            auto& list = nodes_[*n].edges;
            list.erase(std::find(list.begin(), list.end(), e));
        }
        pairs_.erase(ordered(it->second.id1, it->second.id2));
        edges_.erase(it);
    }

    const Te& edge_id(const Tn& a, const Tn& b) const
    {
        const auto it = pairs_.find(ordered(a, b));
        if (it == pairs_.end())
            throw molecule_error("Graph::edge_id:  no edge between the two specified nodes");
        return it->second;
    }
    const Tn& edge_node_id1(const Te& e) const
    {
        const auto it = edges_.find(e);
        if (it == edges_.end())
            throw molecule_error("Graph::edge_node_id1:  no edge with specified id");
        return it->second.id1;
    }
    const Tn& edge_node_id2(const Te& e) const
    {
        const auto it = edges_.find(e);
        if (it == edges_.end())
            throw molecule_error("Graph::edge_node_id2:  no edge with specified id");
        return it->second.id2;
    }
    int degree(const Tn& n) const
    {
        const auto it = nodes_.find(n);
        return it == nodes_.end() ? 0 : static_cast<int>(it->second.edges.size());
    }
    const std::vector<Te>& node_edges(const Tn& n) const
    {
        return node(n, "Graph::node_begin_neighbours").edges;
    }
    NeighbourIterator node_begin_neighbours(const Tn& n) const
    {
        const auto it = nodes_.find(n);
        if (it == nodes_.end())
            throw molecule_error("Graph::node_begin_neighbours:  no node with specified id");
        return NeighbourIterator(this, &it->first, it->second.edges.begin());
    }
    NeighbourIterator node_end_neighbours(const Tn& n) const
    {
        const auto it = nodes_.find(n);
        if (it == nodes_.end())
            throw molecule_error("Graph::node_end_neighbours:  no node with specified id");
        return NeighbourIterator(this, &it->first, it->second.edges.end());
    }

    // The edges that join two nodes of the set.
    std::vector<Te> nodes_to_edges(const std::set<Tn>& nodes) const
    {
        for (const Tn& n : nodes)
            if (!has_node(n))
                throw molecule_error(
                    "Graph::nodes_to_edges:   at least one of the nodes does not exist in graph");
        std::vector<Te> out;
        for (const auto& [id, edge] : edges_)
            if (nodes.count(edge.id1) && nodes.count(edge.id2))
                out.push_back(id);
        return out;
    }

    // The nodes on node2's side once the edge between node1 and node2 is cut (node2 included).
    std::set<Tn> nodes_one_side(const Tn& node1, const Tn& node2) const
    {
        const auto it = pairs_.find(ordered(node1, node2));
        if (it == pairs_.end())
            throw molecule_error("Graph::nodes_one_side(): no edge containing node1_id and node2_id");
        const Te& cut = it->second;
        std::set<Tn> seen{node2};
        std::vector<Tn> stack{node2};
        while (!stack.empty()) {
            const Tn n = stack.back();
            stack.pop_back();
            for (const Te& e : nodes_.at(n).edges) {
                if (!(e < cut) && !(cut < e))
                    continue;
                const Tn& m = edges_.at(e).other(n);
                if (seen.insert(m).second)
                    stack.push_back(m);
            }
        }
        return seen;
    }

    // Smallest ring through a root of degree two, by a breadth-first search that carries the path
    // back to the root: a ring closes where two paths meet that share only the root.
    int node2_smallest_ring(const Tn& root, std::set<Tn>& ring)
    {
        ring.clear();
        const auto root_it = nodes_.find(root);
        if (root_it == nodes_.end())
            throw molecule_error(
                "Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not exist");
        const std::vector<Te> root_edges = visible_edges(root);
        if (root_edges.size() != 2)
            throw molecule_error("Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does "
                                 "not have degree = 2");
        std::vector<Node*> touched;
        const auto start = [&](const Tn& n, std::vector<Tn> path, const Tn* from) {
            Node& record = nodes_.at(n);
            record.path = std::move(path);
            record.from = from;
            touched.push_back(&record);
        };
        start(root, {root}, nullptr);
        std::deque<const Tn*> queue;
        for (const Te& e : root_edges) {
            const Tn& n = edges_.at(e).other(root);
            start(n, {root, n}, &root_it->first);
            queue.push_back(&nodes_.find(n)->first);
        }
        int size = 0;
        while (!queue.empty() && size == 0) {
            const Tn& n = *queue.front();
            queue.pop_front();
            Node& nrec = nodes_.at(n);
            for (const Te& e : nrec.edges) {
                if (hidden_.count(e))
                    continue;
                const auto m_it = nodes_.find(edges_.at(e).other(n));
                const Tn& m = m_it->first;
                if (nrec.from && !(m < *nrec.from) && !(*nrec.from < m))
                    continue;
                Node& mrec = m_it->second;
                if (mrec.path.empty()) {
                    std::vector<Tn> path = nrec.path;
                    path.push_back(m);
                    start(m, std::move(path), &n);
                    queue.push_back(&m);
                    continue;
                }
                int shared = 0;
                for (const Tn& a : nrec.path)
                    for (const Tn& b : mrec.path)
                        if (!(a < b) && !(b < a))
                            ++shared;
                if (shared == 1) {
                    ring.insert(nrec.path.begin(), nrec.path.end());
                    ring.insert(mrec.path.begin(), mrec.path.end());
                    size = static_cast<int>(ring.size());
                    break;
                }
            }
        }
        for (Node* record : touched) {
            record->path.clear();
            record->from = nullptr;
        }
        return size;
    }

    int edge_smallest_ring(const Tn& node1, const Tn& node2, std::set<Tn>& ring)
    {
        ring.clear();
        if (!(node1 < node2) && !(node2 < node1))
            throw molecule_error("Graph::edge_smallest_ring(Tn& node1_id, Tn& node2_id, std::set<Tn>& "
                                 "ring):node1_id and node2_id are identical");
        if (!joined(node1, node2))
            throw molecule_error("Graph::edge_smallest_ring(Tn& node1_id, Tn& node2_id, std::set<Tn>& "
                                 "ring):node1_id and node2_id are not connected");
        const bool first = degree(node1) <= degree(node2);
        const Tn& root = first ? node1 : node2;
        const Te& kept = edge_id(node1, node2);
        std::vector<Te> others;
        for (const Te& e : nodes_.at(root).edges)
            if (e < kept || kept < e)
                others.push_back(e);
        return smallest_with_each(root, others, ring);
    }

    int node_smallest_ring(const Tn& node, std::set<Tn>& ring)
    {
        ring.clear();
        if (!has_node(node))
            throw molecule_error(
                "Graph::node_smallest_ring(T& node_id, std::set<Tn>& ring):node_id does not exist");
        const std::vector<Te> edges = nodes_.at(node).edges;
        for (const Te& e : edges)
            hidden_.insert(e);
        int best = INT_MAX;
        std::set<Tn> found;
        for (std::size_t i = 0; i < edges.size(); ++i)
            for (std::size_t j = i + 1; j < edges.size(); ++j) {
                const Tn& a = edges_.at(edges[i]).other(node);
                const Tn& b = edges_.at(edges[j]).other(node);
                if (visible_edges(a).empty() || visible_edges(b).empty())
                    continue;
                hidden_.erase(edges[i]);
                hidden_.erase(edges[j]);
                const int size = node2_smallest_ring(node, found);
                hidden_.insert(edges[i]);
                hidden_.insert(edges[j]);
                if (size > 0 && size < best) {
                    best = size;
                    ring = found;
                }
            }
        for (const Te& e : edges)
            hidden_.erase(e);
        return best == INT_MAX ? 0 : best;
    }

    int angle_smallest_ring(const Tn& left, const Tn& middle, const Tn& right, std::set<Tn>& ring)
    {
        ring.clear();
        if (!(left < right) && !(right < left))
            throw molecule_error("Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& "
                                 "ring):left and right nodes are identical");
        if (!joined(left, middle) || !joined(middle, right))
            throw molecule_error("Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& "
                                 "ring):nodes not connected in sequence left-middle-right");
        const Te& a = edge_id(left, middle);
        const Te& b = edge_id(middle, right);
        std::vector<Te> hide;
        for (const Te& e : nodes_.at(middle).edges)
            if ((e < a || a < e) && (e < b || b < e))
                hide.push_back(e);
        for (const Te& e : hide)
            hidden_.insert(e);
        const int size = node2_smallest_ring(middle, ring);
        for (const Te& e : hide)
            hidden_.erase(e);
        return size;
    }

    // Without a ring size this is a reachability test; with one, the smallest ring through it.
    bool is_edge_cyclic(const Te& e, int* ringsize = nullptr)
    {
        const auto it = edges_.find(e);
        if (it == edges_.end())
            throw molecule_error(
                "Graph::is_edge_cyclic(Te& edge_id, int* ringsize): specified edge does not exist");
        const Tn a = it->second.id1, b = it->second.id2;
        if (ringsize) {
            std::set<Tn> ring;
            *ringsize = edge_smallest_ring(a, b, ring);
            return *ringsize != 0;
        }
        if (degree(a) < 2 || degree(b) < 2)
            return false;
        // Cutting a ring edge leaves its ends on one side.
        return nodes_one_side(b, a).count(b) != 0;
    }

protected:
    static std::pair<Tn, Tn> ordered(const Tn& a, const Tn& b)
    {
        return b < a ? std::make_pair(b, a) : std::make_pair(a, b);
    }

    const Node& node(const Tn& n, const char* caller) const
    {
        const auto it = nodes_.find(n);
        if (it == nodes_.end())
            throw molecule_error(std::string(caller) + ":  no node with specified id");
        return it->second;
    }

private:
    std::vector<Te> visible_edges(const Tn& n) const
    {
        std::vector<Te> out;
        for (const Te& e : nodes_.at(n).edges)
            if (!hidden_.count(e))
                out.push_back(e);
        return out;
    }

    // Hides `others`, the root's edges but one, and shows them again one at a time, so that the
    // root has degree two for each search; keeps the smallest ring found.
    int smallest_with_each(const Tn& root, const std::vector<Te>& others, std::set<Tn>& ring)
    {
        for (const Te& e : others)
            hidden_.insert(e);
        int best = INT_MAX;
        std::set<Tn> found;
        for (const Te& e : others) {
            hidden_.erase(e);
            const int size = node2_smallest_ring(root, found);
            hidden_.insert(e);
            if (size > 0 && size < best) {
                best = size;
                ring = found;
            }
        }
        for (const Te& e : others)
            hidden_.erase(e);
        return best == INT_MAX ? 0 : best;
    }

    std::map<Tn, Node> nodes_;
    std::map<Te, Edge<Tn, Te>> edges_;
    std::map<std::pair<Tn, Tn>, Te> pairs_;
    std::set<Te> hidden_;
};

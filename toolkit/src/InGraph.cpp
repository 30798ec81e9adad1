#include "InGraph.h"

#include "Bond.h"
#include "MoleculeError.h"

#include <string>

template <> const char* const InGraph<Atom>::class_name = "AtomInGraph";
template <> const char* const InGraph<Bond>::class_name = "BondInGraph";

template <class Item> void InGraph<Item>::set_graph(MoleculeGraphImpl* graph, const THandle<Item>& self)
{
    const auto fail = [](const std::string& reason) {
        throw molecule_error(std::string(class_name) + "::set_graph" + reason);
    };
    if (graph && !self)
        fail("graph is non-zero: self cannot be zero");
    if (!graph && self)
        fail("graph is zero: self cannot be non-zero");
    if (self && self.get() != static_cast<const Item*>(this))
        fail(std::string("self does not point to this ") + class_name + " object");
    graph_ = graph;
    self_ = self;
}

template <class Item> THandle<Item> InGraph<Item>::in_graph(const char* question) const
{
    if (!graph_)
        throw molecule_error(std::string(class_name) + "::" + question + " cannot work when graph_ == 0");
    return self_.lock();
}

template class InGraph<Atom>;
template class InGraph<Bond>;

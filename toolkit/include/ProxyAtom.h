#pragma once

#include "AtomInGraph.h"
#include "Site.h"
#include "SymmMap.h"

// A stand-in for an atom that belongs to another molecule: it answers what the real atom answers
// for as long as that atom lives, and fails with "ProxyAtom::<question> - atom is no longer
// valid" afterwards. It changes nothing. Its place and bonds are those of the graph that holds
// the proxy, not of the real atom.
class ProxyAtom : public AtomInGraph {
public:
    explicit ProxyAtom(const HAtom& real) : real_(real) {}

    Element element() const override { return real("element")->element(); }
    int formal_charge() const override { return real("formal_charge")->formal_charge(); }
    double radius() const override { return real("radius")->radius(); }
    std::string label() const override { return real("label")->label(); }
    HSymmMap symmmap() const override { return real("symmmap")->symmmap(); }
    int32_t symmtag() const override { return real("symmtag")->symmtag(); }
    HSite site() const override { return real("site")->site(); }
    bool has_site() const override { return real("has_site")->has_site(); }

    // The real atom, or null once it has gone.
    HAtom target() const { return real_.lock(); }

private:
    HAtom real(const char* question) const;

    TWeakHandle<Atom> real_;
};

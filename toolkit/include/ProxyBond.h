#pragma once

#include "BondInGraph.h"

// A stand-in for a bond of another molecule: its kind is the real bond's while that bond lives,
// and asking after it has gone fails with "ProxyBond::type - bond is no longer valid". Its ends
// are the proxies of the graph that holds it.
class ProxyBond : public BondInGraph {
public:
    explicit ProxyBond(const HBond& real) : real_(real) {}

    BondType type() const override;
    HBond target() const { return real_.lock(); }

private:
    TWeakHandle<Bond> real_;
};

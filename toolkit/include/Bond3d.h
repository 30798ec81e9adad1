#pragma once

#include "BondInGraph.h"

// The concrete bond: its kind, editable unless made read-only.
class Bond3d : public BondInGraph {
public:
    explicit Bond3d(BondType type = BondUnknown);

    BondType type() const override { return type_; }
    // Fails with "Bond3d::set_type: Illegal bond type." outside 0 to 9.
    void set_type(BondType type) override;
    bool editable() const override { return editable_; }
    void set_editable(bool editable) { editable_ = editable; }

private:
    BondType type_;
    bool editable_ = true;
};

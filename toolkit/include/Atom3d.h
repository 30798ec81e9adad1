#pragma once

#include "AtomInGraph.h"
#include "Site.h"
#include "SymmMap.h"

// The concrete atom: everything an atom answers, held by value, and editable unless made
// read-only.
class Atom3d : public AtomInGraph {
public:
    Atom3d();
    Atom3d(const Element& element, const std::string& label, const HSite& site);
    // Takes the values through the interface, with a site and symmetry map of its own; the site
    // only if the atom has one. The copy stands in no graph.
    explicit Atom3d(const Atom& other);
    ~Atom3d() override;

    Element element() const override { return element_; }
    void set_element(const Element& element) override;
    int formal_charge() const override { return formal_charge_; }
    void set_formal_charge(int charge) override;
    double radius() const override { return radius_; }
    void set_radius(double radius) override;
    std::string label() const override { return label_; }
    void set_label(const std::string& label) override;
    HSymmMap symmmap() const override { return symmmap_; }
    void set_symmmap(const HSymmMap& map) override;
    int32_t symmtag() const override { return symmtag_; }
    void set_symmtag(int32_t tag) override;
    HSite site() const override { return site_; }
    void set_site(const HSite& site) override;
    bool has_site() const override { return static_cast<bool>(site_); }

    bool editable() const override { return editable_; }
    void set_editable(bool editable) { editable_ = editable; }

private:
    Element element_;
    int16_t formal_charge_ = 0;
    double radius_ = 0.0;
    bool editable_ = true;
    std::string label_;
    HSymmMap symmmap_;
    int32_t symmtag_ = -1;
    HSite site_;
};

#include "Atom3d.h"

#include "Bond.h"
#include "Site.h"
#include "SymmMap.h"

Atom3d::Atom3d() : radius_(element_.bond_radius())
{
}

Atom3d::Atom3d(const Element& element, const std::string& label, const HSite& site)
    : element_(element), radius_(element.bond_radius()), label_(label), site_(site)
{
}

Atom3d::Atom3d(const Atom& other)
    : element_(other.element()), formal_charge_(static_cast<int16_t>(other.formal_charge())),
      radius_(other.radius()), label_(other.label()),
      symmmap_(other.symmmap() ? HSymmMap(new SymmMap(*other.symmmap())) : HSymmMap()),
      symmtag_(other.symmtag()), site_(other.has_site() ? HSite(new Site(*other.site())) : HSite())
{
}

Atom3d::~Atom3d() = default;

void Atom3d::set_element(const Element& element)
{
    if (!editable_)
        Atom::set_element(element);
    element_ = element;
}

void Atom3d::set_formal_charge(int charge)
{
    if (!editable_)
        Atom::set_formal_charge(charge);
    formal_charge_ = static_cast<int16_t>(charge);
}

void Atom3d::set_radius(double radius)
{
    if (!editable_)
        Atom::set_radius(radius);
    radius_ = radius;
}

void Atom3d::set_label(const std::string& label)
{
    if (!editable_)
        Atom::set_label(label);
    label_ = label;
}

void Atom3d::set_symmmap(const HSymmMap& map)
{
    if (!editable_)
        Atom::set_symmmap(map);
    symmmap_ = map;
}

void Atom3d::set_symmtag(int32_t tag)
{
    if (!editable_)
        Atom::set_symmtag(tag);
    symmtag_ = tag;
}

void Atom3d::set_site(const HSite& site)
{
    if (!editable_)
        Atom::set_site(site);
    site_ = site;
}

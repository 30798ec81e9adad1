#include "Atom.h"

#include "Archive.h"
#include "MoleculeError.h"
#include "Site.h"
#include "SymmMap.h"

#include <ostream>

namespace {

[[noreturn]] void refuse(const char* setter)
{
    throw molecule_error(std::string("Atom::") + setter + " Cannot modify this atom");
}

} // namespace

void Atom::set_element(const Element&)
{
    refuse("set_element");
}

void Atom::set_formal_charge(int)
{
    refuse("set_formal_charge");
}

void Atom::set_radius(double)
{
    refuse("set_radius");
}

void Atom::set_label(const std::string&)
{
    refuse("set_label");
}

void Atom::set_symmmap(const HSymmMap&)
{
    refuse("set_symmmap");
}

void Atom::set_symmtag(int32_t)
{
    refuse("set_symmtag");
}

void Atom::set_site(const HSite&)
{
    refuse("set_site");
}

void Atom::print(std::ostream& out) const
{
    out << "label: " << label() << ", element: " << element() << ", charge: " << formal_charge()
        << ", radius: " << radius() << ", symmtag: " << symmtag();
    if (const HSymmMap map = symmmap())
        out << ", symmmap: " << *map;
    out << ", site: " << site();
}

std::ostream& operator<<(std::ostream& out, const Atom& atom)
{
    atom.print(out);
    return out;
}

// An atom is stored by what it answers, so that any kind of atom can be written and read back as
// an editable one.
void Atom::write(Archive& archive) const
{
    archive.write_int32(element().code());
    archive.write_int32(formal_charge());
    archive.write_double(radius());
    archive.write_string(label());
    archive.write_int32(symmtag());
    const HSymmMap map = symmmap();
    archive.write_bool(static_cast<bool>(map));
    if (map)
        map->write(archive);
    archive.write_bool(has_site());
    if (has_site())
        site()->write(archive);
}

void Atom::read(Archive& archive)
{
    const int code = archive.read_int32();
    if (code < 0 || code >= Element::count)
        throw molecule_error("Element::read: Illegal element code.");
    const int charge = archive.read_int32();
    const double radius = archive.read_double();
    const std::string label = archive.read_string();
    const int32_t tag = archive.read_int32();
    HSymmMap map;
    if (archive.read_bool()) {
        map = HSymmMap(new SymmMap);
        map->read(archive);
    }
    HSite site;
    if (archive.read_bool()) {
        site = HSite(new Site);
        site->read(archive);
    }
    set_element(Element(code));
    set_formal_charge(charge);
    set_radius(radius);
    set_label(label);
    set_symmtag(tag);
    set_symmmap(map);
    set_site(site);
}

#include "NewCrystal.h"

#include "Bond3d.h"
#include "LogAddress.h"
#include "Logger.h"
#include "Molecule3d.h"
#include "MoleculeError.h"
#include "NewCrystalMemento.h"
#include "NewCrystalPrivate.h"

#include <algorithm>
#include <ostream>

NewCrystal::NewCrystal() : d_(new NewCrystalPrivate(HCrystalMaker()))
{
    logDebug(3, "Entered NewCrystal::NewCrystal() - %08X", log_address(this));
}

NewCrystal::NewCrystal(const HCrystalMaker& crystal_maker) : d_(new NewCrystalPrivate(crystal_maker))
{
    logDebug(3, "Entered NewCrystal::NewCrystal(const HCrystalMaker& crystal_maker) - %08X",
             log_address(this));
}

NewCrystal::NewCrystal(const NewCrystalMemento& memento) : d_(new NewCrystalPrivate(HCrystalMaker()))
{
    logDebug(3, "Entered NewCrystal::NewCrystal(const NewCrystalMemento& memento) - %08X", log_address(this));
    memento.restore(*this);
}

NewCrystal& NewCrystal::operator=(const NewCrystalMemento& memento)
{
    logDebug(3, "Entered NewCrystal::operator=(const NewCrystalMemento& memento) - %08X", log_address(this));
    memento.restore(*this);
    set_changed();
    return *this;
}

NewCrystal::~NewCrystal()
{
    logDebug(3, "Entered NewCrystal::~NewCrystal() - %08X", log_address(this));
}

const HCrystalMaker& NewCrystal::crystal_maker() const
{
    return d_->crystal_maker;
}

HCrystal NewCrystal::current() const
{
    return d_->current_crystal();
}

bool NewCrystal::packed() const
{
    return d_->packing;
}

void NewCrystal::set_packing(bool packing)
{
    if (packing == d_->packing)
        return;
    d_->packing = packing;
    changed_from(NewCrystalPrivate::PackingLink);
}

const Box& NewCrystal::packing_box() const
{
    return d_->box;
}

void NewCrystal::set_packing_box(const Box& box)
{
    d_->box = box;
    changed_from(NewCrystalPrivate::PackingLink);
}

void NewCrystal::set_packing_condition(const HSymmetryInclusionCondition& condition)
{
    d_->packing_condition = condition;
    changed_from(NewCrystalPrivate::PackingLink);
}

bool NewCrystal::sliced() const
{
    return d_->slicing;
}

void NewCrystal::set_slicing(bool slicing)
{
    if (slicing == d_->slicing)
        return;
    d_->slicing = slicing;
    changed_from(NewCrystalPrivate::SlicingLink);
}

const Plane& NewCrystal::slicing_plane() const
{
    return d_->plane;
}

void NewCrystal::set_slicing_plane(const Plane& plane)
{
    d_->plane = plane;
    changed_from(NewCrystalPrivate::SlicingLink);
}

double NewCrystal::slicing_thickness() const
{
    return d_->thickness;
}

void NewCrystal::set_slicing_thickness(double thickness)
{
    d_->thickness = thickness;
    changed_from(NewCrystalPrivate::SlicingLink);
}

double NewCrystal::slicing_displacement() const
{
    return d_->displacement;
}

void NewCrystal::set_slicing_displacement(double displacement)
{
    d_->displacement = displacement;
    changed_from(NewCrystalPrivate::SlicingLink);
}

void NewCrystal::set_slicing_condition(const HSymmetryInclusionCondition& condition)
{
    d_->slicing_condition = condition;
    changed_from(NewCrystalPrivate::SlicingLink);
}

const std::vector<HContactCriterion>& NewCrystal::criteria() const
{
    return d_->criteria;
}

void NewCrystal::add_criterion(const HContactCriterion& criterion)
{
    d_->criteria.push_back(criterion);
    d_->base_contacts_valid = false;
    set_changed();
}

void NewCrystal::remove_criterion(const HContactCriterion& criterion)
{
    auto& list = d_->criteria;
    list.erase(std::remove(list.begin(), list.end(), criterion), list.end());
    auto& contacts = d_->contacts;
    contacts.erase(std::remove_if(contacts.begin(), contacts.end(),
                                  [&](const HMolecularContact& c) { return c->criterion == criterion; }),
                   contacts.end());
    d_->base_contacts_valid = false;
    changed_from(NewCrystalPrivate::CurrentLink);
}

void NewCrystal::set_criteria(const std::vector<HContactCriterion>& criteria)
{
    d_->criteria = criteria;
    d_->contacts.clear();
    d_->base_contacts_valid = false;
    changed_from(NewCrystalPrivate::CurrentLink);
}

void NewCrystal::update_contact_criterion(const HContactCriterion& old_criterion,
                                          const HContactCriterion& new_criterion)
{
    auto& list = d_->criteria;
    const auto it = std::find(list.begin(), list.end(), old_criterion);
    if (it == list.end()) {
        logDebug(1, "NewCrystal::update_contact_criterion: contact at %08X not found in crystal at %08X",
                 log_address(old_criterion.get()), log_address(this));
        return;
    }
    *it = new_criterion;
    for (const HMolecularContact& c : d_->contacts)
        if (c->criterion == old_criterion)
            c->criterion = new_criterion;
    d_->base_contacts_valid = false;
    changed_from(NewCrystalPrivate::CurrentLink);
}

void NewCrystal::find_contacts()
{
    if (!d_->base_contacts_valid)
        d_->calculate_base_contacts();
    // With no contact from any molecule of the maker there is none from any copy either.
    if (d_->base_contacts.empty())
        return;
    const NewCrystalPrivate::Snapshot placements = d_->current();
    int added = 0;
    for (const NewCrystalPrivate::Placement& p : placements)
        if (!p.placeholder)
            added += d_->add_contacts(d_->contacts_from(p));
    if (added)
        set_changed();
}

void NewCrystal::find_contacts(int molecule)
{
    const NewCrystalPrivate::Snapshot placements = d_->current();
    if (molecule < 0 || molecule >= static_cast<int>(placements.size()) ||
        placements[static_cast<std::size_t>(molecule)].placeholder)
        return;
    if (d_->add_contacts(d_->contacts_from(placements[static_cast<std::size_t>(molecule)])))
        set_changed();
}

void NewCrystal::find_contacts(const HAtom& atom)
{
    const int p = d_->placement_of(atom);
    if (p < 0)
        return;
    const NewCrystalPrivate::Placement placement = d_->current()[static_cast<std::size_t>(p)];
    std::vector<HMolecularContact> from_atom;
    for (const HMolecularContact& c : d_->contacts_from(placement))
        if (c->from_atom == atom->index())
            from_atom.push_back(c);
    if (d_->add_contacts(from_atom))
        set_changed();
}

int NewCrystal::ncontacts() const
{
    return static_cast<int>(d_->contacts.size());
}

std::vector<HMolecularContact> NewCrystal::contacts() const
{
    const HCrystal crystal = d_->current_crystal();
    std::vector<HMolecularContact> out;
    for (int k = 0; k < crystal->ncontacts(); ++k)
        out.push_back(crystal->contact(k));
    return out;
}

int NewCrystal::contact_number(const MolecularContact& contact) const
{
    const auto& list = d_->contacts;
    const auto it = std::find_if(list.begin(), list.end(), [&](const HMolecularContact& c) {
        return c->from_map == contact.from_map && c->from_atom == contact.from_atom &&
               c->symmmap == contact.symmmap && c->to_atom == contact.to_atom &&
               c->criterion == contact.criterion;
    });
    return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

bool NewCrystal::is_hanging(int contact) const
{
    return d_->hanging(*d_->contacts.at(static_cast<std::size_t>(contact)));
}

void NewCrystal::delete_contact(int contact)
{
    d_->contacts.erase(d_->contacts.begin() + contact);
    changed_from(NewCrystalPrivate::CurrentLink);
}

void NewCrystal::delete_hanging_contacts()
{
    auto& contacts = d_->contacts;
    const auto end = std::remove_if(contacts.begin(), contacts.end(),
                                    [this](const HMolecularContact& c) { return d_->hanging(*c); });
    if (end == contacts.end())
        return;
    contacts.erase(end, contacts.end());
    changed_from(NewCrystalPrivate::CurrentLink);
}

void NewCrystal::reset_contacts()
{
    d_->contacts.clear();
    d_->expansions.clear();
    d_->joined.clear();
    d_->polymer_groups.clear();
    changed_from(NewCrystalPrivate::CurrentLink);
}

void NewCrystal::expand_contact(int contact)
{
    d_->expand_contact(contact);
    set_changed();
}

void NewCrystal::expand_fully()
{
    d_->expand_fully();
    set_changed();
}

void NewCrystal::convert_contacts_to_bonds()
{
    d_->convert_contacts_to_bonds();
    set_changed();
}

void NewCrystal::delete_molecule(const HMolecule& molecule)
{
    const NewCrystalPrivate::Snapshot& cur = d_->current();
    for (const NewCrystalPrivate::Placement& p : cur) {
        if (p.molecule != molecule)
            continue;
        if (p.placeholder) {
            auto& contacts = d_->contacts;
            contacts.erase(std::remove_if(contacts.begin(), contacts.end(),
                                          [&](const HMolecularContact& c) {
                                              return d_->key_of(d_->absolute_to(*c)) == d_->key_of(p.map);
                                          }),
                           contacts.end());
        } else {
            d_->deleted.insert(d_->key_of(p.map));
        }
        changed_from(NewCrystalPrivate::CurrentLink);
        return;
    }
    logDebug(1, "NewCrystal::delete_molecule - did not delete molecule at %08X from crystal at %08X",
             log_address(molecule.get()), log_address(this));
}

bool NewCrystal::polymeric(int molecule) const
{
    return d_->current().at(static_cast<std::size_t>(molecule)).polymeric;
}

bool NewCrystal::is_placeholder(int molecule) const
{
    return d_->current().at(static_cast<std::size_t>(molecule)).placeholder;
}

void NewCrystal::add(const HBond& bond, const HAtom& atom1, const HAtom& atom2)
{
    int p1 = -1, p2 = -1;
    const HAtom base1 = d_->base_atom(atom1, p1);
    if (!base1)
        throw molecule_error(
            "NewCrystal::add(HBond, HAtom, HAtom): atom1 is not related to any of the atoms in this crystal");
    const HAtom base2 = d_->base_atom(atom2, p2);
    if (!base2)
        throw molecule_error(
            "NewCrystal::add(HBond, HAtom, HAtom): atom2 is not related to any of the atoms in this crystal");
    const NewCrystalPrivate::Snapshot& cur = d_->current();
    const SymmMap m1 = cur[static_cast<std::size_t>(p1)].map, m2 = cur[static_cast<std::size_t>(p2)].map;
    CrystalMaker& maker = *d_->crystal_maker;
    if (m1.id == m2.id) {
        if (d_->key_of(m1) != d_->key_of(m2))
            throw molecule_error(
                "NewCrystal::add(HBond, HAtom, HAtom): Cannot join together two symmetry-related molecules.");
        maker.add(bond, base1, base2);
    } else {
        // The second molecule joins the first where the two copies meet.
        const SymmetryImages& images = *d_->images;
        const SymmMap relative =
            images.map_of(images.transformation(m1).inverse() * images.transformation(m2), m1.id);
        const HMolecule moved = images.copy(*maker.molecule(m2.id), relative);
        const HMolecule target = maker.molecule(m1.id);
        target->merge(*moved);
        const Vector3D where = images.transformation(relative) * base2->site()->frac;
        HAtom joined;
        for (int i = 0; i < target->natoms() && !joined; ++i)
            if (target->atom(i)->symmtag() == base2->symmtag() &&
                (target->atom(i)->site()->frac - where).length() < 1e-4)
                joined = target->atom(i);
        target->add(bond, base1, joined);
        std::vector<HMolecule> molecules = maker.molecules();
        std::vector<bool> polymeric;
        for (int i = 0; i < maker.nmolecules(); ++i)
            polymeric.push_back(maker.polymeric(i));
        molecules.erase(molecules.begin() + m2.id);
        polymeric.erase(polymeric.begin() + m2.id);
        maker.replace_molecules(molecules, polymeric);
    }
    d_->set_maker(d_->crystal_maker);
    set_changed();
}

void NewCrystal::remove(const HAtom& atom)
{
    int p = -1;
    const HAtom base = d_->base_atom(atom, p);
    if (!base)
        throw molecule_error(
            "NewCrystal::remove(HAtom): atom is not related to any of the atoms in this crystal");
    d_->crystal_maker->remove(base);
    d_->set_maker(d_->crystal_maker);
    set_changed();
}

namespace {

// The maker's bond behind a bond of a copy, or null.
HBond base_bond(NewCrystalPrivate& d, const HBond& bond)
{
    if (!bond || d.placement_of(bond) < 0)
        return HBond();
    int p1 = -1, p2 = -1;
    const HAtom a = d.base_atom(bond->atom1(), p1), b = d.base_atom(bond->atom2(), p2);
    if (!a || !b)
        return HBond();
    const HMolecule m = d.crystal_maker->molecule(d.current()[static_cast<std::size_t>(p1)].map.id);
    const int index = m->bond_index(a->index(), b->index());
    return index < 0 ? HBond() : m->bond(index);
}

} // namespace

void NewCrystal::remove(const HBond& bond)
{
    const HBond base = base_bond(*d_, bond);
    if (!base)
        throw molecule_error(
            "NewCrystal::remove(HBond): bond is not related to any of the bonds in this crystal");
    d_->crystal_maker->remove(base);
    d_->set_maker(d_->crystal_maker);
    set_changed();
}

void NewCrystal::set_bond_type(const HBond& bond, BondType type)
{
    const HBond base = base_bond(*d_, bond);
    if (!base)
        throw molecule_error("NewCrystal::set_bond_type(HBond, BondType): bond is not related to any of the "
                             "bonds in this crystal");
    base->set_type(type);
    changed_from(NewCrystalPrivate::MakerLink);
}

void NewCrystal::rebuild_snapshot()
{
    logDebug(3, "NewCrystal::rebuild_snapshot");
    d_->invalidate_from(NewCrystalPrivate::MakerLink);
    d_->current();
}

void NewCrystal::rebuild_contacts()
{
    logDebug(3, "NewCrystal::rebuild_contacts");
    d_->base_contacts_valid = false;
    d_->calculate_base_contacts();
    d_->invalidate_from(NewCrystalPrivate::CurrentLink);
}

void NewCrystal::validate() const
{
    d_->current_crystal();
    d_->validate();
}

void NewCrystal::write(Archive& archive) const
{
    NewCrystalMemento(*this).write(archive);
}

void NewCrystal::read(Archive& archive)
{
    NewCrystalMemento memento;
    memento.read(archive);
    memento.restore(*this);
    set_changed();
}

void NewCrystal::changed_from(int link)
{
    d_->invalidate_from(link);
    set_changed();
}

void NewCrystal::print(std::ostream& out) const
{
    out << "packing: " << d_->packing << "\npacking box: ";
    d_->box.print(out);
    out << "\nslicing: " << d_->slicing << "\nslicing plane: ";
    d_->plane.print(out);
    out << "\nslicing thickness: " << d_->thickness << "\nslicing displacement: " << d_->displacement
        << "\ncontact criteria: " << d_->criteria.size() << "\ncontacts: " << d_->contacts.size()
        << "\ncrystal_maker: ";
    d_->crystal_maker->print(out);
    out << "\ncrystal_snapshot:\n";
    d_->print(out);
}

#include "GraphicsCrystal.h"

#include "Archive.h"
#include "Bond3d.h"
#include "GraphicsColors.h"
#include "GraphicsCrystalMemento.h"
#include "GraphicsCrystalState.h"
#include "LogAddress.h"
#include "Logger.h"
#include "NewCrystalMemento.h"

#include <algorithm>
#include <iostream>
#include <unordered_set>

namespace {

// Positions that the toolkit computes twice from the same fractions agree far better than this.
constexpr double same_position = 1e-6;

bool near(const Point& a, const Point& b)
{
    return (a - b).length() < same_position;
}

Point position_of(const Crystal& crystal, const Atom& atom)
{
    return atom.has_site() ? crystal.orthogonal(atom.site()->frac) : Point();
}

} // namespace

bool GraphicsCrystal::apply(VisibilityAction action, bool now)
{
    switch (action) {
    case ActionShow:
        return true;
    case ActionHide:
        return false;
    case ActionToggle:
        return !now;
    }
    return now;
}

std::string GraphicsCrystal::action_name(VisibilityAction action)
{
    switch (action) {
    case ActionShow:
        return "Show";
    case ActionHide:
        return "Hide";
    case ActionToggle:
        return "Toggle";
    }
    return "";
}

std::string GraphicsCrystal::label_action_name(VisibilityAction action)
{
    switch (action) {
    case ActionShow:
        return "Add label";
    case ActionHide:
        return "Remove label";
    case ActionToggle:
        return "Toggle label";
    }
    return "";
}

GraphicsCrystal::GraphicsCrystal() : d_(new GraphicsCrystalState)
{
    logDebug(3, "Entered GraphicsCrystal::GraphicsCrystal() - %08X", log_address(this));
    d_->cell = HGraphicsCell(new GraphicsCell({1, 0, 0}, {0, 1, 0}, {0, 0, 1}));
}

GraphicsCrystal::GraphicsCrystal(const HNewCrystal& crystal) : d_(new GraphicsCrystalState)
{
    logDebug(3, "Entered GraphicsCrystal::GraphicsCrystal(const HNewCrystal& crystal) - %08X",
             log_address(this));
    d_->crystal = crystal;
    make_cell();
    build_objects();
    d_->crystal->connect(this);
}

GraphicsCrystal::~GraphicsCrystal()
{
    if (d_->crystal)
        d_->crystal->disconnect(this);
}

void GraphicsCrystal::make_cell()
{
    const Cell& cell = *d_->crystal->crystal_maker();
    d_->cell = HGraphicsCell(
        new GraphicsCell(cell.orthogonal({1, 0, 0}), cell.orthogonal({0, 1, 0}), cell.orthogonal({0, 0, 1})));
}

GraphicsCrystal& GraphicsCrystal::operator=(const GraphicsCrystalMemento& x)
{
    logDebug(3, "Entered GraphicsCrystal::operator=(const GraphicsCrystalMemento& x) - %08X",
             log_address(this));
    copy_display_properties(x);
    d_->settings = x.settings_;
    // The memento rebuilds the toolkit crystal in place, so its observers stay connected; the
    // rebuild below replaces the notification it would otherwise send.
    if (d_->crystal) {
        *d_->crystal = x.crystal_;
        d_->crystal->clear_changed();
    }
    d_->cell->copy_display_properties(*x.cell_);
    d_->primitives.clear();
    for (const HGraphicsPrimitive& p : x.primitives_)
        d_->primitives.push_back(p->clone());
    build_objects();
    copy_atom_properties(x.atoms_);
    copy_bond_properties(x.bonds_);
    copy_contact_properties(x.contacts_);
    set_changed();
    notify();
    return *this;
}

void GraphicsCrystal::update(Subject& subject)
{
    logDebug(2, "GraphicsCrystal::update NewCrystal changed: %08X", log_address(&subject));
    build_objects();
}

const HNewCrystal& GraphicsCrystal::crystal() const
{
    return d_->crystal;
}

bool GraphicsCrystal::has_content() const
{
    return (d_->crystal && !d_->atoms.empty()) || !d_->primitives.empty();
}

const std::vector<HGraphicsAtom>& GraphicsCrystal::atoms() const
{
    return d_->atoms;
}

const std::vector<HGraphicsBond>& GraphicsCrystal::bonds() const
{
    return d_->bonds;
}

const std::vector<HGraphicsContact>& GraphicsCrystal::contacts() const
{
    return d_->contacts;
}

const std::vector<HGraphicsPrimitive>& GraphicsCrystal::primitives() const
{
    return d_->primitives;
}

const HGraphicsCell& GraphicsCrystal::cell() const
{
    return d_->cell;
}

const Transformation& GraphicsCrystal::orientation() const
{
    return d_->settings.orientation;
}

void GraphicsCrystal::set_orientation(const Transformation& orientation)
{
    d_->settings.orientation = orientation;
}

Point GraphicsCrystal::rotation_centre()
{
    GraphicsCrystalState::Settings& s = d_->settings;
    if (s.rotation_centre_valid)
        return s.rotation_centre;
    bool has_atoms = false;
    if (d_->crystal)
        for (const HMolecule& m : d_->crystal->crystal_maker()->selected())
            has_atoms = has_atoms || m->natoms() > 0;
    if (has_atoms && !d_->atoms.empty()) {
        Point sum;
        for (const HGraphicsAtom& a : d_->atoms)
            sum += a->ortho();
        s.rotation_centre = sum / static_cast<double>(d_->atoms.size());
    } else if (d_->crystal) {
        const Box& box = d_->crystal->packing_box();
        s.rotation_centre = d_->crystal->crystal_maker()->orthogonal((box.min + box.max) * 0.5);
    }
    s.rotation_centre_valid = true;
    return s.rotation_centre;
}

void GraphicsCrystal::set_rotation_centre(const Point& centre)
{
    d_->settings.rotation_centre = centre;
    d_->settings.rotation_centre_valid = true;
}

GraphicsObject::RenderingStyle GraphicsCrystal::default_style() const
{
    return d_->settings.default_style;
}

void GraphicsCrystal::set_default_style(RenderingStyle style)
{
    d_->settings.default_style = style;
}

GraphicsObject::ColorMode GraphicsCrystal::default_color_mode() const
{
    return d_->settings.default_color_mode;
}

void GraphicsCrystal::set_default_color_mode(ColorMode mode)
{
    d_->settings.default_color_mode = mode;
}

RGBA GraphicsCrystal::default_color() const
{
    return d_->settings.default_color;
}

void GraphicsCrystal::set_default_color(const RGBA& color)
{
    d_->settings.default_color = color;
}

bool GraphicsCrystal::show_slicing_bounds() const
{
    return d_->settings.show_slicing_bounds;
}

void GraphicsCrystal::set_show_slicing_bounds(bool show)
{
    if (show == d_->settings.show_slicing_bounds)
        return;
    d_->settings.show_slicing_bounds = show;
    changed();
}

RGBA GraphicsCrystal::calculate_color(const GraphicsAtom& atom, ColorMode mode, const RGBA& color) const
{
    const HAtom behind = this->atom(atom);
    const std::string symbol = behind ? behind->element().symbol() : "Undefined";
    switch (mode) {
    case ColorByElement:
        return GraphicsColors::element(symbol);
    case ColorByColor:
        return color;
    case ColorBySymmetryEquivalence: {
        const int32_t tag = symmtag(atom);
        if (tag == -1) {
            std::cerr << "Atom mismatch?" << std::endl;
            return GraphicsColors::grey();
        }
        return GraphicsColors::palette(tag);
    }
    case ColorByMolecule: {
        if (!behind || !d_->crystal)
            return GraphicsColors::grey();
        const std::vector<HMolecule>& molecules = d_->crystal->current()->molecules();
        for (std::size_t i = 0; i < molecules.size(); ++i)
            if (molecules[i]->has_atom(behind))
                return GraphicsColors::palette(static_cast<int>(i));
        return GraphicsColors::grey();
    }
    case ColorByActiveElement:
        return GraphicsColors::active_element(symbol);
    }
    std::cerr << "GraphicsCrystal::calculate_color: unknown mode:" << static_cast<int>(mode) << std::endl;
    return GraphicsColors::grey();
}

int32_t GraphicsCrystal::symmtag(const GraphicsAtom& atom) const
{
    const auto it = d_->symmtags.find(&atom);
    if (it == d_->symmtags.end() || it->second == -1) {
        std::cerr << "GraphicsCrystal::symmtag " << atom << " " << -1 << std::endl;
        return -1;
    }
    return it->second;
}

bool GraphicsCrystal::passes(const GraphicsAtom& atom, Filter filter) const
{
    const auto element_number = [&]() {
        const HAtom behind = this->atom(atom);
        return behind ? behind->element().atomic_number() : -1;
    };
    switch (filter) {
    case FilterAll:
        return true;
    case FilterHydrogens:
        return element_number() == 1;
    case FilterNonHydrogens: {
        const int z = element_number();
        return z != -1 && z != 1;
    }
    case FilterSelected:
        return atom.selected();
    case FilterCarbons:
        return element_number() == 6;
    case FilterNonCHs: {
        const int z = element_number();
        return z != -1 && z != 1 && z != 6;
    }
    case FilterContactAtoms:
        return std::any_of(d_->contacts.begin(), d_->contacts.end(), [&](const HGraphicsContact& c) {
            return near(atom.ortho(), c->ortho1()) || near(atom.ortho(), c->ortho2());
        });
    }
    return false;
}

std::vector<HGraphicsAtom> GraphicsCrystal::filtered_atoms(Filter filter) const
{
    if (filter == FilterAll)
        return d_->atoms;
    std::vector<HGraphicsAtom> out;
    for (const HGraphicsAtom& a : d_->atom_pool)
        if (passes(*a, filter))
            out.push_back(a);
    return out;
}

namespace {

// Sets a property on the atoms a filter gives, counting those that differed.
template <class Get, class Set> int change_atoms(const std::vector<HGraphicsAtom>& atoms, Get get, Set set)
{
    int n = 0;
    for (const HGraphicsAtom& a : atoms)
        if (get(*a)) {
            set(*a);
            ++n;
        }
    return n;
}

} // namespace

void GraphicsCrystal::set_style(RenderingStyle style, Filter filter)
{
    if (change_atoms(
            filtered_atoms(filter), [&](GraphicsAtom& a) { return a.style() != style; },
            [&](GraphicsAtom& a) { a.set_style(style); }))
        changed();
}

void GraphicsCrystal::set_color(const RGBA& color, Filter filter)
{
    if (change_atoms(
            filtered_atoms(filter), [&](GraphicsAtom& a) { return !a.color().equals(color); },
            [&](GraphicsAtom& a) { a.set_color(color); }))
        changed();
}

void GraphicsCrystal::set_visible(VisibilityAction action, Filter filter)
{
    if (change_atoms(
            filtered_atoms(filter),
            [&](GraphicsAtom& a) { return apply(action, a.visible()) != a.visible(); },
            [&](GraphicsAtom& a) { a.set_visible(apply(action, a.visible())); }))
        changed();
}

void GraphicsCrystal::set_labelled(VisibilityAction action, Filter filter)
{
    if (change_atoms(
            filtered_atoms(filter),
            [&](GraphicsAtom& a) { return apply(action, a.labelled()) != a.labelled(); },
            [&](GraphicsAtom& a) { a.set_labelled(apply(action, a.labelled())); }))
        changed();
}

void GraphicsCrystal::set_selected(VisibilityAction action, Filter filter)
{
    if (change_atoms(
            filtered_atoms(filter),
            [&](GraphicsAtom& a) { return apply(action, a.selected()) != a.selected(); },
            [&](GraphicsAtom& a) { a.set_selected(apply(action, a.selected())); }))
        changed();
}

void GraphicsCrystal::changed()
{
    set_changed();
    notify();
}

HAtom GraphicsCrystal::atom(const GraphicsAtom& atom) const
{
    const auto it = d_->atom_of.find(&atom);
    return it == d_->atom_of.end() ? HAtom() : it->second;
}

HBond GraphicsCrystal::bond(const GraphicsBond& bond) const
{
    const auto it = d_->bond_of.find(&bond);
    return it == d_->bond_of.end() ? HBond() : it->second;
}

HMolecularContact GraphicsCrystal::contact(const GraphicsContact& contact) const
{
    const auto it = d_->contact_of.find(&contact);
    return it == d_->contact_of.end() ? HMolecularContact() : it->second;
}

HGraphicsAtom GraphicsCrystal::graphics_atom(const Atom& atom) const
{
    const auto it = d_->graphics_atom_of.find(&atom);
    return it == d_->graphics_atom_of.end() ? HGraphicsAtom() : it->second;
}

int GraphicsCrystal::molecule_index(const GraphicsAtom& atom) const
{
    const auto it = d_->molecule_of.find(&atom);
    return it == d_->molecule_of.end() ? -1 : it->second;
}

std::vector<HGraphicsAtom> GraphicsCrystal::molecule_atoms(int molecule) const
{
    std::vector<HGraphicsAtom> out;
    for (const HGraphicsAtom& a : d_->atoms)
        if (molecule_index(*a) == molecule)
            out.push_back(a);
    return out;
}

void GraphicsCrystal::crystal_changed()
{
    d_->crystal->notify();
}

void GraphicsCrystal::set_packing(bool packing)
{
    d_->crystal->set_packing(packing);
    crystal_changed();
}

void GraphicsCrystal::set_packing_box(const Box& box)
{
    d_->cell->set_box(box);
    d_->crystal->set_packing_box(box);
    crystal_changed();
}

void GraphicsCrystal::set_slicing(bool slicing)
{
    d_->crystal->set_slicing(slicing);
    crystal_changed();
}

void GraphicsCrystal::set_slicing_plane(const Plane& plane)
{
    d_->crystal->set_slicing_plane(plane);
    crystal_changed();
}

void GraphicsCrystal::set_slicing_thickness(double thickness)
{
    d_->crystal->set_slicing_thickness(thickness);
    crystal_changed();
}

void GraphicsCrystal::set_slicing_displacement(double displacement)
{
    d_->crystal->set_slicing_displacement(displacement);
    crystal_changed();
}

void GraphicsCrystal::add_criterion(const HContactCriterion& criterion)
{
    d_->crystal->add_criterion(criterion);
    crystal_changed();
}

void GraphicsCrystal::remove_criterion(const HContactCriterion& criterion)
{
    d_->crystal->remove_criterion(criterion);
    crystal_changed();
}

void GraphicsCrystal::update_criterion(const HContactCriterion& old_criterion,
                                       const HContactCriterion& new_criterion)
{
    d_->crystal->update_contact_criterion(old_criterion, new_criterion);
    crystal_changed();
}

void GraphicsCrystal::set_criteria(const std::vector<HContactCriterion>& criteria)
{
    d_->crystal->set_criteria(criteria);
    crystal_changed();
}

void GraphicsCrystal::find_contacts()
{
    d_->crystal->find_contacts();
    crystal_changed();
}

void GraphicsCrystal::find_contacts(const GraphicsAtom& atom)
{
    if (const HAtom behind = this->atom(atom)) {
        d_->crystal->find_contacts(behind);
        crystal_changed();
    }
}

void GraphicsCrystal::find_contacts(int molecule)
{
    d_->crystal->find_contacts(molecule);
    crystal_changed();
}

template <class Which> std::vector<int> GraphicsCrystal::contact_numbers(Which which) const
{
    std::vector<int> numbers;
    for (const HMolecularContact& c : d_->crystal->contacts())
        if (which(*c)) {
            const int n = d_->crystal->contact_number(*c);
            if (n >= 0)
                numbers.push_back(n);
        }
    return numbers;
}

void GraphicsCrystal::expand_contact(const GraphicsContact& contact)
{
    const HMolecularContact behind = this->contact(contact);
    if (!behind)
        return;
    const int n = d_->crystal->contact_number(*behind);
    if (n < 0)
        return;
    d_->crystal->expand_contact(n);
    crystal_changed();
}

void GraphicsCrystal::expand_contacts(const GraphicsAtom& atom)
{
    const HAtom behind = this->atom(atom);
    // Expanding keeps each contact in the list, so the numbers stay good while they are used.
    for (int n :
         contact_numbers([&](const MolecularContact& c) { return c.atom1 == behind || c.atom2 == behind; }))
        d_->crystal->expand_contact(n);
    crystal_changed();
}

void GraphicsCrystal::expand_contacts(int molecule)
{
    for (int n : contact_numbers([&](const MolecularContact& c) { return c.molecule1 == molecule; }))
        d_->crystal->expand_contact(n);
    crystal_changed();
}

void GraphicsCrystal::expand_all_contacts()
{
    d_->crystal->expand_fully();
    crystal_changed();
}

void GraphicsCrystal::delete_contact(const GraphicsContact& contact)
{
    const HMolecularContact behind = this->contact(contact);
    if (!behind)
        return;
    const int n = d_->crystal->contact_number(*behind);
    if (n < 0)
        return;
    d_->crystal->delete_contact(n);
    crystal_changed();
}

void GraphicsCrystal::delete_contacts(const GraphicsAtom& atom)
{
    const HAtom behind = this->atom(atom);
    std::vector<int> numbers =
        contact_numbers([&](const MolecularContact& c) { return c.atom1 == behind || c.atom2 == behind; });
    // From the back, so that each deletion leaves the numbers still to come in place.
    std::sort(numbers.rbegin(), numbers.rend());
    for (int n : numbers)
        d_->crystal->delete_contact(n);
    crystal_changed();
}

void GraphicsCrystal::delete_contacts(int molecule)
{
    std::vector<int> numbers = contact_numbers(
        [&](const MolecularContact& c) { return c.molecule1 == molecule || c.molecule2 == molecule; });
    std::sort(numbers.rbegin(), numbers.rend());
    for (int n : numbers)
        d_->crystal->delete_contact(n);
    crystal_changed();
}

void GraphicsCrystal::delete_hanging_contacts()
{
    d_->crystal->delete_hanging_contacts();
    crystal_changed();
}

void GraphicsCrystal::reset_contacts()
{
    d_->crystal->reset_contacts();
    crystal_changed();
}

void GraphicsCrystal::delete_molecule(int molecule)
{
    const HCrystal current = d_->crystal->current();
    if (molecule < 0 || molecule >= current->nmolecules())
        return;
    d_->crystal->delete_molecule(current->molecule(molecule));
    crystal_changed();
}

void GraphicsCrystal::remove_atom(const GraphicsAtom& atom)
{
    d_->crystal->remove(this->atom(atom));
    crystal_changed();
}

void GraphicsCrystal::add_bond(const GraphicsAtom& atom1, const GraphicsAtom& atom2, BondType type)
{
    d_->crystal->add(HBond(new Bond3d(type)), this->atom(atom1), this->atom(atom2));
    crystal_changed();
}

void GraphicsCrystal::remove_bond(const GraphicsBond& bond)
{
    d_->crystal->remove(this->bond(bond));
    crystal_changed();
}

void GraphicsCrystal::set_bond_type(const GraphicsBond& bond, BondType type)
{
    d_->crystal->set_bond_type(this->bond(bond), type);
    crystal_changed();
}

void GraphicsCrystal::add_primitive(const HGraphicsPrimitive& primitive)
{
    d_->primitives.push_back(primitive);
    changed();
}

bool GraphicsCrystal::remove_primitive(const HGraphicsPrimitive& primitive)
{
    auto& list = d_->primitives;
    const auto it = std::find(list.begin(), list.end(), primitive);
    if (it == list.end())
        return false;
    list.erase(it);
    changed();
    return true;
}

void GraphicsCrystal::set_primitives(const std::vector<HGraphicsPrimitive>& primitives)
{
    d_->primitives = primitives;
    changed();
}

void GraphicsCrystal::build_objects()
{
    logDebug(3, "GraphicsCrystal::build_objects");
    if (!d_->crystal)
        return;
    const bool packed = d_->crystal->packed(), sliced = d_->crystal->sliced();
    if (packed != d_->last_packed || sliced != d_->last_sliced)
        d_->settings.rotation_centre_valid = false;
    d_->last_packed = packed;
    d_->last_sliced = sliced;
    // Bonds look up the atoms, and the contact-atom filter looks at the contacts.
    build_atoms();
    build_bonds();
    build_contacts();
    set_changed();
    notify();
}

void GraphicsCrystal::build_atoms()
{
    GraphicsCrystalState& d = *d_;
    d.graphics_atom_of.clear();
    d.atom_of.clear();
    d.molecule_of.clear();
    const HCrystal crystal = d.crystal->current();
    const GraphicsCrystalState::Settings& s = d.settings;
    std::vector<HGraphicsAtom> list;
    std::unordered_set<const GraphicsAtom*> listed;
    for (int mi = 0; mi < crystal->nmolecules(); ++mi) {
        const Molecule& molecule = *crystal->molecule(mi);
        for (int i = 0; i < molecule.natoms(); ++i) {
            const HAtom atom = molecule.atom(i);
            const Point ortho = position_of(*crystal, *atom);
            const int32_t tag = atom->symmtag();
            std::vector<HGraphicsAtom>& equivalents = d.atoms_by_tag[tag];
            const auto found = std::find_if(equivalents.begin(), equivalents.end(),
                                            [&](const HGraphicsAtom& g) { return near(g->ortho(), ortho); });
            HGraphicsAtom g;
            if (found != equivalents.end()) {
                g = *found;
            } else {
                g = HGraphicsAtom(new GraphicsAtom(ortho, atom->radius()));
                g->set_style(s.default_style);
                switch (s.default_color_mode) {
                case ColorByElement:
                    g->set_color(GraphicsColors::element(atom->element().symbol()));
                    break;
                case ColorByColor:
                    g->set_color(s.default_color);
                    break;
                case ColorBySymmetryEquivalence:
                    g->set_color(GraphicsColors::palette(tag));
                    break;
                default:
                    g->set_color(GraphicsColors::grey());
                }
                g->set_visible(true);
                g->set_label(atom->label());
                d.atom_pool.push_back(g);
                equivalents.push_back(g);
            }
            d.symmtags[g.get()] = tag;
            d.graphics_atom_of[atom.get()] = g;
            // Where two toolkit atoms meet in one drawn atom (a placeholder on a whole molecule),
            // the larger molecule owns it.
            const auto owner = d.molecule_of.find(g.get());
            if (owner == d.molecule_of.end() ||
                molecule.natoms() > crystal->molecule(owner->second)->natoms()) {
                d.atom_of[g.get()] = atom;
                d.molecule_of[g.get()] = mi;
            }
            if (listed.insert(g.get()).second)
                list.push_back(g);
            if (!g->active()) {
                // It has just come into view: it takes the look of its first equivalent in view.
                const auto donor = std::find_if(equivalents.begin(), equivalents.end(),
                                                [](const HGraphicsAtom& e) { return e->active(); });
                if (donor != equivalents.end()) {
                    g->set_color((*donor)->color());
                    g->set_style((*donor)->style());
                    g->set_visible((*donor)->visible());
                    g->set_labelled((*donor)->labelled());
                }
                g->set_active(true);
                g->set_selected(false);
            }
        }
    }
    for (const HGraphicsAtom& old : d.atoms)
        old->set_active(false);
    d.atoms = std::move(list);
    for (const HGraphicsAtom& a : d.atoms)
        a->set_active(true);
}

void GraphicsCrystal::build_bonds()
{
    GraphicsCrystalState& d = *d_;
    d.graphics_bond_of.clear();
    d.bond_of.clear();
    const HCrystal crystal = d.crystal->current();
    const GraphicsCrystalState::Settings& s = d.settings;
    std::vector<HGraphicsBond> list;
    std::unordered_set<const GraphicsBond*> listed;
    const auto end_color = [&](const GraphicsAtom& end, const Atom& atom) {
        switch (s.default_color_mode) {
        case ColorByElement:
            return GraphicsColors::element(atom.element().symbol());
        case ColorByColor:
            return s.default_color;
        case ColorBySymmetryEquivalence:
            return GraphicsColors::palette(d.symmtags[&end]);
        default:
            return GraphicsColors::grey();
        }
    };
    for (int mi = 0; mi < crystal->nmolecules(); ++mi) {
        const Molecule& molecule = *crystal->molecule(mi);
        for (int i = 0; i < molecule.nbonds(); ++i) {
            const HBond bond = molecule.bond(i);
            const HAtom a1 = bond->atom1(), a2 = bond->atom2();
            const auto f1 = d.graphics_atom_of.find(a1.get()), f2 = d.graphics_atom_of.find(a2.get());
            if (f1 == d.graphics_atom_of.end() || f2 == d.graphics_atom_of.end())
                continue;
            const HGraphicsAtom g1 = f1->second, g2 = f2->second;
            const int32_t t1 = a1->symmtag(), t2 = a2->symmtag();
            std::vector<HGraphicsBond>& equivalents = d.bonds_by_tags[{std::min(t1, t2), std::max(t1, t2)}];
            const auto found =
                std::find_if(equivalents.begin(), equivalents.end(), [&](const HGraphicsBond& b) {
                    const Point &p = b->atom1()->ortho(), &q = b->atom2()->ortho();
                    return (near(p, g1->ortho()) && near(q, g2->ortho())) ||
                           (near(p, g2->ortho()) && near(q, g1->ortho()));
                });
            HGraphicsBond g;
            if (found != equivalents.end()) {
                g = *found;
            } else {
                g = HGraphicsBond(new GraphicsBond(g1, g2, bond->type()));
                g->set_style(s.default_style);
                g->set_color(end_color(*g1, *a1));
                g->set_color2(end_color(*g2, *a2));
                d.bond_pool.push_back(g);
                equivalents.push_back(g);
            }
            g->set_type(bond->type());
            d.graphics_bond_of[bond.get()] = g;
            d.bond_of[g.get()] = bond;
            if (listed.insert(g.get()).second)
                list.push_back(g);
            if (!g->active()) {
                const auto donor = std::find_if(equivalents.begin(), equivalents.end(),
                                                [](const HGraphicsBond& e) { return e->active(); });
                if (donor != equivalents.end()) {
                    const GraphicsBond& t = **donor;
                    // The template's first half belongs to the atom with its first atom's tag.
                    const bool same_order = d.symmtags[t.atom1().get()] == d.symmtags[g->atom1().get()];
                    g->set_color(same_order ? t.color() : t.color2());
                    g->set_color2(same_order ? t.color2() : t.color());
                    g->set_style(t.style());
                    g->set_visible(t.visible());
                    g->set_labelled(t.labelled());
                }
                g->set_active(true);
                g->set_selected(false);
            }
        }
    }
    for (const HGraphicsBond& old : d.bonds) {
        old->set_active(false);
        old->atom1()->clear_bonds();
        old->atom2()->clear_bonds();
    }
    d.bonds = std::move(list);
    for (const HGraphicsBond& b : d.bonds) {
        b->set_active(true);
        b->atom1()->clear_bonds();
        b->atom2()->clear_bonds();
    }
    for (const HGraphicsBond& b : d.bonds) {
        b->atom1()->add_bond(b.get());
        b->atom2()->add_bond(b.get());
    }
}

void GraphicsCrystal::build_contacts()
{
    GraphicsCrystalState& d = *d_;
    for (const HGraphicsContact& c : d.contact_pool)
        c->set_active(false);
    d.contacts.clear();
    d.contact_of.clear();
    const HCrystal crystal = d.crystal->current();
    for (const HMolecularContact& c : d.crystal->contacts()) {
        const Molecule& m1 = *crystal->molecule(c->molecule1);
        const Molecule& m2 = *crystal->molecule(c->molecule2);
        if (c->atom1->index() >= m1.natoms()) {
            std::cerr << "bounds error - atom_from_index out of range:" << c->atom1->index() << std::endl;
            continue;
        }
        if (c->atom2->index() >= m2.natoms()) {
            std::cerr << "bounds error - atom_to_index out of range:" << c->atom2->index() << std::endl;
            continue;
        }
        const Point p1 = position_of(*crystal, *c->atom1), p2 = position_of(*crystal, *c->atom2);
        const auto found =
            std::find_if(d.contact_pool.begin(), d.contact_pool.end(), [&](const HGraphicsContact& g) {
                return (near(g->ortho1(), p1) && near(g->ortho2(), p2)) ||
                       (near(g->ortho1(), p2) && near(g->ortho2(), p1));
            });
        HGraphicsContact g;
        if (found != d.contact_pool.end()) {
            g = *found;
        } else {
            g = HGraphicsContact(new GraphicsContact(p1, p2));
            d.contact_pool.push_back(g);
        }
        // A hanging contact leads to a molecule not yet brought in: red until it is expanded.
        const RGBA wanted = d.crystal->is_placeholder(c->molecule2) ? RGBA(1, 0, 0, 1) : RGBA(0, 1, 1, 1);
        if (!g->color().equals(wanted))
            g->set_color(wanted);
        g->set_active(true);
        d.contacts.push_back(g);
        d.contact_of[g.get()] = c;
    }
}

namespace {

template <class T>
bool same_size(const char* what, const std::vector<T>& now, const std::vector<T>& from, const void* crystal)
{
    if (now.size() != from.size()) {
        logWarning("GraphicsCrystal::copy_%s_properties size mismatch: %d and %d in %08X", what,
                   static_cast<int>(now.size()), static_cast<int>(from.size()), log_address(crystal));
        return false;
    }
    logDebug(3, "GraphicsCrystal::copy_%s_properties copying %d items in %08X", what,
             static_cast<int>(now.size()), log_address(crystal));
    return true;
}

template <class T> void copy_by_index(const std::vector<T>& now, const std::vector<T>& from)
{
    for (std::size_t i = 0; i < now.size(); ++i)
        now[i]->copy_display_properties(*from[i]);
}

} // namespace

void GraphicsCrystal::copy_atom_properties(const std::vector<HGraphicsAtom>& from)
{
    if (same_size("atom", d_->atoms, from, this))
        copy_by_index(d_->atoms, from);
}

void GraphicsCrystal::copy_bond_properties(const std::vector<HGraphicsBond>& from)
{
    if (same_size("bond", d_->bonds, from, this))
        copy_by_index(d_->bonds, from);
}

void GraphicsCrystal::copy_contact_properties(const std::vector<HGraphicsContact>& from)
{
    if (same_size("contact", d_->contacts, from, this))
        copy_by_index(d_->contacts, from);
}

namespace {

void write_transformation(Archive& archive, const Transformation& t)
{
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            archive.write_double(t(r, c));
}

Transformation read_transformation(Archive& archive)
{
    Transformation t;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            t(r, c) = archive.read_double();
    return t;
}

void write_point(Archive& archive, const Point& p)
{
    archive.write_double(p.x);
    archive.write_double(p.y);
    archive.write_double(p.z);
}

Point read_point(Archive& archive)
{
    Point p;
    p.x = archive.read_double();
    p.y = archive.read_double();
    p.z = archive.read_double();
    return p;
}

template <class T> void write_list(Archive& archive, const std::vector<T>& list)
{
    archive.write_int32(static_cast<int32_t>(list.size()));
    for (const T& object : list)
        object->write(archive);
}

// Reads a list stored by write_list into objects made by `make`, which stand only for their
// stored properties.
template <class T, class Make> std::vector<T> read_list(Archive& archive, Make make)
{
    const int32_t n = archive.read_int32();
    if (n < 0)
        throw molecule_error("GraphicsCrystal::read - bad object count: " + std::to_string(n));
    std::vector<T> list;
    for (int32_t i = 0; i < n; ++i) {
        T object = make();
        object->read(archive);
        list.push_back(object);
    }
    return list;
}

} // namespace

void GraphicsCrystal::write(Archive& archive) const
{
    GraphicsObject::write(archive);
    archive.write_bool(static_cast<bool>(d_->crystal));
    if (d_->crystal)
        NewCrystalMemento(*d_->crystal).write(archive);
    const GraphicsCrystalState::Settings& s = d_->settings;
    write_transformation(archive, s.orientation);
    write_point(archive, s.rotation_centre);
    archive.write_bool(s.rotation_centre_valid);
    archive.write_int32(s.default_style);
    archive.write_int32(s.default_color_mode);
    s.default_color.write(archive);
    archive.write_bool(s.show_slicing_bounds);
    d_->cell->write(archive);
    write_list(archive, d_->atoms);
    write_list(archive, d_->bonds);
    write_list(archive, d_->contacts);
    write_list(archive, d_->primitives);
}

void GraphicsCrystal::read(Archive& archive)
{
    GraphicsObject::read(archive);
    HNewCrystal crystal;
    if (archive.read_bool()) {
        NewCrystalMemento memento;
        memento.read(archive);
        crystal = HNewCrystal(new NewCrystal(memento));
    }
    GraphicsCrystalState::Settings s;
    s.orientation = read_transformation(archive);
    s.rotation_centre = read_point(archive);
    s.rotation_centre_valid = archive.read_bool();
    s.default_style = static_cast<RenderingStyle>(archive.read_int32());
    s.default_color_mode = static_cast<ColorMode>(archive.read_int32());
    s.default_color.read(archive);
    s.show_slicing_bounds = archive.read_bool();
    GraphicsCell cell({1, 0, 0}, {0, 1, 0}, {0, 0, 1});
    cell.read(archive);
    const auto atoms =
        read_list<HGraphicsAtom>(archive, [] { return HGraphicsAtom(new GraphicsAtom({}, 0)); });
    const auto bonds = read_list<HGraphicsBond>(archive, [] {
        return HGraphicsBond(new GraphicsBond(HGraphicsAtom(), HGraphicsAtom(), BondUnknown));
    });
    const auto contacts =
        read_list<HGraphicsContact>(archive, [] { return HGraphicsContact(new GraphicsContact({}, {})); });
    const int32_t nprimitives = archive.read_int32();
    std::vector<HGraphicsPrimitive> primitives;
    for (int32_t i = 0; i < nprimitives; ++i)
        primitives.push_back(GraphicsPrimitive::read_primitive(archive));

    if (d_->crystal)
        d_->crystal->disconnect(this);
    d_.reset(new GraphicsCrystalState);
    d_->crystal = crystal;
    d_->settings = s;
    d_->primitives = primitives;
    if (crystal) {
        make_cell();
        build_objects();
        crystal->connect(this);
    } else {
        d_->cell = HGraphicsCell(new GraphicsCell({1, 0, 0}, {0, 1, 0}, {0, 0, 1}));
    }
    d_->cell->copy_display_properties(cell);
    copy_atom_properties(atoms);
    copy_bond_properties(bonds);
    copy_contact_properties(contacts);
    changed();
}

void GraphicsCrystal::print(std::ostream& out) const
{
    out << "atoms: " << d_->atoms.size() << ", bonds: " << d_->bonds.size()
        << ", contacts: " << d_->contacts.size() << ", primitives: " << d_->primitives.size() << ", ";
    GraphicsObject::print(out);
}

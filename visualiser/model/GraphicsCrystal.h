#pragma once

#include "BondType.h"
#include "Box.h"
#include "ContactCriterion.h"
#include "GraphicsObject.h"
#include "MolecularContact.h"
#include "NewCrystal.h"
#include "Observer.h"
#include "Plane.h"
#include "Subject.h"
#include "Transformation.h"

#include <memory>
#include <string>
#include <vector>

struct GraphicsCrystalState;

// The drawable image of one crystal. It watches a NewCrystal and keeps, for every atom, bond and
// contact the crystal currently holds, one graphics object with the display properties the user
// gave it. The toolkit rebuilds its crystal from scratch after each packing, slicing or contact
// change; the new atoms are matched against a pool of every object ever made, so that an atom
// that was blue and labelled before a repack is blue and labelled after it. The crystal is itself
// a drawable and a Subject: whoever draws it watches it.
class GraphicsCrystal : public GraphicsObject, public Observer, public Subject {
public:
    // Which atoms a display change reaches.
    enum Filter : int32_t {
        FilterAll = 1,
        FilterHydrogens = 2,
        FilterNonHydrogens = 4,
        FilterSelected = 8,
        FilterCarbons = 16,
        FilterNonCHs = 32,
        FilterContactAtoms = 64,
    };
    enum VisibilityAction : int32_t { ActionShow = 0, ActionHide = 1, ActionToggle = 2 };

    // The history's texts: "Show", "Hide", "Toggle"; for labels "Add label", "Remove label",
    // "Toggle label".
    static std::string action_name(VisibilityAction action);
    static std::string label_action_name(VisibilityAction action);
    // The state an action leaves a flag in.
    static bool apply(VisibilityAction action, bool now);

    // Empty, for reading from an archive.
    GraphicsCrystal();
    explicit GraphicsCrystal(const HNewCrystal& crystal);
    GraphicsCrystal(const GraphicsCrystal&) = delete;
    ~GraphicsCrystal() override;
    // Restores a snapshot: the toolkit crystal first, then the display properties of the rebuilt
    // objects by their place in the lists.
    GraphicsCrystal& operator=(const GraphicsCrystalMemento& memento);

    // The NewCrystal changed: rebuild.
    void update(Subject& subject) override;

    const HNewCrystal& crystal() const;
    // A structure, or at least one primitive: otherwise the renderer shows a message instead.
    bool has_content() const;
    const std::vector<HGraphicsAtom>& atoms() const;
    const std::vector<HGraphicsBond>& bonds() const;
    const std::vector<HGraphicsContact>& contacts() const;
    const std::vector<HGraphicsPrimitive>& primitives() const;
    const HGraphicsCell& cell() const;

    const Transformation& orientation() const;
    void set_orientation(const Transformation& orientation);
    // The stored centre, or once per change of packing or slicing the centre of the atoms (of
    // the packing box when there are none).
    Point rotation_centre();
    void set_rotation_centre(const Point& centre);

    RenderingStyle default_style() const;
    void set_default_style(RenderingStyle style);
    ColorMode default_color_mode() const;
    void set_default_color_mode(ColorMode mode);
    RGBA default_color() const;
    void set_default_color(const RGBA& color);
    bool show_slicing_bounds() const;
    // Notifies only when the value changes.
    void set_show_slicing_bounds(bool show);

    // The colour `mode` gives an atom (`color` for ColorByColor); grey, with a line on the error
    // stream, when the mode is unknown or the atom's symmetry tag cannot be found.
    RGBA calculate_color(const GraphicsAtom& atom, ColorMode mode, const RGBA& color) const;
    // The symmetry tag of the toolkit atom behind a graphics atom, or -1.
    int32_t symmtag(const GraphicsAtom& atom) const;

    // FilterAll gives the current atoms; every other filter walks the pool, so it also reaches
    // atoms that are out of the picture at present.
    std::vector<HGraphicsAtom> filtered_atoms(Filter filter) const;
    bool passes(const GraphicsAtom& atom, Filter filter) const;
    // Each changes the atoms the filter gives and notifies when any of them changed.
    using GraphicsObject::set_color;
    using GraphicsObject::set_labelled;
    using GraphicsObject::set_selected;
    using GraphicsObject::set_style;
    using GraphicsObject::set_visible;
    void set_style(RenderingStyle style, Filter filter);
    void set_color(const RGBA& color, Filter filter);
    void set_visible(VisibilityAction action, Filter filter);
    void set_labelled(VisibilityAction action, Filter filter);
    void set_selected(VisibilityAction action, Filter filter);
    // Announces changes made to the objects directly, as commands make them.
    void changed();

    // The toolkit objects behind the drawn ones (null when there is none), and back.
    HAtom atom(const GraphicsAtom& atom) const;
    HBond bond(const GraphicsBond& bond) const;
    HMolecularContact contact(const GraphicsContact& contact) const;
    HGraphicsAtom graphics_atom(const Atom& atom) const;
    // The molecule of the current snapshot that holds a drawn atom, or -1; and its drawn atoms.
    int molecule_index(const GraphicsAtom& atom) const;
    std::vector<HGraphicsAtom> molecule_atoms(int molecule) const;

    // Changes of the toolkit crystal, each followed by a rebuild when it changed anything.
    void set_packing(bool packing);
    // The cell's edges follow the packing box.
    void set_packing_box(const Box& box);
    void set_slicing(bool slicing);
    void set_slicing_plane(const Plane& plane);
    void set_slicing_thickness(double thickness);
    void set_slicing_displacement(double displacement);
    void add_criterion(const HContactCriterion& criterion);
    void remove_criterion(const HContactCriterion& criterion);
    void update_criterion(const HContactCriterion& old_criterion, const HContactCriterion& new_criterion);
    void set_criteria(const std::vector<HContactCriterion>& criteria);
    void find_contacts();
    void find_contacts(const GraphicsAtom& atom);
    void find_contacts(int molecule);
    void expand_contact(const GraphicsContact& contact);
    void expand_contacts(const GraphicsAtom& atom);
    void expand_contacts(int molecule);
    void expand_all_contacts();
    void delete_contact(const GraphicsContact& contact);
    void delete_contacts(const GraphicsAtom& atom);
    void delete_contacts(int molecule);
    void delete_hanging_contacts();
    void reset_contacts();
    void delete_molecule(int molecule);
    // Structure edits; the toolkit's failures (molecule_error) pass to the caller.
    void remove_atom(const GraphicsAtom& atom);
    void add_bond(const GraphicsAtom& atom1, const GraphicsAtom& atom2, BondType type);
    void remove_bond(const GraphicsBond& bond);
    void set_bond_type(const GraphicsBond& bond, BondType type);

    void add_primitive(const HGraphicsPrimitive& primitive);
    // False when the primitive is not this crystal's.
    bool remove_primitive(const HGraphicsPrimitive& primitive);
    void set_primitives(const std::vector<HGraphicsPrimitive>& primitives);

    // The crystal's own fields, the toolkit crystal, the view settings, then the drawn objects in
    // list order with their display properties.
    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    void print(std::ostream& out) const override;

private:
    friend class GraphicsCrystalMemento;

    void make_cell();
    void build_objects();
    void build_atoms();
    void build_bonds();
    void build_contacts();
    void copy_atom_properties(const std::vector<HGraphicsAtom>& from);
    void copy_bond_properties(const std::vector<HGraphicsBond>& from);
    void copy_contact_properties(const std::vector<HGraphicsContact>& from);
    // Tells the toolkit crystal's observers (this one first) what changed.
    void crystal_changed();
    // The contacts of the current snapshot that satisfy `which`, by their numbers in the
    // toolkit crystal's list.
    template <class Which> std::vector<int> contact_numbers(Which which) const;

    std::unique_ptr<GraphicsCrystalState> d_;
};

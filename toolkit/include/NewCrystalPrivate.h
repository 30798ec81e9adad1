#pragma once

#include "Box.h"
#include "ContactCriterion.h"
#include "Crystal.h"
#include "CrystalMaker.h"
#include "MolecularContact.h"
#include "Plane.h"
#include "SymmetryImages.h"
#include "SymmetryInclusionCondition.h"

#include <map>
#include <memory>
#include <set>
#include <tuple>
#include <vector>

// The state and the work of a NewCrystal.
class NewCrystalPrivate {
public:
    // One molecule of a snapshot and the copy it is of crystal maker molecule map.id.
    struct Placement {
        HMolecule molecule;
        SymmMap map;
        bool placeholder = false;
        bool polymeric = false;
    };
    using Snapshot = std::vector<Placement>;
    // A contact of a maker molecule in its own place, to a copy of a maker molecule.
    struct BaseContact {
        int from_atom;
        SymmMap to; // relative to the from molecule; to.id is the maker molecule
        int to_atom;
        double strength;
        HContactCriterion criterion;
    };
    // A placement by the molecule and where it lies, whatever map made it.
    using PlacementKey = std::tuple<int, long long, long long, long long>;

    explicit NewCrystalPrivate(const HCrystalMaker& maker);

    void set_maker(const HCrystalMaker& maker);
    // Marks a link of the chain and those after it for rebuilding.
    void invalidate_from(int link);
    const Snapshot& current();
    HCrystal current_crystal();

    void calculate_base_contacts();
    // The contacts from one placement, moved from the base contacts of its molecule.
    std::vector<HMolecularContact> contacts_from(const Placement& placement);
    // Adds the contacts not yet known; gives the number added.
    int add_contacts(const std::vector<HMolecularContact>& found);
    // Fills the atoms and molecule numbers of a contact from the current snapshot; false when its
    // `from` molecule is not there.
    bool resolve(MolecularContact& contact);
    bool hanging(const MolecularContact& contact);
    void expand_contact(int index);
    bool polymeric_step(const MolecularContact& contact);
    void expand_fully();
    void convert_contacts_to_bonds();
    void validate() const;
    void print(std::ostream& out) const;

    PlacementKey key_of(const SymmMap& map) const;
    SymmMap absolute_to(const MolecularContact& contact) const;
    // The placement of the current snapshot that holds the atom, or -1.
    int placement_of(const HAtom& atom);
    int placement_of(const HBond& bond);
    // The atom of the maker molecule that an atom of a placement is a copy of.
    HAtom base_atom(const HAtom& atom, int& placement);

    HCrystalMaker crystal_maker;
    std::unique_ptr<SymmetryImages> images;
    std::vector<Vector3D> maker_centroids;
    bool packing = false;
    Box box{{0, 0, 0}, {1, 1, 1}};
    HSymmetryInclusionCondition packing_condition;
    bool slicing = false;
    Plane plane;
    double thickness = 1.0;
    double displacement = 0.0;
    HSymmetryInclusionCondition slicing_condition;
    std::vector<HContactCriterion> criteria;
    std::vector<HMolecularContact> contacts;
    std::vector<SymmMap> expansions;
    std::set<PlacementKey> deleted;

    // The four links of the chain, in order.
    Snapshot snapshots[4];
    bool valid[4] = {false, false, false, false};
    // Where each molecule and each placeholder of the current snapshot stands in it.
    std::map<PlacementKey, int> current_index;
    std::map<std::pair<PlacementKey, int>, int> placeholder_index;
    // Copies made for expansions and placeholders, kept while the maker stands, so that a rebuild
    // after each expansion does not copy them all again.
    std::map<PlacementKey, HMolecule> expansion_copies;
    std::map<std::pair<PlacementKey, int>, HMolecule> placeholder_copies;
    // The current snapshot holds merged molecules until the next change.
    bool converted = false;
    HCrystal crystal;

    std::map<int, std::vector<BaseContact>> base_contacts;
    bool base_contacts_valid = false;
    // Molecules joined by expanded contacts, by their keys: the polymer test asks the whole group.
    std::map<PlacementKey, PlacementKey> joined;
    std::set<PlacementKey> polymer_groups;

private:
    Snapshot pack(const Snapshot& from, const class TransformedSolid& region,
                  const SymmetryInclusionCondition& condition) const;
    void build_current();
    PlacementKey group_of(const PlacementKey& key);
    void join(const PlacementKey& a, const PlacementKey& b);
};

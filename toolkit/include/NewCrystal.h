#pragma once

#include "BondType.h"
#include "Box.h"
#include "ContactCriterion.h"
#include "Crystal.h"
#include "CrystalMaker.h"
#include "Plane.h"
#include "Subject.h"
#include "SymmetryInclusionCondition.h"

#include <iosfwd>
#include <memory>

class NewCrystalMemento;
class NewCrystalPrivate;
class NewCrystal;
using HNewCrystal = THandle<NewCrystal>;

// The live crystal a view watches. It keeps a crystal maker, how it is packed and sliced, the
// contact criteria and the contacts a user has asked for, and rebuilds a chain of snapshots on
// demand: the maker's molecules, those packed in a box, those cut by a slab, and the current one
// with expanded contacts and a placeholder atom at the far end of each contact still hanging.
// Every change marks it changed; the caller notifies.
class NewCrystal : public Subject {
public:
    NewCrystal();
    explicit NewCrystal(const HCrystalMaker& crystal_maker);
    explicit NewCrystal(const NewCrystalMemento& memento);
    NewCrystal(const NewCrystal&) = delete;
    NewCrystal& operator=(const NewCrystalMemento& memento);
    ~NewCrystal() override;

    const HCrystalMaker& crystal_maker() const;
    // The current snapshot, rebuilt first if anything changed.
    HCrystal current() const;

    bool packed() const;
    void set_packing(bool packing);
    const Box& packing_box() const;
    void set_packing_box(const Box& box);
    void set_packing_condition(const HSymmetryInclusionCondition& condition);

    bool sliced() const;
    void set_slicing(bool slicing);
    const Plane& slicing_plane() const;
    void set_slicing_plane(const Plane& plane);
    double slicing_thickness() const;
    void set_slicing_thickness(double thickness);
    double slicing_displacement() const;
    void set_slicing_displacement(double displacement);
    void set_slicing_condition(const HSymmetryInclusionCondition& condition);

    const std::vector<HContactCriterion>& criteria() const;
    void add_criterion(const HContactCriterion& criterion);
    void remove_criterion(const HContactCriterion& criterion);
    void set_criteria(const std::vector<HContactCriterion>& criteria);
    // Logs when the criterion is not one of this crystal's.
    void update_contact_criterion(const HContactCriterion& old_criterion,
                                  const HContactCriterion& new_criterion);

    // Looks for contacts from every molecule of the current snapshot, from one molecule, or from
    // one atom, by the active criteria; new ones join the list.
    void find_contacts();
    void find_contacts(int molecule);
    void find_contacts(const HAtom& atom);
    int ncontacts() const;
    // The contacts of the list with their ends in the current snapshot.
    std::vector<HMolecularContact> contacts() const;
    // The place in the list of the contact that one of contacts() stands for, or -1. The list
    // also holds contacts whose molecules the current snapshot lacks, so the two do not share
    // their numbering.
    int contact_number(const MolecularContact& contact) const;
    // Whether the far end of a contact is a placeholder for a molecule not brought in.
    bool is_hanging(int contact) const;
    void delete_contact(int contact);
    void delete_hanging_contacts();
    void reset_contacts();

    // Brings in the whole molecule at the far end of a contact.
    void expand_contact(int contact);
    // Expands every contact and those the new molecules bring, until none is left; a contact
    // that would only step along a polymer is skipped.
    void expand_fully();
    // Makes each contact a bond and merges the molecules it joins, in the current snapshot.
    void convert_contacts_to_bonds();
    // Takes a molecule of the current snapshot out of the picture; logs when it is not there.
    void delete_molecule(const HMolecule& molecule);
    // Whether a molecule of the current snapshot was found to be a polymer.
    bool polymeric(int molecule) const;
    // Whether a molecule of the current snapshot is the one-atom placeholder of a hanging contact.
    bool is_placeholder(int molecule) const;

    // Structure edits on atoms and bonds of any symmetry copy: they act on the maker's molecules.
    void add(const HBond& bond, const HAtom& atom1, const HAtom& atom2);
    void remove(const HAtom& atom);
    void remove(const HBond& bond);
    void set_bond_type(const HBond& bond, BondType type);

    void rebuild_snapshot();
    void rebuild_contacts();
    // Reports duplicates and contacts whose ends are missing to the log.
    void validate() const;

    // Through a NewCrystalMemento: everything the crystal needs to rebuild itself.
    void write(Archive& archive) const;
    void read(Archive& archive);
    void print(std::ostream& out) const;

private:
    friend class NewCrystalMemento;
    // Marks the snapshot chain for rebuilding from `link` on, and this crystal changed.
    void changed_from(int link);

    std::unique_ptr<NewCrystalPrivate> d_;
};

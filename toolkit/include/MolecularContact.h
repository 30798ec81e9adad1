#pragma once

#include "BasicContact.h"
#include "ContactCriterion.h"
#include "SymmMap.h"

class MolecularContact;
using HMolecularContact = THandle<MolecularContact>;
using Hvector_HMolecularContact = THandle<std::vector<HMolecularContact>>;

// A contact found by a criterion between a placed molecule and a symmetry copy: the `from` end
// is atom from_atom of the copy from_map makes of crystal maker molecule from_map.id; the `to`
// end is atom to_atom of the copy symmmap makes of molecule symmmap.id, taken relative to the
// `from` molecule. The two atoms and molecule numbers of the base are filled in for one snapshot.
class MolecularContact : public BasicContact {
public:
    SymmMap from_map;
    int from_atom = -1;
    SymmMap symmmap;
    int to_atom = -1;
    HContactCriterion criterion;
    bool active = true;

    bool intermolecular() const;
    // The same two ends, in either direction.
    bool same_ends(const MolecularContact& other) const;
    void print(std::ostream& out) const override;
};

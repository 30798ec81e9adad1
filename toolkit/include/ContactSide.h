#pragma once

#include "Molecule.h"
#include "Vector3D.h"

#include <vector>

// One molecule as placed for a contact search: its atoms' orthogonal positions and the roles a
// criterion gave its atoms (hydrogen-bond donors and acceptors), worked out once per placement.
struct ContactSide {
    HMolecule molecule;
    std::vector<Vector3D> orthogonal;
    std::vector<int> roles;
};

// What bounds a search in a given crystal: its largest van der Waals and bonding radii.
struct ContactScope {
    double largest_vdw = 0.0;
    double largest_bond_radius = 0.0;
};

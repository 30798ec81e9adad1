#pragma once

#include "THandle.h"

#include <vector>

// The handles by which atoms, bonds and molecules are shared. Every file that lets a handle go
// includes the class's own header, so the object is deleted as what it is.
class Atom;
class Bond;
class Molecule;
class Site;
class SymmMap;

using HAtom = THandle<Atom>;
using HBond = THandle<Bond>;
using HMolecule = THandle<Molecule>;
using HSite = THandle<Site>;
using HSymmMap = THandle<SymmMap>;
using Hvector_HMolecule = THandle<std::vector<HMolecule>>;

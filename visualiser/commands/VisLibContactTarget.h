#pragma once

#include "GraphicsHandles.h"

#include <cstdint>

// Which part of one crystal a contact command works from: a drawn atom, a molecule of the
// current snapshot, or a drawn contact, each by its place in the crystal's lists; or the whole
// crystal.
struct VisLibContactTarget {
    enum Kind { Crystal, Atom, Molecule, Contact };
    Kind kind = Crystal;
    int32_t crystal = -1;
    int index = -1;
};

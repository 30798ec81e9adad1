#pragma once

#include <cstdint>

// The kind of a bond. Detected bonds start as Unknown: distances say that two atoms are bonded,
// not how.
enum BondType : int32_t {
    BondUnknown = 0,
    BondSingle = 1,
    BondDouble = 2,
    BondTriple = 3,
    BondQuadruple = 4,
    BondAromatic = 5,
    BondPolymeric = 6,
    BondDelocalised = 7,
    BondPiReserved = 8,
    BondPi = 9,
};

#pragma once

#include "Transformation.h"

#include <string>

// A crystallographic symmetry operator in fractional coordinates, read from and written to the
// "x,y,z" form of a CIF.
class SymmOp : public Transformation {
public:
    static constexpr double tolerance = 1e-7;

    SymmOp() = default;
    explicit SymmOp(const Transformation& t) : Transformation(t) {}
    // Fails with "Could not read symmetry operator: ", "Invalid symmetry operator: " or one of the
    // fraction messages, each followed by the text as given.
    explicit SymmOp(const std::string& text);

    // Translation first ("1/2-x"), twelfths as fractions, other numbers as a stream prints them.
    std::string text() const;
    // 1, 2, 3, 4, 6 for rotations, -1, -2 (mirror), -3, -4, -6 for improper ones.
    int element_type() const;
    int order() const;

    // A total order up to tolerance in which translations differing by a lattice vector are
    // equal, so that sorted operator lists of one group compare element by element.
    bool operator<(const SymmOp& other) const;
    bool equivalent(const SymmOp& other) const { return !(*this < other) && !(other < *this); }
};

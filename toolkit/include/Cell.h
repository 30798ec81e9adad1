#pragma once

#include "Matrix.h"
#include "Spacegroup.h"
#include "SymmMap.h"
#include "UncertainValue.h"
#include "Vector3D.h"

#include <iosfwd>
#include <optional>

class Archive;

// The unit cell: six parameters as measured, the space group, and the matrices between
// fractional and orthogonal coordinates (a along x, b in the xy plane). A cell whose geometry
// is impossible is kept, marked invalid, with identity matrices, so work in fractional
// coordinates carries on.
class Cell {
public:
    Cell();
    Cell(double a, double b, double c, double alpha, double beta, double gamma, bool degrees = true);
    // Angles as read from a file, in degrees.
    Cell(const UncertainValue& a, const UncertainValue& b, const UncertainValue& c,
         const UncertainValue& alpha, const UncertainValue& beta, const UncertainValue& gamma,
         const Spacegroup& spacegroup);
    virtual ~Cell() = default;

    // The six parameters (value, precision, uncertainty; angles in radians), then the space
    // group. The matrices and validity are worked out again on reading, never trusted from a file.
    virtual void write(Archive& archive) const;
    virtual void read(Archive& archive);
    virtual void print(std::ostream& out) const;

    // Angles in radians.
    const UncertainValue& a() const { return a_; }
    const UncertainValue& b() const { return b_; }
    const UncertainValue& c() const { return c_; }
    const UncertainValue& alpha() const { return alpha_; }
    const UncertainValue& beta() const { return beta_; }
    const UncertainValue& gamma() const { return gamma_; }
    bool valid() const { return valid_; }
    // In cubic Angstroms; 0 for a cell that is not valid.
    double volume() const;

    const Spacegroup& spacegroup() const { return spacegroup_; }
    void set_spacegroup(const Spacegroup& spacegroup) { spacegroup_ = spacegroup; }
    int nsymmops() const { return spacegroup_.nsymmops(); }
    const SymmOp& symmop(int i) const { return spacegroup_.symmop(i); }
    // The map's operator followed by its lattice translation.
    SymmOp symmop(const SymmMap& map) const;

    const Matrix& orthogonal_matrix() const { return orthogonal_; }
    const Matrix& fractional_matrix() const { return fractional_; }
    Vector3D orthogonal(const Vector3D& fractional) const;
    Vector3D fractional(const Vector3D& orthogonal) const;

    // Number of operators over the number that leave the point where it is, modulo lattice
    // translations.
    int site_multiplicity(const Vector3D& point, double tolerance) const;
    // The first operator (and lattice translation) that takes one position onto another.
    std::optional<SymmMap> find_symmmap(const Vector3D& from, const Vector3D& to,
                                        double tolerance = 1e-7) const;

    bool operator==(const Cell& other) const;
    bool operator!=(const Cell& other) const { return !(*this == other); }

private:
    void update_matrices();

    UncertainValue a_, b_, c_, alpha_, beta_, gamma_;
    Spacegroup spacegroup_;
    Matrix orthogonal_ = Matrix::identity(3);
    Matrix fractional_ = Matrix::identity(3);
    bool valid_ = false;
};

std::ostream& operator<<(std::ostream& out, const Cell& cell);

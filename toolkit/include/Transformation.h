#pragma once

#include "Matrix.h"
#include "Vector3D.h"

#include <iosfwd>

// An affine map as a 4 by 4 matrix: rotation in the upper 3 by 3 block, translation in the last
// column, bottom row (0, 0, 0, 1) unless someone sets a projective one.
class Transformation {
public:
    Transformation();
    Transformation(const Matrix& rotation, const Vector3D& translation);
    // Rotation about an axis through the origin.
    Transformation(const Vector3D& axis, double angle, bool degrees);
    virtual ~Transformation() = default;

    virtual void write(std::ostream& out) const;
    virtual void print(std::ostream& out) const;

    double operator()(int row, int col) const { return m_[row][col]; }
    double& operator()(int row, int col) { return m_[row][col]; }

    Matrix rot() const;
    void set_rot(const Matrix& rotation);
    Vector3D trans() const { return {m_[0][3], m_[1][3], m_[2][3]}; }
    void set_trans(const Vector3D& t);

    Transformation operator*(const Transformation& other) const;
    Vector3D operator*(const Vector3D& v) const;
    Transformation inverse() const;
    double trace() const { return m_[0][0] + m_[1][1] + m_[2][2]; }
    double determinant() const;

    bool operator==(const Transformation& other) const;
    bool operator!=(const Transformation& other) const { return !(*this == other); }

protected:
    double m_[4][4];
};

std::ostream& operator<<(std::ostream& out, const Transformation& t);

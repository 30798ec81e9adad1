#include "Transformation.h"

#include "MoleculeError.h"

#include <cmath>
#include <iomanip>
#include <ostream>

Transformation::Transformation()
{
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            m_[i][j] = i == j ? 1.0 : 0.0;
}

Transformation::Transformation(const Matrix& rotation, const Vector3D& translation) : Transformation()
{
    set_rot(rotation);
    set_trans(translation);
}

Transformation::Transformation(const Vector3D& axis, double angle, bool degrees) : Transformation()
{
    if (degrees)
        angle *= 0.017453292519943295;
    const Vector3D u = axis.normalized();
    const double h = angle / 2.0;
    const double w = std::cos(h);
    const double qx = u.x * std::sin(h), qy = u.y * std::sin(h), qz = u.z * std::sin(h);
    m_[0][0] = 1 - 2 * (qy * qy + qz * qz);
    m_[0][1] = 2 * (qx * qy - qz * w);
    m_[0][2] = 2 * (qx * qz + qy * w);
    m_[1][0] = 2 * (qx * qy + qz * w);
    m_[1][1] = 1 - 2 * (qx * qx + qz * qz);
    m_[1][2] = 2 * (qy * qz - qx * w);
    m_[2][0] = 2 * (qx * qz - qy * w);
    m_[2][1] = 2 * (qy * qz + qx * w);
    m_[2][2] = 1 - 2 * (qx * qx + qy * qy);
}

void Transformation::write(std::ostream& out) const
{
    const auto flags = out.flags();
    const auto precision = out.precision();
    out << std::fixed << std::setprecision(3);
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j)
            out << std::setw(8) << m_[i][j];
        out << '\n';
    }
    out.flags(flags);
    out.precision(precision);
}

void Transformation::print(std::ostream& out) const
{
    write(out);
}

Matrix Transformation::rot() const
{
    Matrix r(3, 3);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            r(i, j) = m_[i][j];
    return r;
}

void Transformation::set_rot(const Matrix& rotation)
{
    if (rotation.rows() != 3 || rotation.cols() != 3)
        throw molecule_error("Transformation::set_rot(): must be 3x3 matrix.");
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            m_[i][j] = rotation(i, j);
}

void Transformation::set_trans(const Vector3D& t)
{
    m_[0][3] = t.x;
    m_[1][3] = t.y;
    m_[2][3] = t.z;
}

Transformation Transformation::operator*(const Transformation& o) const
{
    Transformation r;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            double s = 0.0;
            for (int k = 0; k < 4; ++k)
                s += m_[i][k] * o.m_[k][j];
            r.m_[i][j] = s;
        }
    return r;
}

Vector3D Transformation::operator*(const Vector3D& v) const
{
    Vector3D r;
    for (int i = 0; i < 3; ++i)
        r[i] = m_[i][0] * v.x + m_[i][1] * v.y + m_[i][2] * v.z + m_[i][3];
    return r;
}

double Transformation::determinant() const
{
    return m_[0][0] * (m_[1][1] * m_[2][2] - m_[1][2] * m_[2][1]) -
           m_[0][1] * (m_[1][0] * m_[2][2] - m_[1][2] * m_[2][0]) +
           m_[0][2] * (m_[1][0] * m_[2][1] - m_[1][1] * m_[2][0]);
}

namespace {

// Determinant of the 3 by 3 minor of a 4 by 4 matrix without row r and column c.
double minor4(const double m[4][4], int r, int c)
{
    double s[3][3];
    for (int i = 0, si = 0; i < 4; ++i) {
        if (i == r)
            continue;
        for (int j = 0, sj = 0; j < 4; ++j) {
            if (j == c)
                continue;
            s[si][sj++] = m[i][j];
        }
        ++si;
    }
    return s[0][0] * (s[1][1] * s[2][2] - s[1][2] * s[2][1]) -
           s[0][1] * (s[1][0] * s[2][2] - s[1][2] * s[2][0]) +
           s[0][2] * (s[1][0] * s[2][1] - s[1][1] * s[2][0]);
}

} // namespace

Transformation Transformation::inverse() const
{
    Transformation r;
    const bool affine = m_[3][0] == 0.0 && m_[3][1] == 0.0 && m_[3][2] == 0.0 && m_[3][3] == 1.0;
    if (!affine) {
        double det = 0.0;
        for (int j = 0; j < 4; ++j)
            det += ((j % 2) ? -1.0 : 1.0) * m_[0][j] * minor4(m_, 0, j);
        if (det == 0.0)
            throw molecule_error("Singular Matrix in Transformation::inverse()");
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 4; ++j)
                r.m_[j][i] = (((i + j) % 2) ? -1.0 : 1.0) * minor4(m_, i, j) / det;
        return r;
    }
    const double det = determinant();
    if (det == 0.0)
        throw molecule_error("Singular Matrix in Transformation::inverse()");
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            // Cofactor of (j, i), divided by the determinant, is entry (i, j) of the inverse.
            const int r0 = (j + 1) % 3, r1 = (j + 2) % 3, c0 = (i + 1) % 3, c1 = (i + 2) % 3;
            r.m_[i][j] = (m_[r0][c0] * m_[r1][c1] - m_[r0][c1] * m_[r1][c0]) / det;
        }
    const Vector3D t = trans();
    for (int i = 0; i < 3; ++i)
        r.m_[i][3] = -(r.m_[i][0] * t.x + r.m_[i][1] * t.y + r.m_[i][2] * t.z);
    return r;
}

bool Transformation::operator==(const Transformation& o) const
{
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            if (m_[i][j] != o.m_[i][j])
                return false;
    return true;
}

std::ostream& operator<<(std::ostream& out, const Transformation& t)
{
    t.write(out);
    return out;
}

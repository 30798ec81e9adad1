#include "Plane.h"

#include "Archive.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

Plane::Plane(const Vector3D& n, double d) : normal(n.normalized()), distance(d)
{
    // Any axis not along the normal gives an in-plane direction.
    const Vector3D axis = std::fabs(normal.x) < 0.9 ? Vector3D(1, 0, 0) : Vector3D(0, 1, 0);
    v1 = normal.cross(axis).normalized();
    v2 = normal.cross(v1);
}

Plane Plane::fit(const std::vector<Vector3D>& points)
{
    if (points.size() < 3)
        throw std::invalid_argument("A mean plane needs at least three points");
    Vector3D centre;
    for (const Vector3D& p : points)
        centre += p;
    centre = centre / static_cast<double>(points.size());
    // The normal is the direction of least spread: the eigenvector of the scatter matrix with
    // the smallest eigenvalue, found by Jacobi rotations, which a symmetric 3 by 3 matrix
    // brings to diagonal form in a few sweeps.
    double m[3][3] = {};
    for (const Vector3D& p : points) {
        const Vector3D d = p - centre;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                m[i][j] += d[i] * d[j];
    }
    double v[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (int sweep = 0; sweep < 50; ++sweep) {
        const double off = std::fabs(m[0][1]) + std::fabs(m[0][2]) + std::fabs(m[1][2]);
        if (off <= 1e-15 * (std::fabs(m[0][0]) + std::fabs(m[1][1]) + std::fabs(m[2][2])) || off == 0.0)
            break;
        for (int p = 0; p < 2; ++p)
            for (int q = p + 1; q < 3; ++q) {
                if (m[p][q] == 0.0)
                    continue;
                const double theta = (m[q][q] - m[p][p]) / (2 * m[p][q]);
                const double t =
                    (theta >= 0 ? 1.0 : -1.0) / (std::fabs(theta) + std::sqrt(theta * theta + 1));
                const double c = 1 / std::sqrt(t * t + 1), s = t * c;
                for (int k = 0; k < 3; ++k) {
                    const double kp = m[k][p], kq = m[k][q];
                    m[k][p] = c * kp - s * kq;
                    m[k][q] = s * kp + c * kq;
                }
                for (int k = 0; k < 3; ++k) {
                    const double pk = m[p][k], qk = m[q][k];
                    m[p][k] = c * pk - s * qk;
                    m[q][k] = s * pk + c * qk;
                }
                for (int k = 0; k < 3; ++k) {
                    const double kp = v[k][p], kq = v[k][q];
                    v[k][p] = c * kp - s * kq;
                    v[k][q] = s * kp + c * kq;
                }
            }
    }
    int least = 0;
    for (int i = 1; i < 3; ++i)
        if (m[i][i] < m[least][least])
            least = i;
    const Vector3D normal(v[0][least], v[1][least], v[2][least]);
    return Plane(normal, normal.normalized().dot(centre));
}

void Plane::print(std::ostream& out) const
{
    out << "normal: " << normal << ", distance: " << distance << "    v1: " << v1 << "    v2: " << v2;
}

void Plane::write(Archive& archive) const
{
    for (const Vector3D* v : {&normal, &v1, &v2})
        for (int k = 0; k < 3; ++k)
            archive.write_double((*v)[k]);
    archive.write_double(distance);
}

void Plane::read(Archive& archive)
{
    Plane p;
    for (Vector3D* v : {&p.normal, &p.v1, &p.v2})
        for (int k = 0; k < 3; ++k)
            (*v)[k] = archive.read_double();
    p.distance = archive.read_double();
    *this = p;
}

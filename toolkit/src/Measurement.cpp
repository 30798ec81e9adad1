#include "Measurement.h"

#include <cmath>
#include <stdexcept>

namespace {

constexpr double radians_to_degrees = 57.29577951308232;

// The uncertainty a CIF number carries, in its own units: "1.234(5)" gives 0.005.
double sigma(const UncertainValue& v)
{
    return v.has_precision() ? v.uncertainty * std::pow(10.0, -v.precision) : 0.0;
}

Vector3D apply(const Matrix& m, const Vector3D& v)
{
    Vector3D r;
    for (int i = 0; i < 3; ++i)
        r[i] = m(i, 0) * v.x + m(i, 1) * v.y + m(i, 2) * v.z;
    return r;
}

double angle_between(const Vector3D& u, const Vector3D& v)
{
    // atan2 of the cross and dot products stays exact near 0 and 180 degrees, where acos of a
    // rounded cosine would not.
    return std::atan2(u.cross(v).length(), u.dot(v)) * radians_to_degrees;
}

} // namespace

Measurement::Measurement(const Cell& cell, std::vector<Point> points) : points_(std::move(points))
{
    if (points_.size() < 2 || points_.size() > 4)
        throw std::invalid_argument("A measurement takes 2, 3 or 4 atoms");
    std::vector<Vector3D> fractional;
    for (const Point& point : points_)
        fractional.push_back(point.site->frac);
    value_ = at(cell.orthogonal_matrix(), fractional);

    // First-order propagation: each parameter moved by a small step each way gives the slope,
    // and the squared slopes weighted by the squared uncertainties add up. A parameter is a cell
    // length or angle, or a coordinate of one site, which moves every point on that site.
    double variance = 0.0;
    auto add = [&](double slope, double parameter_sigma) {
        variance += slope * slope * parameter_sigma * parameter_sigma;
    };

    const UncertainValue* parameters[6] = {&cell.a(),     &cell.b(),    &cell.c(),
                                           &cell.alpha(), &cell.beta(), &cell.gamma()};
    constexpr double degrees_to_radians = 1.0 / radians_to_degrees;
    for (int p = 0; p < 6; ++p) {
        // Angles are held in radians, their uncertainties in the degrees of the file.
        const double s = sigma(*parameters[p]) * (p >= 3 ? degrees_to_radians : 1.0);
        if (s == 0.0)
            continue;
        double moved[2];
        for (int side = 0; side < 2; ++side) {
            double values[6];
            for (int q = 0; q < 6; ++q)
                values[q] = parameters[q]->value;
            values[p] += side == 0 ? s : -s;
            const Cell shifted(values[0], values[1], values[2], values[3], values[4], values[5], false);
            moved[side] = at(shifted.orthogonal_matrix(), fractional);
        }
        add((moved[0] - moved[1]) / (2 * s), s);
    }

    for (std::size_t i = 0; i < points_.size(); ++i) {
        const Site* site = points_[i].site;
        bool seen = false;
        for (std::size_t j = 0; j < i; ++j)
            seen = seen || points_[j].site == site;
        if (seen)
            continue;
        for (int axis = 0; axis < 3; ++axis) {
            const double s = site->uncertainty[axis];
            if (s == 0.0)
                continue;
            double moved[2];
            for (int side = 0; side < 2; ++side) {
                std::vector<Vector3D> shifted = fractional;
                for (std::size_t j = 0; j < points_.size(); ++j)
                    if (points_[j].site == site)
                        shifted[j][axis] += side == 0 ? s : -s;
                moved[side] = at(cell.orthogonal_matrix(), shifted);
            }
            double slope = (moved[0] - moved[1]) / (2 * s);
            // A torsion near 180 degrees may wrap between the two steps.
            if (points_.size() == 4 && std::fabs(moved[0] - moved[1]) > 180.0)
                slope = (moved[0] - moved[1] - std::copysign(360.0, moved[0] - moved[1])) / (2 * s);
            add(slope, s);
        }
    }
    uncertainty_ = std::sqrt(variance);
}

double Measurement::at(const Matrix& orthogonal, const std::vector<Vector3D>& fractional) const
{
    std::vector<Vector3D> positions;
    for (std::size_t i = 0; i < points_.size(); ++i)
        positions.push_back(apply(orthogonal, points_[i].op * fractional[i]));
    return of_positions(positions);
}

double Measurement::of_positions(const std::vector<Vector3D>& p)
{
    if (p.size() == 2)
        return (p[1] - p[0]).length();
    if (p.size() == 3)
        return angle_between(p[0] - p[1], p[2] - p[1]);
    if (p.size() != 4)
        throw std::invalid_argument("A measurement takes 2, 3 or 4 atoms");
    const Vector3D b1 = p[1] - p[0], b2 = p[2] - p[1], b3 = p[3] - p[2];
    const Vector3D n1 = b1.cross(b2), n2 = b2.cross(b3);
    return std::atan2(b2.length() * b1.dot(n2), n1.dot(n2)) * radians_to_degrees;
}

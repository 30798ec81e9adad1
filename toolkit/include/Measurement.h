#pragma once

#include "Cell.h"
#include "Site.h"
#include "SymmOp.h"
#include "Vector3D.h"

#include <vector>

// A distance, angle or torsion angle between atoms of a crystal, with the standard uncertainty
// that the uncertainties of the atoms' coordinates and of the cell give it. The uncertainties
// are taken as independent, since a CIF does not carry the refinement's covariances: a value
// agrees with the one the refinement program wrote, its uncertainty may differ from that one in
// the last digit.
class Measurement {
public:
    // An atom where it is measured: its site in the asymmetric unit and the operator, translation
    // included, that takes the site there. Points on the same site move together when that
    // site's coordinates vary, as they do in an angle between two images of one atom.
    struct Point {
        const Site* site = nullptr;
        SymmOp op;
    };

    // Two points give the distance between them in ångström, three the angle at the second in
    // degrees, four the torsion angle about the middle two in degrees (positive when, looking
    // from the second point to the third, the first turns clockwise onto the fourth). Other
    // counts fail with "A measurement takes 2, 3 or 4 atoms".
    Measurement(const Cell& cell, std::vector<Point> points);

    double value() const { return value_; }
    // Zero when neither the coordinates nor the cell give an uncertainty.
    double uncertainty() const { return uncertainty_; }

    // The same measurement on positions already in orthogonal coordinates, for atoms that have
    // been moved on the screen. Points that coincide give 0 rather than failing.
    static double of_positions(const std::vector<Vector3D>& orthogonal);

private:
    double at(const Matrix& orthogonal, const std::vector<Vector3D>& fractional) const;

    std::vector<Point> points_;
    double value_ = 0.0;
    double uncertainty_ = 0.0;
};

#include "GraphicsMonitorTorsion.h"

#include <cmath>
#include <cstdio>

double GraphicsMonitorTorsion::value() const
{
    const Vector3D b1 = position(1) - position(0), b2 = position(2) - position(1),
                   b3 = position(3) - position(2);
    const Vector3D n1 = b1.cross(b2), n2 = b2.cross(b3);
    const double b2_length = b2.length();
    if (b2_length == 0.0)
        return 0.0;
    const double y = (b2 * (1.0 / b2_length)).dot(n1.cross(n2));
    return std::atan2(y, n1.dot(n2)) * 180.0 / M_PI;
}

std::string GraphicsMonitorTorsion::label() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value());
    return text;
}

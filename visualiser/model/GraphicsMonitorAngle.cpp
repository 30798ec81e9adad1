#include "GraphicsMonitorAngle.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

double GraphicsMonitorAngle::value() const
{
    const Vector3D u = position(0) - position(1), v = position(2) - position(1);
    const double lengths = u.length() * v.length();
    if (lengths == 0.0)
        return 0.0;
    return std::acos(std::clamp(u.dot(v) / lengths, -1.0, 1.0)) * 180.0 / M_PI;
}

std::string GraphicsMonitorAngle::label() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value());
    return text;
}

#include "GraphicsMonitorDistance.h"

#include <cstdio>

double GraphicsMonitorDistance::value() const
{
    return (position(1) - position(0)).length();
}

std::string GraphicsMonitorDistance::label() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value());
    return text;
}

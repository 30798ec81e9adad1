#pragma once

#include "GraphicsMonitor.h"

// The angle at the second of three atoms, in degrees, labelled "%.2f".
class GraphicsMonitorAngle : public GraphicsMonitor {
public:
    using GraphicsMonitor::GraphicsMonitor;

    double value() const override;
    Type monitor_type() const override { return Angle; }
    std::string label() const override;
};

#pragma once

#include "GraphicsMonitor.h"

// The distance between two atoms, labelled "%.3f".
class GraphicsMonitorDistance : public GraphicsMonitor {
public:
    using GraphicsMonitor::GraphicsMonitor;

    double value() const override;
    Type monitor_type() const override { return Distance; }
    std::string label() const override;
};

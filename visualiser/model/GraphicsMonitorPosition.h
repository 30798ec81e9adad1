#pragma once

#include "GraphicsMonitor.h"

// Where one atom stands: its label is the atom's orthogonal position.
class GraphicsMonitorPosition : public GraphicsMonitor {
public:
    using GraphicsMonitor::GraphicsMonitor;

    double value() const override { return 0.0; }
    Type monitor_type() const override { return Position; }
    // "(%.3f, %.3f, %.3f)"
    std::string label() const override;
};

#pragma once

#include "GraphicsMonitor.h"

// The torsion angle through four atoms, in degrees from -180 to 180, labelled "%.2f". Its sign
// follows the order in which the atoms were picked.
class GraphicsMonitorTorsion : public GraphicsMonitor {
public:
    using GraphicsMonitor::GraphicsMonitor;

    double value() const override;
    Type monitor_type() const override { return Torsion; }
    std::string label() const override;
};

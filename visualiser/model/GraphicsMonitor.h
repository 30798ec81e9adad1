#pragma once

#include "GraphicsCrystalAtomPair.h"
#include "GraphicsObject.h"
#include "Vector3D.h"

#include <string>
#include <vector>

// A measurement on picked atoms: a position, a distance, an angle or a torsion. The atoms are
// measured where they stand on the screen's world frame, each moved by its own crystal's
// orientation and rotation centre, so that a measurement between two crystals holds however
// they have been moved. Its label is the measured value.
class GraphicsMonitor : public GraphicsObject {
public:
    enum Type : int32_t { Position = 1, Distance = 2, Angle = 3, Torsion = 4 };

    explicit GraphicsMonitor(const std::vector<HGraphicsCrystalAtomPair>& atoms);

    virtual double value() const = 0;
    virtual Type monitor_type() const = 0;
    std::string label() const override = 0;

    const std::vector<HGraphicsCrystalAtomPair>& atoms() const { return atoms_; }
    // Atom i in world coordinates.
    Point position(int i) const;
    // Drawn only while every crystal and every atom it measures is in the picture.
    bool drawable() const;

    // "label:", then the value.
    void print(std::ostream& out) const override;

private:
    std::vector<HGraphicsCrystalAtomPair> atoms_;
};

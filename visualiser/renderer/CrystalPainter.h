#pragma once

#include "GraphicsHandles.h"
#include "RGBA.h"
#include "Vector3D.h"

#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

class GLBitmapFont;
class GraphicsCrystal;
class RendererCrystalDisplaySettings;
class ShapeLists;
struct RendererSettings;

// Emits the GL calls that draw one crystal, or that name its objects for selection-mode picking,
// for the renderer to record into the crystal's display lists. Objects are sorted by style so
// that each routine keeps its GL state; spheres, sticks and markers go into a few long triangle
// strips that carry their colours point by point.
class CrystalPainter {
public:
    // Shapes are drawn with as many facets as they need at `pixels_per_unit` pixels to the
    // Angstrom on the screen.
    CrystalPainter(const RendererSettings& settings, const ShapeLists& shapes, const GLBitmapFont& font,
                   const RendererCrystalDisplaySettings& display, double pixels_per_unit);

    void draw(GraphicsCrystal& crystal);
    // The pixels to the Angstrom between which every shape that `draw` emitted would still be
    // given the same number of facets, from `lowest` up to but not including `highest`.
    void scale_range(double& lowest, double& highest) const;
    // Whether an object whose bounding sphere is given may cover the picked pixels.
    using PickFilter = std::function<bool(const Point& centre, double radius)>;

    // Under the renderer's name for the crystal: the object type, then each object's number.
    // Atoms, bonds and contacts that `near` turns down are left out.
    void pick(GraphicsCrystal& crystal, const PickFilter& near);
    // A line of text at the bottom left of the view, in yellow.
    void draw_message(const std::string& text);

private:
    void draw_atoms(const GraphicsCrystal& crystal);
    void draw_bonds(const GraphicsCrystal& crystal);
    void draw_wireframe_bonds(const std::vector<const GraphicsBond*>& bonds);
    void draw_stick_bonds(const std::vector<const GraphicsBond*>& bonds, bool capped);
    void draw_aromatics(const GraphicsCrystal& crystal);
    void draw_cell(const GraphicsCrystal& crystal);
    void draw_contacts(const GraphicsCrystal& crystal);
    void draw_primitives(GraphicsCrystal& crystal, bool picking);
    void draw_selection_markers(const GraphicsCrystal& crystal);
    void draw_object_labels(const GraphicsCrystal& crystal);
    void pick_atoms(const GraphicsCrystal& crystal);
    void pick_bonds(const GraphicsCrystal& crystal);
    void pick_contacts(const GraphicsCrystal& crystal);

    // The radius an atom is drawn at in a sphere style.
    double atom_radius(const GraphicsAtom& atom) const;
    void sphere(const Point& centre, double radius, unsigned list);
    // The facets of a shape of `radius` on the screen, which narrows the scale range.
    int slices(double radius);
    RGBA atom_color(const GraphicsAtom& atom) const;
    // The two halves' colours, with the selection shown when colours change on selection.
    std::array<RGBA, 2> bond_colors(const GraphicsBond& bond) const;
    // The box a plane is cut to: the packing box when the crystal is packed or sliced, else the
    // bounds of the atoms.
    std::array<Point, 8> clip_box(GraphicsCrystal& crystal) const;

    const RendererSettings& settings_;
    const ShapeLists& shapes_;
    const GLBitmapFont& font_;
    const RendererCrystalDisplaySettings& display_;
    PickFilter near_;
    double pixels_per_unit_;
    double lowest_scale_ = 0;
    double highest_scale_ = HUGE_VAL;
};

#pragma once

#include "GraphicsHandles.h"
#include "RGBA.h"
#include "RendererCrystalDisplaySettings.h"
#include "RendererSettings.h"
#include "RendererViewState.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class Archive;

// Draws GraphicsCrystals with OpenGL 1.1 immediate mode into whatever GL context is current, and
// answers what lies under a pixel. It owns no window: a widget makes its context current and
// calls initialiseGL, resize, paint and pick. Each crystal is compiled into a display list, so
// that turning the view costs a matrix and a list call; the list is thrown away only when the
// crystal changes. A pick draws, in selection mode, only the objects that land near the point.
class Renderer {
public:
    enum ObjectType : int32_t {
        ObjectAtom = 1,
        ObjectBond = 2,
        ObjectContact = 4,
        ObjectMonitor = 8,
        ObjectPrimitive = 16,
        ObjectSurface = 32,
    };
    static constexpr int32_t archive_version = 1;

    Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;
    ~Renderer();

    void addGraphicsCrystal(const HGraphicsCrystal& crystal);
    void removeGraphicsCrystal(const HGraphicsCrystal& crystal);
    void clearGraphicsCrystals();
    std::vector<HGraphicsCrystal> graphicsCrystals() const;

    // Lights, materials, the shapes and the label font, in the current context.
    void initialiseGL();
    // Frees every list while the context that made them is still current.
    void destroyGL();
    bool initialised() const;
    void resize(int width, int height);
    int width() const;
    int height() const;

    void paint();
    // Window coordinates, y downwards as a widget's mouse events give them.
    void pick(int x, int y);
    // What the last pick found: null and 0 when it hit nothing.
    HGraphicsCrystal pickedCrystal() const;
    int32_t pickedType() const;
    HGraphicsObject pickedObject() const;

    void addMonitor(const HGraphicsMonitor& monitor);
    void removeMonitor(const HGraphicsMonitor& monitor);
    void clearMonitors();
    void setMonitors(const std::vector<HGraphicsMonitor>& monitors);
    const std::vector<HGraphicsMonitor>& monitors() const;

    // The crystal changed: its list is queued for deletion and recompiled at the next paint. The
    // caller asks for the redraw.
    void graphicsCrystalUpdated(const HGraphicsCrystal& crystal);
    // Makes the crystal's centre the centre of rotation of the whole view.
    void graphicsCrystalCenterUpdated(const HGraphicsCrystal& crystal);

    const RendererViewState& viewState() const;
    void setViewState(const RendererViewState& state);
    const Transformation& orientation() const;
    void setOrientation(const Transformation& orientation);
    Point rotationCentre() const;
    // Moves the centre without moving the picture: the orientation takes up the difference.
    void setRotationCentre(const Point& centre);
    const Point& eyePosition() const;
    void setEyePosition(const Point& eye);
    double fieldOfView() const;
    // Clamped to 0.05 to 120 degrees; the eye moves so that the picture keeps its size at the
    // rotation centre.
    void setFieldOfView(double degrees);
    // Where a point of a crystal lands in the window (y downwards); false when it lies behind
    // the eye.
    bool project(GraphicsCrystal& crystal, const Point& ortho, double& x, double& y) const;

    bool useBackdrop() const;
    void setUseBackdrop(bool use);
    const std::array<RGBA, 4>& backdropColors() const;
    void setBackdropColors(const RGBA& top_right, const RGBA& top_left, const RGBA& bottom_left,
                           const RGBA& bottom_right);
    double baseLineWidth() const;
    double lineWidth() const;
    void setLineWidth(double width);
    const RendererSettings& settings() const;
    // Colour change and markers of selected objects; every crystal is recompiled.
    void setSelectionDisplay(uint32_t flags);
    const HRendererCrystalDisplaySettings& displaySettings() const;
    void setDisplaySettings(const HRendererCrystalDisplaySettings& settings);
    // Called when a change of the shared display settings needs the view drawn again.
    void setRedrawRequest(const std::function<void()>& request);

    // The view: orientation, rotation centre, eye, view direction, field of view, the backdrop
    // flag and its four colours, after the format version.
    void write(Archive& archive) const;
    // Fails with "Renderer::read - format version mismatch" on another version; a failed read
    // leaves the view as it was.
    void read(Archive& archive);

    // Logs every pending GL error; the 501st of the process ends drawing with an exception.
    void reportOpenGLErrors();

private:
    struct Private;
    void setCamera();
    void applyView();
    void depthCue();
    void paintBackdrop();
    void cleanupInvalidDisplayLists();
    void drawMonitors(bool picking);
    std::unique_ptr<Private> d_;
};

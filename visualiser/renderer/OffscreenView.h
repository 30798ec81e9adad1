#pragma once

#include "Renderer.h"

#include <QImage>
#include <memory>

class QOffscreenSurface;
class QOpenGLContext;
class QOpenGLFramebufferObject;

// A renderer drawing into an off-screen framebuffer of its own compatibility context: a picture
// of a view without a window, with exactly the pixels a window would show, for saved images,
// tests and benchmarks. Needs a QGuiApplication and a display (Xvfb will do).
class OffscreenView {
public:
    OffscreenView(int width, int height);
    ~OffscreenView();

    Renderer& renderer() { return renderer_; }
    // Draws the crystals and returns the picture, top row first.
    QImage paint();
    // Draws without reading the pixels back, waiting until the GL has finished: a frame's cost.
    void paintAndFinish();
    void pick(int x, int y);

private:
    std::unique_ptr<QOpenGLContext> context_;
    std::unique_ptr<QOffscreenSurface> surface_;
    std::unique_ptr<QOpenGLFramebufferObject> framebuffer_;
    Renderer renderer_;
};

#include "OffscreenView.h"

#include <GL/gl.h>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QSurfaceFormat>
#include <stdexcept>

OffscreenView::OffscreenView(int width, int height)
    : context_(new QOpenGLContext), surface_(new QOffscreenSurface)
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setDepthBufferSize(24);
    context_->setFormat(format);
    if (!context_->create())
        throw std::runtime_error("OffscreenView: no OpenGL context (is there a display?)");
    surface_->setFormat(context_->format());
    surface_->create();
    if (!context_->makeCurrent(surface_.get()))
        throw std::runtime_error("OffscreenView: the OpenGL context cannot be made current");
    framebuffer_.reset(new QOpenGLFramebufferObject(width, height, QOpenGLFramebufferObject::Depth));
    framebuffer_->bind();
    renderer_.initialiseGL();
    renderer_.resize(width, height);
}

OffscreenView::~OffscreenView()
{
    context_->makeCurrent(surface_.get());
    renderer_.destroyGL();
    framebuffer_.reset();
    context_->doneCurrent();
}

QImage OffscreenView::paint()
{
    context_->makeCurrent(surface_.get());
    framebuffer_->bind();
    renderer_.paint();
    return framebuffer_->toImage().convertToFormat(QImage::Format_RGB32);
}

void OffscreenView::paintAndFinish()
{
    context_->makeCurrent(surface_.get());
    framebuffer_->bind();
    renderer_.paint();
    glFinish();
}

void OffscreenView::pick(int x, int y)
{
    context_->makeCurrent(surface_.get());
    framebuffer_->bind();
    renderer_.pick(x, y);
}

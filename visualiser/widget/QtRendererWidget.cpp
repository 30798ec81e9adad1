#include "QtRendererWidget.h"

#include "CrystalMaker.h"
#include "FieldOfViewCommand.h"
#include "Logger.h"
#include "QtCrystalManager.h"
#include "ResetFieldOfViewCommand.h"
#include "ResetRotationCentreCommand.h"
#include "ResetViewStateCommand.h"
#include "RotationCommand.h"
#include "SetRotationCentreCommand.h"
#include "TranslationCommand.h"
#include "ViewAlongCommand.h"
#include "ViewStateCommand.h"
#include "VisLibCrystalManagerRendererCommand.h"
#include "ZoomCommand.h"

#include <QApplication>
#include <QClipboard>
#include <QImageWriter>
#include <QMessageBox>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

QSurfaceFormat compatibilityFormat()
{
    // The renderer draws with immediate mode and display lists, which a core profile lacks.
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    // Hidden surfaces need a depth buffer unless the command line asked for none.
    if (format.depthBufferSize() < 0)
        format.setDepthBufferSize(24);
    return format;
}

// The rows are the screen's axes in the scene: z out of the screen against `along`, y as near to
// `up` as is square to it, x completing a right-handed set.
Matrix viewAlongRotation(const Vector3D& along, const Vector3D& up)
{
    const Vector3D z = -along.normalized();
    Vector3D y = up - z * up.dot(z);
    if (y.length() < 1e-9 * up.length() || up.length() == 0)
        y = std::abs(z.x) < 0.9 ? Vector3D(1, 0, 0) - z * z.x : Vector3D(0, 1, 0) - z * z.y;
    y = y.normalized();
    const Vector3D x = y.cross(z);
    return Matrix{{x.x, x.y, x.z}, {y.x, y.y, y.z}, {z.x, z.y, z.z}};
}

void logFormat(const char* title, const QSurfaceFormat& format)
{
    // Qt keeps no accumulation buffer or overlay, and every context renders directly in RGBA.
    logDebug(1, "%s", title);
    logDebug(1, "double buffer: %d", format.swapBehavior() != QSurfaceFormat::SingleBuffer);
    logDebug(1, "depth: %d", format.depthBufferSize() > 0);
    logDebug(1, "rgba: %d", 1);
    logDebug(1, "alpha: %d", format.alphaBufferSize() > 0);
    logDebug(1, "accum: %d", 0);
    logDebug(1, "stencil: %d", format.stencilBufferSize() > 0);
    logDebug(1, "stereo: %d", format.stereo());
    logDebug(1, "direct rendering: %d", 1);
    logDebug(1, "has overlay: %d", 0);
}

} // namespace

QStringList QtRendererWidget::applyFormatOptions(const QStringList& arguments)
{
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    QStringList rest;
    for (const QString& option : arguments) {
        if (option == "-doublebuffer" || option == "-nodoublebuffer")
            format.setSwapBehavior(option == "-doublebuffer" ? QSurfaceFormat::DoubleBuffer
                                                             : QSurfaceFormat::SingleBuffer);
        else if (option == "-depth" || option == "-nodepth")
            format.setDepthBufferSize(option == "-depth" ? 24 : 0);
        else if (option == "-alpha" || option == "-noalpha")
            format.setAlphaBufferSize(option == "-alpha" ? 8 : 0);
        else if (option == "-stencil" || option == "-nostencil")
            format.setStencilBufferSize(option == "-stencil" ? 8 : 0);
        else if (option == "-stereo" || option == "-nostereo")
            format.setStereo(option == "-stereo");
        else if (option == "-rgba" || option == "-norgba" || option == "-accum" || option == "-noaccum" ||
                 option == "-directrendering" || option == "-nodirectrendering" || option == "-overlay" ||
                 option == "-nooverlay")
            // Accepted so that old command lines still start; Qt offers nothing to change here.
            logDebug(1, "QtRendererWidget: %s has no effect", qPrintable(option));
        else
            rest << option;
    }
    QSurfaceFormat::setDefaultFormat(format);
    return rest;
}

QtRendererWidget::QtRendererWidget(QWidget* parent)
    : QOpenGLWidget(parent), interactions_(RendererInteractions::defaults())
{
    setFormat(compatibilityFormat());
    setFocusPolicy(Qt::StrongFocus);
    renderer_.setRedrawRequest([this] { update(); });
}

QtRendererWidget::~QtRendererWidget()
{
    // The crystals' display lists belong to this widget's context and go with it.
    if (renderer_.initialised()) {
        makeCurrent();
        renderer_.destroyGL();
        doneCurrent();
    }
}

void QtRendererWidget::defaultConnections(QtCrystalManager* manager)
{
    logDebug(1, "QtRendererWidget::defaultConnections - Entered");
    manager_ = manager;
    connect(manager, &QtCrystalManager::graphicsCrystalAdded, this, &QtRendererWidget::addGraphicsCrystal);
    connect(manager, &QtCrystalManager::graphicsCrystalRemoved, this,
            &QtRendererWidget::removeGraphicsCrystal);
    connect(manager, &QtCrystalManager::crystalChanged, this, &QtRendererWidget::graphicsCrystalUpdated);
    connect(manager, &QtCrystalManager::executeRendererCommand, this, &QtRendererWidget::executeCommand);
    connect(manager, &QtCrystalManager::unexecuteRendererCommand, this, &QtRendererWidget::unexecuteCommand);
    connect(this, &QtRendererWidget::commandToExecuteAndLog, manager,
            &QtCrystalManager::executeAndLogCommand);
    connect(this, &QtRendererWidget::commandToLog, manager, &QtCrystalManager::addCommandToHistory);
    for (const HGraphicsCrystal& crystal : manager->graphicsCrystals())
        addGraphicsCrystal(crystal);
    logDebug(1, "QtRendererWidget::defaultConnections - Finished");
}

void QtRendererWidget::initializeGL()
{
    if (!context() || !context()->isValid()) {
        logError("QtRendererWidget::setup - Context is not valid");
        QMessageBox::critical(this, "OpenGL - Fatal Graphics Error",
                              "Cannot create a valid graphics context. Exiting.\n\n");
        std::exit(1);
    }
    logDebug(1, "QtRendererWidget::setup - Successfully got a context");
    logFormat("Requested OpenGL format:", format());
    logFormat("Got OpenGL format:", context()->format());
    try {
        renderer_.initialiseGL();
    } catch (const std::exception&) {
        logError("QtRendererWidget::initializeGL - Too many run-time errors");
        QMessageBox::critical(this, "OpenGL - Fatal Graphics Error",
                              "Failed to create OpenGL Window - exiting");
        std::exit(1);
    }
}

void QtRendererWidget::resizeGL(int width, int height)
{
    const qreal ratio = devicePixelRatioF();
    renderer_.resize(static_cast<int>(width * ratio), static_cast<int>(height * ratio));
}

void QtRendererWidget::paintGL()
{
    if (!context() || !context()->isValid()) {
        logWarning("QtRendererWidget::paintGL - Current context is NOT valid - not painting scene");
        return;
    }
    logDebug(3, "QtRendererWidget::paintGL - context is valid");
    renderer_.paint();
}

void QtRendererWidget::mousePressEvent(QMouseEvent* event)
{
    press_position_ = last_position_ = event->position().toPoint();
    dragging_ = event->buttons() != Qt::NoButton;
    drag_start_ = renderer_.viewState();
    drag_name_.clear();
}

void QtRendererWidget::mouseMoveEvent(QMouseEvent* event)
{
    const int combination = RendererInteractions::combination(event->buttons(), event->modifiers());
    const QPoint position = event->position().toPoint();
    const QPoint delta = position - last_position_;
    const RendererInteractions& table = *interactions_;
    const RendererViewState before = renderer_.viewState();
    if (table.triggers(RendererInteractions::ActionRotateXY, combination))
        dragRotateXY(delta);
    if (table.triggers(RendererInteractions::ActionRotateZ, combination))
        dragRotateZ(delta);
    if (table.triggers(RendererInteractions::ActionTranslate, combination))
        dragTranslate(delta);
    if (table.triggers(RendererInteractions::ActionZoom, combination))
        dragZoom(delta);
    if (table.triggers(RendererInteractions::ActionPerspective, combination))
        dragPerspective(delta);
    // A move with no button held changes nothing and needs no redraw.
    if (!(renderer_.viewState() == before))
        update();
    last_position_ = position;
}

void QtRendererWidget::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const QPoint moved = position - press_position_;
    const bool click = std::hypot(moved.x(), moved.y()) < click_tolerance;
    // Without a context there is nothing drawn to pick from.
    if (click && context()) {
        const int combination = RendererInteractions::combination(event->button(), event->modifiers());
        for (const auto action :
             {RendererInteractions::ActionContextMenu, RendererInteractions::ActionPick,
              RendererInteractions::ActionPickExtend, RendererInteractions::ActionPickOther}) {
            if (interactions_->triggers(action, combination)) {
                const qreal ratio = devicePixelRatioF();
                makeCurrent();
                renderer_.pick(static_cast<int>(position.x() * ratio),
                               static_cast<int>(position.y() * ratio));
                doneCurrent();
                emitPicked(event, action);
                break;
            }
        }
    }
    if (dragging_ && manager_ && use_command_log_ && !(renderer_.viewState() == drag_start_)) {
        // Already on screen: the history only needs to be able to take it back.
        const QString name = drag_name_.isEmpty() ? QString("Change View") : drag_name_;
        HVisLibCommand logged(new VisLibCrystalManagerRendererCommand(
            manager_, HRendererCommand(new ViewStateCommand(name, drag_start_, renderer_.viewState()))));
        emit commandToLog(logged);
    }
    dragging_ = false;
}

void QtRendererWidget::emitPicked(QMouseEvent* event, RendererInteractions::Action action)
{
    const HGraphicsCrystal crystal = renderer_.pickedCrystal();
    const HGraphicsObject object = renderer_.pickedObject();
    const bool menu = action == RendererInteractions::ActionContextMenu;
    if (!object) {
        if (menu)
            emit contextMenuNothing(this, event, action);
        else
            emit pickNothing(action);
        return;
    }
    switch (renderer_.pickedType()) {
    case Renderer::ObjectAtom:
        if (menu)
            emit contextMenuAtom(this, event, crystal, object.cast<GraphicsAtom>(), action);
        else
            emit pickAtom(crystal, object.cast<GraphicsAtom>(), action);
        break;
    case Renderer::ObjectBond:
        if (menu)
            emit contextMenuBond(this, event, crystal, object.cast<GraphicsBond>(), action);
        else
            emit pickBond(crystal, object.cast<GraphicsBond>(), action);
        break;
    case Renderer::ObjectContact:
        if (menu)
            emit contextMenuContact(this, event, crystal, object.cast<GraphicsContact>(), action);
        else
            emit pickContact(crystal, object.cast<GraphicsContact>(), action);
        break;
    case Renderer::ObjectMonitor:
        if (menu)
            emit contextMenuMonitor(this, event, crystal, object.cast<GraphicsMonitor>(), action);
        else
            emit pickMonitor(crystal, object.cast<GraphicsMonitor>(), action);
        break;
    case Renderer::ObjectPrimitive:
        if (menu)
            emit contextMenuPrimitive(this, event, crystal, object.cast<GraphicsPrimitive>(), action);
        else
            emit pickPrimitive(crystal, object.cast<GraphicsPrimitive>(), action);
        break;
    default:
        if (menu)
            emit contextMenuObject(this, event, crystal, object, action);
        else
            emit pickObject(crystal, object, action);
        break;
    }
}

int QtRendererWidget::scale() const
{
    return std::max(1, std::min(width(), height()));
}

double QtRendererWidget::eyeDistance() const
{
    // The rotation centre stands at the orientation's translation in the eye's space.
    return (renderer_.eyePosition() - renderer_.orientation().trans()).length();
}

void QtRendererWidget::dragRotateXY(const QPoint& delta)
{
    const double per_pixel = 180.0 / scale();
    RotationCommand about_y(Vector3D(0, 1, 0), delta.x() * per_pixel);
    RotationCommand about_x(Vector3D(1, 0, 0), delta.y() * per_pixel);
    about_y.execute(renderer_);
    about_x.execute(renderer_);
    drag_name_ = "Rotation";
}

void QtRendererWidget::dragRotateZ(const QPoint& delta)
{
    // Half the width across turns the scene half a turn; rightwards is clockwise on the screen.
    const double degrees = -delta.x() * 180.0 / std::max(1, width() / 2);
    RotationCommand(Vector3D(0, 0, 1), degrees).execute(renderer_);
    drag_name_ = "Rotation";
}

void QtRendererWidget::dragTranslate(const QPoint& delta)
{
    // The width of the view at the rotation centre, so that the scene follows the cursor.
    const double across = std::tan(renderer_.fieldOfView() * M_PI / 360.0) * eyeDistance() * 2;
    const double per_pixel = across / scale();
    TranslationCommand(Vector3D(delta.x() * per_pixel, -delta.y() * per_pixel, 0)).execute(renderer_);
    drag_name_ = "Translation";
}

void QtRendererWidget::dragZoom(const QPoint& delta)
{
    Point eye = renderer_.eyePosition();
    const double distance = eyeDistance();
    // Never through the rotation centre: the nearest the eye comes is a hundredth of its way.
    eye.z = std::max(eye.z + distance * 2 * delta.y() / scale(),
                     renderer_.orientation().trans().z + distance / 100);
    renderer_.setEyePosition(eye);
    drag_name_ = "Change Zoom";
}

void QtRendererWidget::dragPerspective(const QPoint& delta)
{
    renderer_.setFieldOfView(renderer_.fieldOfView() - delta.y() * perspective_per_pixel);
    drag_name_ = "Change Perspective";
}

void QtRendererWidget::addGraphicsCrystal(const HGraphicsCrystal& crystal)
{
    if (std::find(crystals_.begin(), crystals_.end(), crystal) != crystals_.end())
        return;
    crystals_.push_back(crystal);
    renderer_.addGraphicsCrystal(crystal);
    update();
}

void QtRendererWidget::removeGraphicsCrystal(const HGraphicsCrystal& crystal)
{
    crystals_.erase(std::remove(crystals_.begin(), crystals_.end(), crystal), crystals_.end());
    renderer_.removeGraphicsCrystal(crystal);
    update();
}

void QtRendererWidget::graphicsCrystalUpdated(const HGraphicsCrystal& crystal)
{
    renderer_.graphicsCrystalUpdated(crystal);
    update();
}

void QtRendererWidget::graphicsCrystalCenterUpdated(const HGraphicsCrystal& crystal)
{
    renderer_.graphicsCrystalCenterUpdated(crystal);
    update();
}

void QtRendererWidget::setRotationCenter(const HGraphicsCrystal& crystal, const Point& centre)
{
    doRendererCommand(new SetRotationCentreCommand(crystal->orientation() * centre), "Set Rotation Centre");
}

void QtRendererWidget::resetRotationCenter(const HGraphicsCrystal& crystal)
{
    doRendererCommand(new ResetRotationCentreCommand(crystal->orientation() * crystal->rotation_centre()),
                      "Reset Rotation Centre");
}

void QtRendererWidget::setInteractions(const HRendererInteractions& interactions)
{
    if (interactions)
        interactions_ = interactions;
}

void QtRendererWidget::setCommandLog(bool use)
{
    use_command_log_ = use;
}

void QtRendererWidget::doCommand(HVisLibCommand& command)
{
    emit commandToExecuteAndLog(command);
}

void QtRendererWidget::executeCommand(HRendererCommand& command)
{
    command->execute(renderer_);
    update();
}

void QtRendererWidget::unexecuteCommand(HRendererCommand& command)
{
    command->unexecute(renderer_);
    update();
}

void QtRendererWidget::updateCrystalViews()
{
    if (!crystals_.empty())
        renderer_.setRotationCentre(crystalCentre());
    update();
}

Point QtRendererWidget::crystalCentre() const
{
    if (crystals_.empty())
        return Point();
    const HGraphicsCrystal& first = crystals_.front();
    return first->orientation() * first->rotation_centre();
}

void QtRendererWidget::resetView()
{
    doRendererCommand(new ResetViewStateCommand(crystalCentre()), "Reset View");
}

void QtRendererWidget::setGlobalOrientation(const Transformation& orientation)
{
    doRendererCommand(new TransformationCommand(orientation), "Transformation");
}

void QtRendererWidget::resetGlobalOrientation()
{
    doRendererCommand(new TransformationCommand(Transformation()), "Orientation Reset");
}

void QtRendererWidget::setGlobalFieldOfView(double degrees)
{
    doRendererCommand(new FieldOfViewCommand(degrees), "Change Perspective");
}

void QtRendererWidget::resetGlobalFieldOfView()
{
    doRendererCommand(new ResetFieldOfViewCommand, "Reset Field Of View");
}

void QtRendererWidget::setGlobalRotationCenter(const Point& centre)
{
    doRendererCommand(new SetRotationCentreCommand(centre), "Set Rotation Centre");
}

void QtRendererWidget::resetGlobalRotationCenter()
{
    doRendererCommand(new ResetRotationCentreCommand(crystalCentre()), "Reset Rotation Centre");
}

void QtRendererWidget::rotateGlobalAround(const Vector3D& axis, double degrees)
{
    rotateAbout(axis, degrees, "Rotation about axis");
}

void QtRendererWidget::rotateGlobalAroundX(double degrees)
{
    rotateAbout(Vector3D(1, 0, 0), degrees, "Rotate about X");
}

void QtRendererWidget::rotateGlobalAroundY(double degrees)
{
    rotateAbout(Vector3D(0, 1, 0), degrees, "Rotate about Y");
}

void QtRendererWidget::rotateGlobalAroundZ(double degrees)
{
    rotateAbout(Vector3D(0, 0, 1), degrees, "Rotate about Z");
}

void QtRendererWidget::translateGlobalBy(const Vector3D& by)
{
    translate(by, "Translation");
}

void QtRendererWidget::viewGlobalAlong(const Vector3D& along, const Vector3D& up)
{
    doRendererCommand(new ViewAlongCommand(viewAlongRotation(along, up)), "View Along Crystal Axis");
}

void QtRendererWidget::viewAlongCellAxis(int axis, bool reciprocal, const QString& name)
{
    if (crystals_.empty())
        return;
    const HGraphicsCrystal& crystal = crystals_.front();
    const CrystalMaker& cell = *crystal->crystal()->crystal_maker();
    const Transformation& turn = crystal->orientation();
    Vector3D edges[3];
    for (int i = 0; i < 3; ++i) {
        Vector3D unit;
        unit[i] = 1;
        edges[i] = turn * cell.orthogonal(unit) - turn * cell.orthogonal(Vector3D());
    }
    const Vector3D along = reciprocal ? edges[(axis + 1) % 3].cross(edges[(axis + 2) % 3]) : edges[axis];
    doRendererCommand(new ViewAlongCommand(viewAlongRotation(along, edges[(axis + 2) % 3])), name);
}

void QtRendererWidget::viewAlongA()
{
    viewAlongCellAxis(0, false, "View Along a");
}

void QtRendererWidget::viewAlongB()
{
    viewAlongCellAxis(1, false, "View Along b");
}

void QtRendererWidget::viewAlongC()
{
    viewAlongCellAxis(2, false, "View Along c");
}

void QtRendererWidget::viewAlongAStar()
{
    viewAlongCellAxis(0, true, "View Along a*");
}

void QtRendererWidget::viewAlongBStar()
{
    viewAlongCellAxis(1, true, "View Along b*");
}

void QtRendererWidget::viewAlongCStar()
{
    viewAlongCellAxis(2, true, "View Along c*");
}

void QtRendererWidget::doRendererCommand(RendererCommand* command, const QString& name)
{
    HRendererCommand handle(command);
    handle->rename(name);
    if (manager_ && use_command_log_) {
        HVisLibCommand logged(new VisLibCrystalManagerRendererCommand(manager_, handle));
        doCommand(logged);
    } else {
        executeCommand(handle);
    }
}

void QtRendererWidget::rotateAbout(const Vector3D& axis, double degrees, const QString& name)
{
    doRendererCommand(new RotationCommand(axis, degrees), name);
}

void QtRendererWidget::translate(const Vector3D& by, const QString& name)
{
    doRendererCommand(new TranslationCommand(by), name);
}

void QtRendererWidget::rotateXMinus90()
{
    rotateAbout(Vector3D(1, 0, 0), -90, "Rotate about X");
}

void QtRendererWidget::rotateXMinus()
{
    rotateAbout(Vector3D(1, 0, 0), -rotation_increment_, "Rotate about X");
}

void QtRendererWidget::rotateXPlus()
{
    rotateAbout(Vector3D(1, 0, 0), rotation_increment_, "Rotate about X");
}

void QtRendererWidget::rotateXPlus90()
{
    rotateAbout(Vector3D(1, 0, 0), 90, "Rotate about X");
}

void QtRendererWidget::rotateYMinus90()
{
    rotateAbout(Vector3D(0, 1, 0), -90, "Rotate -90 about Y");
}

void QtRendererWidget::rotateYMinus()
{
    rotateAbout(Vector3D(0, 1, 0), -rotation_increment_, "Rotate about Y");
}

void QtRendererWidget::rotateYPlus()
{
    rotateAbout(Vector3D(0, 1, 0), rotation_increment_, "Rotate about Y");
}

void QtRendererWidget::rotateYPlus90()
{
    rotateAbout(Vector3D(0, 1, 0), 90, "Rotate 90 about Y");
}

void QtRendererWidget::rotateZMinus90()
{
    rotateAbout(Vector3D(0, 0, 1), -90, "Rotate -90 about Z");
}

void QtRendererWidget::rotateZMinus()
{
    rotateAbout(Vector3D(0, 0, 1), -rotation_increment_, "Rotate about Z");
}

void QtRendererWidget::rotateZPlus()
{
    rotateAbout(Vector3D(0, 0, 1), rotation_increment_, "Rotate about Z");
}

void QtRendererWidget::rotateZPlus90()
{
    rotateAbout(Vector3D(0, 0, 1), 90, "Rotate 90 about Z");
}

void QtRendererWidget::translateXMinus()
{
    translate(Vector3D(-translation_increment_, 0, 0), "Translate -X");
}

void QtRendererWidget::translateXPlus()
{
    translate(Vector3D(translation_increment_, 0, 0), "Translate +X");
}

void QtRendererWidget::translateYMinus()
{
    translate(Vector3D(0, -translation_increment_, 0), "Translate -Y");
}

void QtRendererWidget::translateYPlus()
{
    translate(Vector3D(0, translation_increment_, 0), "Translate +Y");
}

void QtRendererWidget::zoomGlobalOut()
{
    zoomGlobal(1.25);
}

void QtRendererWidget::zoomGlobalIn()
{
    zoomGlobal(0.8);
}

void QtRendererWidget::zoomGlobal(double factor)
{
    if (factor > 0)
        doRendererCommand(new ZoomCommand(factor), "Zoom View");
}

void QtRendererWidget::setRotationIncrement(double degrees)
{
    if (degrees == rotation_increment_)
        return;
    rotation_increment_ = degrees;
    emit rotationIncrementChanged(degrees);
}

void QtRendererWidget::setTranslationIncrement(double units)
{
    if (units == translation_increment_)
        return;
    translation_increment_ = units;
    emit translationIncrementChanged(units);
}

void QtRendererWidget::setUseBackdrop(bool use)
{
    if (use == renderer_.useBackdrop())
        return;
    renderer_.setUseBackdrop(use);
    emit useBackdropChanged(use);
    update();
}

void QtRendererWidget::toggleUseBackdrop()
{
    setUseBackdrop(!renderer_.useBackdrop());
}

void QtRendererWidget::setBackdropColors(const RGBA& top_right, const RGBA& top_left, const RGBA& bottom_left,
                                         const RGBA& bottom_right)
{
    const std::array<RGBA, 4> wanted{top_right, top_left, bottom_left, bottom_right};
    const std::array<RGBA, 4>& now = renderer_.backdropColors();
    if (std::equal(wanted.begin(), wanted.end(), now.begin(),
                   [](const RGBA& a, const RGBA& b) { return a.equals(b); }))
        return;
    renderer_.setBackdropColors(top_right, top_left, bottom_left, bottom_right);
    emit backdropColorsChanged(top_right, top_left, bottom_left, bottom_right);
    update();
}

void QtRendererWidget::copyToClipboard()
{
    const QImage image = grabFramebuffer();
    if (image.isNull()) {
        QMessageBox::warning(this, "Copy", "Sorry - could not copy image to clipboard");
        return;
    }
    QApplication::clipboard()->setImage(image);
}

QString QtRendererWidget::exportImage(const QString& path, const QSize& size)
{
    const qreal ratio = devicePixelRatioF();
    const QSize window(static_cast<int>(width() * ratio), static_cast<int>(height() * ratio));
    const QSize wanted = size.isEmpty() ? window : size;
    if (wanted.isEmpty())
        return QString("The view has no size to export");
    if (!context() || !context()->isValid())
        return QString("The view has no graphics context to draw the picture in");
    makeCurrent();
    QOpenGLFramebufferObject framebuffer(wanted, QOpenGLFramebufferObject::Depth);
    QImage image;
    if (framebuffer.isValid() && framebuffer.bind()) {
        // Lines keep their weight relative to the picture, not to the pixel.
        const double line_width = renderer_.lineWidth();
        const double grow = window.width() > 0 ? static_cast<double>(wanted.width()) / window.width() : 1.0;
        renderer_.setLineWidth(line_width * std::max(1.0, grow));
        renderer_.resize(wanted.width(), wanted.height());
        renderer_.paint();
        image = framebuffer.toImage();
        renderer_.setLineWidth(line_width);
        renderer_.resize(window.width(), window.height());
        framebuffer.release();
    }
    doneCurrent();
    if (image.isNull())
        return QString("Could not draw a %1 by %2 picture").arg(wanted.width()).arg(wanted.height());
    QImageWriter writer(path);
    if (!writer.write(image.convertToFormat(QImage::Format_RGB32)))
        return QString("Could not write \"%1\": %2").arg(path, writer.errorString());
    return QString();
}

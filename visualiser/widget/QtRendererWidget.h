#pragma once

#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsContact.h"
#include "GraphicsCrystal.h"
#include "GraphicsMonitor.h"
#include "GraphicsPrimitive.h"
#include "RGBA.h"
#include "Renderer.h"
#include "RendererCommand.h"
#include "RendererInteractions.h"
#include "RendererViewState.h"
#include "VisLibCommand.h"

#include <QOpenGLWidget>
#include <QPoint>
#include <QSize>
#include <QStringList>
#include <vector>

class QtCrystalManager;

// The 3D view of a pane: a GL window around one Renderer. Mouse drags turn, move and zoom the
// scene as the interaction table says; a click becomes a pick or a menu request for whatever
// lies under it. The widget keeps no crystal data but the list of handles the manager gave it.
// Changes of the view made from menus and keys go through the manager's history as commands,
// and a whole drag is logged as one command once the button is let go.
class QtRendererWidget : public QOpenGLWidget {
    Q_OBJECT

public:
    static constexpr double default_rotation_increment = 5.0;
    static constexpr double default_translation_increment = 0.5;
    // A release within this many pixels of its press is a click, not a drag.
    static constexpr int click_tolerance = 3;
    // Degrees of field of view per pixel of a perspective drag.
    static constexpr double perspective_per_pixel = 0.25;

    // Sets or clears fields of the application's default GL format from options such as
    // "-depth" and "-nostencil", to be called before the first window; returns the arguments it
    // did not take.
    static QStringList applyFormatOptions(const QStringList& arguments);

    explicit QtRendererWidget(QWidget* parent = nullptr);
    ~QtRendererWidget() override;

    Renderer& renderer() { return renderer_; }
    const HRendererInteractions& interactions() const { return interactions_; }
    void defaultConnections(QtCrystalManager* manager);

    // Draws the view off-screen at `size` pixels (the widget's own when empty) and saves it in
    // the format the file's suffix names. Returns an empty string, or why it failed.
    QString exportImage(const QString& path, const QSize& size = QSize());

public slots:
    void addGraphicsCrystal(const HGraphicsCrystal& crystal);
    void removeGraphicsCrystal(const HGraphicsCrystal& crystal);
    void graphicsCrystalUpdated(const HGraphicsCrystal& crystal);
    void graphicsCrystalCenterUpdated(const HGraphicsCrystal& crystal);
    void setRotationCenter(const HGraphicsCrystal& crystal, const Point& centre);
    void resetRotationCenter(const HGraphicsCrystal& crystal);
    void setInteractions(const HRendererInteractions& interactions);
    void setCommandLog(bool use);
    void doCommand(HVisLibCommand& command);
    void executeCommand(HRendererCommand& command);
    void unexecuteCommand(HRendererCommand& command);
    void updateCrystalViews();
    void resetView();
    void setGlobalOrientation(const Transformation& orientation);
    void resetGlobalOrientation();
    void setGlobalFieldOfView(double degrees);
    void resetGlobalFieldOfView();
    void setGlobalRotationCenter(const Point& centre);
    void resetGlobalRotationCenter();
    // About an axis of the screen through the rotation centre.
    void rotateGlobalAround(const Vector3D& axis, double degrees);
    void rotateGlobalAroundX(double degrees);
    void rotateGlobalAroundY(double degrees);
    void rotateGlobalAroundZ(double degrees);
    // In screen units.
    void translateGlobalBy(const Vector3D& by);
    // Turns the scene so that `along` points into the screen and `up` up the screen as far as it
    // can.
    void viewGlobalAlong(const Vector3D& along, const Vector3D& up);
    void viewAlongA();
    void viewAlongB();
    void viewAlongC();
    void viewAlongAStar();
    void viewAlongBStar();
    void viewAlongCStar();

    void rotateXMinus90();
    void rotateXMinus();
    void rotateXPlus();
    void rotateXPlus90();
    void rotateYMinus90();
    void rotateYMinus();
    void rotateYPlus();
    void rotateYPlus90();
    void rotateZMinus90();
    void rotateZMinus();
    void rotateZPlus();
    void rotateZPlus90();
    void translateXMinus();
    void translateXPlus();
    void translateYMinus();
    void translateYPlus();
    void zoomGlobalOut();
    void zoomGlobalIn();
    void zoomGlobal(double factor);

    double rotationIncrement() const { return rotation_increment_; }
    void setRotationIncrement(double degrees);
    double translationIncrement() const { return translation_increment_; }
    void setTranslationIncrement(double units);

    void setUseBackdrop(bool use);
    void toggleUseBackdrop();
    void setBackdropColors(const RGBA& top_right, const RGBA& top_left, const RGBA& bottom_left,
                           const RGBA& bottom_right);
    void copyToClipboard();

signals:
    void commandToExecuteAndLog(HVisLibCommand& command);
    void commandToLog(HVisLibCommand& command);
    void translationIncrementChanged(double units);
    void rotationIncrementChanged(double degrees);
    void backdropColorsChanged(const RGBA& top_right, const RGBA& top_left, const RGBA& bottom_left,
                               const RGBA& bottom_right);
    void useBackdropChanged(bool use);

    void pickAtom(const HGraphicsCrystal& crystal, const HGraphicsAtom& atom,
                  RendererInteractions::Action action);
    void pickBond(const HGraphicsCrystal& crystal, const HGraphicsBond& bond,
                  RendererInteractions::Action action);
    void pickContact(const HGraphicsCrystal& crystal, const HGraphicsContact& contact,
                     RendererInteractions::Action action);
    void pickMonitor(const HGraphicsCrystal& crystal, const HGraphicsMonitor& monitor,
                     RendererInteractions::Action action);
    void pickPrimitive(const HGraphicsCrystal& crystal, const HGraphicsPrimitive& primitive,
                       RendererInteractions::Action action);
    void pickObject(const HGraphicsCrystal& crystal, const HGraphicsObject& object,
                    RendererInteractions::Action action);
    void pickNothing(RendererInteractions::Action action);

    void contextMenuAtom(QtRendererWidget* widget, QMouseEvent* event, const HGraphicsCrystal& crystal,
                         const HGraphicsAtom& atom, RendererInteractions::Action action);
    void contextMenuBond(QtRendererWidget* widget, QMouseEvent* event, const HGraphicsCrystal& crystal,
                         const HGraphicsBond& bond, RendererInteractions::Action action);
    void contextMenuContact(QtRendererWidget* widget, QMouseEvent* event, const HGraphicsCrystal& crystal,
                            const HGraphicsContact& contact, RendererInteractions::Action action);
    void contextMenuMonitor(QtRendererWidget* widget, QMouseEvent* event, const HGraphicsCrystal& crystal,
                            const HGraphicsMonitor& monitor, RendererInteractions::Action action);
    void contextMenuPrimitive(QtRendererWidget* widget, QMouseEvent* event, const HGraphicsCrystal& crystal,
                              const HGraphicsPrimitive& primitive, RendererInteractions::Action action);
    void contextMenuObject(QtRendererWidget* widget, QMouseEvent* event, const HGraphicsCrystal& crystal,
                           const HGraphicsObject& object, RendererInteractions::Action action);
    void contextMenuNothing(QtRendererWidget* widget, QMouseEvent* event,
                            RendererInteractions::Action action);

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // Sends a camera change through the history under `name`, or straight to the renderer when
    // there is no history to keep it.
    void doRendererCommand(RendererCommand* command, const QString& name);
    void rotateAbout(const Vector3D& axis, double degrees, const QString& name);
    void translate(const Vector3D& by, const QString& name);
    void dragRotateXY(const QPoint& delta);
    void dragRotateZ(const QPoint& delta);
    void dragTranslate(const QPoint& delta);
    void dragZoom(const QPoint& delta);
    void dragPerspective(const QPoint& delta);
    // Looks along a cell edge of the first crystal (`axis` 0, 1 or 2), or along the normal of
    // the face that the other two edges span, with the edge before it pointing up.
    void viewAlongCellAxis(int axis, bool reciprocal, const QString& name);
    // The first crystal's centre, where a reset view turns about.
    Point crystalCentre() const;
    // The smaller side of the window, never 0.
    int scale() const;
    double eyeDistance() const;
    void emitPicked(QMouseEvent* event, RendererInteractions::Action action);

    Renderer renderer_;
    HRendererInteractions interactions_;
    QtCrystalManager* manager_ = nullptr;
    std::vector<HGraphicsCrystal> crystals_;
    double rotation_increment_ = default_rotation_increment;
    double translation_increment_ = default_translation_increment;
    bool use_command_log_ = true;
    QPoint press_position_;
    QPoint last_position_;
    // The view when a button went down, so that the whole drag undoes as one step.
    RendererViewState drag_start_;
    bool dragging_ = false;
    // The kind of drag last made, which names the logged command.
    QString drag_name_;
};

// The 3D view as a user drives it: drags, clicks and exported pictures on a real structure, in a
// real GL window under Xvfb, with the manager's history behind it.
#include "CifFile.h"
#include "CrystalMaker.h"
#include "QtCrystalManager.h"
#include "QtRendererWidget.h"
#include "VisualiserTestSupport.h"

#include <QApplication>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>

namespace {

// The largest difference of a channel: the backdrop's corners are blended a little from their
// neighbours.
int distance(QRgb pixel, Qt::GlobalColor colour)
{
    const QColor c(colour);
    return std::max({std::abs(qRed(pixel) - c.red()), std::abs(qGreen(pixel) - c.green()),
                     std::abs(qBlue(pixel) - c.blue())});
}

class RendererWidgetTest : public ::testing::Test {
protected:
    RendererWidgetTest() : crystal(corpus_crystal())
    {
        widget.resize(300, 200);
        widget.defaultConnections(&manager);
        manager.addGraphicsCrystal(crystal);
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
    }

    // QTest's move carries no keys, so the move is sent by hand between QTest's press and release.
    void drag(QPoint from, QPoint to, Qt::MouseButton button, Qt::KeyboardModifiers keys)
    {
        QTest::mousePress(&widget, button, keys, from);
        QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, button, keys);
        QApplication::sendEvent(&widget, &move);
        QTest::mouseRelease(&widget, button, keys, to);
    }

    QtCrystalManager manager;
    QtRendererWidget widget;
    HGraphicsCrystal crystal;
};

// Across the 200 pixels of the smaller side a plain drag turns half a turn; with Shift, half the
// 300 pixel width turns half a turn about the screen's normal, clockwise to the right. One undo
// gives back the view as it was before the drag.
TEST_F(RendererWidgetTest, DragTurnsTheViewAndOneUndoTurnsItBack)
{
    const struct {
        QPoint by;
        Qt::KeyboardModifiers keys;
        Vector3D axis;
        double degrees;
    } cases[] = {{{40, 0}, Qt::NoModifier, {0, 1, 0}, 36},
                 {{0, -30}, Qt::NoModifier, {1, 0, 0}, -27},
                 {{30, 0}, Qt::ShiftModifier, {0, 0, 1}, -36}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.by.x()) + "," + std::to_string(c.by.y()));
        const RendererViewState before = widget.renderer().viewState();
        drag({150, 100}, QPoint(150, 100) + c.by, Qt::LeftButton, c.keys);
        const Matrix turned = widget.renderer().orientation().rot() * before.orientation.rot().inverse();
        const Matrix expected = Transformation(c.axis, c.degrees, true).rot();
        for (int r = 0; r < 3; ++r)
            for (int k = 0; k < 3; ++k)
                EXPECT_NEAR(turned(r, k), expected(r, k), 1e-9) << r << "," << k;
        EXPECT_EQ(manager.undoText(), "&Undo: Rotation");
        manager.undo();
        EXPECT_TRUE(widget.renderer().viewState() == before);
    }
}

// A move drags the scene with the cursor at any zoom; a right drag down a quarter of the smaller
// side takes the eye half its distance further. Each is one step of the history.
TEST_F(RendererWidgetTest, DragMovesAndZoomsTheView)
{
    const Point atom = crystal->atoms().front()->ortho();
    const struct {
        QPoint by;
        Qt::MouseButton button;
        Qt::KeyboardModifiers keys;
        double follows, zoom;
        const char* undo;
    } cases[] = {{{30, -20}, Qt::MiddleButton, Qt::NoModifier, 1, 1, "&Undo: Translation"},
                 {{-25, 40}, Qt::LeftButton, Qt::ControlModifier, 1, 1, "&Undo: Translation"},
                 {{0, 50}, Qt::RightButton, Qt::NoModifier, 0, 1.5, "&Undo: Change Zoom"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.undo);
        widget.zoomGlobalIn();
        const RendererViewState before = widget.renderer().viewState();
        double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
        ASSERT_TRUE(widget.renderer().project(*crystal, atom, x0, y0));
        drag({150, 100}, QPoint(150, 100) + c.by, c.button, c.keys);
        ASSERT_TRUE(widget.renderer().project(*crystal, atom, x1, y1));
        if (c.follows) {
            EXPECT_NEAR(x1 - x0, c.by.x(), 0.5);
            EXPECT_NEAR(y1 - y0, c.by.y(), 0.5);
        }
        const Vector3D centre = before.orientation.trans();
        EXPECT_NEAR((widget.renderer().eyePosition() - centre).length() / (before.eye - centre).length(),
                    c.zoom, 1e-9);
        EXPECT_EQ(manager.undoText(), c.undo);
        manager.undo();
        EXPECT_TRUE(widget.renderer().viewState() == before);
    }
}

// The menu and key steps change the view through the history, each under its own name, and one
// undo takes each back.
TEST_F(RendererWidgetTest, MenuStepsAreUndoableUnderTheirNames)
{
    using Slot = void (QtRendererWidget::*)();
    const struct {
        Slot slot;
        const char* undo;
    } cases[] = {{&QtRendererWidget::rotateXPlus, "&Undo: Rotate about X"},
                 {&QtRendererWidget::rotateYMinus90, "&Undo: Rotate -90 about Y"},
                 {&QtRendererWidget::rotateZPlus90, "&Undo: Rotate 90 about Z"},
                 {&QtRendererWidget::translateXMinus, "&Undo: Translate -X"},
                 {&QtRendererWidget::translateYPlus, "&Undo: Translate +Y"},
                 {&QtRendererWidget::zoomGlobalIn, "&Undo: Zoom View"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.undo);
        const RendererViewState before = widget.renderer().viewState();
        (widget.*c.slot)();
        EXPECT_FALSE(widget.renderer().viewState() == before);
        EXPECT_EQ(manager.undoText(), c.undo);
        manager.undo();
        EXPECT_TRUE(widget.renderer().viewState() == before);
    }
}

// Looking down an axis, an atom and a point further along that axis land on the same pixel. The
// reciprocal axes are the normals of the cell's faces.
TEST_F(RendererWidgetTest, ViewAlongACellAxisLooksDownIt)
{
    using Slot = void (QtRendererWidget::*)();
    const CrystalMaker& cell = *crystal->crystal()->crystal_maker();
    const Vector3D a = cell.orthogonal({1, 0, 0}), b = cell.orthogonal({0, 1, 0}),
                   c = cell.orthogonal({0, 0, 1});
    const struct {
        Slot slot;
        Vector3D axis;
        const char* undo;
    } cases[] = {{&QtRendererWidget::viewAlongA, a, "&Undo: View Along a"},
                 {&QtRendererWidget::viewAlongB, b, "&Undo: View Along b"},
                 {&QtRendererWidget::viewAlongC, c, "&Undo: View Along c"},
                 {&QtRendererWidget::viewAlongAStar, b.cross(c), "&Undo: View Along a*"},
                 {&QtRendererWidget::viewAlongBStar, c.cross(a), "&Undo: View Along b*"},
                 {&QtRendererWidget::viewAlongCStar, a.cross(b), "&Undo: View Along c*"}};
    const Point start = crystal->atoms().front()->ortho();
    for (const auto& k : cases) {
        SCOPED_TRACE(k.undo);
        (widget.*k.slot)();
        EXPECT_EQ(manager.undoText(), k.undo);
        double x0 = 0, y0 = 0, x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        ASSERT_TRUE(widget.renderer().project(*crystal, start, x0, y0));
        ASSERT_TRUE(widget.renderer().project(*crystal, start + k.axis.normalized() * 5, x1, y1));
        EXPECT_NEAR(x1, x0, 1e-6);
        EXPECT_NEAR(y1, y0, 1e-6);
        // A step across the axis does show.
        const Vector3D u = k.axis.normalized();
        const Vector3D across = u.cross(std::abs(u.z) < 0.5 ? Vector3D(0, 0, 1) : Vector3D(1, 0, 0));
        ASSERT_TRUE(widget.renderer().project(*crystal, start + across.normalized() * 5, x2, y2));
        EXPECT_GT(std::hypot(x2 - x0, y2 - y0), 1.0);
    }
}

// A click on the one visible atom reports that atom, with Shift as the extending pick; a click on
// the backdrop reports nothing picked, a right click there asks for the empty-space menu, and a
// press and release 3 pixels apart is a drag that picks nothing.
TEST_F(RendererWidgetTest, ClickReportsWhatLiesUnderIt)
{
    HGraphicsAtom shown;
    for (const HGraphicsAtom& a : crystal->atoms())
        if (a->label() == "S5'")
            shown = a;
    ASSERT_TRUE(shown);
    crystal->set_visible(GraphicsCrystal::ActionHide, GraphicsCrystal::FilterAll);
    shown->set_visible(true);
    shown->set_style(GraphicsObject::StyleSpacefill);
    crystal->changed();
    double x = 0, y = 0;
    ASSERT_TRUE(widget.renderer().project(*crystal, shown->ortho(), x, y));
    const QPoint atom(static_cast<int>(x), static_cast<int>(y)), corner(2, 2);

    QSignalSpy atoms(&widget, &QtRendererWidget::pickAtom);
    QSignalSpy nothing(&widget, &QtRendererWidget::pickNothing);
    QSignalSpy menus(&widget, &QtRendererWidget::contextMenuNothing);
    const struct {
        QPoint at;
        int moved;
        Qt::MouseButton button;
        Qt::KeyboardModifiers keys;
        int atoms, nothing, menus;
        RendererInteractions::Action action;
    } cases[] = {
        {atom, 0, Qt::LeftButton, Qt::NoModifier, 1, 0, 0, RendererInteractions::ActionPick},
        {atom, 2, Qt::LeftButton, Qt::ShiftModifier, 1, 0, 0, RendererInteractions::ActionPickExtend},
        {atom, 3, Qt::LeftButton, Qt::NoModifier, 0, 0, 0, RendererInteractions::ActionPick},
        {corner, 0, Qt::LeftButton, Qt::NoModifier, 0, 1, 0, RendererInteractions::ActionPick},
        {corner, 0, Qt::RightButton, Qt::NoModifier, 0, 0, 1, RendererInteractions::ActionContextMenu}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.at.x()) + "," + std::to_string(c.at.y()) + " moved " +
                     std::to_string(c.moved));
        atoms.clear();
        nothing.clear();
        menus.clear();
        QTest::mousePress(&widget, c.button, c.keys, c.at);
        QTest::mouseRelease(&widget, c.button, c.keys, c.at + QPoint(0, c.moved));
        ASSERT_EQ(atoms.count(), c.atoms);
        EXPECT_EQ(nothing.count(), c.nothing);
        EXPECT_EQ(menus.count(), c.menus);
        if (c.atoms) {
            EXPECT_EQ(atoms[0][1].value<HGraphicsAtom>().get(), shown.get());
            EXPECT_EQ(atoms[0][2].value<RendererInteractions::Action>(), c.action);
        }
    }
}

// A picture twice the window's size has twice its pixels and the backdrop's colour in each
// corner; a place that cannot be written gives a message and no file.
TEST_F(RendererWidgetTest, ExportDrawsTheViewAtTheAskedSize)
{
    widget.setUseBackdrop(true);
    widget.setBackdropColors(RGBA(1, 0, 0, 1), RGBA(0, 1, 0, 1), RGBA(0, 0, 1, 1), RGBA(1, 1, 1, 1));
    QTemporaryDir dir;
    const struct {
        QString path;
        QSize size;
        bool written;
    } cases[] = {{dir.filePath("view.png"), QSize(600, 400), true},
                 {dir.filePath("window.png"), QSize(), true},
                 {dir.filePath("missing/view.png"), QSize(600, 400), false},
                 {dir.filePath("view.unknown"), QSize(600, 400), false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path.toStdString());
        const QString error = widget.exportImage(c.path, c.size);
        EXPECT_EQ(error.isEmpty(), c.written) << error.toStdString();
        const QImage image(c.path);
        ASSERT_EQ(image.isNull(), !c.written);
        if (!c.written)
            continue;
        EXPECT_EQ(image.size(), c.size.isEmpty() ? widget.size() : c.size);
        const int w = image.width() - 1, h = image.height() - 1;
        EXPECT_LT(distance(image.pixel(w, 0), Qt::red), 8);
        EXPECT_LT(distance(image.pixel(0, 0), Qt::green), 8);
        EXPECT_LT(distance(image.pixel(0, h), Qt::blue), 8);
        EXPECT_LT(distance(image.pixel(w, h), Qt::white), 8);
    }
}

// The format options of an old command line change the default format and leave the other
// arguments for the application.
TEST(RendererWidgetFormat, OptionsSetTheDefaultFormat)
{
    const QSurfaceFormat saved = QSurfaceFormat::defaultFormat();
    const struct {
        QStringList arguments;
        int depth, stencil, alpha;
        bool stereo, single;
        QStringList rest;
    } cases[] = {
        {{"-nodepth", "-stencil", "x.cif"}, 0, 8, -1, false, false, {"x.cif"}},
        {{"-alpha", "-stereo", "-nodoublebuffer", "-accum"}, -1, -1, 8, true, true, {}},
        {{"-depth", "-nostencil", "-noalpha", "-overlay", "-debug"}, 24, 0, 0, false, false, {"-debug"}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.join(' ').toStdString());
        QSurfaceFormat::setDefaultFormat(QSurfaceFormat());
        EXPECT_EQ(QtRendererWidget::applyFormatOptions(c.arguments), c.rest);
        const QSurfaceFormat f = QSurfaceFormat::defaultFormat();
        EXPECT_EQ(f.depthBufferSize(), c.depth);
        EXPECT_EQ(f.stencilBufferSize(), c.stencil);
        EXPECT_EQ(f.alphaBufferSize(), c.alpha);
        EXPECT_EQ(f.stereo(), c.stereo);
        EXPECT_EQ(f.swapBehavior() == QSurfaceFormat::SingleBuffer, c.single);
    }
    QSurfaceFormat::setDefaultFormat(saved);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    // The menu signals carry the mouse event, which the spies record.
    qRegisterMetaType<QMouseEvent*>();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

// The renderer draws a real structure into an off-screen framebuffer under Xvfb, and the test
// looks at the pixels as a person would look at the window.
#include "CifFile.h"
#include "GraphicsAtom.h"
#include "GraphicsCrystal.h"
#include "Logger.h"
#include "OffscreenView.h"
#include "VisualiserTestSupport.h"

#include <QGuiApplication>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>

namespace {

constexpr int size = 200;

class RendererTest : public ::testing::Test {
protected:
    RendererTest() : view(size, size), crystal(corpus_crystal())
    {
        view.renderer().addGraphicsCrystal(crystal);
    }

    HGraphicsAtom atom(const std::string& label) const
    {
        for (const HGraphicsAtom& a : crystal->atoms())
            if (a->label() == label)
                return a;
        throw std::runtime_error("no atom " + label);
    }

    // Where the atom's centre, or a point `dx` Angstrom to its right, lands in the window.
    QPoint at(const GraphicsAtom& a, double dx = 0)
    {
        double x = 0, y = 0;
        EXPECT_TRUE(view.renderer().project(*crystal, a.ortho() + Vector3D(dx, 0, 0), x, y));
        return QPoint(static_cast<int>(x), static_cast<int>(y));
    }

    // The usual view `zoom` times nearer, with `p` in the middle of the window.
    void look_at(const Point& p, double zoom)
    {
        RendererViewState v;
        v.eye.z /= zoom;
        view.renderer().setViewState(v);
        double x = 0, y = 0, x1 = 0, y1 = 0;
        view.renderer().project(*crystal, p, x, y);
        view.renderer().project(*crystal, p + Vector3D(1, 0, 0), x1, y1);
        v.orientation.set_trans(Vector3D((size / 2 - x) / (x1 - x), (y - size / 2) / (x1 - x), 0));
        view.renderer().setViewState(v);
    }

    // Only `shown` stays visible, in `style`.
    void show_only(const HGraphicsAtom& shown, GraphicsObject::RenderingStyle style)
    {
        crystal->set_visible(GraphicsCrystal::ActionHide, GraphicsCrystal::FilterAll);
        shown->set_visible(true);
        shown->set_style(style);
        crystal->changed();
        view.renderer().graphicsCrystalUpdated(crystal);
    }

    OffscreenView view;
    HGraphicsCrystal crystal;
};

bool backdrop(QRgb pixel)
{
    return qRed(pixel) < 8 && qGreen(pixel) < 8 && qBlue(pixel) < 8;
}

TEST_F(RendererTest, BackdropCornersTakeTheirColours)
{
    view.renderer().setUseBackdrop(true);
    view.renderer().setBackdropColors(RGBA(1, 0, 0, 1), RGBA(0, 1, 0, 1), RGBA(0, 0, 1, 1), RGBA(1, 1, 1, 1));
    const QImage image = view.paint();
    const struct {
        QPoint pixel;
        QColor colour;
    } corners[] = {{{size - 1, 0}, Qt::red},
                   {{0, 0}, Qt::green},
                   {{0, size - 1}, Qt::blue},
                   {{size - 1, size - 1}, Qt::white}};
    for (const auto& c : corners) {
        const QColor got = image.pixelColor(c.pixel);
        EXPECT_NEAR(got.red(), c.colour.red(), 8) << c.pixel.x() << "," << c.pixel.y();
        EXPECT_NEAR(got.green(), c.colour.green(), 8) << c.pixel.x() << "," << c.pixel.y();
        EXPECT_NEAR(got.blue(), c.colour.blue(), 8) << c.pixel.x() << "," << c.pixel.y();
    }
}

// In each style a lone atom shows where its projection says, another one hidden does not, a pick
// there finds the atom, and a pick on the backdrop finds nothing.
TEST_F(RendererTest, AtomAppearsAndIsPickedWhereItsProjectionSays)
{
    const struct {
        const char* label;
        GraphicsObject::RenderingStyle style;
        // Off the centre, as a fraction of the drawn radius: near the outline of a big sphere.
        double off;
    } cases[] = {{"S5'", GraphicsObject::StyleSpacefill, 0},
                 {"S5'", GraphicsObject::StyleSpacefill, 0.8},
                 {"O1", GraphicsObject::StyleBallAndStick, 0},
                 {"C31", GraphicsObject::StyleStick, 0},
                 {"OW2", GraphicsObject::StyleWireframe, 0}};
    const HGraphicsAtom hidden = atom("C6");
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.label) + " at " + std::to_string(c.off));
        const HGraphicsAtom shown = atom(c.label);
        show_only(shown, c.style);
        const QImage image = view.paint();
        const QPoint p = at(*shown, c.off * shown->radius()), q = at(*hidden);
        ASSERT_TRUE(image.rect().contains(p) && image.rect().contains(q));
        EXPECT_FALSE(backdrop(image.pixel(p)));
        EXPECT_TRUE(backdrop(image.pixel(q)));

        view.pick(p.x(), p.y());
        EXPECT_EQ(view.renderer().pickedType(), Renderer::ObjectAtom);
        EXPECT_EQ(view.renderer().pickedObject().get(), static_cast<GraphicsObject*>(shown.get()));
        view.pick(q.x(), q.y());
        EXPECT_EQ(view.renderer().pickedType(), 0);
        EXPECT_FALSE(view.renderer().pickedObject());
    }
}

TEST_F(RendererTest, LabelIsDrawnBesideItsAtom)
{
    const HGraphicsAtom shown = atom("S5'");
    show_only(shown, GraphicsObject::StyleWireframe);
    const QImage plain = view.paint();
    shown->set_labelled(true);
    crystal->changed();
    view.renderer().graphicsCrystalUpdated(crystal);
    const QImage labelled = view.paint();

    const QPoint p = at(*shown);
    int near = 0, far = 0;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            if (plain.pixel(x, y) != labelled.pixel(x, y))
                ++(std::abs(x - p.x() - 15) < 25 && std::abs(y - p.y()) < 15 ? near : far);
    EXPECT_GT(near, 10) << "the label's pixels";
    EXPECT_EQ(far, 0);
}

// A sphere drawn small and then zoomed in on gets the facets of its new size: its outline is
// round, not the polygon it had far away.
TEST_F(RendererTest, SphereIsRoundAfterTheViewZoomsIn)
{
    const HGraphicsAtom shown = atom("S5'");
    show_only(shown, GraphicsObject::StyleSpacefill);
    RendererViewState far;
    far.eye.z *= 20;
    view.renderer().setViewState(far);
    view.paint();
    look_at(shown->ortho(), 4);
    const QImage image = view.paint();

    const QPoint centre = at(*shown);
    const double radius = at(*shown, shown->radius()).x() - centre.x();
    ASSERT_GT(radius, 30);
    // Every 3.75 degrees meets the middle of a side of each coarse polygon the sphere could have.
    std::string wrong;
    for (int step = 0; step < 96; ++step) {
        const double angle = step * 2 * M_PI / 96;
        for (const double fraction : {0.94, 1.08}) {
            const QPoint p(centre.x() + static_cast<int>(std::lround(fraction * radius * std::cos(angle))),
                           centre.y() + static_cast<int>(std::lround(fraction * radius * std::sin(angle))));
            ASSERT_TRUE(image.rect().contains(p));
            if (backdrop(image.pixel(p)) != (fraction > 1))
                wrong += " " + std::to_string(step * 3.75) + " degrees at " + std::to_string(fraction) + ";";
        }
    }
    EXPECT_EQ(wrong, "");
}

// Of two carbons, the one farther from the eye is drawn darker: the scene fades towards the
// backdrop with depth.
TEST_F(RendererTest, FartherAtomIsDarker)
{
    HGraphicsAtom nearest, farthest;
    for (const HGraphicsAtom& a : crystal->atoms())
        if (a->label().rfind("C", 0) == 0) {
            if (!nearest || a->ortho().z > nearest->ortho().z)
                nearest = a;
            if (!farthest || a->ortho().z < farthest->ortho().z)
                farthest = a;
        }
    show_only(nearest, GraphicsObject::StyleSpacefill);
    farthest->set_visible(true);
    farthest->set_style(GraphicsObject::StyleSpacefill);
    crystal->changed();
    view.renderer().graphicsCrystalUpdated(crystal);
    look_at((nearest->ortho() + farthest->ortho()) * 0.5, 3);
    const QImage image = view.paint();
    // Both are lit alike, so their brightest pixels differ only by the fading.
    const auto brightest = [&](const GraphicsAtom& a) {
        const QPoint c = at(a);
        const int r = (at(a, a.radius()).x() - c.x()) * 8 / 10;
        int most = 0;
        for (int dy = -r; dy <= r; ++dy)
            for (int dx = -r; dx <= r; ++dx)
                if (dx * dx + dy * dy <= r * r)
                    most = std::max(most, qGray(image.pixel(c + QPoint(dx, dy))));
        return most;
    };
    EXPECT_GT(brightest(*nearest), brightest(*farthest) + 15)
        << nearest->label() << " at z " << nearest->ortho().z << ", " << farthest->label() << " at z "
        << farthest->ortho().z << " radius " << nearest->radius();
}

// An orthographic view with the eye at the centre, or far enough away that the depth planes
// meet in single precision, and the same in perspective, draw and pick without GL errors.
TEST_F(RendererTest, EyeAtAnyDistanceGivesNoGLError)
{
    const struct {
        double field_of_view, eye;
    } cases[] = {{0.05, 0}, {0.05, 1e10}, {0.05, 1e200}, {120, 0}, {120, 1e10}, {120, 1e200}};
    FILE* errors = std::tmpfile();
    FILE* was = errorStream();
    setErrorStream(errors);
    for (const auto& c : cases) {
        const long before = std::ftell(errors);
        RendererViewState v;
        v.field_of_view = c.field_of_view;
        v.eye = Point(0, 0, c.eye);
        view.renderer().setViewState(v);
        view.paint();
        view.pick(size / 2, size / 2);
        std::fflush(errors);
        EXPECT_EQ(std::ftell(errors), before) << "field of view " << c.field_of_view << ", eye at " << c.eye;
    }
    setErrorStream(was);
    std::fclose(errors);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

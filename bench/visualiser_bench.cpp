// The 3D view off-screen: frame times of a real structure packed over cells until it holds 1,000,
// 10,000 and 50,000 atoms, in wireframe, ball-and-stick and spacefill, and a pick at 10,000. Each
// frame turns the view by a degree, as a drag does, so only the display list is played back.
// Beside it, the peer: the same atoms drawn each frame in immediate mode with GLU quadrics, the
// plain way to draw spheres in OpenGL 1.1, with no display list. bench/visualiser.sh runs it
// under Xvfb with Mesa's software renderer.
#include "CifFile.h"
#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsCrystal.h"
#include "OffscreenView.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <QGuiApplication>
#include <benchmark/benchmark.h>
#include <cmath>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>

namespace {

const std::string structure_file = std::string(CIFWARD_SHARED_DIR) + "/corpus/cod/2006998-with-extra-tag.cif";

// The structure packed in a box of cells grown one axis at a time until it holds `wanted` atoms;
// the surplus is hidden, so that exactly `wanted` are drawn.
HGraphicsCrystal packed(int wanted)
{
    std::ifstream in(structure_file, std::ios::binary);
    if (!in)
        throw std::runtime_error("no corpus file " + structure_file);
    CifFile file;
    file.read(in);
    const HGraphicsCrystal crystal(new GraphicsCrystal(HNewCrystal(new NewCrystal(file.crystal_maker()))));
    double size[3] = {1, 1, 1};
    crystal->set_packing(true);
    for (int axis = 0; static_cast<int>(crystal->atoms().size()) < wanted; axis = (axis + 1) % 3) {
        size[axis] += 1;
        crystal->set_packing_box(Box({0, 0, 0}, {size[0], size[1], size[2]}));
    }
    const auto& atoms = crystal->atoms();
    for (std::size_t i = static_cast<std::size_t>(wanted); i < atoms.size(); ++i)
        atoms[i]->set_visible(false);
    return crystal;
}

// Made in main, after the application object and before it goes.
OffscreenView* the_view = nullptr;

OffscreenView& view()
{
    return *the_view;
}

// One crystal in the view at a time; switching costs a compile outside the clock.
HGraphicsCrystal& shown(int atoms, GraphicsObject::RenderingStyle style)
{
    static std::map<int, HGraphicsCrystal> made;
    static HGraphicsCrystal current;
    HGraphicsCrystal& crystal = made[atoms];
    if (!crystal)
        crystal = packed(atoms);
    if (current != crystal) {
        view().renderer().clearGraphicsCrystals();
        view().renderer().addGraphicsCrystal(crystal);
        current = crystal;
    }
    crystal->set_style(style, GraphicsCrystal::FilterAll);
    crystal->set_visible(GraphicsCrystal::ActionShow, GraphicsCrystal::FilterAll);
    const auto& list = crystal->atoms();
    for (std::size_t i = static_cast<std::size_t>(atoms); i < list.size(); ++i)
        list[i]->set_visible(false);
    crystal->changed();
    view().renderer().graphicsCrystalUpdated(crystal);
    // The view fits the whole packing, about a cube of as many cells as there are times 180 atoms.
    RendererViewState state;
    state.eye.z *= std::cbrt(atoms / 180.0);
    view().renderer().setViewState(state);
    return crystal;
}

void frame(benchmark::State& state, GraphicsObject::RenderingStyle style)
{
    const int atoms = static_cast<int>(state.range(0));
    shown(atoms, style);
    Renderer& r = view().renderer();
    const RendererViewState start = r.viewState();
    view().paintAndFinish();
    int degrees = 0;
    for (auto _ : state) {
        r.setOrientation(Transformation({0, 1, 0}, ++degrees, true));
        view().paintAndFinish();
    }
    r.setViewState(start);
    state.counters["atoms"] = atoms;
    state.counters["fps"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// The first frame after a change of the model, which compiles the display list anew.
void frame_after_change(benchmark::State& state)
{
    const int atoms = static_cast<int>(state.range(0));
    HGraphicsCrystal& crystal = shown(atoms, GraphicsObject::StyleBallAndStick);
    for (auto _ : state) {
        view().renderer().graphicsCrystalUpdated(crystal);
        view().paintAndFinish();
    }
    state.counters["atoms"] = atoms;
}

// A cylinder of GLU from one point to another, as the renderer's sticks are.
void glu_stick(GLUquadric* quadric, const Point& from, const Point& to, double radius)
{
    const Vector3D along = to - from;
    const double length = along.length();
    const Vector3D z(0, 0, 1), axis = z.cross(along);
    glPushMatrix();
    glTranslated(from.x, from.y, from.z);
    if (axis.length() > 1e-9)
        glRotated(std::acos(along.z / length) * 180 / M_PI, axis.x, axis.y, axis.z);
    else if (along.z < 0)
        glRotated(180, 1, 0, 0);
    gluCylinder(quadric, radius, radius, length, 16, 2);
    glPopMatrix();
}

// The peer: the same picture drawn each frame in immediate mode with GLU quadrics at the same
// resolution (spheres 16 by 16, or 25 by 25 in spacefill; sticks of two halves, 16 sides).
void frame_glu_immediate(benchmark::State& state, GraphicsObject::RenderingStyle style)
{
    const int atoms = static_cast<int>(state.range(0));
    HGraphicsCrystal& crystal = shown(atoms, style);
    const bool spacefill = style == GraphicsObject::StyleSpacefill;
    const double scale = spacefill ? 1.0 : 0.25;
    const int slices = spacefill ? 25 : 16;
    GLUquadric* quadric = gluNewQuadric();
    Renderer& r = view().renderer();
    view().paintAndFinish();
    int degrees = 0;
    for (auto _ : state) {
        // The renderer's paint sets up the camera and backdrop; with no crystal it draws nothing.
        r.removeGraphicsCrystal(crystal);
        r.setOrientation(Transformation({0, 1, 0}, ++degrees, true));
        view().paintAndFinish();
        const Point c = crystal->rotation_centre();
        glPushMatrix();
        glRotated(degrees, 0, 1, 0);
        glTranslated(-c.x, -c.y, -c.z);
        for (const HGraphicsAtom& a : crystal->atoms()) {
            if (!a->visible())
                continue;
            glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, a->color().data());
            glPushMatrix();
            glTranslated(a->ortho().x, a->ortho().y, a->ortho().z);
            gluSphere(quadric, std::max(a->radius() * scale, 0.1), slices, slices);
            glPopMatrix();
        }
        for (const HGraphicsBond& b : crystal->bonds()) {
            if (spacefill || !b->atom1()->visible() || !b->atom2()->visible())
                continue;
            const Point middle = (b->atom1()->ortho() + b->atom2()->ortho()) * 0.5;
            glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, b->atom1()->color().data());
            glu_stick(quadric, b->atom1()->ortho(), middle, 0.1);
            glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, b->atom2()->color().data());
            glu_stick(quadric, middle, b->atom2()->ortho(), 0.1);
        }
        glPopMatrix();
        glFinish();
        r.addGraphicsCrystal(crystal);
    }
    gluDeleteQuadric(quadric);
    state.counters["atoms"] = atoms;
    state.counters["fps"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// A pick at the middle of the window, where the packing is densest.
void pick(benchmark::State& state)
{
    const int atoms = static_cast<int>(state.range(0));
    shown(atoms, GraphicsObject::StyleBallAndStick);
    view().paintAndFinish();
    view().pick(400, 300);
    for (auto _ : state)
        view().pick(400, 300);
    state.counters["atoms"] = atoms;
    state.counters["hit"] = view().renderer().pickedType() == Renderer::ObjectAtom ? 1 : 0;
}

} // namespace

BENCHMARK_CAPTURE(frame, wireframe, GraphicsObject::StyleWireframe)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(frame, ball_and_stick, GraphicsObject::StyleBallAndStick)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(frame, spacefill, GraphicsObject::StyleSpacefill)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();
BENCHMARK(frame_after_change)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(frame_glu_immediate, ball_and_stick, GraphicsObject::StyleBallAndStick)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(frame_glu_immediate, spacefill, GraphicsObject::StyleSpacefill)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();
BENCHMARK(pick)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    OffscreenView offscreen(800, 600);
    the_view = &offscreen;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    offscreen.renderer().clearGraphicsCrystals();
    return 0;
}

#include "CrystalPainter.h"

#include "BondType.h"
#include "GLBitmapFont.h"
#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsCell.h"
#include "GraphicsCentroid.h"
#include "GraphicsContact.h"
#include "GraphicsCrystal.h"
#include "GraphicsLine.h"
#include "GraphicsPlane.h"
#include "Logger.h"
#include "Renderer.h"
#include "RendererCrystalDisplaySettings.h"
#include "RendererSettings.h"
#include "ShapeLists.h"
#include "ShapeMesh.h"
#include "ShapeStrip.h"

#include <GL/gl.h>
#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <set>

namespace {

// Ends closer than this make no bond or contact worth drawing: there is no direction to draw in.
constexpr double zero_length = 1e-7;

struct Offset {
    double x, y;
};

// How a bond of each type is laid out across its axis, in units of the stick radius.
struct BondLayout {
    std::vector<Offset> offsets;
    GLushort pattern;
    double radius_scale;
};

BondLayout layout(int32_t type, bool sticks)
{
    switch (type) {
    case BondDouble:
        return {{{0, 1.25}, {0, -1.25}}, 0, 0.75};
    case BondTriple:
        return {{{1.25, 0}, {-0.625, 1.078125}, {-0.625, -1.078125}}, 0, 1.0};
    case BondQuadruple:
        if (sticks)
            return {{{-1.5, -1.5}, {-1.5, 1.5}, {1.5, -1.5}, {1.5, 1.5}}, 0, 0.75};
        return {{{-0.7, -0.7}, {-0.7, 0.7}, {0.7, -0.7}, {0.7, 0.7}}, 0, 1.0};
    case BondDelocalised:
        return {{{0, 1.25}, {0, -1.25}}, 0x0F0F, 0.75};
    case BondPi:
        return {{{0, 0}}, 0x0F0F, 1.0};
    default:
        return {{{0, 0}}, 0, 1.0};
    }
}

// A frame whose z axis runs along a bond and whose x axis points towards the bond's neighbours,
// so that a double bond lies in the plane of its substituents.
struct BondFrame {
    Vector3D x, y, z;
    double length;
};

Vector3D any_perpendicular(const Vector3D& z)
{
    const Vector3D trial = std::abs(z.x) < 0.9 ? Vector3D(1, 0, 0) : Vector3D(0, 1, 0);
    return (trial - z * trial.dot(z)).normalized();
}

BondFrame bond_frame(const GraphicsBond& bond)
{
    const Point &p1 = bond.atom1()->ortho(), &p2 = bond.atom2()->ortho();
    BondFrame f;
    f.length = (p2 - p1).length();
    f.z = (p2 - p1) / f.length;
    Point reference;
    Vector3D x;
    if (bond.reference_point(reference)) {
        const Vector3D r = reference - p1;
        x = r - f.z * r.dot(f.z);
    }
    f.x = x.length() > 0.001 ? x.normalized() : any_perpendicular(f.z);
    f.y = f.z.cross(f.x);
    return f;
}

void multiply(const BondFrame& f, const Point& origin)
{
    const GLdouble m[16] = {f.x.x, f.x.y, f.x.z, 0, f.y.x,    f.y.y,    f.y.z,    0,
                            f.z.x, f.z.y, f.z.z, 0, origin.x, origin.y, origin.z, 1};
    glMultMatrixd(m);
}

void vertex(const Point& p)
{
    glVertex3d(p.x, p.y, p.z);
}

void color(const RGBA& c)
{
    glColor4fv(c.data());
}

// A cylinder of the stick list from z0 to z1 along the current frame's z axis.
void cylinder(unsigned list, double radius, double z0, double z1)
{
    glPushMatrix();
    glTranslated(0, 0, z0);
    glScaled(radius, radius, z1 - z0);
    glCallList(list);
    glPopMatrix();
}

// The rings of the graph that the aromatic bonds between visible atoms make: for each bond, the
// shortest way round back to it.
std::vector<std::vector<const GraphicsAtom*>> aromatic_rings(const std::vector<HGraphicsBond>& bonds)
{
    std::map<const GraphicsAtom*, std::vector<const GraphicsAtom*>> next;
    std::vector<std::pair<const GraphicsAtom*, const GraphicsAtom*>> edges;
    for (const HGraphicsBond& b : bonds)
        if (b->type() == BondAromatic && b->atom1()->visible() && b->atom2()->visible()) {
            next[b->atom1().get()].push_back(b->atom2().get());
            next[b->atom2().get()].push_back(b->atom1().get());
            edges.emplace_back(b->atom1().get(), b->atom2().get());
        }
    std::set<std::set<const GraphicsAtom*>> seen;
    std::vector<std::vector<const GraphicsAtom*>> rings;
    for (const auto& [from, to] : edges) {
        std::map<const GraphicsAtom*, const GraphicsAtom*> parent{{from, nullptr}};
        std::deque<const GraphicsAtom*> queue{from};
        while (!queue.empty() && !parent.count(to)) {
            const GraphicsAtom* a = queue.front();
            queue.pop_front();
            for (const GraphicsAtom* n : next[a])
                if (!parent.count(n) && !(a == from && n == to)) {
                    parent[n] = a;
                    queue.push_back(n);
                }
        }
        if (!parent.count(to))
            continue;
        std::vector<const GraphicsAtom*> ring;
        for (const GraphicsAtom* a = to; a; a = parent[a])
            ring.push_back(a);
        if (seen.insert(std::set<const GraphicsAtom*>(ring.begin(), ring.end())).second)
            rings.push_back(ring);
    }
    return rings;
}

// The polygon where a plane cuts a box given by its eight corners (corner i has bit 1 for the
// first edge direction, 2 for the second, 4 for the third), in order round its centre.
std::vector<Point> plane_polygon(const Plane& plane, const std::array<Point, 8>& corners)
{
    std::vector<Point> points;
    for (int i = 0; i < 8; ++i)
        for (int bit : {1, 2, 4}) {
            if (i & bit)
                continue;
            const Point &p = corners[i], &q = corners[i | bit];
            const double hp = plane.height(p), hq = plane.height(q);
            if ((hp <= 0) != (hq <= 0))
                points.push_back(p + (q - p) * (hp / (hp - hq)));
        }
    if (points.size() < 3)
        return {};
    Point centre;
    for (const Point& p : points)
        centre += p;
    centre = centre / static_cast<double>(points.size());
    std::sort(points.begin(), points.end(), [&](const Point& a, const Point& b) {
        const Vector3D u = a - centre, v = b - centre;
        return std::atan2(u.dot(plane.v2), u.dot(plane.v1)) < std::atan2(v.dot(plane.v2), v.dot(plane.v1));
    });
    return points;
}

} // namespace

CrystalPainter::CrystalPainter(const RendererSettings& settings, const ShapeLists& shapes,
                               const GLBitmapFont& font, const RendererCrystalDisplaySettings& display,
                               double pixels_per_unit)
    : settings_(settings), shapes_(shapes), font_(font), display_(display), pixels_per_unit_(pixels_per_unit)
{
}

void CrystalPainter::draw(GraphicsCrystal& crystal)
{
    // Shapes carry their colour point by point, so that one strip holds shapes of every colour.
    glPushAttrib(GL_LIGHTING_BIT | GL_ENABLE_BIT | GL_CURRENT_BIT);
    glColorMaterial(GL_FRONT_AND_BACK, GL_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    // The shapes are closed and their backs culled, so lighting the backs as well would change no
    // pixel and cost half the lighting; their normals are unit length and nothing in the list
    // scales them.
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 0);
    glDisable(GL_NORMALIZE);
    draw_atoms(crystal);
    draw_bonds(crystal);
    draw_aromatics(crystal);
    draw_cell(crystal);
    draw_contacts(crystal);
    draw_primitives(crystal, false);
    draw_selection_markers(crystal);
    draw_object_labels(crystal);
    glPopAttrib();
}

int CrystalPainter::slices(double radius)
{
    const int slices = ShapeMesh::slices_for(radius * pixels_per_unit_);
    double lower = 0, upper = 0;
    ShapeMesh::pixel_range(slices, lower, upper);
    lowest_scale_ = std::max(lowest_scale_, lower / radius);
    highest_scale_ = std::min(highest_scale_, upper / radius);
    return slices;
}

void CrystalPainter::scale_range(double& lowest, double& highest) const
{
    lowest = lowest_scale_;
    highest = highest_scale_;
}

void CrystalPainter::pick(GraphicsCrystal& crystal, const PickFilter& near)
{
    near_ = near;
    pick_atoms(crystal);
    pick_bonds(crystal);
    draw_primitives(crystal, true);
    pick_contacts(crystal);
}

void CrystalPainter::draw_message(const std::string& text)
{
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_FOG);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(-1, 1, -1, 1, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glColor4f(1, 1, 0, 1);
    glRasterPos3d(-0.9, -0.9, 0.1);
    font_.draw(text);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopAttrib();
}

double CrystalPainter::atom_radius(const GraphicsAtom& atom) const
{
    switch (atom.style()) {
    case GraphicsObject::StyleBallAndStick:
        return std::max(settings_.ball_scale * atom.radius(), settings_.stick_radius);
    case GraphicsObject::StyleSpacefill:
        return std::max(atom.radius(), settings_.stick_radius);
    default:
        return settings_.stick_radius;
    }
}

void CrystalPainter::sphere(const Point& centre, double radius, unsigned list)
{
    glPushMatrix();
    glTranslated(centre.x, centre.y, centre.z);
    glScaled(radius, radius, radius);
    glCallList(list);
    glPopMatrix();
}

RGBA CrystalPainter::atom_color(const GraphicsAtom& atom) const
{
    if ((settings_.selection_display & RendererSettings::SelectionColors) && atom.selected())
        return settings_.selected_atom;
    return atom.color();
}

std::array<RGBA, 2> CrystalPainter::bond_colors(const GraphicsBond& bond) const
{
    std::array<RGBA, 2> c{bond.color(), bond.color2()};
    if (settings_.selection_display & RendererSettings::SelectionColors) {
        if (bond.selected()) {
            c = {settings_.selected_bond, settings_.selected_bond};
        } else {
            if (bond.atom1()->selected())
                c[0] = settings_.selected_atom;
            if (bond.atom2()->selected())
                c[1] = settings_.selected_atom;
        }
    }
    return c;
}

void CrystalPainter::draw_atoms(const GraphicsCrystal& crystal)
{
    logDebug(2, "Renderer::drawAtoms");
    std::vector<const GraphicsAtom*> spheres[3], wireframe;
    for (const HGraphicsAtom& a : crystal.atoms()) {
        switch (a->style()) {
        case GraphicsObject::StyleStick:
            spheres[0].push_back(a.get());
            break;
        case GraphicsObject::StyleBallAndStick:
            spheres[1].push_back(a.get());
            break;
        case GraphicsObject::StyleSpacefill:
            spheres[2].push_back(a.get());
            break;
        default:
            wireframe.push_back(a.get());
        }
    }
    ShapeStrip strip;
    for (const auto& style : spheres)
        for (const GraphicsAtom* a : style)
            if (a->visible()) {
                const double radius = atom_radius(*a);
                strip.add(ShapeMesh::sphere(slices(radius)), a->ortho(), radius, atom_color(*a));
            }
    strip.finish();
    // A wireframe atom shows only through its bonds; one with none visible gets a cross.
    glDisable(GL_LIGHTING);
    glBegin(GL_LINES);
    for (const GraphicsAtom* a : wireframe) {
        if (!a->visible() || a->visible_bonds() > 0)
            continue;
        color(atom_color(*a));
        for (const Vector3D& axis : {Vector3D(0.15, 0, 0), Vector3D(0, 0.15, 0), Vector3D(0, 0, 0.15)}) {
            vertex(a->ortho() - axis);
            vertex(a->ortho() + axis);
        }
    }
    glEnd();
    glEnable(GL_LIGHTING);
    logDebug(2, "Renderer::drawAtoms done");
}

namespace {

bool drawable(const GraphicsBond& b)
{
    return b.visible() && b.atom1()->visible() && b.atom2()->visible() &&
           (b.atom2()->ortho() - b.atom1()->ortho()).length() >= zero_length;
}

} // namespace

void CrystalPainter::draw_bonds(const GraphicsCrystal& crystal)
{
    logDebug(2, "Renderer::drawBonds");
    std::vector<const GraphicsBond*> wireframe, capped, uncapped;
    for (const HGraphicsBond& b : crystal.bonds()) {
        if (!drawable(*b))
            continue;
        switch (b->style()) {
        case GraphicsObject::StyleSpacefill:
            break;
        case GraphicsObject::StyleBallAndStick:
            uncapped.push_back(b.get());
            break;
        case GraphicsObject::StyleStick:
            capped.push_back(b.get());
            break;
        default:
            wireframe.push_back(b.get());
        }
    }
    draw_wireframe_bonds(wireframe);
    draw_stick_bonds(capped, true);
    draw_stick_bonds(uncapped, false);
    logDebug(2, "Renderer::drawBonds done");
}

void CrystalPainter::draw_wireframe_bonds(const std::vector<const GraphicsBond*>& bonds)
{
    if (bonds.empty())
        return;
    glPushAttrib(GL_LIGHTING_BIT | GL_ENABLE_BIT | GL_LINE_BIT | GL_CURRENT_BIT);
    glDisable(GL_LIGHTING);
    // Solid lines go in one batch and dashed in another, since a pattern cannot change inside
    // glBegin.
    for (const bool dashed : {false, true}) {
        if (dashed) {
            glEnable(GL_LINE_STIPPLE);
            glLineStipple(1, 0x0F0F);
        }
        glBegin(GL_LINES);
        for (const GraphicsBond* b : bonds) {
            const BondLayout l = layout(b->type(), false);
            if ((l.pattern != 0) != dashed)
                continue;
            const BondFrame f = bond_frame(*b);
            const std::array<RGBA, 2> c = bond_colors(*b);
            const Point &p1 = b->atom1()->ortho(), &p2 = b->atom2()->ortho();
            for (const Offset& o : l.offsets) {
                const Vector3D shift = (f.x * o.x + f.y * o.y) * settings_.stick_radius;
                if (c[0].equals(c[1])) {
                    color(c[0]);
                    vertex(p1 + shift);
                    vertex(p2 + shift);
                } else {
                    const Point mid = (p1 + p2) * 0.5 + shift;
                    color(c[0]);
                    vertex(p1 + shift);
                    vertex(mid);
                    color(c[1]);
                    vertex(mid);
                    vertex(p2 + shift);
                }
            }
        }
        glEnd();
    }
    glPopAttrib();
}

void CrystalPainter::draw_stick_bonds(const std::vector<const GraphicsBond*>& bonds, bool capped)
{
    ShapeStrip strip;
    for (const GraphicsBond* b : bonds) {
        const BondLayout l = layout(b->type(), true);
        const BondFrame f = bond_frame(*b);
        const std::array<RGBA, 2> c = bond_colors(*b);
        const double r = settings_.stick_radius * l.radius_scale, length = f.length;
        const int n = slices(r);
        const ShapeMesh &tube = ShapeMesh::cylinder(n), &disk = ShapeMesh::disk(n);
        for (const Offset& o : l.offsets) {
            const Point start = b->atom1()->ortho() + (f.x * o.x + f.y * o.y) * settings_.stick_radius;
            const auto piece = [&](double z0, double z1, const RGBA& colour) {
                strip.add(tube, start + f.z * z0, f.x * r, f.y * r, f.z * (z1 - z0), colour);
            };
            // A cap faces outwards: the one at the start is the disk turned half round about x.
            const auto cap = [&](double z, bool at_start, const RGBA& colour) {
                const double turn = at_start ? -1 : 1;
                strip.add(disk, start + f.z * z, f.x * r, f.y * (r * turn), f.z * turn, colour);
            };
            if (l.pattern) {
                for (int k = 0; k < 10; ++k)
                    piece(k * 0.1 * length, (k * 0.1 + 0.07) * length, c[k < 5 ? 0 : 1]);
            } else if (c[0].equals(c[1])) {
                piece(0, length, c[0]);
                if (capped) {
                    cap(0, true, c[0]);
                    cap(length, false, c[0]);
                }
            } else {
                piece(0, length / 2, c[0]);
                piece(length / 2, length, c[1]);
                if (capped) {
                    cap(0, true, c[0]);
                    cap(length, false, c[1]);
                }
            }
        }
    }
}

void CrystalPainter::draw_aromatics(const GraphicsCrystal& crystal)
{
    if (!display_.aromatic_circles()) {
        logDebug(2, "Renderer::drawAromatics - aromatic circles are turned off");
        return;
    }
    logDebug(2, "Renderer::drawAromatics");
    const auto rings = aromatic_rings(crystal.bonds());
    if (rings.empty())
        return;
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    glDisable(GL_LIGHTING);
    glColor4f(0.57f, 0.57f, 0.57f, 1);
    for (const auto& ring : rings) {
        Point centre;
        for (const GraphicsAtom* a : ring)
            centre += a->ortho();
        centre = centre / static_cast<double>(ring.size());
        // The circle stays inside the ring: half the least distance to a bond's middle.
        double least = 100;
        Vector3D normal;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Point &p = ring[i]->ortho(), &q = ring[(i + 1) % ring.size()]->ortho();
            least = std::min(least, ((p + q) * 0.5 - centre).length());
            normal += (p - centre).cross(q - centre);
        }
        if (normal.length() < 1e-9)
            continue;
        normal.normalize();
        const Vector3D u0 = ring[0]->ortho() - centre;
        const Vector3D u = (u0 - normal * u0.dot(normal)).normalized(), w = normal.cross(u);
        const double r = least / 2;
        glBegin(GL_LINE_LOOP);
        for (int step = 0; step < 36; ++step) {
            const double angle = step * 10 * M_PI / 180;
            vertex(centre + (u * std::cos(angle) + w * std::sin(angle)) * r);
        }
        glEnd();
    }
    glPopAttrib();
}

void CrystalPainter::draw_cell(const GraphicsCrystal& crystal)
{
    const GraphicsCell& cell = *crystal.cell();
    if (!cell.visible())
        return;
    logDebug(2, "Renderer::drawCell");
    const Box& box = cell.box();
    const Vector3D lo(std::floor(box.min.x), std::floor(box.min.y), std::floor(box.min.z));
    const Vector3D hi(std::ceil(box.max.x), std::ceil(box.max.y), std::ceil(box.max.z));
    const Vector3D steps[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const RGBA axes[3] = {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}};
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    glDisable(GL_LIGHTING);
    glBegin(GL_LINES);
    for (double i = lo.x; i <= hi.x; ++i)
        for (double j = lo.y; j <= hi.y; ++j)
            for (double k = lo.z; k <= hi.z; ++k) {
                const Vector3D f(i, j, k);
                for (int axis = 0; axis < 3; ++axis) {
                    const Vector3D to = f + steps[axis];
                    if (to[axis] > hi[axis])
                        continue;
                    color(f == lo ? axes[axis] : cell.color());
                    vertex(cell.at(f));
                    vertex(cell.at(to));
                }
            }
    glEnd();
    glPopAttrib();
}

void CrystalPainter::draw_contacts(const GraphicsCrystal& crystal)
{
    logDebug(2, "Renderer::drawContacts");
    const bool selection_colors = settings_.selection_display & RendererSettings::SelectionColors;
    const auto contact_color = [&](const GraphicsContact& c) {
        return selection_colors && c.selected() ? settings_.selected_contact : c.color();
    };
    std::vector<const GraphicsContact*> lines, sticks;
    for (const HGraphicsContact& c : crystal.contacts())
        if (c->visible() && (c->ortho2() - c->ortho1()).length() >= zero_length)
            (c->style() == GraphicsObject::StyleWireframe ? lines : sticks).push_back(c.get());
    if (!lines.empty()) {
        glPushAttrib(GL_ENABLE_BIT | GL_LINE_BIT | GL_CURRENT_BIT);
        glDisable(GL_LIGHTING);
        glEnable(GL_LINE_STIPPLE);
        glLineStipple(static_cast<GLint>(std::lround(2 * settings_.line_width / settings_.base_line_width)),
                      0xAAAA);
        glBegin(GL_LINES);
        for (const GraphicsContact* c : lines) {
            color(contact_color(*c));
            vertex(c->ortho1());
            vertex(c->ortho2());
        }
        glEnd();
        glPopAttrib();
    }
    // Facets are asked for only when there are sticks, so that a zoom recompiles for none.
    if (sticks.empty())
        return;
    // A row of 20 short sticks: each piece fills 0.7 of its share of the length.
    ShapeStrip strip;
    const ShapeMesh& tube = ShapeMesh::cylinder(slices(0.05));
    for (const GraphicsContact* c : sticks) {
        const Vector3D along = c->ortho2() - c->ortho1();
        const double length = along.length();
        const Vector3D z = along / length, x = any_perpendicular(z), y = z.cross(x);
        for (int piece = 0; piece < 20; ++piece)
            strip.add(tube, c->ortho1() + z * (piece * length / 20), x * 0.05, y * 0.05,
                      z * (0.7 * length / 20), contact_color(*c));
    }
}

std::array<Point, 8> CrystalPainter::clip_box(GraphicsCrystal& crystal) const
{
    std::array<Point, 8> corners;
    const HNewCrystal& nc = crystal.crystal();
    if (nc && (nc->sliced() || nc->packed())) {
        const Box& box = nc->packing_box();
        const Cell& cell = *nc->crystal_maker();
        for (int i = 0; i < 8; ++i)
            corners[i] = cell.orthogonal({i & 1 ? box.max.x : box.min.x, i & 2 ? box.max.y : box.min.y,
                                          i & 4 ? box.max.z : box.min.z});
        return corners;
    }
    Point lo(1e10, 1e10, 1e10), hi(-1e10, -1e10, -1e10);
    for (const HGraphicsAtom& a : crystal.atoms())
        for (int k = 0; k < 3; ++k) {
            lo[k] = std::min(lo[k], a->ortho()[k]);
            hi[k] = std::max(hi[k], a->ortho()[k]);
        }
    if (crystal.atoms().empty())
        hi = lo;
    for (int i = 0; i < 8; ++i)
        corners[i] = Point(i & 1 ? hi.x : lo.x, i & 2 ? hi.y : lo.y, i & 4 ? hi.z : lo.z);
    return corners;
}

void CrystalPainter::draw_primitives(GraphicsCrystal& crystal, bool picking)
{
    logDebug(2, picking ? "Renderer::pickPrimitives" : "Renderer::drawPrimitives");
    const bool selection_colors = settings_.selection_display & RendererSettings::SelectionColors;
    const auto primitive_color = [&](const GraphicsPrimitive& p) {
        return selection_colors && p.selected() ? settings_.selected_primitive : p.color();
    };
    if (picking) {
        glLoadName(Renderer::ObjectPrimitive);
        glPushName(0);
    }
    std::vector<const GraphicsPlane*> planes;
    for (const HGraphicsPrimitive& p : crystal.primitives()) {
        if (!p->visible())
            continue;
        if (picking)
            glLoadName(p->number());
        if (const auto* plane = dynamic_cast<const GraphicsPlane*>(p.get())) {
            planes.push_back(plane);
        } else if (const auto* centroid = dynamic_cast<const GraphicsCentroid*>(p.get())) {
            if (picking) {
                if (shapes_.sphere)
                    sphere(centroid->ortho(), centroid->radius(), shapes_.sphere);
            } else {
                ShapeStrip strip;
                strip.add(ShapeMesh::sphere(slices(centroid->radius())), centroid->ortho(),
                          centroid->radius(), primitive_color(*centroid));
            }
        } else if (const auto* line = dynamic_cast<const GraphicsLine*>(p.get())) {
            glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
            glDisable(GL_LIGHTING);
            color(primitive_color(*line));
            glBegin(GL_LINES);
            vertex(line->ortho1());
            vertex(line->ortho2());
            glEnd();
            glPopAttrib();
        }
    }
    const std::array<Point, 8> box = clip_box(crystal);
    const auto polygon = [&](const Plane& plane, const RGBA& c) {
        const std::vector<Point> points = plane_polygon(plane, box);
        if (points.empty())
            return;
        glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
        glDisable(GL_LIGHTING);
        glDisable(GL_CULL_FACE);
        color(c);
        glBegin(GL_POLYGON);
        for (const Point& p : points)
            vertex(p);
        glEnd();
        glPopAttrib();
    };
    for (const GraphicsPlane* plane : planes) {
        if (picking)
            glLoadName(plane->number());
        polygon(plane->plane(), primitive_color(*plane));
    }
    if (picking) {
        glPopName();
        return;
    }
    const HNewCrystal& nc = crystal.crystal();
    if (nc && nc->sliced() && crystal.show_slicing_bounds()) {
        const Plane& slicing = nc->slicing_plane();
        for (const double side : {1.0, -1.0}) {
            Plane bound = slicing;
            bound.distance = slicing.distance + nc->slicing_displacement() + side * nc->slicing_thickness();
            polygon(bound, RGBA(0.3f, 0.3f, 0.3f, 0.7f));
        }
    }
}

void CrystalPainter::draw_selection_markers(const GraphicsCrystal& crystal)
{
    if (!(settings_.selection_display & RendererSettings::SelectionMarkers))
        return;
    logDebug(2, "Renderer::drawSelectionMarkers");
    const double radius = 0.1;
    const ShapeMesh& marker = ShapeMesh::sphere(slices(radius));
    // Wireframe atoms are thin enough that their markers may be hidden behind other atoms; a
    // marker inside a sphere would never show unless the depth test is off.
    for (const bool through : {false, true}) {
        if (through)
            glDisable(GL_DEPTH_TEST);
        ShapeStrip strip;
        for (const HGraphicsAtom& a : crystal.atoms()) {
            const bool sphere_style = a->style() == GraphicsObject::StyleStick ||
                                      a->style() == GraphicsObject::StyleBallAndStick ||
                                      a->style() == GraphicsObject::StyleSpacefill;
            if (a->selected() && a->visible() && sphere_style == through)
                strip.add(marker, a->ortho(), radius, settings_.selected_atom);
        }
        if (through)
            for (const HGraphicsBond& b : crystal.bonds())
                if (b->selected() && drawable(*b) && b->style() != GraphicsObject::StyleSpacefill)
                    strip.add(marker, (b->atom1()->ortho() + b->atom2()->ortho()) * 0.5, radius,
                              settings_.selected_bond);
        strip.finish();
    }
    glEnable(GL_DEPTH_TEST);
}

void CrystalPainter::draw_object_labels(const GraphicsCrystal& crystal)
{
    if (!font_.valid())
        return;
    logDebug(2, "Renderer::drawObjectLabels");
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    // A label stays as readable at the back as at the front.
    glDisable(GL_FOG);
    color(display_.label_color());
    const auto label = [&](const GraphicsObject& o, const Point& at) {
        if (!o.visible() || !o.labelled() || o.label().empty())
            return;
        glRasterPos3d(at.x, at.y, at.z);
        font_.draw(o.label());
    };
    for (const HGraphicsAtom& a : crystal.atoms())
        label(*a, a->ortho());
    for (const HGraphicsBond& b : crystal.bonds())
        label(*b, (b->atom1()->ortho() + b->atom2()->ortho()) * 0.5);
    for (const HGraphicsContact& c : crystal.contacts())
        label(*c, (c->ortho1() + c->ortho2()) * 0.5);
    for (const HGraphicsPrimitive& p : crystal.primitives())
        label(*p, p->anchor());
    const GraphicsCell& cell = *crystal.cell();
    if (cell.visible() && cell.labelled()) {
        const Box& box = cell.box();
        const Vector3D lo(std::floor(box.min.x), std::floor(box.min.y), std::floor(box.min.z));
        const RGBA axes[3] = {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}};
        const char* names[3] = {"a", "b", "c"};
        for (int axis = 0; axis < 3; ++axis) {
            Vector3D end = lo;
            end[axis] += 1.08;
            color(axes[axis]);
            const Point at = cell.at(end);
            glRasterPos3d(at.x, at.y, at.z);
            font_.draw(names[axis]);
        }
        color(cell.color());
        const Point origin = cell.at(lo);
        glRasterPos3d(origin.x, origin.y, origin.z);
        font_.draw("o");
    }
    glPopAttrib();
}

void CrystalPainter::pick_atoms(const GraphicsCrystal& crystal)
{
    logDebug(2, "Renderer::pickAtoms");
    glLoadName(Renderer::ObjectAtom);
    glPushName(0);
    const double least = settings_.pick_enlargement * settings_.stick_radius;
    for (const HGraphicsAtom& a : crystal.atoms()) {
        if (!a->visible())
            continue;
        const unsigned list = shapes_.sphere;
        const double radius = std::max(atom_radius(*a), least);
        if (!list || !near_(a->ortho(), radius))
            continue;
        glLoadName(a->number());
        sphere(a->ortho(), radius, list);
    }
    glPopName();
}

void CrystalPainter::pick_bonds(const GraphicsCrystal& crystal)
{
    logDebug(2, "Renderer::pickBonds");
    glLoadName(Renderer::ObjectBond);
    glPushName(0);
    const double trim = settings_.pick_enlargement * settings_.stick_radius;
    for (const HGraphicsBond& b : crystal.bonds()) {
        if (!drawable(*b) || b->style() == GraphicsObject::StyleSpacefill)
            continue;
        const Point &p1 = b->atom1()->ortho(), &p2 = b->atom2()->ortho();
        // Half the length, and the side offsets of a double or triple bond's sticks.
        if (!near_((p1 + p2) * 0.5, (p2 - p1).length() / 2 + 4 * settings_.stick_radius))
            continue;
        glLoadName(b->number());
        const bool sticks =
            b->style() == GraphicsObject::StyleStick || b->style() == GraphicsObject::StyleBallAndStick;
        if (!sticks || !shapes_.cylinder) {
            // The line stops short of both atoms, so that a click on an atom's centre takes the
            // atom.
            const Vector3D unit = (p2 - p1) / (p2 - p1).length();
            if ((p2 - p1).length() <= 2 * trim)
                continue;
            glBegin(GL_LINES);
            vertex(p1 + unit * trim);
            vertex(p2 - unit * trim);
            glEnd();
            continue;
        }
        const BondLayout l = layout(b->type(), true);
        const BondFrame f = bond_frame(*b);
        glPushMatrix();
        multiply(f, p1);
        for (const Offset& o : l.offsets) {
            glPushMatrix();
            glTranslated(o.x * settings_.stick_radius, o.y * settings_.stick_radius, 0);
            cylinder(shapes_.cylinder, settings_.stick_radius * l.radius_scale, 0, f.length);
            glPopMatrix();
        }
        glPopMatrix();
    }
    glPopName();
}

void CrystalPainter::pick_contacts(const GraphicsCrystal& crystal)
{
    logDebug(2, "Renderer::pickContacts");
    glLoadName(Renderer::ObjectContact);
    glPushName(0);
    for (const HGraphicsContact& c : crystal.contacts()) {
        const Vector3D along = c->ortho2() - c->ortho1();
        if (!c->visible() || along.length() < zero_length ||
            !near_((c->ortho1() + c->ortho2()) * 0.5, along.length() / 2 + 0.05))
            continue;
        glLoadName(c->number());
        if (c->style() == GraphicsObject::StyleWireframe || !shapes_.cylinder) {
            glBegin(GL_LINES);
            vertex(c->ortho1());
            vertex(c->ortho2());
            glEnd();
            continue;
        }
        BondFrame f;
        f.z = along / along.length();
        f.x = any_perpendicular(f.z);
        f.y = f.z.cross(f.x);
        glPushMatrix();
        multiply(f, c->ortho1());
        cylinder(shapes_.cylinder, 0.05, 0, along.length());
        glPopMatrix();
    }
    glPopName();
}

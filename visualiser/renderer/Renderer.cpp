#include "Renderer.h"

#include "Archive.h"
#include "CrystalPainter.h"
#include "GLBitmapFont.h"
#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsCell.h"
#include "GraphicsContact.h"
#include "GraphicsCrystal.h"
#include "GraphicsMonitor.h"
#include "GraphicsPrimitive.h"
#include "Logger.h"
#include "MoleculeError.h"
#include "Observer.h"
#include "ShapeLists.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <QFont>
#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>

namespace {

// Shared by every view of the process, and never reset: a driver that keeps failing is not
// worth drawing with.
int opengl_errors = 0;
constexpr int opengl_error_budget = 500;

// The depth on either side of the eye's distance that the near and far planes enclose.
constexpr double depth_half_range = 100.0;

using Matrix4 = std::array<double, 16>; // column-major, as OpenGL takes it

Matrix4 identity4()
{
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

Matrix4 operator*(const Matrix4& a, const Matrix4& b)
{
    Matrix4 m{};
    for (int c = 0; c < 4; ++c)
        for (int r = 0; r < 4; ++r)
            for (int k = 0; k < 4; ++k)
                m[c * 4 + r] += a[k * 4 + r] * b[c * 4 + k];
    return m;
}

std::array<double, 4> operator*(const Matrix4& m, const std::array<double, 4>& v)
{
    std::array<double, 4> out{};
    for (int r = 0; r < 4; ++r)
        for (int k = 0; k < 4; ++k)
            out[r] += m[k * 4 + r] * v[k];
    return out;
}

// A 3 by 4 transformation as a column-major 4 by 4 with the last row 0, 0, 0, 1.
Matrix4 gl_matrix(const Transformation& t)
{
    Matrix4 m{};
    for (int c = 0; c < 4; ++c)
        for (int r = 0; r < 3; ++r)
            m[c * 4 + r] = t(r, c);
    m[15] = 1;
    return m;
}

Matrix4 translation(const Vector3D& v)
{
    Matrix4 m = identity4();
    m[12] = v.x;
    m[13] = v.y;
    m[14] = v.z;
    return m;
}

// The depth planes, and the half width of the orthographic view, as GL is given them.
struct Frustum {
    double near, far, half;
};

Frustum frustum(const RendererViewState& v)
{
    // Farther than this, the planes would no longer be finite in GL's single precision.
    const double d = std::min(v.eye.length(), 1e30);
    Frustum f;
    f.near = std::max(d - depth_half_range, 0.1);
    f.far = d + depth_half_range;
    // GL keeps the planes in single precision: from about 5e9 away, d - range and d + range are
    // the same float, and glOrtho refuses equal planes with GL_INVALID_VALUE.
    if (static_cast<float>(f.far) <= static_cast<float>(f.near))
        f.far = f.near * (1 + 1e-6);
    // With the eye at the centre of the view, the orthographic box would have no width, which
    // glOrtho refuses as well.
    f.half = std::max(std::tan(v.field_of_view * M_PI / 360) * d, 1e-6);
    return f;
}

struct CrystalLists {
    GLuint draw = 0;
    // The pixels to the Angstrom for which the list's shapes have the facets they need; outside,
    // the list is compiled again.
    double lowest_scale = 0;
    double highest_scale = 0;
    // How far the crystal's atoms reach from its rotation centre.
    double reach = 0;
};

// The objects of one crystal by their numbers, for turning a pick's names into handles.
struct ObjectTables {
    std::map<uint32_t, HGraphicsAtom> atoms;
    std::map<uint32_t, HGraphicsBond> bonds;
    std::map<uint32_t, HGraphicsContact> contacts;
    std::map<uint32_t, HGraphicsPrimitive> primitives;
};

} // namespace

struct Renderer::Private : public Observer {
    explicit Private(Renderer& renderer) : renderer(renderer), display(new RendererCrystalDisplaySettings) {}

    // The shared display settings changed: every crystal is compiled again.
    void update(Subject&) override
    {
        for (const auto& entry : crystals)
            renderer.graphicsCrystalUpdated(entry.first);
        if (redraw)
            redraw();
    }

    Renderer& renderer;
    bool initialised = false;
    int width = 0;
    int height = 0;
    RendererViewState view;
    RendererSettings settings;
    HRendererCrystalDisplaySettings display;
    std::function<void()> redraw;
    ShapeLists shapes;
    GLBitmapFont font;
    std::set<GLuint> invalid_lists;
    // In the order the crystals were added, which is the order they are drawn in.
    std::vector<std::pair<HGraphicsCrystal, CrystalLists>> crystals;
    std::map<const GraphicsCrystal*, ObjectTables> tables;
    uint32_t picked_crystal = 0;
    int32_t picked_type = 0;
    uint32_t picked_object = 0;
    std::vector<HGraphicsMonitor> monitors;

    CrystalLists* lists_of(const GraphicsCrystal* crystal)
    {
        for (auto& entry : crystals)
            if (entry.first.get() == crystal)
                return &entry.second;
        return nullptr;
    }

    void queue(CrystalLists& lists)
    {
        if (lists.draw)
            invalid_lists.insert(lists.draw);
        lists.draw = 0;
    }

    // Projection times view, as setCamera builds it in GL.
    Matrix4 camera() const
    {
        const double aspect = height > 0 ? static_cast<double>(width) / height : 1.0;
        Matrix4 p = identity4();
        if (aspect > 1)
            p[0] = 1 / aspect;
        else
            p[5] = aspect;
        const Frustum fr = frustum(view);
        const double near = fr.near, far = fr.far;
        Matrix4 projection{};
        if (view.field_of_view > RendererViewState::min_field_of_view) {
            const double f = 1 / std::tan(view.field_of_view * M_PI / 360);
            projection[0] = f;
            projection[5] = f;
            projection[10] = (far + near) / (near - far);
            projection[11] = -1;
            projection[14] = 2 * far * near / (near - far);
        } else {
            projection[0] = 1 / fr.half;
            projection[5] = 1 / fr.half;
            projection[10] = -2 / (far - near);
            projection[14] = -(far + near) / (far - near);
            projection[15] = 1;
        }
        const Vector3D f = view.view_direction.normalized();
        const Vector3D s = f.cross(Vector3D(0, 1, 0)).normalized();
        const Vector3D u = s.cross(f);
        const Matrix4 look{s.x, u.x, -f.x, 0, s.y, u.y, -f.y, 0, s.z, u.z, -f.z, 0, 0, 0, 0, 1};
        return p * projection * look * translation(-view.eye);
    }

    // Pixels to the Angstrom at the nearest of a crystal that reaches `reach` from the centre of
    // the view (in perspective, nearer is bigger).
    double pixels_per_unit(double reach) const
    {
        const double half = std::min(width, height) / 2.0;
        const Frustum f = frustum(view);
        if (view.field_of_view > RendererViewState::min_field_of_view) {
            const double t = std::tan(view.field_of_view * M_PI / 360);
            return half / (t * std::max(view.eye.length() - reach, f.near));
        }
        return half / f.half;
    }

    // From a crystal's orthogonal coordinates to clip coordinates, as paint and pick place it.
    Matrix4 clip_matrix(GraphicsCrystal& crystal) const
    {
        const Point c = crystal.rotation_centre();
        return camera() * gl_matrix(view.orientation) * translation(-view.rotation_centre) *
               gl_matrix(crystal.orientation()) * translation(-c);
    }
};

Renderer::Renderer() : d_(new Private(*this))
{
    d_->display->connect(d_.get());
}

Renderer::~Renderer()
{
    d_->display->disconnect(d_.get());
}

void Renderer::addGraphicsCrystal(const HGraphicsCrystal& crystal)
{
    if (d_->lists_of(crystal.get()))
        return;
    d_->crystals.push_back({crystal, CrystalLists()});
    graphicsCrystalUpdated(crystal);
}

void Renderer::removeGraphicsCrystal(const HGraphicsCrystal& crystal)
{
    auto& list = d_->crystals;
    const auto it = std::find_if(list.begin(), list.end(), [&](const auto& e) { return e.first == crystal; });
    if (it == list.end())
        return;
    d_->queue(it->second);
    d_->tables.erase(crystal.get());
    list.erase(it);
}

void Renderer::clearGraphicsCrystals()
{
    for (auto& entry : d_->crystals)
        d_->queue(entry.second);
    d_->crystals.clear();
    d_->tables.clear();
}

std::vector<HGraphicsCrystal> Renderer::graphicsCrystals() const
{
    std::vector<HGraphicsCrystal> out;
    for (const auto& entry : d_->crystals)
        out.push_back(entry.first);
    return out;
}

void Renderer::initialiseGL()
{
    logDebug(2, "Renderer::initialiseGL");
    for (int i = 0; i < 4; ++i) {
        const RendererSettings::Light& light = d_->settings.lights[static_cast<std::size_t>(i)];
        const GLenum id = GL_LIGHT0 + static_cast<GLenum>(i);
        if (!light.enabled) {
            glDisable(id);
            continue;
        }
        glLightfv(id, GL_POSITION, light.position.data());
        glLightfv(id, GL_DIFFUSE, light.diffuse.data());
        glLightfv(id, GL_SPECULAR, light.specular.data());
        glEnable(id);
    }
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glEnable(GL_LIGHTING);
    glDepthFunc(GL_LESS);
    glEnable(GL_DEPTH_TEST);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_BLEND);
    glLineWidth(static_cast<GLfloat>(d_->settings.line_width));
    glEnable(GL_LINE_SMOOTH);
    const GLfloat specular[4] = {0.4f, 0.4f, 0.4f, 1};
    glMaterialfv(GL_FRONT, GL_SPECULAR, specular);
    glMaterialf(GL_FRONT, GL_SHININESS, 100);
    glEnable(GL_NORMALIZE);
    glEnable(GL_CULL_FACE);
    logDebug(3, "Renderer::initialiseGL about to create the shapes");
    d_->shapes.create();
    logDebug(3, "Renderer::initialiseGL about to create the label font");
    QFont font("Arial");
    font.setPixelSize(12);
    font.setWeight(QFont::Normal);
    font.setStyleStrategy(QFont::PreferAntialias);
    d_->font.create(font);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    d_->initialised = true;
    reportOpenGLErrors();
}

void Renderer::destroyGL()
{
    logDebug(2, "Renderer::destroyGL");
    for (auto& entry : d_->crystals)
        d_->queue(entry.second);
    cleanupInvalidDisplayLists();
    d_->shapes.destroy();
    d_->font.destroy();
    d_->initialised = false;
    reportOpenGLErrors();
}

bool Renderer::initialised() const
{
    return d_->initialised;
}

void Renderer::resize(int width, int height)
{
    d_->width = width;
    d_->height = height;
}

int Renderer::width() const
{
    return d_->width;
}

int Renderer::height() const
{
    return d_->height;
}

void Renderer::cleanupInvalidDisplayLists()
{
    for (GLuint list : d_->invalid_lists)
        glDeleteLists(list, 1);
    d_->invalid_lists.clear();
}

void Renderer::setCamera()
{
    logDebug(3, "Renderer::setCamera");
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    // The shorter side of the window always spans the whole view.
    const double aspect = d_->height > 0 ? static_cast<double>(d_->width) / d_->height : 1.0;
    if (aspect > 1)
        glScaled(1 / aspect, 1, 1);
    else
        glScaled(1, aspect, 1);
    const RendererViewState& v = d_->view;
    const Frustum f = frustum(v);
    if (v.field_of_view > RendererViewState::min_field_of_view)
        gluPerspective(v.field_of_view, 1, f.near, f.far);
    else
        glOrtho(-f.half, f.half, -f.half, f.half, f.near, f.far);
    // The eye's placement goes on the model view, so that fog measures depth from the eye.
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    const Point centre = v.eye + v.view_direction;
    gluLookAt(v.eye.x, v.eye.y, v.eye.z, centre.x, centre.y, centre.z, 0, 1, 0);
}

void Renderer::applyView()
{
    glMultMatrixd(gl_matrix(d_->view.orientation).data());
    const Point& c = d_->view.rotation_centre;
    glTranslated(-c.x, -c.y, -c.z);
}

void Renderer::paint()
{
    logDebug(2, "Renderer::paint");
    cleanupInvalidDisplayLists();
    glPushMatrix();
    glViewport(0, 0, d_->width, d_->height);
    const RGBA clear = d_->settings.use_backdrop ? d_->settings.backdrop[0] : RGBA(0, 0, 0, 1);
    glClearColor(clear.red, clear.green, clear.blue, clear.alpha);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (d_->settings.use_backdrop)
        paintBackdrop();
    logDebug(3, "Renderer::paint about to setCamera");
    setCamera();
    applyView();
    depthCue();
    glLineWidth(static_cast<GLfloat>(d_->settings.line_width));
    for (auto& [crystal, lists] : d_->crystals) {
        if (!crystal->visible())
            continue;
        // A zoom that would change the facets of some shape compiles the list again; a rotation
        // never does.
        const double scale = d_->pixels_per_unit(lists.reach);
        if (lists.draw != 0 && (scale < lists.lowest_scale || scale >= lists.highest_scale)) {
            glDeleteLists(lists.draw, 1);
            lists.draw = 0;
        }
        if (lists.draw == 0) {
            logDebug(3, "Renderer::paint about to compile the draw list");
            lists.draw = glGenLists(1);
            glPushMatrix();
            glLoadIdentity();
            glNewList(lists.draw, GL_COMPILE);
            CrystalPainter painter(d_->settings, d_->shapes, d_->font, *d_->display, scale);
            if (crystal->has_content())
                painter.draw(*crystal);
            else
                painter.draw_message("No structure available");
            glEndList();
            glPopMatrix();
            painter.scale_range(lists.lowest_scale, lists.highest_scale);
        }
        glPushMatrix();
        glMultMatrixd(gl_matrix(crystal->orientation()).data());
        const Point c = crystal->rotation_centre();
        glTranslated(-c.x, -c.y, -c.z);
        glCallList(lists.draw);
        glPopMatrix();
    }
    drawMonitors(false);
    glFlush();
    glPopMatrix();
    reportOpenGLErrors();
    logDebug(2, "Renderer::paint done");
}

void Renderer::depthCue()
{
    // Linear fog towards the backdrop from the front of the scene to beyond its back, so that the
    // farthest atoms keep half their colour: depth reads at a glance without losing the back.
    double reach = 0;
    for (const auto& entry : d_->crystals)
        if (entry.first->visible())
            reach = std::max(reach, entry.second.reach);
    if (reach <= 0) {
        glDisable(GL_FOG);
        return;
    }
    const RendererViewState& v = d_->view;
    const double depth = (v.orientation.trans() - v.eye).dot(v.view_direction.normalized());
    RGBA colour(0, 0, 0, 1);
    if (d_->settings.use_backdrop) {
        colour = RGBA(0, 0, 0, 0);
        for (const RGBA& c : d_->settings.backdrop) {
            colour.red += c.red / 4;
            colour.green += c.green / 4;
            colour.blue += c.blue / 4;
            colour.alpha += c.alpha / 4;
        }
    }
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogfv(GL_FOG_COLOR, colour.data());
    glFogf(GL_FOG_START, static_cast<GLfloat>(depth - reach));
    glFogf(GL_FOG_END, static_cast<GLfloat>(depth + 3 * reach));
    glEnable(GL_FOG);
}

void Renderer::paintBackdrop()
{
    const auto& corners = d_->settings.backdrop;
    if (std::all_of(corners.begin(), corners.end(), [&](const RGBA& c) { return c.equals(corners[0]); })) {
        logDebug(3, "Renderer::paintBackdrop - all corners same color; nothing to do");
        return;
    }
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_CURRENT_BIT);
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
    glBegin(GL_QUADS);
    const double at[4][2] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};
    for (int i = 0; i < 4; ++i) {
        glColor4fv(corners[static_cast<std::size_t>(i)].data());
        glVertex2d(at[i][0], at[i][1]);
    }
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopAttrib();
}

void Renderer::pick(int x, int y)
{
    logDebug(2, "Renderer::pick");
    cleanupInvalidDisplayLists();
    std::vector<GLuint> buffer(2048);
    glSelectBuffer(static_cast<GLsizei>(buffer.size()), buffer.data());
    GLint viewport[4];
    glViewport(0, 0, d_->width, d_->height);
    glGetIntegerv(GL_VIEWPORT, viewport);
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0);
    setCamera();
    GLdouble projection[16];
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluPickMatrix(x, viewport[3] - y, 5, 5, viewport);
    glMultMatrixd(projection);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    applyView();
    CrystalPainter painter(d_->settings, d_->shapes, d_->font, *d_->display, 0);
    for (const auto& entry : d_->crystals) {
        const HGraphicsCrystal& crystal = entry.first;
        if (!crystal->visible())
            continue;
        // Only the objects whose bounding sphere lands near the point go through selection mode,
        // which Mesa runs on the processor vertex by vertex: a pick then costs a few objects
        // rather than a frame.
        const Matrix4 m = d_->clip_matrix(*crystal);
        const auto near = [&](const Point& p, double radius) {
            const auto at = [&](const Point& q) { return m * std::array<double, 4>{q.x, q.y, q.z, 1}; };
            const std::array<double, 4> c = at(p);
            if (c[3] <= 0)
                return true;
            const double w = d_->width, h = d_->height;
            double reach2 = 0;
            // The three axes of the sphere together reach at least its outline on the screen.
            for (const Vector3D& axis :
                 {Vector3D(radius, 0, 0), Vector3D(0, radius, 0), Vector3D(0, 0, radius)}) {
                const std::array<double, 4> e = at(p + axis);
                if (e[3] <= 0)
                    return true;
                const double dx = (e[0] / e[3] - c[0] / c[3]) / 2 * w,
                             dy = (e[1] / e[3] - c[1] / c[3]) / 2 * h;
                reach2 += dx * dx + dy * dy;
            }
            const double px = (c[0] / c[3] + 1) / 2 * w, py = h - (c[1] / c[3] + 1) / 2 * h;
            // The pick box is 5 pixels square about the point.
            return std::hypot(px - x, py - y) <= std::sqrt(reach2) + 4;
        };
        glLoadName(crystal->number());
        glPushName(0);
        glPushMatrix();
        glMultMatrixd(gl_matrix(crystal->orientation()).data());
        const Point c = crystal->rotation_centre();
        glTranslated(-c.x, -c.y, -c.z);
        if (crystal->has_content())
            painter.pick(*crystal, near);
        glPopMatrix();
        glPopName();
    }
    glLoadName(0);
    glPushName(0);
    drawMonitors(true);
    glPopName();
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    const GLint hits = glRenderMode(GL_RENDER);

    // The nearest hit wins; of two at the same depth, the first drawn.
    d_->picked_crystal = 0;
    d_->picked_type = 0;
    d_->picked_object = 0;
    GLuint nearest = 0xFFFFFFFFu;
    std::size_t at = 0;
    // On overflow (a negative count) the records that fitted are still whole.
    for (GLint h = 0; (hits < 0 || h < hits) && at + 3 <= buffer.size(); ++h) {
        const GLuint names = buffer[at], depth = buffer[at + 1];
        if (at + 3 + names > buffer.size())
            break;
        if (names >= 3 && depth < nearest) {
            nearest = depth;
            d_->picked_crystal = buffer[at + 3];
            d_->picked_type = static_cast<int32_t>(buffer[at + 4]);
            d_->picked_object = buffer[at + 5];
        }
        at += 3 + names;
    }
    reportOpenGLErrors();
    logDebug(2, "Renderer::pick done: crystal %u, type %d, object %u", d_->picked_crystal, d_->picked_type,
             d_->picked_object);
}

HGraphicsCrystal Renderer::pickedCrystal() const
{
    for (const auto& entry : d_->crystals)
        if (entry.first->number() == d_->picked_crystal)
            return entry.first;
    return HGraphicsCrystal();
}

int32_t Renderer::pickedType() const
{
    return d_->picked_type;
}

HGraphicsObject Renderer::pickedObject() const
{
    const uint32_t n = d_->picked_object;
    if (d_->picked_type == ObjectMonitor) {
        for (const HGraphicsMonitor& m : d_->monitors)
            if (m->number() == n)
                return m;
        return HGraphicsObject();
    }
    const HGraphicsCrystal crystal = pickedCrystal();
    if (!crystal)
        return HGraphicsObject();
    const ObjectTables& t = d_->tables[crystal.get()];
    const auto find = [n](const auto& table) {
        const auto it = table.find(n);
        return it == table.end() ? HGraphicsObject() : HGraphicsObject(it->second);
    };
    switch (d_->picked_type) {
    case ObjectAtom:
        return find(t.atoms);
    case ObjectBond:
        return find(t.bonds);
    case ObjectContact:
        return find(t.contacts);
    case ObjectPrimitive:
        return find(t.primitives);
    default:
        return HGraphicsObject();
    }
}

void Renderer::addMonitor(const HGraphicsMonitor& monitor)
{
    d_->monitors.push_back(monitor);
}

void Renderer::removeMonitor(const HGraphicsMonitor& monitor)
{
    auto& list = d_->monitors;
    list.erase(std::remove(list.begin(), list.end(), monitor), list.end());
}

void Renderer::clearMonitors()
{
    d_->monitors.clear();
}

void Renderer::setMonitors(const std::vector<HGraphicsMonitor>& monitors)
{
    d_->monitors = monitors;
}

const std::vector<HGraphicsMonitor>& Renderer::monitors() const
{
    return d_->monitors;
}

void Renderer::graphicsCrystalUpdated(const HGraphicsCrystal& crystal)
{
    logDebug(2, "Renderer::graphicsCrystalUpdated");
    CrystalLists* lists = d_->lists_of(crystal.get());
    if (!lists)
        return;
    d_->queue(*lists);
    const Point centre = crystal->rotation_centre();
    lists->reach = 0;
    for (const HGraphicsAtom& a : crystal->atoms())
        lists->reach = std::max(lists->reach, (a->ortho() - centre).length() + a->radius());
    ObjectTables& t = d_->tables[crystal.get()];
    t = ObjectTables();
    for (const HGraphicsAtom& a : crystal->atoms())
        t.atoms[a->number()] = a;
    for (const HGraphicsBond& b : crystal->bonds())
        t.bonds[b->number()] = b;
    for (const HGraphicsContact& c : crystal->contacts())
        t.contacts[c->number()] = c;
    for (const HGraphicsPrimitive& p : crystal->primitives())
        t.primitives[p->number()] = p;
}

void Renderer::graphicsCrystalCenterUpdated(const HGraphicsCrystal& crystal)
{
    setRotationCentre(crystal->orientation() * crystal->cell()->origin());
    if (d_->redraw)
        d_->redraw();
}

const RendererViewState& Renderer::viewState() const
{
    return d_->view;
}

void Renderer::setViewState(const RendererViewState& state)
{
    d_->view = state;
}

const Transformation& Renderer::orientation() const
{
    return d_->view.orientation;
}

void Renderer::setOrientation(const Transformation& orientation)
{
    d_->view.orientation = orientation;
}

Point Renderer::rotationCentre() const
{
    return d_->view.rotation_centre;
}

void Renderer::setRotationCentre(const Point& centre)
{
    // The scene is drawn as R (p - c) + t; moving c to c' keeps every point still when t grows by
    // R (c' - c).
    Transformation& o = d_->view.orientation;
    const Vector3D rotated = o * (centre - d_->view.rotation_centre) - o * Vector3D();
    o.set_trans(o.trans() + rotated);
    d_->view.rotation_centre = centre;
}

const Point& Renderer::eyePosition() const
{
    return d_->view.eye;
}

void Renderer::setEyePosition(const Point& eye)
{
    d_->view.eye = eye;
}

double Renderer::fieldOfView() const
{
    return d_->view.field_of_view;
}

void Renderer::setFieldOfView(double degrees)
{
    const double fov =
        std::clamp(degrees, RendererViewState::min_field_of_view, RendererViewState::max_field_of_view);
    RendererViewState& v = d_->view;
    // The picture keeps its size at the rotation centre while the perspective changes.
    v.eye.z *= std::tan(v.field_of_view * M_PI / 360) / std::tan(fov * M_PI / 360);
    v.field_of_view = fov;
}

bool Renderer::project(GraphicsCrystal& crystal, const Point& ortho, double& x, double& y) const
{
    const std::array<double, 4> clip =
        d_->clip_matrix(crystal) * std::array<double, 4>{ortho.x, ortho.y, ortho.z, 1};
    if (clip[3] <= 0)
        return false;
    x = (clip[0] / clip[3] + 1) / 2 * d_->width;
    y = d_->height - (clip[1] / clip[3] + 1) / 2 * d_->height;
    return true;
}

bool Renderer::useBackdrop() const
{
    return d_->settings.use_backdrop;
}

void Renderer::setUseBackdrop(bool use)
{
    d_->settings.use_backdrop = use;
}

const std::array<RGBA, 4>& Renderer::backdropColors() const
{
    return d_->settings.backdrop;
}

void Renderer::setBackdropColors(const RGBA& top_right, const RGBA& top_left, const RGBA& bottom_left,
                                 const RGBA& bottom_right)
{
    d_->settings.backdrop = {top_right, top_left, bottom_left, bottom_right};
}

double Renderer::baseLineWidth() const
{
    return d_->settings.base_line_width;
}

double Renderer::lineWidth() const
{
    return d_->settings.line_width;
}

void Renderer::setLineWidth(double width)
{
    if (width == d_->settings.line_width)
        return;
    d_->settings.line_width = width;
    // The dashes of contacts are recorded with the width.
    for (const auto& entry : d_->crystals)
        graphicsCrystalUpdated(entry.first);
}

const RendererSettings& Renderer::settings() const
{
    return d_->settings;
}

void Renderer::setSelectionDisplay(uint32_t flags)
{
    d_->settings.selection_display = flags;
    for (const auto& entry : d_->crystals)
        graphicsCrystalUpdated(entry.first);
}

const HRendererCrystalDisplaySettings& Renderer::displaySettings() const
{
    return d_->display;
}

void Renderer::setDisplaySettings(const HRendererCrystalDisplaySettings& settings)
{
    d_->display->disconnect(d_.get());
    d_->display = settings;
    d_->display->connect(d_.get());
    for (const auto& entry : d_->crystals)
        graphicsCrystalUpdated(entry.first);
}

void Renderer::setRedrawRequest(const std::function<void()>& request)
{
    d_->redraw = request;
}

namespace {

void write_point(Archive& archive, const Point& p)
{
    archive.write_double(p.x);
    archive.write_double(p.y);
    archive.write_double(p.z);
}

Point read_point(Archive& archive)
{
    Point p;
    p.x = archive.read_double();
    p.y = archive.read_double();
    p.z = archive.read_double();
    return p;
}

} // namespace

void Renderer::write(Archive& archive) const
{
    archive.write_int32(archive_version);
    const RendererViewState& v = d_->view;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            archive.write_double(v.orientation(r, c));
    write_point(archive, v.rotation_centre);
    write_point(archive, v.eye);
    write_point(archive, v.view_direction);
    archive.write_double(v.field_of_view);
    archive.write_bool(d_->settings.use_backdrop);
    for (const RGBA& c : d_->settings.backdrop)
        c.write(archive);
}

void Renderer::read(Archive& archive)
{
    if (archive.read_int32() != archive_version)
        throw molecule_error("Renderer::read - format version mismatch");
    RendererViewState v;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            v.orientation(r, c) = archive.read_double();
    v.rotation_centre = read_point(archive);
    v.eye = read_point(archive);
    v.view_direction = read_point(archive);
    v.field_of_view = archive.read_double();
    const bool use_backdrop = archive.read_bool();
    std::array<RGBA, 4> backdrop;
    for (RGBA& c : backdrop)
        c.read(archive);
    d_->view = v;
    d_->settings.use_backdrop = use_backdrop;
    d_->settings.backdrop = backdrop;
}

void Renderer::reportOpenGLErrors()
{
    for (GLenum error = glGetError(); error != GL_NO_ERROR; error = glGetError()) {
        logError("OpenGL error: %s", reinterpret_cast<const char*>(gluErrorString(error)));
        if (++opengl_errors > opengl_error_budget) {
            logError("Renderer::reportOpenGLErrors Too many OpenGL errors. Abandoning");
            throw std::runtime_error("Renderer::reportOpenGLErrors - Too many OpenGL errors. Abandoning");
        }
    }
}

void Renderer::drawMonitors(bool picking)
{
    logDebug(2, picking ? "Renderer::pickMonitors" : "Renderer::drawMonitors");
    if (picking) {
        glLoadName(ObjectMonitor);
        glPushName(0);
    }
    glPushAttrib(GL_ENABLE_BIT | GL_LIGHTING_BIT | GL_DEPTH_BUFFER_BIT | GL_LINE_BIT | GL_CURRENT_BIT);
    if (!picking)
        glEnable(GL_LINE_STIPPLE);
    // Measurements are read, not placed in depth.
    glDisable(GL_FOG);
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    const auto label = [&](const GraphicsMonitor& m, const Point& at) {
        if (picking)
            return;
        glRasterPos3d(at.x, at.y, at.z);
        d_->font.draw(m.label());
    };
    const auto line = [](const Point& a, const Point& b) {
        glVertex3d(a.x, a.y, a.z);
        glVertex3d(b.x, b.y, b.z);
    };
    // A direction too short to trust is replaced by a fixed one, so collinear atoms still draw.
    const auto direction = [](const Vector3D& v, const Vector3D& fallback) {
        return v.length() < 0.001 ? fallback : v.normalized();
    };
    const bool selection_colors = d_->settings.selection_display & RendererSettings::SelectionColors;
    for (const HGraphicsMonitor& m : d_->monitors) {
        if (!m->visible() || !m->drawable())
            continue;
        if (picking) {
            glLoadName(m->number());
        } else {
            glColor4fv(
                (selection_colors && m->selected() ? d_->settings.selected_monitor : m->color()).data());
            glLineStipple(2, 0xDDDD);
        }
        switch (m->monitor_type()) {
        case GraphicsMonitor::Position:
            label(*m, m->position(0));
            if (picking) {
                glBegin(GL_POINTS);
                const Point p = m->position(0);
                glVertex3d(p.x, p.y, p.z);
                glEnd();
            }
            break;
        case GraphicsMonitor::Distance: {
            glBegin(GL_LINES);
            line(m->position(0), m->position(1));
            glEnd();
            label(*m, (m->position(0) + m->position(1)) * 0.5);
            break;
        }
        case GraphicsMonitor::Angle: {
            const Point a = m->position(0), b = m->position(1), c = m->position(2);
            glBegin(GL_LINES);
            line(b, a);
            line(b, c);
            glEnd();
            const Vector3D u = direction(a - b, {1, 0, 0});
            Vector3D w = direction(c - b, {0, 1, 0});
            const double radius = 0.3 * std::min((a - b).length(), (c - b).length());
            const double angle = std::acos(std::clamp(u.dot(w), -1.0, 1.0));
            // The arc turns in the plane of the two arms, from the first to the second.
            const Vector3D normal = direction(u.cross(w), {0, 0, 1});
            const Vector3D v = normal.cross(u);
            glBegin(GL_LINE_STRIP);
            for (int step = 0; step <= 20; ++step) {
                const double t = angle * step / 20;
                const Point p = b + (u * std::cos(t) + v * std::sin(t)) * radius;
                glVertex3d(p.x, p.y, p.z);
            }
            glEnd();
            label(*m, (a + b + c) / 3.0);
            break;
        }
        case GraphicsMonitor::Torsion: {
            const Point p[4] = {m->position(0), m->position(1), m->position(2), m->position(3)};
            const Point hinge = (p[1] + p[2]) * 0.5;
            glBegin(GL_LINE_LOOP);
            for (const Point& q : {p[1], (p[0] + p[1]) * 0.5, hinge})
                glVertex3d(q.x, q.y, q.z);
            glEnd();
            glBegin(GL_LINE_LOOP);
            for (const Point& q : {p[2], (p[2] + p[3]) * 0.5, hinge})
                glVertex3d(q.x, q.y, q.z);
            glEnd();
            label(*m, hinge);
            break;
        }
        }
    }
    glPopAttrib();
    if (picking)
        glPopName();
}

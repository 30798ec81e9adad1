#include "ShapeLists.h"

#include <cmath>
#include <initializer_list>
#include <vector>

namespace {

// Bands between rings of `slices` + 1 points (the last repeats the first), all in one triangle
// strip, counter-clockwise seen from outside: a band runs upper, lower, upper, lower, and two
// repeated points join it to the next without a visible triangle. One strip per shape lets Mesa
// play a shape back as a single draw, and a strip shares each point between its triangles, where
// separate triangles would send every point up to six times through the processor's lighting.
void bands(int slices, int stacks, const double* rings, const double* normals, bool normals_per_ring)
{
    const auto emit = [&](int ring, int j) {
        const std::size_t at = static_cast<std::size_t>((ring * (slices + 1) + j) * 3);
        glNormal3dv(normals + (normals_per_ring ? at : static_cast<std::size_t>(j * 3)));
        glVertex3dv(rings + at);
    };
    glBegin(GL_TRIANGLE_STRIP);
    for (int i = 0; i < stacks; ++i) {
        if (i > 0)
            emit(i + 1, 0);
        for (int j = 0; j <= slices; ++j) {
            emit(i + 1, j);
            emit(i, j);
        }
        if (i + 1 < stacks)
            emit(i, slices);
    }
    glEnd();
}

// Latitude bands from the south pole to the north; a unit sphere's normals are its positions.
void sphere(int slices, int stacks)
{
    std::vector<double> rings(static_cast<std::size_t>((stacks + 1) * (slices + 1) * 3));
    for (int i = 0; i <= stacks; ++i) {
        const double phi = M_PI * (static_cast<double>(i) / stacks - 0.5);
        for (int j = 0; j <= slices; ++j) {
            const double theta = 2 * M_PI * j / slices;
            double* p = &rings[static_cast<std::size_t>((i * (slices + 1) + j) * 3)];
            p[0] = std::cos(theta) * std::cos(phi);
            p[1] = std::sin(theta) * std::cos(phi);
            p[2] = std::sin(phi);
        }
    }
    bands(slices, stacks, rings.data(), rings.data(), true);
}

void cylinder(int slices, int stacks)
{
    std::vector<double> normals(static_cast<std::size_t>((slices + 1) * 3));
    std::vector<double> rings(static_cast<std::size_t>((stacks + 1) * (slices + 1) * 3));
    for (int j = 0; j <= slices; ++j) {
        const double theta = 2 * M_PI * j / slices;
        double* n = &normals[static_cast<std::size_t>(j * 3)];
        n[0] = std::cos(theta);
        n[1] = std::sin(theta);
        n[2] = 0;
        for (int i = 0; i <= stacks; ++i) {
            double* p = &rings[static_cast<std::size_t>((i * (slices + 1) + j) * 3)];
            p[0] = n[0];
            p[1] = n[1];
            p[2] = static_cast<double>(i) / stacks;
        }
    }
    bands(slices, stacks, rings.data(), normals.data(), false);
}

// Facing +z; a caller turns it round for the other end of a cylinder.
void disk(int slices)
{
    glBegin(GL_TRIANGLE_FAN);
    glNormal3d(0, 0, 1);
    glVertex3d(0, 0, 0);
    for (int j = 0; j <= slices; ++j) {
        const double theta = 2 * M_PI * j / slices;
        glVertex3d(std::cos(theta), std::sin(theta), 0);
    }
    glEnd();
}

void circle(int slices)
{
    glBegin(GL_LINE_LOOP);
    for (int j = 0; j < slices; ++j) {
        const double theta = 2 * M_PI * j / slices;
        glVertex3d(std::cos(theta), std::sin(theta), 0);
    }
    glEnd();
}

template <class Draw> GLuint compile(Draw draw)
{
    const GLuint list = glGenLists(1);
    if (list == 0)
        return 0;
    glNewList(list, GL_COMPILE);
    draw();
    glEndList();
    return list;
}

} // namespace

void ShapeLists::create()
{
    sphere_hi_res = compile([] { sphere(25, 25); });
    sphere_lo_res = compile([] { sphere(16, 16); });
    cylinder_lo_res = compile([] { cylinder(16, 2); });
    disk_lo_res = compile([] { disk(16); });
    if (disk_lo_res)
        circle = compile([] { ::circle(36); });
}

void ShapeLists::destroy()
{
    for (GLuint* list : {&sphere_hi_res, &sphere_lo_res, &cylinder_lo_res, &disk_lo_res, &circle}) {
        if (*list)
            glDeleteLists(*list, 1);
        *list = 0;
    }
}

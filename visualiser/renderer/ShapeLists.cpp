#include "ShapeLists.h"

#include <cmath>
#include <initializer_list>
#include <vector>

namespace {

// One vertex with the normal of a unit sphere or of a cylinder's side.
void vertex(const double normal[3], const double at[3])
{
    glNormal3dv(normal);
    glVertex3dv(at);
}

// A band between two rings of `slices` + 1 points (the last repeats the first), as two triangles
// per step, counter-clockwise seen from outside. Every band of a shape goes into one
// GL_TRIANGLES primitive: Mesa then plays a shape back as a single draw, where a quad strip per
// band costs a draw each.
void band(int slices, const double (*upper)[3], const double (*lower)[3], const double (*upper_normal)[3],
          const double (*lower_normal)[3])
{
    for (int j = 0; j < slices; ++j) {
        vertex(upper_normal[j], upper[j]);
        vertex(lower_normal[j], lower[j]);
        vertex(upper_normal[j + 1], upper[j + 1]);
        vertex(upper_normal[j + 1], upper[j + 1]);
        vertex(lower_normal[j], lower[j]);
        vertex(lower_normal[j + 1], lower[j + 1]);
    }
}

// Latitude bands from the south pole to the north; a unit sphere's normals are its positions.
void sphere(int slices, int stacks)
{
    std::vector<double> rings(static_cast<std::size_t>((stacks + 1) * (slices + 1) * 3));
    const auto ring = [&](int i) {
        return reinterpret_cast<const double(*)[3]>(&rings[static_cast<std::size_t>(i * (slices + 1) * 3)]);
    };
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
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < stacks; ++i)
        band(slices, ring(i + 1), ring(i), ring(i + 1), ring(i));
    glEnd();
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
    const auto ring = [&](int i) {
        return reinterpret_cast<const double(*)[3]>(&rings[static_cast<std::size_t>(i * (slices + 1) * 3)]);
    };
    const auto normal = reinterpret_cast<const double(*)[3]>(normals.data());
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < stacks; ++i)
        band(slices, ring(i + 1), ring(i), normal, normal);
    glEnd();
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

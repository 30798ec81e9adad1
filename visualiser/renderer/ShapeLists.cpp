#include "ShapeLists.h"

#include <cmath>
#include <initializer_list>

namespace {

// Latitude bands of quad strips from the south pole to the north, with the normals of a unit
// sphere, which are its positions.
void sphere(int slices, int stacks)
{
    for (int i = 0; i < stacks; ++i) {
        const double phi0 = M_PI * (static_cast<double>(i) / stacks - 0.5);
        const double phi1 = M_PI * (static_cast<double>(i + 1) / stacks - 0.5);
        glBegin(GL_QUAD_STRIP);
        for (int j = 0; j <= slices; ++j) {
            const double theta = 2 * M_PI * j / slices;
            const double c = std::cos(theta), s = std::sin(theta);
            // Upper vertex first: the strip then winds counter-clockwise seen from outside.
            glNormal3d(c * std::cos(phi1), s * std::cos(phi1), std::sin(phi1));
            glVertex3d(c * std::cos(phi1), s * std::cos(phi1), std::sin(phi1));
            glNormal3d(c * std::cos(phi0), s * std::cos(phi0), std::sin(phi0));
            glVertex3d(c * std::cos(phi0), s * std::cos(phi0), std::sin(phi0));
        }
        glEnd();
    }
}

void cylinder(int slices, int stacks)
{
    for (int i = 0; i < stacks; ++i) {
        const double z0 = static_cast<double>(i) / stacks, z1 = static_cast<double>(i + 1) / stacks;
        glBegin(GL_QUAD_STRIP);
        for (int j = 0; j <= slices; ++j) {
            const double theta = 2 * M_PI * j / slices;
            const double c = std::cos(theta), s = std::sin(theta);
            glNormal3d(c, s, 0);
            glVertex3d(c, s, z1);
            glVertex3d(c, s, z0);
        }
        glEnd();
    }
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

#pragma once

#include <GL/gl.h>

// The unit shapes every atom and bond is drawn from, each compiled once into a display list in
// the current GL context: two spheres of radius 1, a cylinder of radius 1 from z = 0 to 1, a disk
// of radius 1 in the z = 0 plane, and a circle of radius 1. They are our own triangles and quad
// strips rather than GLU quadrics, because Mesa crashes when a list recorded from a GLU quadric is
// played back in selection mode.
class ShapeLists {
public:
    GLuint sphere_hi_res = 0;
    GLuint sphere_lo_res = 0;
    GLuint cylinder_lo_res = 0;
    GLuint disk_lo_res = 0;
    GLuint circle = 0;

    // A list that glGenLists could not give stays 0, and its shape is not drawn.
    void create();
    // Deletes the lists, which needs the context they were made in to be current.
    void destroy();
};

#pragma once

#include <GL/gl.h>

// The unit shapes a pick places by matrix, each compiled once into a display list in the current
// GL context: a sphere of radius 1 and a cylinder of radius 1 from z = 0 to 1. They are our own
// triangle strips rather than GLU quadrics, because Mesa crashes when a list recorded from a GLU
// quadric is played back in selection mode. A pick draws only the few objects near the point, so
// these are fine enough for any size on the screen.
class ShapeLists {
public:
    GLuint sphere = 0;
    GLuint cylinder = 0;

    // A list that glGenLists could not give stays 0, and its shape is not picked.
    void create();
    // Deletes the lists, which needs the context they were made in to be current.
    void destroy();
};

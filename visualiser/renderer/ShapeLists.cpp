#include "ShapeLists.h"

#include "ShapeMesh.h"

#include <initializer_list>

namespace {

GLuint compile(const ShapeMesh& mesh)
{
    const GLuint list = glGenLists(1);
    if (list == 0)
        return 0;
    glNewList(list, GL_COMPILE);
    glBegin(GL_TRIANGLE_STRIP);
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        glNormal3d(mesh.normals[i].x, mesh.normals[i].y, mesh.normals[i].z);
        glVertex3d(mesh.points[i].x, mesh.points[i].y, mesh.points[i].z);
    }
    glEnd();
    glEndList();
    return list;
}

} // namespace

void ShapeLists::create()
{
    sphere = compile(ShapeMesh::sphere(24));
    cylinder = compile(ShapeMesh::cylinder(16));
}

void ShapeLists::destroy()
{
    for (GLuint* list : {&sphere, &cylinder}) {
        if (*list)
            glDeleteLists(*list, 1);
        *list = 0;
    }
}

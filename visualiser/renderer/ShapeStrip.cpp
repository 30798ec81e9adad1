#include "ShapeStrip.h"

#include <GL/gl.h>

ShapeStrip::~ShapeStrip()
{
    finish();
}

void ShapeStrip::add(const ShapeMesh& mesh, const Point& origin, const Vector3D& x, const Vector3D& y,
                     const Vector3D& z, const RGBA& colour)
{
    if (mesh.points.empty())
        return;
    const auto place = [&](const Point& p) { return origin + x * p.x + y * p.y + z * p.z; };
    const Vector3D ux = x.normalized(), uy = y.normalized(), uz = z.normalized();
    const Point first = place(mesh.points.front());
    if (!open_) {
        glBegin(GL_TRIANGLE_STRIP);
        open_ = true;
    } else {
        // The last point of the shape before and the first of this one, each once more: the four
        // triangles they make have no area, and the count stays even.
        glVertex3d(last_.x, last_.y, last_.z);
        glVertex3d(first.x, first.y, first.z);
    }
    glColor4fv(colour.data());
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        const Vector3D& n = mesh.normals[i];
        const Vector3D normal = ux * n.x + uy * n.y + uz * n.z;
        glNormal3d(normal.x, normal.y, normal.z);
        last_ = place(mesh.points[i]);
        glVertex3d(last_.x, last_.y, last_.z);
    }
}

void ShapeStrip::add(const ShapeMesh& mesh, const Point& centre, double radius, const RGBA& colour)
{
    add(mesh, centre, Vector3D(radius, 0, 0), Vector3D(0, radius, 0), Vector3D(0, 0, radius), colour);
}

void ShapeStrip::finish()
{
    if (open_)
        glEnd();
    open_ = false;
}

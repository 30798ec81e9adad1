#pragma once

#include "Transformation.h"
#include "Vector3D.h"

#include <cmath>

// Where the camera stands and how the scene is turned: what a view command saves and restores.
struct RendererViewState {
    static constexpr double min_field_of_view = 0.05;
    static constexpr double max_field_of_view = 120.0;
    // Far enough that the narrowest field of view shows about 20 units across.
    static double default_eye_distance() { return 10.0 / std::tan(min_field_of_view * M_PI / 360.0); }

    // The rotation and translation of the whole scene, applied about the rotation centre.
    Transformation orientation;
    Point rotation_centre;
    Point eye{0, 0, default_eye_distance()};
    Vector3D view_direction{0, 0, -1};
    // In degrees; at the minimum the projection is orthographic.
    double field_of_view = min_field_of_view;

    bool operator==(const RendererViewState& o) const
    {
        return orientation == o.orientation && rotation_centre == o.rotation_centre && eye == o.eye &&
               view_direction == o.view_direction && field_of_view == o.field_of_view;
    }
};

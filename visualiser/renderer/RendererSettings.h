#pragma once

#include "RGBA.h"

#include <array>
#include <cstdint>

// The sizes, colours, lights and backdrop a renderer draws with.
struct RendererSettings {
    // Selected objects take the colours below.
    static constexpr uint32_t SelectionColors = 1;
    // Selected atoms and bonds get a small marker sphere that shows through.
    static constexpr uint32_t SelectionMarkers = 2;

    struct Light {
        bool enabled;
        // A direction: w is 0.
        std::array<float, 4> position;
        RGBA diffuse;
        RGBA specular;
    };

    // The radius of a stick and the least radius of any drawn atom, so thin atoms stay visible.
    double stick_radius = 0.1;
    // Ball-and-stick atoms are this fraction of the atom's radius.
    double ball_scale = 0.25;
    // The least pick radius is this times the stick radius, so thin atoms are easy to hit.
    double pick_enlargement = 2.0;

    RGBA selected_atom{1, 1, 0, 1};
    RGBA selected_bond{1, 0.7f, 1, 1};
    RGBA selected_contact{0, 1, 1, 1};
    RGBA selected_primitive{0, 1, 0, 1};
    RGBA selected_monitor{0, 0, 1, 1};
    uint32_t selection_display = SelectionMarkers;

    std::array<Light, 4> lights{{
        {true, {1, 1, 1, 0}, {1, 1, 1, 1}, {1, 1, 1, 1}},
        {true, {-1, 0.2f, 1, 0}, {0.5f, 0.5f, 0.5f, 1}, {0.5f, 0.5f, 0.5f, 1}},
        {false, {1, 1, -1, 0}, {0.5f, 0.5f, 0.5f, 1}, {0.5f, 0.5f, 0.5f, 1}},
        {false, {-1, -1, -1, 0}, {0.5f, 0.5f, 0.5f, 1}, {0.5f, 0.5f, 0.5f, 1}},
    }};

    bool use_backdrop = false;
    // Top right, top left, bottom left, bottom right: a dark blue that lightens downwards.
    std::array<RGBA, 4> backdrop{{{0, 0, 0.2f, 1}, {0, 0, 0.2f, 1}, {0, 0, 0.6f, 1}, {0, 0, 0.6f, 1}}};

    // The widget raises line_width when it renders an image larger than the window; dashes
    // scale with the ratio of the two.
    double base_line_width = 1.6;
    double line_width = 1.6;
};

#include "RendererCrystalDisplaySettings.h"

void RendererCrystalDisplaySettings::set_label_color(const RGBA& color)
{
    if (label_color_.equals(color))
        return;
    label_color_ = color;
    set_changed();
    notify();
}

void RendererCrystalDisplaySettings::set_aromatic_circles(bool on)
{
    if (aromatic_circles_ == on)
        return;
    aromatic_circles_ = on;
    set_changed();
    notify();
}

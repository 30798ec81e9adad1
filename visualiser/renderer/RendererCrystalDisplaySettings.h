#pragma once

#include "RGBA.h"
#include "Subject.h"
#include "THandle.h"

class RendererCrystalDisplaySettings;
using HRendererCrystalDisplaySettings = THandle<RendererCrystalDisplaySettings>;

// What several views may share about how crystals look beyond their own objects: the colour of
// the labels and whether aromatic rings get circles. A change is announced to the renderers
// that watch, which recompile their crystals.
class RendererCrystalDisplaySettings : public Subject {
public:
    RGBA label_color() const { return label_color_; }
    void set_label_color(const RGBA& color);
    bool aromatic_circles() const { return aromatic_circles_; }
    void set_aromatic_circles(bool on);

private:
    RGBA label_color_{1, 1, 1, 1};
    bool aromatic_circles_ = true;
};

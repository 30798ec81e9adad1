#pragma once

#include <GL/gl.h>
#include <string>

class QFont;

// A label font for the current GL context: 256 display lists, one per byte, each drawing its
// glyph as a bitmap at the raster position and moving on by the glyph's advance. The glyphs come
// from a QFont painted into images, so the labels look like the rest of the program's text.
class GLBitmapFont {
public:
    // Needs a QGuiApplication for the font, and a current context for the lists. Leaves the
    // font empty when glGenLists fails.
    void create(const QFont& font);
    void destroy();
    bool valid() const { return base_ != 0; }
    GLuint base() const { return base_; }
    // Draws the bytes of the text from the current raster position.
    void draw(const std::string& text) const;

private:
    GLuint base_ = 0;
};

#include "GLBitmapFont.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <vector>

namespace {

constexpr int glyphs = 256;

// The glyph of one Latin-1 byte as rows of bits, bottom row first, as glBitmap reads them.
std::vector<GLubyte> glyph_bits(const QFont& font, const QFontMetrics& metrics, int code, int width,
                                int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(0, metrics.ascent(), QString(QChar(code)));
    }
    const int row_bytes = (width + 7) / 8;
    std::vector<GLubyte> bits(static_cast<std::size_t>(row_bytes * height), 0);
    for (int y = 0; y < height; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(image.constScanLine(height - 1 - y));
        for (int x = 0; x < width; ++x)
            if (qAlpha(line[x]) >= 128)
                bits[static_cast<std::size_t>(y * row_bytes + x / 8)] |=
                    static_cast<GLubyte>(0x80 >> (x % 8));
    }
    return bits;
}

} // namespace

void GLBitmapFont::create(const QFont& font)
{
    base_ = glGenLists(glyphs);
    if (base_ == 0)
        return;
    const QFontMetrics metrics(font);
    const int height = metrics.height();
    GLint alignment = 4;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (int code = 0; code < glyphs; ++code) {
        const int advance = code < 32 ? 0 : metrics.horizontalAdvance(QChar(code));
        const int width = std::max(advance, 1);
        const std::vector<GLubyte> bits = glyph_bits(font, metrics, code, width, height);
        glNewList(base_ + static_cast<GLuint>(code), GL_COMPILE);
        // The raster position is the glyph's baseline, so labels sit on it like printed text.
        glBitmap(width, height, 0.0f, static_cast<GLfloat>(metrics.descent()), static_cast<GLfloat>(advance),
                 0.0f, bits.data());
        glEndList();
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
}

void GLBitmapFont::destroy()
{
    if (base_)
        glDeleteLists(base_, glyphs);
    base_ = 0;
}

void GLBitmapFont::draw(const std::string& text) const
{
    if (!base_ || text.empty())
        return;
    glListBase(base_);
    glCallLists(static_cast<GLsizei>(text.size()), GL_UNSIGNED_BYTE, text.data());
}

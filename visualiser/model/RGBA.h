#pragma once

#include <iosfwd>

class Archive;

// A colour as the renderer hands it to OpenGL: red, green, blue and alpha, each 0 to 1.
class RGBA {
public:
    float red = 0.0f;
    float green = 0.0f;
    float blue = 0.0f;
    float alpha = 0.0f;

    RGBA() = default;
    RGBA(float red, float green, float blue, float alpha) : red(red), green(green), blue(blue), alpha(alpha)
    {
    }

    // Each channel closer than `tolerance`; colours that went through arithmetic are never
    // compared exactly.
    bool equals(const RGBA& other, double tolerance = 1e-7) const;
    const float* data() const { return &red; }

    void write(Archive& archive) const;
    void read(Archive& archive);
};

// "red: ", ", green: ", ", blue: ", ", alpha: ", each followed by its number.
std::ostream& operator<<(std::ostream& out, const RGBA& colour);

#include "RGBA.h"

#include "Archive.h"

#include <cmath>
#include <ostream>

static_assert(sizeof(RGBA) == 4 * sizeof(float), "RGBA::data hands the four floats to OpenGL as an array");

bool RGBA::equals(const RGBA& other, double tolerance) const
{
    return std::abs(red - other.red) < tolerance && std::abs(green - other.green) < tolerance &&
           std::abs(blue - other.blue) < tolerance && std::abs(alpha - other.alpha) < tolerance;
}

void RGBA::write(Archive& archive) const
{
    for (float channel : {red, green, blue, alpha})
        archive.write_double(channel);
}

void RGBA::read(Archive& archive)
{
    for (float* channel : {&red, &green, &blue, &alpha})
        *channel = static_cast<float>(archive.read_double());
}

std::ostream& operator<<(std::ostream& out, const RGBA& c)
{
    return out << "red: " << c.red << ", green: " << c.green << ", blue: " << c.blue
               << ", alpha: " << c.alpha;
}

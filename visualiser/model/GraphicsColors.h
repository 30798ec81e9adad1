#pragma once

#include "RGBA.h"

#include <string>

// The fixed colours of the model: the element table, its lighter twin for ColorByActiveElement,
// and the palette that numbers (symmetry tags, molecule indices) are coloured from.
namespace GraphicsColors {

// By element symbol; an element the table lacks is coloured as "Undefined" (magenta).
RGBA element(const std::string& symbol);
RGBA active_element(const std::string& symbol);
// Entry n modulo 18; a negative n counts as its magnitude.
RGBA palette(int n);
// What an object gets when no rule gives it a colour.
inline RGBA grey()
{
    return RGBA(0.5f, 0.5f, 0.5f, 1.0f);
}

} // namespace GraphicsColors

#pragma once

#include "CifFile.h"
#include "GraphicsCrystal.h"

#include <fstream>
#include <string>

// The structure the 3D view's tests draw and edit: a flavonoid with water from the corpus, two
// kinds of molecule, hydrogens, and hydrogen bonds between them.
inline HGraphicsCrystal corpus_crystal()
{
    std::ifstream in(std::string(CIFWARD_SHARED_DIR) + "/corpus/cod/2006998-with-extra-tag.cif",
                     std::ios::binary);
    CifFile file;
    file.read(in);
    return HGraphicsCrystal(new GraphicsCrystal(HNewCrystal(new NewCrystal(file.crystal_maker()))));
}

// libFuzzer target: reads arbitrary bytes as CIF and takes every block with atom sites the whole
// road to a crystal: cell and symmetry, atoms, bonds, the connectivity search, and one packed
// cell. Bad input may be refused, but only with a molecule_error that says why; anything else
// thrown, a crash or a hang is a fault.
//
// Input: the first byte is skipped (it picks the line limit in the read fuzzer, whose inputs seed
// this one), the rest is the text.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifFile.h"
#include "MoleculeError.h"
#include "NewCrystal.h"

#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    std::istringstream in(std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
    CifFile file;
    try {
        file.read(in);
    } catch (const molecule_error&) {
        return 0;
    }
    for (std::size_t b = 0; b < file.cif()->block_count(); ++b) {
        if (!file.cif()->block(b).item("_atom_site_fract_x"))
            continue;
        try {
            file.read(static_cast<int>(b));
            NewCrystal crystal(file.crystal_maker());
            crystal.set_packing(true);
            crystal.current();
        } catch (const molecule_error&) {
        } catch (const std::exception& e) {
            std::fprintf(stderr, "structure_fuzzer: not a molecule_error: %s\n", e.what());
            __builtin_trap();
        }
    }
    return 0;
}

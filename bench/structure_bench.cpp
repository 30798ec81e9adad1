// Bond detection and packing on a real structure: a flavonoid hydrate of the shared corpus
// (2006998, 45 atoms in the asymmetric unit, 180 in the cell), packed over as many cells as it
// takes to reach 10,000 and 100,000 atoms. The grid search is timed beside the plain loop over
// every pair, which gives the same bonds.
#include "BondDetector.h"
#include "CifFile.h"
#include "NewCrystal.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <fstream>
#include <stdexcept>

namespace {

const std::string structure_file = std::string(CIFWARD_SHARED_DIR) + "/corpus/cod/2006998-with-extra-tag.cif";

HCrystalMaker read_maker()
{
    std::ifstream in(structure_file, std::ios::binary);
    if (!in)
        throw std::runtime_error("no corpus file " + structure_file);
    CifFile file;
    file.read(in);
    return file.crystal_maker();
}

struct Atoms {
    std::vector<Vector3D> positions;
    std::vector<Element> elements;
};

// The structure packed in a box of cells, grown until it holds at least `wanted` atoms.
const Atoms& packed(int wanted)
{
    static std::map<int, Atoms> made;
    Atoms& atoms = made[wanted];
    if (!atoms.positions.empty())
        return atoms;
    const HCrystalMaker maker = read_maker();
    for (int n = 1;; ++n) {
        NewCrystal crystal(maker);
        crystal.set_packing_box(
            Box({0, 0, 0}, {static_cast<double>(n), static_cast<double>(n), static_cast<double>(n)}));
        crystal.set_packing(true);
        const HCrystal current = crystal.current();
        if (current->natoms() < wanted)
            continue;
        for (const HMolecule& m : current->molecules())
            for (int i = 0; i < m->natoms() && static_cast<int>(atoms.positions.size()) < wanted; ++i) {
                atoms.positions.push_back(current->orthogonal(m->atom(i)->site()->frac));
                atoms.elements.push_back(m->atom(i)->element());
            }
        return atoms;
    }
}

void bonds_by_grid(benchmark::State& state)
{
    const Atoms& atoms = packed(static_cast<int>(state.range(0)));
    std::size_t bonds = 0;
    for (auto _ : state)
        bonds = BondDetector::detect_positions(atoms.positions, atoms.elements).size();
    state.counters["atoms"] = static_cast<double>(atoms.positions.size());
    state.counters["bonds"] = static_cast<double>(bonds);
}

void bonds_by_pairs(benchmark::State& state)
{
    const Atoms& atoms = packed(static_cast<int>(state.range(0)));
    std::size_t bonds = 0;
    for (auto _ : state)
        bonds = BondDetector::detect_all_pairs(atoms.positions, atoms.elements).size();
    state.counters["atoms"] = static_cast<double>(atoms.positions.size());
    state.counters["bonds"] = static_cast<double>(bonds);
}

// Three by three by three cells of the completed molecules, from a crystal maker read before.
void packing_3x3x3(benchmark::State& state)
{
    const HCrystalMaker maker = read_maker();
    int atoms = 0;
    for (auto _ : state) {
        NewCrystal crystal(maker);
        crystal.set_packing_box(Box({0, 0, 0}, {3, 3, 3}));
        crystal.set_packing(true);
        atoms = crystal.current()->natoms();
    }
    state.counters["atoms"] = atoms;
}

// The same from the file: reading, the connectivity search and the packing.
void packing_3x3x3_from_file(benchmark::State& state)
{
    int atoms = 0;
    for (auto _ : state) {
        NewCrystal crystal(read_maker());
        crystal.set_packing_box(Box({0, 0, 0}, {3, 3, 3}));
        crystal.set_packing(true);
        atoms = crystal.current()->natoms();
    }
    state.counters["atoms"] = atoms;
}

} // namespace

BENCHMARK(bonds_by_grid)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(bonds_by_pairs)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(bonds_by_pairs)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(packing_3x3x3)->Unit(benchmark::kMillisecond);
BENCHMARK(packing_3x3x3_from_file)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();

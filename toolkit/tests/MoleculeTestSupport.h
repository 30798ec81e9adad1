#pragma once

#include "Atom3d.h"
#include "BondDetector.h"
#include "Cell.h"
#include "Molecule3d.h"

#include <cmath>
#include <string>
#include <vector>

struct TestAtom {
    std::string element;
    Vector3D position;
};

// A molecule with its bonds found from the positions, in a cell of no geometry, so that the
// positions are taken as Angstroms.
inline THandle<Molecule3d> molecule_of(const std::vector<TestAtom>& atoms)
{
    std::vector<HAtom> handles;
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        auto* a = new Atom3d(Element(atoms[i].element), atoms[i].element + std::to_string(i + 1),
                             HSite(new Site(atoms[i].position)));
        a->set_symmtag(static_cast<int32_t>(i));
        handles.emplace_back(a);
    }
    return THandle<Molecule3d>(new Molecule3d("test", handles, BondDetector().detect(handles, Cell())));
}

// n atoms of `element` evenly round a circle of the given edge, in the xy plane about `centre`,
// starting at angle `phase`.
inline std::vector<TestAtom> ring_of(const std::vector<std::string>& elements, double edge,
                                     const Vector3D& centre = {}, double phase = 0)
{
    const double pi = std::acos(-1.0);
    const std::size_t n = elements.size();
    const double radius = edge / (2 * std::sin(pi / static_cast<double>(n)));
    std::vector<TestAtom> atoms;
    for (std::size_t i = 0; i < n; ++i) {
        const double t = phase + 2 * pi * static_cast<double>(i) / static_cast<double>(n);
        atoms.push_back({elements[i], centre + Vector3D(radius * std::cos(t), radius * std::sin(t), 0)});
    }
    return atoms;
}

#pragma once

#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsCell.h"
#include "GraphicsContact.h"
#include "GraphicsPrimitive.h"
#include "MolecularContact.h"
#include "NewCrystal.h"
#include "Transformation.h"

#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

// Everything a GraphicsCrystal holds. The current lists are what is drawn; the pools keep every
// object ever made, active or not, so that display properties survive the rebuilds the toolkit
// crystal makes from scratch.
struct GraphicsCrystalState {
    // What a snapshot restores as it stands, beside the rebuilt objects.
    struct Settings {
        Transformation orientation;
        Point rotation_centre;
        bool rotation_centre_valid = false;
        GraphicsObject::RenderingStyle default_style = GraphicsObject::StyleWireframe;
        GraphicsObject::ColorMode default_color_mode = GraphicsObject::ColorByElement;
        RGBA default_color;
        bool show_slicing_bounds = true;
    };

    HNewCrystal crystal;

    std::vector<HGraphicsAtom> atoms;
    std::vector<HGraphicsAtom> atom_pool;
    // Pool atoms by the symmetry tag of the toolkit atom they stand for: symmetry copies of one
    // atom of the asymmetric unit share an entry.
    std::map<int32_t, std::vector<HGraphicsAtom>> atoms_by_tag;

    std::unordered_map<const Atom*, HGraphicsAtom> graphics_atom_of;
    std::unordered_map<const GraphicsAtom*, HAtom> atom_of;
    // The index in the current snapshot of the molecule that holds each drawn atom.
    std::unordered_map<const GraphicsAtom*, int> molecule_of;

    std::vector<HGraphicsBond> bonds;
    std::vector<HGraphicsBond> bond_pool;
    // Pool bonds by the symmetry tags of their atoms, the smaller first.
    std::map<std::pair<int32_t, int32_t>, std::vector<HGraphicsBond>> bonds_by_tags;
    std::unordered_map<const Bond*, HGraphicsBond> graphics_bond_of;
    std::unordered_map<const GraphicsBond*, HBond> bond_of;

    std::vector<HGraphicsPrimitive> primitives;
    std::vector<HGraphicsContact> contacts;
    std::vector<HGraphicsContact> contact_pool;
    std::unordered_map<const GraphicsContact*, HMolecularContact> contact_of;

    HGraphicsCell cell;
    Settings settings;

    // The symmetry tag of every atom ever drawn, kept when the atom leaves the picture.
    std::unordered_map<const GraphicsAtom*, int32_t> symmtags;

    bool last_packed = false;
    bool last_sliced = false;
};

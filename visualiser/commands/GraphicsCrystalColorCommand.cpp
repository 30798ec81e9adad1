#include "GraphicsCrystalColorCommand.h"

#include "GraphicsBond.h"

void GraphicsCrystalColorCommand::execute(GraphicsCrystal& crystal)
{
    Before& before = before_[crystal.number()] = Before();
    for (const HGraphicsAtom& atom : crystal.filtered_atoms(filter_)) {
        const RGBA c = crystal.calculate_color(*atom, mode_, color_);
        before.atoms.emplace_back(atom, atom->color());
        atom->set_color(c);
        for (GraphicsBond* bond : atom->bonds()) {
            const int half = bond->atom1() == atom ? 0 : 1;
            before.halves.emplace_back(bond, half, half == 0 ? bond->color() : bond->color2());
            if (half == 0)
                bond->set_color(c);
            else
                bond->set_color2(c);
        }
    }
}

void GraphicsCrystalColorCommand::unexecute(GraphicsCrystal& crystal)
{
    const auto found = before_.find(crystal.number());
    if (found == before_.end())
        return;
    const Before& before = found->second;
    // Backwards, so that a bond half changed twice gets its first colour back.
    for (auto it = before.halves.rbegin(); it != before.halves.rend(); ++it) {
        const auto& [bond, half, color] = *it;
        if (half == 0)
            bond->set_color(color);
        else
            bond->set_color2(color);
    }
    for (const auto& [atom, color] : before.atoms)
        atom->set_color(color);
}

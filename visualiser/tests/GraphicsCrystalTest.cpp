// The graphics model on a real structure, without GL: what packing, unpacking and a rebuild keep
// of the looks a user gave, and what each colour mode gives an atom.
#include "GraphicsCrystal.h"

#include "CifFile.h"
#include "DistanceCriterion.h"
#include "GraphicsAtom.h"
#include "GraphicsColors.h"
#include "GraphicsContact.h"
#include "VisualiserTestSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>

// Looks given to asymmetric-unit atoms spread to their images when the cell is packed and are
// still theirs after unpacking; a contact's colour is the model's, whatever the user set.
TEST(GraphicsCrystal, PackingKeepsTheLooksOfEachAtom)
{
    const HGraphicsCrystal crystal = corpus_crystal();
    const std::vector<HGraphicsAtom> unit = crystal->atoms();
    ASSERT_GT(unit.size(), 40u);
    const RGBA red(1, 0, 0, 1);
    std::map<std::string, GraphicsAtom*> by_label;
    for (const HGraphicsAtom& atom : unit)
        by_label[atom->label()] = atom.get();
    GraphicsAtom& o1 = *by_label.at("O1");
    o1.set_color(red);
    o1.set_style(GraphicsObject::StyleSpacefill);
    o1.set_labelled(true);

    crystal->set_packing_box(Box({0, 0, 0}, {1, 1, 1}));
    crystal->set_packing(true);
    int images = 0;
    for (const HGraphicsAtom& atom : crystal->atoms()) {
        if (atom->label() != "O1")
            continue;
        ++images;
        EXPECT_TRUE(atom->color().equals(red)) << atom->ortho();
        EXPECT_EQ(atom->style(), GraphicsObject::StyleSpacefill);
        EXPECT_TRUE(atom->labelled());
    }
    EXPECT_GT(images, 1); // the space group puts several images of O1 in the cell
    EXPECT_GT(crystal->atoms().size(), unit.size());

    crystal->set_packing(false);
    ASSERT_EQ(crystal->atoms().size(), unit.size());
    for (std::size_t i = 0; i < unit.size(); ++i) {
        // The same objects come back, not copies, so their looks are the ones given.
        EXPECT_TRUE(crystal->atoms()[i] == unit[i]) << unit[i]->label();
        EXPECT_EQ(crystal->atoms()[i]->color().equals(red), unit[i]->label() == "O1") << unit[i]->label();
    }

    crystal->add_criterion(HContactCriterion(new DistanceCriterion(0.5, 3.4)));
    crystal->find_contacts();
    ASSERT_FALSE(crystal->contacts().empty());
    const RGBA green(0, 1, 0, 1);
    for (const HGraphicsContact& contact : crystal->contacts())
        contact->set_color(green);
    crystal->changed();
    crystal->set_packing(true);
    crystal->set_packing(false);
    for (const HGraphicsContact& contact : crystal->contacts())
        EXPECT_FALSE(contact->color().equals(green));
}

// Each colour mode on the same structure: elements give carbon and oxygen different colours,
// symmetry equivalence gives every image of an atom one colour, molecules give each molecule one.
TEST(GraphicsCrystal, ColourModes)
{
    const HGraphicsCrystal crystal = corpus_crystal();
    crystal->set_packing_box(Box({0, 0, 0}, {1, 1, 1}));
    crystal->set_packing(true);
    const RGBA chosen(0.2f, 0.4f, 0.6f, 1);
    std::map<std::string, RGBA> by_label;
    std::map<int, RGBA> by_molecule;
    std::map<std::string, RGBA> by_element_letter;
    for (const HGraphicsAtom& atom : crystal->atoms()) {
        const std::string label = atom->label();
        EXPECT_TRUE(crystal->calculate_color(*atom, GraphicsObject::ColorByColor, chosen).equals(chosen));

        const RGBA element = crystal->calculate_color(*atom, GraphicsObject::ColorByElement, chosen);
        const std::string letter = label.substr(0, 1);
        // The first atom of each kind sets the colour the later ones must have.
        EXPECT_TRUE(by_element_letter.emplace(letter, element).first->second.equals(element)) << label;

        const RGBA symmetry =
            crystal->calculate_color(*atom, GraphicsObject::ColorBySymmetryEquivalence, chosen);
        EXPECT_FALSE(symmetry.equals(RGBA(0.5f, 0.5f, 0.5f, 1))) << label; // grey means no tag
        EXPECT_TRUE(by_label.emplace(label, symmetry).first->second.equals(symmetry)) << label;

        const int molecule = crystal->molecule_index(*atom);
        const RGBA colour = crystal->calculate_color(*atom, GraphicsObject::ColorByMolecule, chosen);
        EXPECT_TRUE(by_molecule.emplace(molecule, colour).first->second.equals(colour)) << label;
    }
    ASSERT_TRUE(by_element_letter.count("C") && by_element_letter.count("O"));
    EXPECT_FALSE(by_element_letter["C"].equals(by_element_letter["O"]));
    EXPECT_GT(by_molecule.size(), 2u);
}

// The command history on a real structure, without GL: every kind of command is run, undone and
// redone through the crystal manager, and the written archive of the crystal and of the view is
// compared with the one taken before and after each step.
#include "Archive.h"
#include "CifFile.h"
#include "DistanceCriterion.h"
#include "GraphicsCentroid.h"
#include "GraphicsMonitorDistance.h"
#include "GraphicsObjectLabelCommand.h"
#include "GraphicsObjectStyleCommand.h"
#include "QtCrystalManager.h"
#include "Renderer.h"
#include "RotationCommand.h"
#include "ViewStateCommand.h"
#include "VisLibActiveCommand.h"
#include "VisLibAddBondCommand.h"
#include "VisLibAddContactCriterionCommand.h"
#include "VisLibAddPrimitiveCommand.h"
#include "VisLibAtomSelectionCommand.h"
#include "VisLibClearContactCriteriaCommand.h"
#include "VisLibClearPrimitivesCommand.h"
#include "VisLibCommandHistory.h"
#include "VisLibCrystalManagerRendererCommand.h"
#include "VisLibDeleteContactsCommand.h"
#include "VisLibDeleteHangingContactsCommand.h"
#include "VisLibDeleteMoleculeCommand.h"
#include "VisLibDisplayColorCommand.h"
#include "VisLibDisplayLabelledCommand.h"
#include "VisLibDisplayObjectCommand.h"
#include "VisLibDisplayPrimitiveCommand.h"
#include "VisLibDisplayStyleCommand.h"
#include "VisLibDisplayVisibilityCommand.h"
#include "VisLibEditBondTypeCommand.h"
#include "VisLibEnableContactCriterionCommand.h"
#include "VisLibExpandAllContactsCommand.h"
#include "VisLibExpandContactCommand.h"
#include "VisLibFindContactsCommand.h"
#include "VisLibLabelCellEdgesCommand.h"
#include "VisLibMacroCommand.h"
#include "VisLibMoleculeSelectionCommand.h"
#include "VisLibPackingBoxCommand.h"
#include "VisLibPackingCommand.h"
#include "VisLibRemoveAtomCommand.h"
#include "VisLibRemoveBondCommand.h"
#include "VisLibRemoveContactCriterionCommand.h"
#include "VisLibRemovePrimitiveCommand.h"
#include "VisLibResetContactsCommand.h"
#include "VisLibSelectionFilterCommand.h"
#include "VisLibShowAllCommand.h"
#include "VisLibShowCellEdgesCommand.h"
#include "VisLibShowSlicingBoundsCommand.h"
#include "VisLibSlicingCommand.h"
#include "VisLibSlicingDisplacementCommand.h"
#include "VisLibSlicingPlaneCommand.h"
#include "VisLibSlicingThicknessCommand.h"
#include "VisLibUpdateContactCriterionCommand.h"
#include "VisualiserTestSupport.h"
#include "ZoomCommand.h"

#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>

namespace {

struct View {
    View() : crystal(corpus_crystal())
    {
        manager.addGraphicsCrystal(crystal);
        QObject::connect(&manager, &QtCrystalManager::executeRendererCommand,
                         [this](HRendererCommand& c) { c->execute(renderer); });
        QObject::connect(&manager, &QtCrystalManager::unexecuteRendererCommand,
                         [this](HRendererCommand& c) { c->unexecute(renderer); });
    }

    // Everything a command may change: the crystal with its objects, the camera, the
    // measurements.
    std::string state() const
    {
        std::ostringstream out;
        Archive archive(out);
        crystal->write(archive);
        renderer.write(archive);
        archive.write_int32(static_cast<int32_t>(renderer.monitors().size()));
        return out.str();
    }

    HGraphicsAtom atom(const std::string& label) const
    {
        for (const HGraphicsAtom& a : crystal->atoms())
            if (a->label() == label)
                return a;
        throw std::runtime_error("no atom " + label);
    }

    QtCrystalManager manager;
    HGraphicsCrystal crystal;
    Renderer renderer;
};

using Make = std::function<HVisLibCommand(View&)>;

HVisLibCommand on_view(View& v, RendererCommand* command)
{
    return HVisLibCommand(new VisLibCrystalManagerRendererCommand(&v.manager, HRendererCommand(command)));
}

HContactCriterion hbond_distance()
{
    return HContactCriterion(new DistanceCriterion(0.0, 3.0));
}

// Forty commands, one or more of every kind, each made when its turn comes so that it names
// objects of the crystal as it is then.
const std::vector<std::pair<QString, Make>> commands = {
    {"Style: Ball & Stick",
     [](View& v) {
         return HVisLibCommand(new VisLibDisplayStyleCommand(&v.manager, GraphicsObject::StyleBallAndStick,
                                                             GraphicsCrystal::FilterAll));
     }},
    {"Change color",
     [](View& v) {
         return HVisLibCommand(new VisLibDisplayColorCommand(
             &v.manager, GraphicsObject::ColorByColor, RGBA(1, 0, 0, 1), GraphicsCrystal::FilterCarbons));
     }},
    {"Hide",
     [](View& v) {
         return HVisLibCommand(new VisLibDisplayVisibilityCommand(&v.manager, GraphicsCrystal::ActionHide,
                                                                  GraphicsCrystal::FilterHydrogens));
     }},
    {"Toggle label",
     [](View& v) {
         return HVisLibCommand(new VisLibDisplayLabelledCommand(&v.manager, GraphicsCrystal::ActionToggle,
                                                                GraphicsCrystal::FilterNonCHs));
     }},
    {"Change label",
     [](View& v) {
         return HVisLibCommand(
             new VisLibDisplayObjectCommand(&v.manager, v.crystal, v.atom("C7"),
                                            HGraphicsObjectCommand(new GraphicsObjectLabelCommand("C7x"))));
     }},
    {"Show All", [](View& v) { return HVisLibCommand(new VisLibShowAllCommand(&v.manager)); }},
    {"Select Carbons",
     [](View& v) {
         return HVisLibCommand(new VisLibSelectionFilterCommand(
             &v.manager, "Select Carbons", GraphicsCrystal::ActionShow, GraphicsCrystal::FilterCarbons));
     }},
    {"Deselect Atom",
     [](View& v) {
         return HVisLibCommand(new VisLibAtomSelectionCommand(&v.manager, v.crystal, {v.atom("C2")}, false));
     }},
    {"Select Molecule",
     [](View& v) {
         return HVisLibCommand(new VisLibMoleculeSelectionCommand(&v.manager, v.crystal, v.atom("O1"), true));
     }},
    {"Packing Box 0 - 1, 0 - 1, 0 - 2",
     [](View& v) {
         return HVisLibCommand(new VisLibPackingBoxCommand(&v.manager, Box({0, 0, 0}, {1, 1, 2})));
     }},
    {"Packing", [](View& v) { return HVisLibCommand(new VisLibPackingCommand(&v.manager, true)); }},
    {"Remove Atom",
     [](View& v) {
         return HVisLibCommand(new VisLibRemoveAtomCommand(&v.manager, v.crystal, v.atom("H5")));
     }},
    {"Show Cell Axes",
     [](View& v) { return HVisLibCommand(new VisLibShowCellEdgesCommand(&v.manager, true)); }},
    {"Label Cell Axes",
     [](View& v) { return HVisLibCommand(new VisLibLabelCellEdgesCommand(&v.manager, true)); }},
    {"Slicing Plane",
     [](View& v) {
         return HVisLibCommand(new VisLibSlicingPlaneCommand(&v.manager, Plane({0, 0, 1}, 5)));
     }},
    {"Slicing Thickness 6",
     [](View& v) { return HVisLibCommand(new VisLibSlicingThicknessCommand(&v.manager, 6)); }},
    {"Slicing Displacement 1.5",
     [](View& v) { return HVisLibCommand(new VisLibSlicingDisplacementCommand(&v.manager, 1.5)); }},
    {"Slicing", [](View& v) { return HVisLibCommand(new VisLibSlicingCommand(&v.manager, true)); }},
    {"Hide Slicing Bounds",
     [](View& v) { return HVisLibCommand(new VisLibShowSlicingBoundsCommand(&v.manager, false)); }},
    {"Packing", [](View& v) { return HVisLibCommand(new VisLibPackingCommand(&v.manager, false)); }},
    {"Add Contact Definitions",
     [](View& v) {
         return HVisLibCommand(new VisLibMacroCommand(
             "Add Contact Definitions",
             {HVisLibCommand(new VisLibAddContactCriterionCommand(&v.manager, hbond_distance())),
              HVisLibCommand(new VisLibAddContactCriterionCommand(
                  &v.manager, HContactCriterion(new DistanceCriterion(0.5, 3.4))))}));
     }},
    {"Find Contacts", [](View& v) { return HVisLibCommand(new VisLibFindContactsCommand(&v.manager)); }},
    {"Expand Contact",
     [](View& v) {
         return HVisLibCommand(
             new VisLibExpandContactCommand(&v.manager, v.crystal, v.crystal->contacts().at(0)));
     }},
    {"Expand All Contacts",
     [](View& v) { return HVisLibCommand(new VisLibExpandAllContactsCommand(&v.manager)); }},
    {"Delete Hanging Contacts",
     [](View& v) { return HVisLibCommand(new VisLibDeleteHangingContactsCommand(&v.manager)); }},
    {"Delete Contacts",
     [](View& v) {
         return HVisLibCommand(new VisLibDeleteContactsCommand(&v.manager, v.crystal, v.atom("OW1")));
     }},
    {"Reset Contacts", [](View& v) { return HVisLibCommand(new VisLibResetContactsCommand(&v.manager)); }},
    {"Disable Contact Definition",
     [](View& v) {
         return HVisLibCommand(new VisLibEnableContactCriterionCommand(&v.manager, hbond_distance(), false));
     }},
    {"Contact Definition Changed",
     [](View& v) {
         return HVisLibCommand(
             new VisLibUpdateContactCriterionCommand(&v.manager, v.crystal->crystal()->criteria().at(0),
                                                     HContactCriterion(new DistanceCriterion(0, 2.5))));
     }},
    {"Remove Contact Definition",
     [](View& v) {
         return HVisLibCommand(
             new VisLibRemoveContactCriterionCommand(&v.manager, v.crystal->crystal()->criteria().at(0)));
     }},
    {"Clear Contact Definitions",
     [](View& v) { return HVisLibCommand(new VisLibClearContactCriteriaCommand(&v.manager)); }},
    {"Add Object",
     [](View& v) {
         return HVisLibCommand(new VisLibAddPrimitiveCommand(
             &v.manager, v.crystal, HGraphicsPrimitive(new GraphicsCentroid({1, 2, 3}, 0.4))));
     }},
    {"Style: Stick",
     [](View& v) {
         return HVisLibCommand(new VisLibDisplayPrimitiveCommand(
             &v.manager, v.crystal, v.crystal->primitives().at(0),
             HGraphicsObjectCommand(new GraphicsObjectStyleCommand(GraphicsObject::StyleStick))));
     }},
    {"Remove Object",
     [](View& v) {
         return HVisLibCommand(new VisLibRemovePrimitiveCommand(&v.manager, v.crystal->primitives().at(0)));
     }},
    {"Delete Molecule",
     [](View& v) {
         return HVisLibCommand(new VisLibDeleteMoleculeCommand(&v.manager, v.crystal, v.atom("OW1")));
     }},
    {"Remove Bond",
     [](View& v) {
         return HVisLibCommand(new VisLibRemoveBondCommand(&v.manager, v.crystal, v.crystal->bonds().at(0)));
     }},
    {"Edit Bond Type",
     [](View& v) {
         return HVisLibCommand(
             new VisLibEditBondTypeCommand(&v.manager, v.crystal, v.crystal->bonds().at(0), BondDouble));
     }},
    {"Rotation about axis",
     [](View& v) {
         return on_view(v, new RotationCommand({0, 1, 0}, 30));
     }},
    {"Add Bond",
     [](View& v) {
         return HVisLibCommand(
             new VisLibAddBondCommand(&v.manager, v.crystal, v.atom("O1"), v.atom("C4"), BondSingle));
     }},
    {"Zoom View", [](View& v) { return on_view(v, new ZoomCommand(0.5)); }},
};

TEST(CommandHistory, FortyUndosAndRedosGiveBackEachWrittenState)
{
    ASSERT_EQ(commands.size(), 40u);
    View view;
    std::vector<std::string> states{view.state()};
    for (const auto& [name, make] : commands) {
        view.manager.executeAndLogCommand(make(view));
        states.push_back(view.state());
        EXPECT_TRUE(states.back() != states[states.size() - 2]) << name.toStdString() << " changed nothing";
        EXPECT_EQ(view.manager.undoText(), "&Undo: " + name);
    }
    EXPECT_EQ(view.manager.redoText(), "&Redo: Not Available");

    for (std::size_t i = commands.size(); i-- > 0;) {
        EXPECT_EQ(view.manager.undoText(), "&Undo: " + commands[i].first);
        view.manager.undo();
        EXPECT_TRUE(view.state() == states[i]) << "undo of " << commands[i].first.toStdString();
        EXPECT_EQ(view.manager.redoText(), "&Redo: " + commands[i].first);
    }
    EXPECT_EQ(view.manager.undoText(), "&Undo: Not Available");

    for (std::size_t i = 0; i < commands.size(); ++i) {
        view.manager.redo();
        EXPECT_TRUE(view.state() == states[i + 1]) << "redo of " << commands[i].first.toStdString();
    }
}

TEST(CommandHistory, DepthDropsTheOldestAndANewCommandDropsTheUndone)
{
    View view;
    auto hide = [&] {
        return HVisLibCommand(new VisLibDisplayVisibilityCommand(&view.manager, GraphicsCrystal::ActionToggle,
                                                                 GraphicsCrystal::FilterHydrogens));
    };
    std::vector<std::string> states{view.state()};
    for (int i = 0; i < 41; ++i) {
        view.manager.executeAndLogCommand(hide());
        states.push_back(view.state());
    }
    EXPECT_EQ(view.manager.history().count(), 40);
    for (int i = 0; i < 41; ++i)
        view.manager.undo();
    EXPECT_TRUE(view.state() == states[1]) << "forty undos reach the state after the first command";

    view.manager.redo();
    view.manager.executeAndLogCommand(HVisLibCommand(new VisLibShowCellEdgesCommand(&view.manager, false)));
    EXPECT_EQ(view.manager.history().count(), 2);
    EXPECT_EQ(view.manager.redoText(), "&Redo: Not Available");
    EXPECT_EQ(view.manager.undoText(), "&Undo: Hide Cell Axes");
}

// A command that reaches no active crystal, or names what is not there, stays out of the history.
TEST(CommandHistory, InactiveCrystalAndMissingObjectsAreNotLogged)
{
    View view;
    const HGraphicsPrimitive foreign(new GraphicsCentroid({0, 0, 0}, 1));
    view.manager.executeAndLogCommand(
        HVisLibCommand(new VisLibRemovePrimitiveCommand(&view.manager, foreign)));
    EXPECT_EQ(view.manager.history().count(), 0);

    view.manager.executeAndLogCommand(
        HVisLibCommand(new VisLibActiveCommand(&view.manager, view.crystal, false)));
    EXPECT_EQ(view.manager.undoText(), "&Undo: Change Active State");
    const std::string inactive = view.state();
    view.manager.executeAndLogCommand(HVisLibCommand(new VisLibDisplayStyleCommand(
        &view.manager, GraphicsObject::StyleSpacefill, GraphicsCrystal::FilterAll)));
    EXPECT_TRUE(view.state() == inactive) << "an inactive crystal is left alone";
    view.manager.undo();
    view.manager.undo();
    EXPECT_TRUE(view.crystal->active());
}

} // namespace

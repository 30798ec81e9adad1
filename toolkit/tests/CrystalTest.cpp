#include "Archive.h"
#include "Atom3d.h"
#include "Bond3d.h"
#include "IfAnyIncluded.h"
#include "Molecule3d.h"
#include "NewCrystal.h"
#include "NewCrystalMemento.h"
#include "Observer.h"
#include "ToolkitTestSupport.h"
#include "VdWCriterion.h"

#include <functional>
#include <gtest/gtest.h>
#include <sstream>

namespace {

// A crystal maker of single atoms at the given fractional positions.
HCrystalMaker atoms_in(const Cell& cell, const std::vector<std::pair<const char*, Vector3D>>& atoms)
{
    HCrystalMaker maker(new CrystalMaker);
    static_cast<Cell&>(*maker) = cell;
    int tag = 0;
    for (const auto& [element, position] : atoms) {
        auto* a = new Atom3d(Element(element), element, HSite(new Site(position)));
        a->set_symmtag(tag++);
        maker->add_molecule(HMolecule(new Molecule3d(element, {HAtom(a)}, {})));
    }
    return maker;
}

Cell cubic(double a, const char* group)
{
    return Cell(UncertainValue(a), UncertainValue(a), UncertainValue(a), UncertainValue(90),
                UncertainValue(90), UncertainValue(90), Spacegroup(group));
}

} // namespace

// Atoms packed in boxes of cells: simple cubic polonium, face-centred copper and caesium chloride,
// one cell and three by three by three, whole or cut by a slab through the bottom layer.
TEST(Crystal, PackingCountsOfCubicCells)
{
    const Cell po = cubic(3.35, "Pm-3m"), cu = cubic(3.61, "Fm-3m"), cscl = cubic(4.12, "Pm-3m");
    struct Case {
        const char* name;
        HCrystalMaker maker;
        Vector3D box_max;
        bool sliced;
        int atoms;
    };
    const std::vector<Case> cases = {
        {"Po, one cell", atoms_in(po, {{"Po", {0, 0, 0}}}), {1, 1, 1}, false, 1},
        {"Po, 3x3x3", atoms_in(po, {{"Po", {0, 0, 0}}}), {3, 3, 3}, false, 27},
        {"Po, 3x3x3, bottom layer", atoms_in(po, {{"Po", {0, 0, 0}}}), {3, 3, 3}, true, 9},
        {"Cu, one cell", atoms_in(cu, {{"Cu", {0, 0, 0}}}), {1, 1, 1}, false, 4},
        {"Cu, 3x3x3", atoms_in(cu, {{"Cu", {0, 0, 0}}}), {3, 3, 3}, false, 108},
        {"Cu, 3x3x3, bottom layer", atoms_in(cu, {{"Cu", {0, 0, 0}}}), {3, 3, 3}, true, 18},
        {"CsCl, 3x3x3", atoms_in(cscl, {{"Cs", {0, 0, 0}}, {"Cl", {0.5, 0.5, 0.5}}}), {3, 3, 3}, false, 54},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        NewCrystal crystal(c.maker);
        crystal.set_packing_box(Box({0, 0, 0}, c.box_max));
        crystal.set_packing(true);
        if (c.sliced) {
            crystal.set_slicing_plane(Plane({0, 0, 1}, 0));
            crystal.set_slicing_thickness(0.5);
            crystal.set_slicing(true);
        }
        EXPECT_EQ(crystal.current()->natoms(), c.atoms);
        EXPECT_EQ(crystal.current()->nmolecules(), c.atoms);
    }
}

// The packing and contact state goes through an archive and comes back; an archive of another
// version, a damaged one and a cut one are refused with their texts.
TEST(Crystal, MementoThroughAnArchive)
{
    NewCrystal crystal(atoms_in(cubic(3.61, "Fm-3m"), {{"Cu", {0, 0, 0}}}));
    crystal.set_packing_box(Box({0, 0, 0}, {2, 2, 2}));
    crystal.set_packing(true);
    crystal.set_criteria({HContactCriterion(new VdWCriterion(-1000, 0.5))});
    crystal.find_contacts();
    ASSERT_GT(crystal.ncontacts(), 0);
    std::ostringstream stored;
    {
        Archive out(stored);
        crystal.write(out);
    }
    const std::string bytes = stored.str();
    NewCrystal restored;
    std::istringstream in(bytes);
    Archive archive(in);
    restored.read(archive);
    EXPECT_EQ(restored.current()->natoms(), crystal.current()->natoms());
    EXPECT_EQ(restored.ncontacts(), crystal.ncontacts());
    EXPECT_EQ(*restored.criteria().at(0), *crystal.criteria().at(0));

    const auto failure = [](const std::string& data) {
        return failure_of([&] {
            std::istringstream in(data);
            Archive archive(in);
            NewCrystalMemento().read(archive);
        });
    };
    const auto with_version = [&bytes](char v) { return std::string(1, v) + bytes.substr(1); };
    EXPECT_EQ(failure(with_version(0)),
              "NewCrystalMemento::read - Use a VersionedArchive object to read old formats");
    EXPECT_EQ(failure(with_version(2)), "NewCrystalMemento::read - format version mismatch");
    for (std::size_t cut : {std::size_t(2), bytes.size() / 2, bytes.size() - 1})
        EXPECT_EQ(failure(bytes.substr(0, cut)), "Archive::read - unexpected end of data")
            << "cut at " << cut;
    std::string unknown = bytes;
    const std::size_t word = unknown.find("VdWCriterion");
    ASSERT_NE(word, std::string::npos);
    unknown.replace(word, 3, "Xyz");
    EXPECT_EQ(failure(unknown), "Unrecognised contact definition: XyzCriterion");
}

// Edits made on any symmetry copy reach the maker's molecule, and so every copy; edits that name
// nothing in the crystal, or would join a molecule to its own copy, fail with their texts.
TEST(Crystal, EditsOnCopiesReachTheMaker)
{
    const Cell cell(UncertainValue(10), UncertainValue(10), UncertainValue(10), UncertainValue(90),
                    UncertainValue(90), UncertainValue(90), Spacegroup("P-1"));
    const auto ethane_carbons = [&cell] {
        HCrystalMaker maker(new CrystalMaker);
        static_cast<Cell&>(*maker) = cell;
        std::vector<HAtom> atoms;
        for (const Vector3D& p : {Vector3D(0.1, 0.1, 0.1), Vector3D(0.25, 0.1, 0.1)}) {
            atoms.emplace_back(
                new Atom3d(Element("C"), "C" + std::to_string(atoms.size() + 1), HSite(new Site(p))));
            atoms.back()->set_symmtag(static_cast<int32_t>(atoms.size() - 1));
        }
        maker->add_molecule(HMolecule(new Molecule3d("ethane", atoms, {{0, 1}})));
        return maker;
    };
    struct Case {
        const char* what;
        std::function<void(NewCrystal&, const HMolecule&, const HMolecule&)> edit;
        std::string failure;
        int atoms, bonds; // of the packed cell afterwards
    };
    const std::vector<Case> cases = {
        {"an atom of the inverted copy",
         [](NewCrystal& c, const HMolecule&, const HMolecule& inverted) { c.remove(inverted->atom(1)); }, "",
         2, 0},
        {"a bond of the inverted copy",
         [](NewCrystal& c, const HMolecule&, const HMolecule& inverted) {
             c.set_bond_type(inverted->bond(0), BondDouble);
             // A rebuild makes new copies: the bond is taken again, from the other copy.
             const HMolecule first = c.current()->molecule(0);
             EXPECT_EQ(first->bond(0)->type(), BondDouble);
             c.remove(first->bond(0));
         },
         "", 4, 0},
        {"a molecule to its own copy",
         [](NewCrystal& c, const HMolecule& first, const HMolecule& inverted) {
             c.add(HBond(new Bond3d), first->atom(0), inverted->atom(0));
         },
         "NewCrystal::add(HBond, HAtom, HAtom): Cannot join together two symmetry-related molecules.", 4, 2},
        {"an atom of no crystal",
         [](NewCrystal& c, const HMolecule&, const HMolecule&) {
             c.remove(HAtom(new Atom3d(Element("C"), "C9", HSite(new Site({0.5, 0.5, 0.5})))));
         },
         "NewCrystal::remove(HAtom): atom is not related to any of the atoms in this crystal", 4, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        NewCrystal crystal(ethane_carbons());
        crystal.set_packing(true);
        const HCrystal before = crystal.current();
        ASSERT_EQ(before->nmolecules(), 2);
        EXPECT_EQ(failure_of([&] { c.edit(crystal, before->molecule(0), before->molecule(1)); }),
                  c.failure.empty() ? "no failure" : c.failure);
        EXPECT_EQ(crystal.current()->natoms(), c.atoms);
        EXPECT_EQ(crystal.current()->nbonds(), c.bonds);
    }
}

// A crystal takes a molecule once: one with the atoms and centroid of one it holds is the same.
TEST(Crystal, MergeKeepsOneOfEachMolecule)
{
    const HCrystalMaker maker = atoms_in(cubic(3.61, "Fm-3m"), {{"Cu", {0, 0, 0}}, {"Cu", {0.5, 0.5, 0}}});
    Crystal crystal(*maker, Hvector_HMolecule());
    EXPECT_TRUE(crystal.merge(maker->molecule(0)));
    EXPECT_FALSE(crystal.merge(maker->molecule(0)->clone()));
    EXPECT_TRUE(crystal.merge(maker->molecule(1)));
    EXPECT_EQ(crystal.nmolecules(), 2);
}

// Observers hear of a change once, in the order they connected; nothing changed, nothing heard.
TEST(Crystal, ChangesReachObserversOnce)
{
    struct Listener : Observer {
        std::string* heard;
        char name;
        Listener(std::string* h, char n) : heard(h), name(n) {}
        void update(Subject&) override { *heard += name; }
    };
    std::string heard;
    Listener a(&heard, 'a'), b(&heard, 'b');
    NewCrystal crystal(atoms_in(cubic(3.35, "Pm-3m"), {{"Po", {0, 0, 0}}}));
    crystal.connect(&a);
    crystal.connect(&b);
    crystal.clear_changed();
    crystal.notify();
    crystal.set_packing(true);
    crystal.notify();
    crystal.notify();
    crystal.disconnect(&a);
    crystal.set_packing_condition(HSymmetryInclusionCondition(new IfAnyIncluded));
    crystal.notify();
    EXPECT_EQ(heard, "abb");
}

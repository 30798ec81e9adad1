#include "Bond3d.h"
#include "MoleculeSubset.h"
#include "MoleculeTestSupport.h"
#include "OrderedGraph.h"
#include "ToolkitTestSupport.h"

#include <map>
#include <set>

namespace {

std::vector<TestAtom> benzene()
{
    std::vector<TestAtom> atoms = ring_of({"C", "C", "C", "C", "C", "C"}, 1.39);
    for (TestAtom h : std::vector<TestAtom>(atoms)) {
        h.element = "H";
        h.position = h.position * ((h.position.length() + 1.08) / h.position.length());
        atoms.push_back(h);
    }
    return atoms;
}

// Two rings sharing their vertical edge at x = 0: n on the left and m on the right.
std::vector<TestAtom> fused(int n, int m, double edge)
{
    const double pi = std::acos(-1.0);
    const double half_n = pi / n, half_m = pi / m;
    const double apothem_n = edge / (2 * std::tan(half_n)), apothem_m = edge / (2 * std::tan(half_m));
    std::vector<TestAtom> atoms =
        ring_of(std::vector<std::string>(static_cast<std::size_t>(n), "C"), edge, {-apothem_n, 0, 0}, half_n);
    const std::vector<TestAtom> right = ring_of(std::vector<std::string>(static_cast<std::size_t>(m), "C"),
                                                edge, {apothem_m, 0, 0}, pi - half_m);
    atoms.insert(atoms.end(), right.begin() + 2, right.end()); // its first two are the shared pair
    return atoms;
}

std::vector<TestAtom> cubane()
{
    std::vector<TestAtom> atoms;
    for (int i = 0; i < 8; ++i) {
        const Vector3D corner((i & 1) ? 0.785 : -0.785, (i & 2) ? 0.785 : -0.785, (i & 4) ? 0.785 : -0.785);
        atoms.push_back({"C", corner});
        atoms.push_back({"H", corner * ((corner.length() + 1.09) / corner.length())});
    }
    return atoms;
}

std::vector<TestAtom> crown_ether()
{
    std::vector<std::string> elements;
    for (int i = 0; i < 6; ++i)
        elements.insert(elements.end(), {"O", "C", "C"});
    return ring_of(elements, 1.45);
}

std::map<int, int> counts(const std::vector<int>& sizes)
{
    std::map<int, int> out;
    for (int s : sizes)
        ++out[s];
    return out;
}

} // namespace

// The smallest ring through every atom and every bond of known molecules, the bond's reachability
// test agreeing with its ring search, and the bonds the detector finds.
TEST(MoleculeGraph, RingsOfKnownMolecules)
{
    struct Case {
        const char* name;
        std::vector<TestAtom> atoms;
        int bonds;
        std::map<int, int> atom_rings; // ring size: number of atoms
        std::map<int, int> bond_rings;
    };
    const std::vector<Case> cases = {
        {"benzene", benzene(), 12, {{0, 6}, {6, 6}}, {{0, 6}, {6, 6}}},
        {"naphthalene", fused(6, 6, 1.40), 11, {{6, 10}}, {{6, 11}}},
        // In a fused bicycle the shared edge belongs to the smaller ring.
        {"azulene", fused(5, 7, 1.40), 11, {{5, 5}, {7, 5}}, {{5, 5}, {7, 6}}},
        {"cubane", cubane(), 20, {{0, 8}, {4, 8}}, {{0, 8}, {4, 12}}},
        {"18-crown-6", crown_ether(), 18, {{18, 18}}, {{18, 18}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const THandle<Molecule3d> m = molecule_of(c.atoms);
        ASSERT_EQ(m->nbonds(), c.bonds);
        std::vector<int> atom_rings, bond_rings;
        for (int i = 0; i < m->natoms(); ++i) {
            atom_rings.push_back(m->ring_size(m->atom(i)));
            EXPECT_EQ(m->atom(i)->cyclic(), atom_rings.back() > 0);
        }
        for (int i = 0; i < m->nbonds(); ++i) {
            bond_rings.push_back(m->ring_size(m->bond(i)));
            EXPECT_EQ(m->bond(i)->cyclic(), bond_rings.back() > 0) << "bond " << i;
        }
        EXPECT_EQ(counts(atom_rings), c.atom_rings);
        EXPECT_EQ(counts(bond_rings), c.bond_rings);
    }
}

// The distance rule at its edges, the same from the grid, the plain loop and the atoms.
TEST(BondDetector, DistanceRuleAtItsEdges)
{
    const double ch_limit = Element::max_bond_distance(Element("C"), Element("H"));
    struct Case {
        const char* a;
        const char* b;
        double distance;
        bool bonded;
    };
    const std::vector<Case> cases = {
        {"C", "C", 0.54, false},           {"C", "C", 0.55, true},  {"C", "C", 1.54, true},
        {"H", "H", 0.74, false},           {"H", "D", 0.9, false},  {"C", "H", ch_limit, false},
        {"C", "H", ch_limit - 1e-9, true}, {"Bk", "C", 1.0, false}, {"Cu", "Cu", 2.6, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.a) + "-" + c.b + " at " + std::to_string(c.distance));
        const std::vector<Vector3D> positions = {{0, 0, 0}, {c.distance, 0, 0}};
        const std::vector<Element> elements = {Element(c.a), Element(c.b)};
        const BondDetector::Pairs expected = c.bonded ? BondDetector::Pairs{{0, 1}} : BondDetector::Pairs{};
        EXPECT_EQ(BondDetector::detect_all_pairs(positions, elements), expected);
        EXPECT_EQ(BondDetector::detect_positions(positions, elements), expected);
        EXPECT_EQ(molecule_of({{c.a, positions[0]}, {c.b, positions[1]}})->nbonds(), c.bonded ? 1 : 0);
    }
    // An atom without a site takes no part.
    const std::vector<HAtom> atoms = {HAtom(new Atom3d(Element("C"), "C1", HSite(new Site({0, 0, 0})))),
                                      HAtom(new Atom3d(Element("C"), "C2", HSite()))};
    EXPECT_TRUE(BondDetector().detect(atoms, Cell()).empty());
    EXPECT_EQ(failure_of([] { BondDetector(1); }), "BondDetector::Mode not implemented!");
}

// A three-membered ring stays when its angles are those of a ring, and loses its long edge when
// one angle is as wide as a bond angle: a fluoride bridging two lanthanum atoms at 115 degrees
// brings them within their bonding distance, 4.04 Angstroms, without a bond between them.
TEST(BondDetector, PruningOpensWideTriangles)
{
    const std::vector<std::pair<std::vector<TestAtom>, int>> cases = {
        {ring_of({"C", "C", "C"}, 1.51), 3},
        {{{"La", {-2.02, 0, 0}}, {"La", {2.02, 0, 0}}, {"F", {0, 1.29, 0}}}, 2},
    };
    for (const auto& [atoms, bonds] : cases)
        EXPECT_EQ(molecule_of(atoms)->nbonds(), bonds) << atoms[0].element;
}

// Edits of a molecule: hydrogens off, atoms merged once, sorting, and the failures of a
// read-only view.
TEST(MoleculeGraph, EditsKeepTheGraphWhole)
{
    // Diborane: the terminal hydrogens go, the two bridging ones stay.
    const THandle<Molecule3d> diborane = molecule_of({{"B", {0.885, 0, 0}},
                                                      {"B", {-0.885, 0, 0}},
                                                      {"H", {0, 0.99, 0}},
                                                      {"H", {0, -0.99, 0}},
                                                      {"H", {1.48, 0, 1.04}},
                                                      {"H", {1.48, 0, -1.04}},
                                                      {"H", {-1.48, 0, 1.04}},
                                                      {"H", {-1.48, 0, -1.04}}});
    diborane->remove_hydrogens();
    EXPECT_EQ(diborane->natoms(), 4);
    EXPECT_EQ(diborane->n_hydrogens(), 2);
    EXPECT_EQ(diborane->nbonds(), 5);

    // Merging a copy adds nothing; merging a shifted copy adds everything once.
    const THandle<Molecule3d> m = molecule_of(benzene());
    m->merge(*m->clone());
    EXPECT_EQ(std::make_pair(m->natoms(), m->nbonds()), std::make_pair(12, 12));
    const HMolecule shifted = m->clone();
    for (int i = 0; i < shifted->natoms(); ++i)
        shifted->atom(i)->site()->frac += Vector3D(0, 0, 5);
    m->merge(*shifted);
    EXPECT_EQ(std::make_pair(m->natoms(), m->nbonds()), std::make_pair(24, 24));

    m->sort_atoms();
    EXPECT_EQ(m->atom(0)->element().symbol(), std::string("H"));
    EXPECT_EQ(m->atom(23)->element().symbol(), std::string("C"));
    EXPECT_EQ(m->atom(23)->neighbours().size(), 3u);

    const HAtom removed = m->atom(23);
    m->remove(removed);
    EXPECT_EQ(failure_of([&] { removed->nbonds(); }), "AtomInGraph::nbonds cannot work when graph_ == 0");

    const HMolecule subset(new MoleculeSubset(m, {0, 1, 2}));
    for (const auto& [what, expected] : std::vector<std::pair<std::function<void()>, const char*>>{
             {[&] { subset->add(HAtom(new Atom3d)); }, "Molecule::add: this molecule can not be edited."},
             {[&] { subset->remove_atom(0); }, "Molecule::remove_atom: this molecule can not be edited."},
             {[&] { subset->merge(*m); }, "Molecule::merge: this molecule cannot be edited."},
             {[&] { subset->set_refcode("x"); },
              "Molecule::set_refcode: cannot change refcode of this molecule."},
             {[&] { subset->atom(0)->set_label("x"); }, "Atom::set_label Cannot modify this atom"},
             {[&] { m->add(HBond(new Bond3d), m->atom(0), m->atom(0)); },
              "MoleculeGraphImpl::add_edge(HBond, HAtom, HAtom) an atom cannot be bonded to itself"},
             {[&] { m->add(subset->atom(0)); },
              "MoleculeGraphImpl::add_node(HAtom) atom is already in another MoleculeGraphImpl object"},
             {[&] { m->bond(m->atom(0), m->atom(1)); },
              "Molecule::bond(HAtom, HAtom) no bond between atom1 and atom2 in this molecule"},
         })
        EXPECT_EQ(failure_of(what), expected);
    // The view outlives the atoms it shows, and says so.
    m->clear();
    EXPECT_EQ(failure_of([&] { subset->atom(0)->element(); }),
              "ProxyAtom::element - atom is no longer valid");
}

// The failures of the graph and of atoms and bonds in it, each with its text.
TEST(MoleculeGraph, FailuresCarryTheirTexts)
{
    Graph<int, int> g;
    g.add_edge(10, 1, 2);
    g.add_edge(11, 2, 3);
    OrderedGraph<int, int> ordered;
    IndexedTable<int> table;
    const THandle<Molecule3d> water =
        molecule_of({{"O", {0, 0, 0}}, {"H", {0.96, 0, 0}}, {"H", {-0.24, 0.93, 0}}});
    const HAtom loose(new Atom3d(Element("C"), "C", HSite()));
    std::set<int> ring;
    const std::vector<std::pair<std::function<void()>, std::string>> cases = {
        {[] { Edge<int, int>(1, 1, 0); }, "Edge::Edge - invalid edge: id1 equals id2"},
        {[&] { g.add_edge(10, 3, 4); }, "Graph::add_edge - duplicate edge identifier"},
        {[&] { g.add_edge(12, 2, 1); },
         "Graph::add_edge - attempt to add edge twice with different identifiers"},
        {[&] { g.edge_id(1, 3); }, "Graph::edge_id:  no edge between the two specified nodes"},
        {[&] { g.edge_node_id1(99); }, "Graph::edge_node_id1:  no edge with specified id"},
        {[&] { g.node_begin_neighbours(9); }, "Graph::node_begin_neighbours:  no node with specified id"},
        {[&] {
             g.nodes_to_edges({1, 9});
         },
         "Graph::nodes_to_edges:   at least one of the nodes does not exist in graph"},
        {[&] { g.nodes_one_side(1, 3); },
         "Graph::nodes_one_side(): no edge containing node1_id and node2_id"},
        {[&] { g.node2_smallest_ring(1, ring); },
         "Graph::node2_smallest_ring(Tn& root, std::set<Tn>& ring):root node does not have degree = 2"},
        {[&] { g.edge_smallest_ring(1, 3, ring); }, "Graph::edge_smallest_ring(Tn& node1_id, Tn& node2_id, "
                                                    "std::set<Tn>& ring):node1_id and node2_id are not "
                                                    "connected"},
        {[&] { g.angle_smallest_ring(1, 3, 2, ring); },
         "Graph::angle_smallest_ring(Tn& left, Tn& middle, Tn& right, std::set<Tn>& ring):nodes not "
         "connected in "
         "sequence left-middle-right"},
        {[&] { g.is_edge_cyclic(99); },
         "Graph::is_edge_cyclic(Te& edge_id, int* ringsize): specified edge does not exist"},
        {[&] { ordered.node_index(5); }, "OrderedGraph::node_index:  no node with the specified id"},
        {[&] { table.value(0); }, "IndexedTable::value Illegal index"},
        {[&] { table.index(7); }, "IndexedTable::index(Value): Unknown value."},
        {[&] { loose->nbonds(); }, "AtomInGraph::nbonds cannot work when graph_ == 0"},
        {[&] { dynamic_cast<AtomInGraph&>(*loose).set_graph(water.get(), HAtom()); },
         "AtomInGraph::set_graphgraph is non-zero: self cannot be zero"},
        {[&] { dynamic_cast<AtomInGraph&>(*loose).set_graph(water.get(), water->atom(0)); },
         "AtomInGraph::set_graphself does not point to this AtomInGraph object"},
        {[&] { water->bond(0)->other_atom(loose); }, "Bond::other_atom(HAtom) atom is not in this bond"},
        {[&] { water->bond(0)->set_type(static_cast<BondType>(10)); },
         "Bond3d::set_type: Illegal bond type."},
        {[&] { water->add(HAtom()); }, "MoleculeGraphImpl::add_node(HAtom) atom is a null pointer"},
        {[&] { water->has_bond(HBond()); }, "MoleculeGraphImpl::has_bond(HBond) bond is a null pointer"},
    };
    for (const auto& [what, expected] : cases)
        EXPECT_EQ(failure_of(what), expected);
    // A failed change leaves the graph as it was.
    EXPECT_EQ(g.edge_count(), 2);
    EXPECT_EQ(water->natoms(), 3);
}

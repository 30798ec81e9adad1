#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

// A chemical element as a one-byte code. Codes run in the order of a chemical formula: Unknown,
// C, H, then the other symbols alphabetically, with D and the pseudo-elements X, Z and Zz.
class Element {
public:
    static constexpr int count = 108;
    // Below this distance two atoms are never taken as bonded.
    static constexpr double min_bond_distance = 0.55;

    Element() = default;
    // Fails with "Element::Element: Illegal element code." outside 0 to 107.
    explicit Element(int code);
    // The first letter is upper-cased and the rest kept: "cl" is Cl, "CL" fails with
    // "Element::Element: Illegal element name: CL".
    explicit Element(const std::string& symbol);

    int8_t code() const { return code_; }
    const char* symbol() const;
    int atomic_number() const;
    double bond_radius() const;
    double vdw_radius() const;
    // Atomic volume in cubic Angstroms; 0 for an element whose volume the program does not know.
    double volume() const;
    double atomic_weight() const;
    // 1 to 18; 19 for the lanthanides and 20 for the actinides, as the source tables file them.
    int periodic_group() const;
    int period() const;
    // Cromer-Mann coefficient i of a1, b1, a2, b2, a3, b3, a4, b4, c.
    double cromer_mann(int i) const;
    // X-ray scattering factor at sin(theta)/lambda.
    double scattering_factor(double stol) const;
    bool is_nonmetal() const;

    // Van der Waals radii are preferences: the program may change them while it runs.
    static void set_vdw_radius(const Element& element, double radius);
    // The longest distance still taken as a bond: the two bonding radii and 0.45, or 0 when either
    // element never bonds.
    static double max_bond_distance(const Element& a, const Element& b);

    // Reads a stored code; fails with "Element::read: Illegal element code." outside the range.
    void read(std::istream& in);
    void write(std::ostream& out) const;

    bool operator==(const Element& o) const { return code_ == o.code_; }
    bool operator!=(const Element& o) const { return code_ != o.code_; }
    bool operator<(const Element& o) const { return code_ < o.code_; }

private:
    int8_t code_ = 0;
};

std::ostream& operator<<(std::ostream& out, const Element& e);

// Whether two characters can be an element symbol, compared without regard to case. Lenient on
// purpose: it accepts "LW", the old spelling of lawrencium that Element itself refuses.
bool is_element_symbol(const std::string& text);

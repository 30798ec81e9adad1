#pragma once

#include "ContactCriterion.h"

#include <iosfwd>
#include <string>
#include <vector>

class Atom;

// Hydrogen bonds: a hydrogen on a donor close to an acceptor, with a wide enough angle at the
// hydrogen, or, ignoring hydrogen positions, a donor atom close to an acceptor. Each atom is
// given a row of the donor table and of the acceptor table from its element and surroundings;
// a row whose flag is 0 takes no part.
class HBondCriterion : public ContactCriterion {
public:
    // A row of one of the two tables. Rows whose name begins "+" or "-" open and close a group
    // for display and have no flag of their own.
    class AtomTypeProperties {
    public:
        AtomTypeProperties(int index = -1, std::string name = "", int flag = 0)
            : index(index), name(std::move(name)), flag(flag)
        {
        }
        virtual ~AtomTypeProperties() = default;
        bool operator==(const AtomTypeProperties& o) const { return index == o.index && name == o.name; }
        // The row's name, or "unset" for none.
        void print(std::ostream& out) const;

        int index;
        std::string name;
        int flag;
    };
    class DonorAtomTypeProperties : public AtomTypeProperties {
    public:
        using AtomTypeProperties::AtomTypeProperties;
        bool operator==(const DonorAtomTypeProperties& o) const
        {
            return AtomTypeProperties::operator==(o) && flag == o.flag;
        }
    };
    class AcceptorAtomTypeProperties : public AtomTypeProperties {
    public:
        using AtomTypeProperties::AtomTypeProperties;
        bool operator==(const AcceptorAtomTypeProperties& o) const
        {
            return AtomTypeProperties::operator==(o) && flag == o.flag;
        }
    };

    // Roles of an atom, as bits.
    enum Role { DonorHydrogen = 1, Acceptor = 2, DonorAtom = 4 };
    // Rows every atom that fits none of the others falls to.
    static constexpr int not_donor = 20;
    static constexpr int non_acceptor = 42;

    // The angle is taken in degrees when `degrees` is set.
    HBondCriterion(double tolerance = 0.0, double min_angle = 120.0, bool degrees = true,
                   bool vdw_corrected = true, bool no_hydrogens = false, int type = Inter);

    std::string name() const override { return "HBondCriterion"; }
    double max_distance(const ContactScope& scope) const override;
    bool contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                 double& strength) const override;
    std::vector<int> active_atoms(const ContactSide& side) const override;
    void prepare(ContactSide& side) const override;

    // The rows an atom of a placed molecule falls in.
    int donor_row(const ContactSide& side, int atom) const;
    int acceptor_row(const ContactSide& side, int atom) const;
    // The roles of every atom of a placed molecule.
    std::vector<int> roles(const ContactSide& side) const;

    std::vector<DonorAtomTypeProperties>& donors() { return donors_; }
    std::vector<AcceptorAtomTypeProperties>& acceptors() { return acceptors_; }
    const std::vector<DonorAtomTypeProperties>& donors() const { return donors_; }
    const std::vector<AcceptorAtomTypeProperties>& acceptors() const { return acceptors_; }
    // The tables as the program starts with them.
    static const std::vector<DonorAtomTypeProperties>& donor_table();
    static const std::vector<AcceptorAtomTypeProperties>& acceptor_table();

    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    void print(std::ostream& out) const override;
    bool operator==(const ContactCriterion& other) const override;
    HContactCriterion clone() const override { return HContactCriterion(new HBondCriterion(*this)); }

private:
    std::vector<DonorAtomTypeProperties> donors_;
    std::vector<AcceptorAtomTypeProperties> acceptors_;
    double tolerance_;
    double min_angle_; // radians
    bool vdw_corrected_;
    bool no_hydrogens_;
};

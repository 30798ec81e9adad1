#pragma once

#include "ContactSide.h"
#include "THandle.h"

#include <iosfwd>
#include <string>
#include <vector>

class Archive;
class ContactCriterion;
using HContactCriterion = THandle<ContactCriterion>;

// What makes two atoms a contact worth showing: between molecules (INTER), inside one (INTRA,
// with bounds on the bond path between the atoms), or both. A criterion may be switched off
// without being forgotten.
class ContactCriterion {
public:
    enum Type { Inter = 1, Intra = 2, Both = 3 };

    explicit ContactCriterion(int type = Inter, int min_path = 0, int max_path = 0, bool active = true)
        : type_(type), min_path_(min_path), max_path_(max_path), active_(active)
    {
    }
    virtual ~ContactCriterion() = default;

    // The word, then the fields; a criterion is read back by its word.
    virtual void write(Archive& archive) const;
    virtual void read(Archive& archive);
    virtual std::string name() const { return "ContactCriterion"; }
    // No contact of this criterion is longer.
    virtual double max_distance(const ContactScope& scope) const = 0;
    // Whether atom i of one side and atom j of the other, `distance` apart, are a contact, and
    // its strength.
    virtual bool contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                         double& strength) const = 0;
    // The atoms of a molecule that can stand at the near end of a contact, and at the far end.
    virtual std::vector<int> active_atoms(const ContactSide& side) const;
    virtual std::vector<int> active_atoms_other(const ContactSide& side) const;
    // Works out what the criterion needs of a side before its atoms are tested.
    virtual void prepare(ContactSide&) const {}

    int type() const { return type_; }
    void set_type(int type) { type_ = type; }
    bool type_match(bool same_molecule) const;
    bool path_match(int path) const { return path >= min_path_ && path <= max_path_; }
    void set_paths(int min_path, int max_path)
    {
        min_path_ = min_path;
        max_path_ = max_path;
    }
    int min_path() const { return min_path_; }
    int max_path() const { return max_path_; }
    // "type: ", the kind, ", min bond path: " and ", max bond path: ".
    virtual void print(std::ostream& out) const;
    bool is_active() const { return active_; }
    void set_active(bool active) { active_ = active; }
    virtual bool operator==(const ContactCriterion& other) const;
    virtual HContactCriterion clone() const = 0;

    // Reads a criterion stored by write; an unknown word fails with "Unrecognised contact
    // definition: " and the word.
    static HContactCriterion read_criterion(Archive& archive);

private:
    int type_;
    int min_path_;
    int max_path_;
    bool active_;
};

std::ostream& operator<<(std::ostream& out, const ContactCriterion& criterion);

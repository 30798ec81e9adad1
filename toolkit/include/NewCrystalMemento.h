#pragma once

#include "Box.h"
#include "ContactCriterion.h"
#include "CrystalMaker.h"
#include "Plane.h"
#include "SymmMap.h"

#include <string>
#include <tuple>
#include <vector>

class Archive;
class NewCrystal;

// Everything a NewCrystal needs to rebuild itself, copied so that later edits do not reach it:
// the undo of a view restores one, and an archive stores one. The stored form starts with its
// version; another version is refused.
class NewCrystalMemento {
public:
    static constexpr int32_t version = 1;

    NewCrystalMemento() = default;
    explicit NewCrystalMemento(const NewCrystal& crystal);

    void restore(NewCrystal& crystal) const;
    void write(Archive& archive) const;
    // An older version fails with "NewCrystalMemento::read - Use a VersionedArchive object to read
    // old formats", any other with "NewCrystalMemento::read - format version mismatch"; a damaged
    // archive leaves the memento as it was.
    void read(Archive& archive);

private:
    struct SavedContact {
        SymmMap from_map;
        int32_t from_atom;
        SymmMap to_map;
        int32_t to_atom;
        int32_t criterion;
        bool active;
        bool strength_set;
        double strength;
    };

    void build_contacts(const NewCrystal& crystal);

    HCrystalMaker crystal_maker_;
    bool packing_ = false;
    Box box_;
    std::string packing_condition_ = "IfCentroidIncluded";
    bool slicing_ = false;
    Plane plane_;
    double thickness_ = 1.0;
    double displacement_ = 0.0;
    std::string slicing_condition_ = "IfAnyIncluded";
    std::vector<HContactCriterion> criteria_;
    std::vector<SavedContact> contacts_;
    std::vector<SymmMap> expansions_;
    std::vector<std::tuple<int32_t, int64_t, int64_t, int64_t>> deleted_;
};

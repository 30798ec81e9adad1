#include "NewCrystalMemento.h"

#include "Archive.h"
#include "Logger.h"
#include "MoleculeError.h"
#include "NewCrystal.h"
#include "NewCrystalPrivate.h"

#include <algorithm>
#include <cmath>
#include <sstream>

NewCrystalMemento::NewCrystalMemento(const NewCrystal& crystal)
{
    const NewCrystalPrivate& d = *crystal.d_;
    crystal_maker_ = d.crystal_maker->deep_copy();
    packing_ = d.packing;
    box_ = d.box;
    packing_condition_ = d.packing_condition->name();
    slicing_ = d.slicing;
    plane_ = d.plane;
    thickness_ = d.thickness;
    displacement_ = d.displacement;
    slicing_condition_ = d.slicing_condition->name();
    for (const HContactCriterion& c : d.criteria)
        criteria_.push_back(c->clone());
    expansions_ = d.expansions;
    for (const auto& [id, x, y, z] : d.deleted)
        deleted_.emplace_back(id, x, y, z);
    build_contacts(crystal);
}

void NewCrystalMemento::build_contacts(const NewCrystal& crystal)
{
    const NewCrystalPrivate& d = *crystal.d_;
    const int molecules = crystal_maker_->nmolecules();
    for (const HMolecularContact& c : d.contacts) {
        const bool from_found = c->from_map.id >= 0 && c->from_map.id < molecules;
        const bool to_found = c->symmmap.id >= 0 && c->symmmap.id < molecules;
        const auto criterion = std::find(d.criteria.begin(), d.criteria.end(), c->criterion);
        if (!from_found || !to_found || criterion == d.criteria.end()) {
            if (!from_found)
                logDebug(1, "Could not find 'from' molecule");
            if (!to_found)
                logDebug(1, "Could not find 'to' molecule");
            std::ostringstream text;
            c->print(text);
            logError("Assumption failure in: NewCrystalMemento::build_contacts - cannot save contact: %s",
                     text.str().c_str());
            continue;
        }
        contacts_.push_back({c->from_map, c->from_atom, c->symmmap, c->to_atom,
                             static_cast<int32_t>(criterion - d.criteria.begin()), c->active,
                             c->strength_set(), c->strength_set() ? c->strength() : 0.0});
    }
}

void NewCrystalMemento::restore(NewCrystal& crystal) const
{
    NewCrystalPrivate& d = *crystal.d_;
    d.set_maker(crystal_maker_ ? crystal_maker_->deep_copy() : HCrystalMaker());
    d.packing = packing_;
    d.box = box_;
    d.packing_condition = SymmetryInclusionCondition::by_name(packing_condition_);
    d.slicing = slicing_;
    d.plane = plane_;
    d.thickness = thickness_;
    d.displacement = displacement_;
    d.slicing_condition = SymmetryInclusionCondition::by_name(slicing_condition_);
    d.criteria.clear();
    for (const HContactCriterion& c : criteria_)
        d.criteria.push_back(c->clone());
    for (const SavedContact& s : contacts_) {
        HMolecularContact c(new MolecularContact);
        c->from_map = s.from_map;
        c->from_atom = s.from_atom;
        c->symmmap = s.to_map;
        c->to_atom = s.to_atom;
        c->criterion = d.criteria[static_cast<std::size_t>(s.criterion)];
        c->active = s.active;
        if (s.strength_set)
            c->set_strength(s.strength);
        d.contacts.push_back(c);
    }
    d.expansions = expansions_;
    for (const auto& [id, x, y, z] : deleted_)
        d.deleted.emplace(id, x, y, z);
    d.invalidate_from(0);
}

namespace {

void write_map(Archive& archive, const SymmMap& map)
{
    map.write(archive);
}

SymmMap read_map(Archive& archive)
{
    SymmMap map;
    map.read(archive);
    return map;
}

// A map read from an archive must name an operator of the cell.
void check_map(const SymmMap& map, const CrystalMaker& maker)
{
    if (map.op < 0 || map.op >= std::max(maker.nsymmops(), 1) || map.id < 0 || map.id >= maker.nmolecules())
        throw molecule_error("NewCrystalMemento::read - a symmetry map names nothing in the crystal");
}

// A count read from an archive: below zero is damage.
int32_t read_count(Archive& archive, const char* what)
{
    const int32_t n = archive.read_int32();
    if (n < 0)
        throw molecule_error(std::string("NewCrystalMemento::read - bad ") + what +
                             " count: " + std::to_string(n));
    return n;
}

} // namespace

void NewCrystalMemento::write(Archive& archive) const
{
    archive.write_int32(version);
    const CrystalMaker empty;
    (crystal_maker_ ? *crystal_maker_ : empty).write(archive);
    archive.write_bool(packing_);
    box_.write(archive);
    archive.write_string(packing_condition_);
    archive.write_bool(slicing_);
    plane_.write(archive);
    archive.write_double(thickness_);
    archive.write_double(displacement_);
    archive.write_string(slicing_condition_);
    archive.write_int32(static_cast<int32_t>(criteria_.size()));
    for (const HContactCriterion& c : criteria_)
        c->write(archive);
    archive.write_int32(static_cast<int32_t>(contacts_.size()));
    for (const SavedContact& c : contacts_) {
        write_map(archive, c.from_map);
        archive.write_int32(c.from_atom);
        write_map(archive, c.to_map);
        archive.write_int32(c.to_atom);
        archive.write_int32(c.criterion);
        archive.write_bool(c.active);
        archive.write_bool(c.strength_set);
        archive.write_double(c.strength);
    }
    archive.write_int32(static_cast<int32_t>(expansions_.size()));
    for (const SymmMap& m : expansions_)
        write_map(archive, m);
    archive.write_int32(static_cast<int32_t>(deleted_.size()));
    for (const auto& [id, x, y, z] : deleted_) {
        archive.write_int32(id);
        for (const int64_t v : {x, y, z})
            archive.write_double(static_cast<double>(v));
    }
}

void NewCrystalMemento::read(Archive& archive)
{
    const int32_t stored = archive.read_int32();
    if (stored >= 0 && stored < version)
        throw molecule_error("NewCrystalMemento::read - Use a VersionedArchive object to read old formats");
    if (stored != version)
        throw molecule_error("NewCrystalMemento::read - format version mismatch");
    NewCrystalMemento m;
    m.crystal_maker_ = HCrystalMaker(new CrystalMaker);
    m.crystal_maker_->read(archive);
    m.packing_ = archive.read_bool();
    m.box_.read(archive);
    m.packing_condition_ = archive.read_string();
    m.slicing_ = archive.read_bool();
    m.plane_.read(archive);
    m.thickness_ = archive.read_double();
    m.displacement_ = archive.read_double();
    m.slicing_condition_ = archive.read_string();
    if (!SymmetryInclusionCondition::by_name(m.packing_condition_) ||
        !SymmetryInclusionCondition::by_name(m.slicing_condition_))
        throw molecule_error("NewCrystalMemento::read - unknown inclusion condition");
    for (int32_t n = read_count(archive, "criterion"), k = 0; k < n; ++k)
        m.criteria_.push_back(ContactCriterion::read_criterion(archive));
    for (int32_t n = read_count(archive, "contact"), k = 0; k < n; ++k) {
        SavedContact c{};
        c.from_map = read_map(archive);
        c.from_atom = archive.read_int32();
        c.to_map = read_map(archive);
        c.to_atom = archive.read_int32();
        c.criterion = archive.read_int32();
        c.active = archive.read_bool();
        c.strength_set = archive.read_bool();
        c.strength = archive.read_double();
        check_map(c.from_map, *m.crystal_maker_);
        check_map(c.to_map, *m.crystal_maker_);
        const auto atoms_of = [&](int id) { return m.crystal_maker_->molecule(id)->natoms(); };
        if (c.criterion < 0 || c.criterion >= static_cast<int32_t>(m.criteria_.size()) || c.from_atom < 0 ||
            c.from_atom >= atoms_of(c.from_map.id) || c.to_atom < 0 || c.to_atom >= atoms_of(c.to_map.id))
            throw molecule_error("NewCrystalMemento::read - a contact names nothing in the crystal");
        m.contacts_.push_back(c);
    }
    for (int32_t n = read_count(archive, "expansion"), k = 0; k < n; ++k) {
        m.expansions_.push_back(read_map(archive));
        check_map(m.expansions_.back(), *m.crystal_maker_);
    }
    for (int32_t n = read_count(archive, "deleted molecule"), k = 0; k < n; ++k) {
        const int32_t id = archive.read_int32();
        int64_t v[3];
        for (int64_t& x : v) {
            const double stored_value = archive.read_double();
            if (!(std::fabs(stored_value) < 1e15))
                throw molecule_error(
                    "NewCrystalMemento::read - a deleted molecule names nothing in the crystal");
            x = static_cast<int64_t>(stored_value);
        }
        m.deleted_.emplace_back(id, v[0], v[1], v[2]);
    }
    *this = m;
}

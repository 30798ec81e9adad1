#include "Spacegroup.h"

#include "Archive.h"
#include "MoleculeError.h"
#include "SpacegroupTable.h"

#include <algorithm>
#include <cctype>
#include <ostream>

namespace {

struct RowOperators {
    std::vector<SymmOp> ops;
    std::vector<SymmOp> sorted;
};

// Built once per process: the master operators, then each row's full list, ready sorted for the
// lookup by operators.
const std::vector<RowOperators>& all_row_operators()
{
    static const std::vector<RowOperators> rows = [] {
        std::vector<SymmOp> master;
        for (std::size_t i = 0; i < SpacegroupTable::master_size(); ++i) {
            const MasterOperator& m = SpacegroupTable::master()[i];
            Matrix rot(3, 3);
            for (int k = 0; k < 9; ++k)
                rot(k / 3, k % 3) = m.rotation[k];
            const Vector3D t(m.translation_twelfths[0] / 12.0, m.translation_twelfths[1] / 12.0,
                             m.translation_twelfths[2] / 12.0);
            master.emplace_back(Transformation(rot, t));
        }
        Transformation inversion;
        for (int k = 0; k < 3; ++k)
            inversion(k, k) = -1.0;
        std::vector<RowOperators> out(SpacegroupTable::size());
        for (std::size_t r = 0; r < SpacegroupTable::size(); ++r) {
            const SpacegroupRow& row = SpacegroupTable::rows()[r];
            auto& ops = out[r].ops;
            for (int k = 0; k < row.stored_operators; ++k)
                ops.push_back(master[SpacegroupTable::indices()[row.first_index + k]]);
            if (Spacegroup::is_centrosymmetric(row.number))
                for (int k = 0; k < row.stored_operators; ++k)
                    ops.emplace_back(inversion * ops[k]);
            out[r].sorted = ops;
            std::sort(out[r].sorted.begin(), out[r].sorted.end());
        }
        return out;
    }();
    return rows;
}

int32_t find_row_by_name(const std::string& name)
{
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r)
        if (name == SpacegroupTable::rows()[r].name)
            return static_cast<int32_t>(r);
    return -1;
}

std::string lower(std::string s)
{
    for (char& c : s)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

const char* find_name_ignoring_case(const std::string& name)
{
    const std::string wanted = lower(name);
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r)
        if (wanted == lower(SpacegroupTable::rows()[r].name))
            return SpacegroupTable::rows()[r].name;
    return nullptr;
}

bool is_separator(char c)
{
    return c == ' ' || c == '_' || c == ':';
}

const std::shared_ptr<const std::vector<SymmOp>>& no_operators()
{
    static const auto empty = std::make_shared<const std::vector<SymmOp>>();
    return empty;
}

} // namespace

Spacegroup::Spacegroup() : symmops_(no_operators())
{
}

Spacegroup::Spacegroup(const std::string& name, int32_t setting) : symmops_(no_operators())
{
    const std::string canonical = canonical_name(name);
    int32_t row = find_row_by_name(canonical);
    if (row >= 0 && setting != -1) {
        const int32_t number = SpacegroupTable::rows()[row].number;
        row = -1;
        for (std::size_t r = 0; r < SpacegroupTable::size(); ++r)
            if (SpacegroupTable::rows()[r].number == number &&
                SpacegroupTable::rows()[r].setting == setting) {
                row = static_cast<int32_t>(r);
                break;
            }
    }
    if (row < 0)
        throw molecule_error("Spacegroup::Spacegroup: Unknown space group name/setting combination: " + name +
                             " " + std::to_string(setting));
    take_row(row);
}

Spacegroup::Spacegroup(int32_t number, int32_t setting)
    : number_(number), setting_(setting), symmops_(no_operators())
{
    if (number == 0)
        return;
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r)
        if (SpacegroupTable::rows()[r].number == number && SpacegroupTable::rows()[r].setting == setting) {
            take_row(static_cast<int32_t>(r));
            return;
        }
}

Spacegroup::Spacegroup(const std::vector<SymmOp>& symmops, int32_t number, const std::string& name)
    : symmops_(std::make_shared<const std::vector<SymmOp>>(symmops))
{
    std::vector<SymmOp> given = symmops;
    std::sort(given.begin(), given.end());
    const auto& rows = all_row_operators();
    const std::string wanted_name = name.empty() ? name : canonical_name(name);
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r) {
        const SpacegroupRow& row = SpacegroupTable::rows()[r];
        if (number != 0 && number != row.number)
            continue;
        if (!wanted_name.empty() && wanted_name != row.name)
            continue;
        const std::size_t min_nops = row.stored_operators;
        const std::size_t max_nops = is_centrosymmetric(row.number) ? 2 * min_nops : min_nops;
        if (given.size() != min_nops && given.size() != max_nops)
            continue;
        const auto& built = rows[r].sorted;
        if (built.size() != given.size())
            continue;
        if (std::equal(given.begin(), given.end(), built.begin(),
                       [](const SymmOp& a, const SymmOp& b) { return a.equivalent(b); })) {
            number_ = row.number;
            name_ = row.name;
            setting_ = row.setting;
            row_ = static_cast<int32_t>(r);
            return;
        }
    }
}

namespace {

// The table's rows live for the whole process, so a group shares a row's list without owning it.
std::shared_ptr<const std::vector<SymmOp>> shared_row_symmops(int32_t row)
{
    return std::shared_ptr<const std::vector<SymmOp>>(std::shared_ptr<void>(), &Spacegroup::row_symmops(row));
}

} // namespace

void Spacegroup::take_row(int32_t row)
{
    const SpacegroupRow& r = SpacegroupTable::rows()[row];
    number_ = r.number;
    name_ = r.name;
    setting_ = r.setting;
    row_ = row;
    symmops_ = shared_row_symmops(row);
}

const std::vector<SymmOp>& Spacegroup::row_symmops(int32_t row)
{
    return all_row_operators().at(static_cast<std::size_t>(row)).ops;
}

std::string Spacegroup::canonical_name(const std::string& text)
{
    std::string joined;
    for (char c : text)
        if (!is_separator(c))
            joined += c;
    if (find_row_by_name(joined) >= 0)
        return joined;

    std::vector<std::string> words;
    std::string word;
    for (char c : text) {
        if (is_separator(c)) {
            if (!word.empty())
                words.push_back(word);
            word.clear();
        } else {
            word += c;
        }
    }
    if (!word.empty())
        words.push_back(word);
    std::string short_form;
    for (std::size_t i = 0; i < words.size(); ++i)
        if (i != 1 && i != 3)
            short_form += words[i];
    if (find_row_by_name(short_form) >= 0)
        return short_form;

    for (const std::string& candidate : {joined, short_form})
        if (const char* found = find_name_ignoring_case(candidate))
            return found;

    std::string stripped;
    for (char c : text)
        if (c != '~' && c != '(' && c != ')' && c != ' ')
            stripped += c;
    if (stripped.size() > 3 && stripped[1] == '1' && stripped.back() == '1') {
        stripped.pop_back();
        stripped.erase(1, 1);
        return stripped;
    }
    return "Unknown";
}

bool Spacegroup::is_centrosymmetric(int32_t number)
{
    static const int32_t ranges[][2] = {{2, 2},     {10, 15},   {47, 74},   {83, 88},
                                        {123, 142}, {147, 148}, {162, 167}, {175, 176},
                                        {191, 194}, {200, 206}, {221, 230}};
    for (const auto& range : ranges)
        if (number >= range[0] && number <= range[1])
            return true;
    return false;
}

void Spacegroup::print(std::ostream& out) const
{
    out << "symmop " << name_ << ", number: " << number_ << ", setting: " << setting_
        << ", nsymmops: " << nsymmops();
}

bool Spacegroup::operator==(const Spacegroup& o) const
{
    if (number_ != o.number_ || setting_ != o.setting_ || name_ != o.name_ || nsymmops() != o.nsymmops())
        return false;
    for (int i = 0; i < nsymmops(); ++i)
        if (!symmop(i).equivalent(o.symmop(i)))
            return false;
    return true;
}

std::ostream& operator<<(std::ostream& out, const Spacegroup& g)
{
    g.print(out);
    return out;
}

void Spacegroup::write(Archive& archive) const
{
    archive.write_int32(number_);
    archive.write_string(name_);
    archive.write_int32(setting_);
    archive.write_int32(row_);
    archive.write_int32(nsymmops());
    for (const SymmOp& op : symmops())
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 4; ++c)
                archive.write_double(op(r, c));
}

void Spacegroup::read(Archive& archive)
{
    const int32_t number = archive.read_int32();
    std::string name = archive.read_string();
    const int32_t setting = archive.read_int32();
    const int32_t row = archive.read_int32();
    const int32_t count = archive.read_int32();
    if (row < -1 || row >= static_cast<int32_t>(SpacegroupTable::size()))
        throw molecule_error("Spacegroup::read - bad table row: " + std::to_string(row));
    if (count < 0)
        throw molecule_error("Spacegroup::read - bad operator count: " + std::to_string(count));
    // No reserve: a damaged count must run into the end of the data, not into memory.
    std::vector<SymmOp> ops;
    for (int32_t i = 0; i < count; ++i) {
        SymmOp op;
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 4; ++c)
                op(r, c) = archive.read_double();
        ops.push_back(op);
    }
    number_ = number;
    name_ = std::move(name);
    setting_ = setting;
    row_ = row;
    if (row >= 0 && ops == row_symmops(row))
        symmops_ = shared_row_symmops(row);
    else
        symmops_ = std::make_shared<const std::vector<SymmOp>>(std::move(ops));
}

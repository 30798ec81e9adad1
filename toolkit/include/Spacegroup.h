#pragma once

#include "SymmOp.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

class Archive;

// A space group: name, number, setting and operators, found in the compiled-in table by name,
// by number or by its operators. A value type; the operator list is shared between copies.
class Spacegroup {
public:
    // All fields unset: number, setting and row -1, name "Unknown", no operators.
    Spacegroup();
    // By name; setting -1 takes the first row of that name. An unknown name, or a setting its
    // number lacks, fails with "Spacegroup::Spacegroup: Unknown space group name/setting
    // combination:".
    explicit Spacegroup(const std::string& name, int32_t setting = -1);
    // By number and setting; no such row leaves the name "Unknown" and no operators.
    Spacegroup(int32_t number, int32_t setting);
    // By operators: the first row, restricted to number and name when given (0 and "" mean
    // any), whose operators equal these up to lattice translations. The group keeps the given
    // operators, in their order, whether or not a row is found.
    explicit Spacegroup(const std::vector<SymmOp>& symmops, int32_t number = 0, const std::string& name = "");

    const std::string& name() const { return name_; }
    int32_t number() const { return number_; }
    int32_t setting() const { return setting_; }
    int32_t row() const { return row_; }
    int nsymmops() const { return static_cast<int>(symmops_->size()); }
    const SymmOp& symmop(int i) const { return (*symmops_)[i]; }
    const std::vector<SymmOp>& symmops() const { return *symmops_; }

    void print(std::ostream& out) const;
    // Number, name, setting, row, then each operator's twelve numbers. Reading takes the table's
    // shared list back when the stored operators are the row's own.
    void write(Archive& archive) const;
    void read(Archive& archive);
    bool operator==(const Spacegroup& other) const;
    bool operator!=(const Spacegroup& other) const { return !(*this == other); }

    // The table's own spelling of a symbol: "P 1 21/c 1", " P 21/c " and "P_21/c" give "P21/c".
    // May give a name that is no row's ("P1211" gives "P21"), or "Unknown".
    static std::string canonical_name(const std::string& text);
    static bool is_centrosymmetric(int32_t number);
    // The full operator list of a table row: the stored operators and, for a centrosymmetric
    // number, their images under the inversion at the origin.
    static const std::vector<SymmOp>& row_symmops(int32_t row);

private:
    void take_row(int32_t row);

    int32_t number_ = -1;
    std::string name_ = "Unknown";
    int32_t setting_ = -1;
    int32_t row_ = -1;
    std::shared_ptr<const std::vector<SymmOp>> symmops_;
};

std::ostream& operator<<(std::ostream& out, const Spacegroup& g);

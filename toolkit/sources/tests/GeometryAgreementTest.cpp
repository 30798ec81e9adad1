#include "Cif.h"
#include "CifCell.h"
#include "CifConcreteDictionary.h"
#include "Measurement.h"
#include "MoleculeError.h"
#include "Plane.h"
#include "UncertainValue.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

// "2_655": the second operator of the file's list, moved by (+1, 0, 0); "." the atom as listed.
// Nothing for a code of another form.
std::optional<SymmOp> operator_of(const std::string& code, const std::vector<SymmOp>& ops)
{
    if (code == "." || code == "?" || code == "1_555" || code == "1")
        return SymmOp();
    const std::size_t bar = code.find('_');
    const std::string number = code.substr(0, bar);
    if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    const std::size_t n = std::stoul(number);
    if (n < 1 || n > ops.size())
        return std::nullopt;
    SymmOp op = ops[n - 1];
    if (bar != std::string::npos) {
        const std::string shift = code.substr(bar + 1);
        if (shift.size() != 3 || shift.find_first_not_of("0123456789") != std::string::npos)
            return std::nullopt;
        op.set_trans(op.trans() + Vector3D(shift[0] - '5', shift[1] - '5', shift[2] - '5'));
    }
    return op;
}

struct Agreement {
    int compared = 0;
    std::set<std::string> outside; // blocks with a value further from the file's than allowed
    std::string last_outside;
    int uncertainty_close = 0; // uncertainties within a factor of two of the file's
    int with_uncertainty = 0;
};

// Works out every row of one geometry loop (2 labels for bonds, 3 for angles, 4 for torsions)
// and compares it with the file's value.
void compare_loop(const CifDataBlock& block, const Cell& cell, const Cell& rounded_cell,
                  const std::vector<SymmOp>& ops, const std::map<std::string, std::pair<Site, Site>>& sites,
                  const std::string& category, const std::string& value_name, int count, Agreement& agreement)
{
    const HCifDataItem values = block.item(value_name);
    if (!values)
        return;
    std::vector<HCifDataItem> labels, codes;
    for (int i = 1; i <= count; ++i) {
        labels.push_back(block.item(category + "_atom_site_label_" + std::to_string(i)));
        codes.push_back(block.item(category + "_site_symmetry_" + std::to_string(i)));
    }
    for (std::size_t row = 0; row < values->value_count(); ++row) {
        const std::optional<UncertainValue> given = UncertainValue::parse(values->value(row));
        if (!given)
            continue;
        std::vector<Measurement::Point> points, rounded;
        for (int i = 0; i < count && labels[i]; ++i) {
            const auto site = sites.find(labels[i]->value(row));
            const std::optional<SymmOp> op =
                operator_of(codes[i] ? codes[i]->value(row) : std::string("."), ops);
            if (site == sites.end() || !op)
                break;
            points.push_back({&site->second.first, *op});
            rounded.push_back({&site->second.second, *op});
        }
        if (static_cast<int>(points.size()) != count)
            continue;
        const Measurement measured(cell, points);
        const Measurement rounding(rounded_cell, rounded);
        const double unit = std::pow(10.0, -std::min(given->precision, 6));
        const double file_sigma = given->has_precision() ? given->uncertainty * unit : 0.0;
        // The file's value came from unrounded coordinates, ours from the ones it lists, rounded
        // to their last digit: the difference is what that rounding carries through (found as an
        // uncertainty of a twelfth of a unit squared on each coordinate), or the file's own
        // uncertainty where the geometry is too flat for the rounding to show at first order
        // (angles near 0 or 180 degrees), and half a unit of the value's last digit. A torsion
        // near 180 degrees may be written with either sign.
        double difference = std::fabs(measured.value() - given->value);
        if (count == 4)
            difference = std::min(difference, std::fabs(360.0 - difference));
        ++agreement.compared;
        if (difference > 3 * std::max(file_sigma, rounding.uncertainty()) + 0.5 * unit) {
            std::ostringstream what;
            what << block.name() << ' ' << value_name << " row " << row + 1 << ": " << measured.value()
                 << " against " << values->value(row);
            agreement.outside.insert(block.name());
            agreement.last_outside = what.str();
        }
        if (file_sigma > 0) {
            ++agreement.with_uncertainty;
            if (measured.uncertainty() > file_sigma / 2 - unit &&
                measured.uncertainty() < 2 * file_sigma + unit)
                ++agreement.uncertainty_close;
        }
    }
}

std::string failure_text(const std::function<void()>& f)
{
    try {
        f();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "no failure";
}

} // namespace

// Every distance, angle and torsion that the corpus files list in their geometry loops, worked
// out again from their cells, operators and atom sites: the values must agree within the files'
// uncertainties, and the uncertainties, propagated without the refinement's covariances, must
// mostly come within a factor of two of theirs.
TEST(GeometryAgreement, CorpusGeometryLoops)
{
    const std::string corpus = std::string(CIFWARD_SHARED_DIR) + "/corpus";
    if (!fs::exists(corpus))
        GTEST_SKIP() << "no corpus at " << corpus;
    Agreement bonds, angles, torsions;
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(corpus)) {
        if (entry.path().extension() != ".cif")
            continue;
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (text.find("_geom_bond_distance") == std::string::npos)
            continue;
        std::istringstream stream(text);
        Cif cif{HCifDictionary(new CifConcreteDictionary)};
        cif.read(stream);
        for (std::size_t b = 0; b < cif.block_count(); ++b) {
            const CifDataBlock& block = cif.block(b);
            const HCifDataItem label = block.item("_atom_site_label");
            const HCifDataItem x = block.item("_atom_site_fract_x"), y = block.item("_atom_site_fract_y"),
                               z = block.item("_atom_site_fract_z");
            const HCifDataItem symops = CifCell::symmetry_items(block).symops;
            if (!label || !x || !y || !z || !symops || !block.item("_geom_bond_distance"))
                continue;
            Cell cell;
            std::vector<SymmOp> ops;
            try {
                cell = CifCell::cell(block);
                for (std::size_t row = 0; row < symops->value_count(); ++row)
                    ops.emplace_back(symops->value(row));
            } catch (const std::exception&) {
                continue;
            }
            if (!cell.valid())
                continue;
            // Each site twice: with the uncertainties the file gives, and with those its rounding gives.
            std::map<std::string, std::pair<Site, Site>> sites;
            for (std::size_t row = 0; row < label->value_count(); ++row) {
                const auto fx = UncertainValue::parse(x->value(row)),
                           fy = UncertainValue::parse(y->value(row)),
                           fz = UncertainValue::parse(z->value(row));
                if (!fx || !fy || !fz)
                    continue;
                auto sigma = [](const UncertainValue& v) {
                    return v.has_precision() ? v.uncertainty * std::pow(10.0, -v.precision) : 0.0;
                };
                auto rounding = [](const UncertainValue& v) {
                    return std::pow(10.0, -std::min(v.precision, 8)) / std::sqrt(12.0);
                };
                const Vector3D frac(fx->value, fy->value, fz->value);
                sites[label->value(row)] = {Site(frac, {sigma(*fx), sigma(*fy), sigma(*fz)}),
                                            Site(frac, {rounding(*fx), rounding(*fy), rounding(*fz)})};
            }
            const Cell rounded_cell(cell.a().value, cell.b().value, cell.c().value, cell.alpha().value,
                                    cell.beta().value, cell.gamma().value, false);
            ++files;
            compare_loop(block, cell, rounded_cell, ops, sites, "_geom_bond", "_geom_bond_distance", 2,
                         bonds);
            compare_loop(block, cell, rounded_cell, ops, sites, "_geom_angle", "_geom_angle", 3, angles);
            compare_loop(block, cell, rounded_cell, ops, sites, "_geom_torsion", "_geom_torsion", 4,
                         torsions);
        }
    }
    ASSERT_GT(files, 100);
    // Two blocks of one file list hand-made bond tables: hydrogen distances of 0.98 to 1.01 where
    // the coordinates give 0.95, and ring bonds that no coordinates of the block give.
    const std::set<std::string> known_bond_outliers = {"data_7000002", "data_7000003"};
    const std::vector<std::pair<const Agreement*, std::set<std::string>>> kinds = {
        {&bonds, known_bond_outliers}, {&angles, {}}, {&torsions, {}}};
    for (const auto& [a, known] : kinds) {
        ASSERT_GT(a->compared, 1000);
        EXPECT_EQ(a->outside, known) << a->last_outside;
        EXPECT_GT(a->uncertainty_close, 0.9 * a->with_uncertainty);
    }
}

// Mean planes through real rings, which are flat to a few hundredths of an ångström, and through
// points laid on a known plane: the fit is through the centroid, its heights are small, and no
// tilt of its normal makes the sum of squared heights smaller.
TEST(GeometryAgreement, MeanPlanes)
{
    struct Case {
        const char* what;
        std::vector<Vector3D> points;
        double largest_height;
    };
    std::vector<Case> cases = {
        {"points on 2z = x + 2, rotated about z", {}, 1e-12},
        {"2006998 phenyl ring C1'..C6'", {}, 0.02},
        {"2006998 benzo ring C5..C10", {}, 0.02},
    };
    for (double t : {0.0, 1.0, 2.5, 4.0, 5.5})
        cases[0].points.emplace_back(std::cos(t) * (t - 1), std::sin(t) * (t - 1),
                                     0.5 * std::cos(t) * (t - 1) + 1);

    const std::string path = std::string(CIFWARD_SHARED_DIR) + "/corpus/cod/2006998-with-extra-tag.cif";
    std::ifstream in(path, std::ios::binary);
    if (!in)
        GTEST_SKIP() << "no corpus file " << path;
    Cif cif{HCifDictionary(new CifConcreteDictionary)};
    cif.read(in);
    const CifDataBlock& block = cif.block(0);
    const Cell cell = CifCell::cell(block);
    const HCifDataItem label = block.item("_atom_site_label");
    auto position = [&](const std::string& name) {
        for (std::size_t row = 0; row < label->value_count(); ++row)
            if (label->value(row) == name) {
                Vector3D frac;
                for (int k = 0; k < 3; ++k)
                    frac[k] = UncertainValue::parse(
                                  block.item(std::string("_atom_site_fract_") + "xyz"[k])->value(row))
                                  ->value;
                return cell.orthogonal(frac);
            }
        ADD_FAILURE() << "no atom " << name;
        return Vector3D();
    };
    for (const char* name : {"C1'", "C2'", "C3'", "C4'", "C5'", "C6'"})
        cases[1].points.push_back(position(name));
    for (const char* name : {"C5", "C6", "C7", "C8", "C9", "C10"})
        cases[2].points.push_back(position(name));

    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Plane plane = Plane::fit(c.points);
        Vector3D centre;
        double squares = 0, largest = 0;
        for (const Vector3D& p : c.points) {
            centre += p / static_cast<double>(c.points.size());
            squares += plane.height(p) * plane.height(p);
            largest = std::max(largest, std::fabs(plane.height(p)));
        }
        EXPECT_NEAR(plane.height(centre), 0.0, 1e-9);
        EXPECT_LE(largest, c.largest_height);
        for (const Vector3D& tilt : {Vector3D(0.01, 0, 0), Vector3D(0, 0.01, 0), Vector3D(0, 0, 0.01)}) {
            const Vector3D n = (plane.normal + tilt).normalized();
            double tilted = 0;
            for (const Vector3D& p : c.points)
                tilted += (n.dot(p - centre)) * (n.dot(p - centre));
            EXPECT_GE(tilted, squares - 1e-12);
        }
    }
    EXPECT_EQ(failure_text([] {
                  Plane::fit({{0, 0, 0}, {1, 0, 0}});
              }),
              "A mean plane needs at least three points");
}

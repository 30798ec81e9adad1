#include "Cell.h"

#include "Archive.h"

#include <algorithm>
#include <cmath>
#include <ostream>

namespace {

constexpr double degrees_to_radians = 0.017453292519943295;

UncertainValue in_radians(UncertainValue v)
{
    v.value *= degrees_to_radians;
    return v;
}

Vector3D apply(const Matrix& m, const Vector3D& v)
{
    Vector3D r;
    for (int i = 0; i < 3; ++i)
        r[i] = m(i, 0) * v.x + m(i, 1) * v.y + m(i, 2) * v.z;
    return r;
}

bool near_integer(double v, double tolerance)
{
    return std::fabs(v - std::round(v)) <= tolerance;
}

} // namespace

Cell::Cell()
{
    update_matrices();
}

Cell::Cell(double a, double b, double c, double alpha, double beta, double gamma, bool degrees)
    : a_(a), b_(b), c_(c), alpha_(degrees ? alpha * degrees_to_radians : alpha),
      beta_(degrees ? beta * degrees_to_radians : beta), gamma_(degrees ? gamma * degrees_to_radians : gamma)
{
    update_matrices();
}

Cell::Cell(const UncertainValue& a, const UncertainValue& b, const UncertainValue& c,
           const UncertainValue& alpha, const UncertainValue& beta, const UncertainValue& gamma,
           const Spacegroup& spacegroup)
    : a_(a), b_(b), c_(c), alpha_(in_radians(alpha)), beta_(in_radians(beta)), gamma_(in_radians(gamma)),
      spacegroup_(spacegroup)
{
    update_matrices();
}

void Cell::update_matrices()
{
    const double al = alpha_.value, be = beta_.value, ga = gamma_.value;
    valid_ = a_.value > 0 && b_.value > 0 && c_.value > 0 && al > 0 && be > 0 && ga > 0 &&
             al + be + ga < 6.283185307179586;
    // The largest angle must be smaller than the other two together; a tie for largest passes.
    if (valid_ && al > be && al > ga)
        valid_ = al < be + ga;
    else if (valid_ && be > al && be > ga)
        valid_ = be < al + ga;
    else if (valid_ && ga > al && ga > be)
        valid_ = ga < al + be;

    orthogonal_ = Matrix::identity(3);
    fractional_ = Matrix::identity(3);
    if (!valid_)
        return;
    const double ca = std::cos(al), cb = std::cos(be), cg = std::cos(ga), sg = std::sin(ga);
    const double w = std::sqrt(1 - ca * ca - cb * cb - cg * cg + 2 * ca * cb * cg);
    const double a = a_.value, b = b_.value, c = c_.value;
    orthogonal_ = Matrix{{a, b * cg, c * cb}, {0, b * sg, c * (ca - cb * cg) / sg}, {0, 0, c * w / sg}};
    fractional_ = orthogonal_.inverse();
}

double Cell::volume() const
{
    if (!valid_)
        return 0.0;
    const double ca = std::cos(alpha_.value), cb = std::cos(beta_.value), cg = std::cos(gamma_.value);
    return a_.value * b_.value * c_.value * std::sqrt(1 - ca * ca - cb * cb - cg * cg + 2 * ca * cb * cg);
}

SymmOp Cell::symmop(const SymmMap& map) const
{
    SymmOp op = symmop(map.op);
    op.set_trans(op.trans() + map.trans);
    return op;
}

Vector3D Cell::orthogonal(const Vector3D& f) const
{
    return apply(orthogonal_, f);
}

Vector3D Cell::fractional(const Vector3D& o) const
{
    return apply(fractional_, o);
}

int Cell::site_multiplicity(const Vector3D& point, double tolerance) const
{
    int fixed = 0;
    for (int i = 0; i < nsymmops(); ++i) {
        const Vector3D d = symmop(i) * point - point;
        if (near_integer(d.x, tolerance) && near_integer(d.y, tolerance) && near_integer(d.z, tolerance))
            ++fixed;
    }
    return fixed ? nsymmops() / fixed : 0;
}

std::optional<SymmMap> Cell::find_symmmap(const Vector3D& from, const Vector3D& to, double tolerance) const
{
    for (int i = 0; i < nsymmops(); ++i) {
        const Vector3D d = symmop(i) * from - to;
        if (near_integer(d.x, tolerance) && near_integer(d.y, tolerance) && near_integer(d.z, tolerance))
            return SymmMap(0, i, {-std::round(d.x), -std::round(d.y), -std::round(d.z)});
    }
    return std::nullopt;
}

bool Cell::operator==(const Cell& o) const
{
    return spacegroup_ == o.spacegroup_ && a_ == o.a_ && b_ == o.b_ && c_ == o.c_ && alpha_ == o.alpha_ &&
           beta_ == o.beta_ && gamma_ == o.gamma_;
}

void Cell::print(std::ostream& out) const
{
    out << "a: " << a_ << " b: " << b_ << " c: " << c_ << " alpha: " << alpha_.value / degrees_to_radians
        << " beta: " << beta_.value / degrees_to_radians << " gamma: " << gamma_.value / degrees_to_radians
        << " spacegroup: " << spacegroup_;
}

std::ostream& operator<<(std::ostream& out, const Cell& cell)
{
    cell.print(out);
    return out;
}

void Cell::write(Archive& archive) const
{
    for (const UncertainValue* v : {&a_, &b_, &c_, &alpha_, &beta_, &gamma_}) {
        archive.write_double(v->value);
        archive.write_int32(v->precision);
        archive.write_int32(v->uncertainty);
    }
    spacegroup_.write(archive);
}

void Cell::read(Archive& archive)
{
    // Read the whole cell before changing this one, so that a damaged archive leaves it intact.
    UncertainValue read_values[6];
    for (UncertainValue& v : read_values) {
        v.value = archive.read_double();
        v.precision = archive.read_int32();
        v.uncertainty = archive.read_int32();
    }
    Spacegroup group;
    group.read(archive);
    a_ = read_values[0];
    b_ = read_values[1];
    c_ = read_values[2];
    alpha_ = read_values[3];
    beta_ = read_values[4];
    gamma_ = read_values[5];
    spacegroup_ = group;
    update_matrices();
}

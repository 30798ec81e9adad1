#include "Matrix.h"

#include "MoleculeError.h"

#include <cmath>
#include <utility>

Matrix::Matrix(std::size_t rows, std::size_t cols, double fill)
    : rows_(rows), cols_(cols), data_(rows * cols, fill)
{
}

Matrix::Matrix(std::initializer_list<std::initializer_list<double>> rows)
{
    rows_ = rows.size();
    cols_ = rows_ ? rows.begin()->size() : 0;
    for (const auto& row : rows) {
        if (row.size() != cols_)
            throw molecule_error("Matrix: rows of unequal length.");
        data_.insert(data_.end(), row.begin(), row.end());
    }
}

Matrix Matrix::identity(std::size_t n)
{
    Matrix m(n, n);
    for (std::size_t i = 0; i < n; ++i)
        m(i, i) = 1.0;
    return m;
}

Matrix Matrix::operator*(const Matrix& o) const
{
    if (cols_ != o.rows_)
        throw molecule_error("Matrix: product of incompatible shapes.");
    Matrix r(rows_, o.cols_);
    for (std::size_t i = 0; i < rows_; ++i)
        for (std::size_t j = 0; j < o.cols_; ++j) {
            double s = 0.0;
            for (std::size_t k = 0; k < cols_; ++k)
                s += (*this)(i, k) * o(k, j);
            r(i, j) = s;
        }
    return r;
}

bool Matrix::operator==(const Matrix& o) const
{
    return rows_ == o.rows_ && cols_ == o.cols_ && data_ == o.data_;
}

Matrix Matrix::inverse() const
{
    if (rows_ != cols_)
        throw molecule_error("LUDecomp: Singular matrix.");
    const std::size_t n = rows_;
    Matrix lu = *this;
    std::vector<std::size_t> perm(n);
    for (std::size_t i = 0; i < n; ++i)
        perm[i] = i;
    for (std::size_t k = 0; k < n; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < n; ++i)
            if (std::fabs(lu(i, k)) > std::fabs(lu(pivot, k)))
                pivot = i;
        if (lu(pivot, k) == 0.0)
            throw molecule_error("LUDecomp: Singular matrix.");
        if (pivot != k) {
            for (std::size_t j = 0; j < n; ++j)
                std::swap(lu(k, j), lu(pivot, j));
            std::swap(perm[k], perm[pivot]);
        }
        for (std::size_t i = k + 1; i < n; ++i) {
            lu(i, k) /= lu(k, k);
            for (std::size_t j = k + 1; j < n; ++j)
                lu(i, j) -= lu(i, k) * lu(k, j);
        }
    }
    Matrix inv(n, n);
    for (std::size_t col = 0; col < n; ++col) {
        std::vector<double> y(n);
        for (std::size_t i = 0; i < n; ++i) {
            double s = perm[i] == col ? 1.0 : 0.0;
            for (std::size_t j = 0; j < i; ++j)
                s -= lu(i, j) * y[j];
            y[i] = s;
        }
        for (std::size_t i = n; i-- > 0;) {
            double s = y[i];
            for (std::size_t j = i + 1; j < n; ++j)
                s -= lu(i, j) * inv(j, col);
            inv(i, col) = s / lu(i, i);
        }
    }
    return inv;
}

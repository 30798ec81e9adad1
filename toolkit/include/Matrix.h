#pragma once

#include <cstddef>
#include <vector>

// A dense matrix of any shape, row by row. The shape is kept so that callers that need a 3 by 3
// (a rotation, an orthogonalisation) can refuse anything else.
class Matrix {
public:
    Matrix() = default;
    Matrix(std::size_t rows, std::size_t cols, double fill = 0.0);
    Matrix(std::initializer_list<std::initializer_list<double>> rows);
    static Matrix identity(std::size_t n);

    std::size_t rows() const { return rows_; }
    std::size_t cols() const { return cols_; }
    double operator()(std::size_t r, std::size_t c) const { return data_[r * cols_ + c]; }
    double& operator()(std::size_t r, std::size_t c) { return data_[r * cols_ + c]; }

    Matrix operator*(const Matrix& other) const;
    bool operator==(const Matrix& other) const;

    // Inverse of a square matrix by LU decomposition with partial pivoting.
    Matrix inverse() const;

private:
    std::size_t rows_ = 0;
    std::size_t cols_ = 0;
    std::vector<double> data_;
};

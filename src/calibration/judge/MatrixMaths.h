#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace ombrix {

/// A matrix operation that cannot be done; Source names the operation.
class MatrixError : public std::runtime_error {
  public:
    static constexpr int Number = 1000;
    MatrixError(std::string source, const std::string& description)
        : std::runtime_error(description), m_Source(std::move(source)) {}
    const std::string& Source() const noexcept { return m_Source; }

  private:
    std::string m_Source;
};

/// A small dense matrix, made by CreateMatrix; a value: no operation changes its arguments.
struct Matrix {
    std::int16_t Rows = 0;
    std::int16_t Cols = 0;
    /// Row by row.
    std::vector<double> Data;

    /// Rows and columns are counted from 1. @throws std::out_of_range
    double& At(int row, int col) { return Data.at(Index(row, col)); }
    double At(int row, int col) const { return Data.at(Index(row, col)); }

  private:
    std::size_t Index(int row, int col) const;
};

/// All elements 0. @throws MatrixError for less than one row or column
Matrix CreateMatrix(std::int16_t rows, std::int16_t cols);
/// Filled row by row; elements without a value stay 0. @throws MatrixError
Matrix CreateMatrixFromValues(std::int16_t rows, std::int16_t cols, std::span<const double> values);
Matrix TransposeMatrix(const Matrix& a);
Matrix ScaleMatrix(const Matrix& a, double k);
/// @throws MatrixError unless a has as many columns as b has rows
Matrix MultiplyMatrix(const Matrix& a, const Matrix& b);
/// By elimination. @throws MatrixError unless a is square
double Determinant(const Matrix& a);
/// The matrix without a row and a column. @throws MatrixError when nothing would be left
Matrix MinorMatrix(const Matrix& a, int row, int col);
/// By cofactors. @throws MatrixError unless a is square and regular
Matrix InvertMatrix(const Matrix& a);

} // namespace ombrix

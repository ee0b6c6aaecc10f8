#include "calibration/judge/MatrixMaths.h"

#include <algorithm>
#include <array>

namespace ombrix {

namespace {

/// Brings a row whose element in the pivot's column is not 0 into the pivot's place. Rows are
/// exchanged only where the elimination could not go on: every other result keeps the bits that
/// elimination in the given order has. False when there is no such row.
bool FindPivot(Matrix& a, int pivot, double& sign) {
    for (int row = pivot; row <= a.Rows; ++row) {
        if (a.At(row, pivot) == 0.0)
            continue;
        if (row != pivot) {
            for (int col = 1; col <= a.Cols; ++col)
                std::swap(a.At(row, col), a.At(pivot, col));
            sign = -sign;
        }
        return true;
    }
    return false;
}

void Eliminate(Matrix& a, int pivot) {
    for (int row = pivot + 1; row <= a.Rows; ++row) {
        const double factor = a.At(row, pivot) / a.At(pivot, pivot);
        for (int col = 1; col <= a.Cols; ++col)
            a.At(row, col) -= factor * a.At(pivot, col);
    }
}

Matrix CofactorMatrix(const Matrix& a) {
    Matrix result = CreateMatrix(a.Rows, a.Cols);
    for (int row = 1; row <= a.Rows; ++row) {
        for (int col = 1; col <= a.Cols; ++col) {
            const double sign = (row + col) % 2 == 0 ? 1.0 : -1.0;
            result.At(row, col) = sign * Determinant(MinorMatrix(a, row, col));
        }
    }
    return result;
}

} // namespace

std::size_t Matrix::Index(int row, int col) const {
    if (row < 1 || row > Rows || col < 1 || col > Cols)
        throw std::out_of_range("no such element of the matrix");
    return static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(Cols) +
           static_cast<std::size_t>(col - 1);
}

Matrix CreateMatrix(std::int16_t rows, std::int16_t cols) {
    if (rows < 1 || cols < 1)
        throw MatrixError("MatrixLib - CreateMatrix", "Cannot create matrix with dimention = 0!");
    Matrix result;
    result.Rows = rows;
    result.Cols = cols;
    result.Data.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols));
    return result;
}

Matrix CreateMatrixFromValues(std::int16_t rows, std::int16_t cols,
                              std::span<const double> values) {
    Matrix result = CreateMatrix(rows, cols);
    std::copy_n(values.begin(), std::min(values.size(), result.Data.size()), result.Data.begin());
    return result;
}

Matrix TransposeMatrix(const Matrix& a) {
    Matrix result = CreateMatrix(a.Cols, a.Rows);
    for (int row = 1; row <= a.Rows; ++row) {
        for (int col = 1; col <= a.Cols; ++col)
            result.At(col, row) = a.At(row, col);
    }
    return result;
}

Matrix ScaleMatrix(const Matrix& a, double k) {
    Matrix result = a;
    for (double& element : result.Data)
        element *= k;
    return result;
}

Matrix MultiplyMatrix(const Matrix& a, const Matrix& b) {
    if (a.Cols != b.Rows)
        throw MatrixError("MatrixLib - MultiplyMatrix",
                          "Matrices not compatable for multiplication!");
    Matrix result = CreateMatrix(a.Rows, b.Cols);
    for (int row = 1; row <= a.Rows; ++row) {
        for (int col = 1; col <= b.Cols; ++col) {
            double sum = 0.0;
            for (int k = 1; k <= a.Cols; ++k)
                sum += a.At(row, k) * b.At(k, col);
            result.At(row, col) = sum;
        }
    }
    return result;
}

double Determinant(const Matrix& a) {
    if (a.Rows != a.Cols)
        throw MatrixError("MatrixLib - Determinant",
                          "Cannot calculate Determinant of non-square matrix!");
    if (a.Rows < 1)
        throw MatrixError("MatrixLib - Determinant", "Matrix too small to calculate Determinant! ");
    if (a.Rows == 1)
        return a.At(1, 1);
    if (a.Rows == 2)
        return a.At(1, 1) * a.At(2, 2) - a.At(1, 2) * a.At(2, 1);
    Matrix reduced = a;
    double sign = 1.0;
    for (int pivot = 1; pivot < reduced.Rows; ++pivot) {
        if (!FindPivot(reduced, pivot, sign))
            return 0.0;
        Eliminate(reduced, pivot);
    }
    double product = 1.0;
    for (int i = 1; i <= reduced.Rows; ++i)
        product *= reduced.At(i, i);
    return sign * product;
}

Matrix MinorMatrix(const Matrix& a, int row, int col) {
    Matrix result =
        CreateMatrix(static_cast<std::int16_t>(a.Rows - 1), static_cast<std::int16_t>(a.Cols - 1));
    for (int i = 1; i <= result.Rows; ++i) {
        for (int j = 1; j <= result.Cols; ++j)
            result.At(i, j) = a.At(i < row ? i : i + 1, j < col ? j : j + 1);
    }
    return result;
}

Matrix InvertMatrix(const Matrix& a) {
    if (a.Rows != a.Cols)
        throw MatrixError("MatrixLib - InvertMatrix", "Cannot invert a non-square matrix!");
    const double determinant = Determinant(a);
    if (determinant == 0.0)
        throw MatrixError("MatrixLib - InvertMatrix", "Cannot invert matrix with Determinant = 0!");
    if (a.Rows == 1) {
        const double inverse = 1.0 / a.At(1, 1);
        return CreateMatrixFromValues(1, 1, {&inverse, 1});
    }
    if (a.Rows == 2) {
        const std::array<double, 4> adjugate = {a.At(2, 2), -a.At(1, 2), -a.At(2, 1), a.At(1, 1)};
        return ScaleMatrix(CreateMatrixFromValues(2, 2, adjugate), 1.0 / determinant);
    }
    return ScaleMatrix(TransposeMatrix(CofactorMatrix(a)), 1.0 / determinant);
}

} // namespace ombrix

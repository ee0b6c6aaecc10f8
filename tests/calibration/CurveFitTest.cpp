#include "calibration/judge/CurveFit.h"

#include "calibration/judge/MatrixMaths.h"

#include <gtest/gtest.h>

#include <functional>

namespace ombrix {
namespace {

Matrix Make(std::int16_t rows, std::int16_t cols, const std::vector<double>& values) {
    return CreateMatrixFromValues(rows, cols, values);
}

TEST(MatrixMaths, ErrorsNameTheOperation) {
    struct Case {
        std::function<void()> Operation;
        const char* Source;
        const char* Description;
    };
    const std::vector<Case> cases = {
        {[] { CreateMatrix(0, 3); }, "MatrixLib - CreateMatrix",
         "Cannot create matrix with dimention = 0!"},
        {[] { MultiplyMatrix(CreateMatrix(3, 2), CreateMatrix(3, 2)); },
         "MatrixLib - MultiplyMatrix", "Matrices not compatable for multiplication!"},
        {[] { Determinant(CreateMatrix(2, 3)); }, "MatrixLib - Determinant",
         "Cannot calculate Determinant of non-square matrix!"},
        {[] { Determinant(Matrix()); }, "MatrixLib - Determinant",
         "Matrix too small to calculate Determinant! "},
        {[] { InvertMatrix(CreateMatrix(1, 2)); }, "MatrixLib - InvertMatrix",
         "Cannot invert a non-square matrix!"},
        {[] {
             InvertMatrix(Make(2, 2, {1, 2, 2, 4}));
         },
         "MatrixLib - InvertMatrix", "Cannot invert matrix with Determinant = 0!"},
    };
    for (const Case& c : cases) {
        try {
            c.Operation();
            ADD_FAILURE() << c.Description;
        } catch (const MatrixError& error) {
            EXPECT_EQ(error.Source(), c.Source);
            EXPECT_STREQ(error.what(), c.Description);
        }
    }
}

TEST(MatrixMaths, TheInverseTimesTheMatrixIsOne) {
    const std::vector<Matrix> matrices = {
        Make(1, 1, {2}), Make(2, 2, {4, 7, 2, 6}), Make(3, 3, {2, 1, 0, 1, 3, 1, 0, 1, 4}),
        Make(3, 3, {0, 1, 2, 1, 0, 3, 4, -3, 8}), // needs an exchange of rows
        Make(4, 4, {1, 2, 3, 4, 2, 4, 1, 1, 0, 1, 1, 2, 3, 1, 0, 1})};
    for (const Matrix& a : matrices) {
        const Matrix product = MultiplyMatrix(a, InvertMatrix(a));
        for (int row = 1; row <= a.Rows; ++row) {
            for (int col = 1; col <= a.Cols; ++col)
                EXPECT_NEAR(product.At(row, col), row == col ? 1.0 : 0.0, 1e-12);
        }
    }
    EXPECT_EQ(InvertMatrix(matrices[0]).At(1, 1), 0.5);
    EXPECT_EQ(Determinant(matrices[3]), -2.0) << "an exchange changes the sign";
    EXPECT_EQ(Determinant(Make(3, 3, {0, 1, 2, 0, 3, 4, 0, 5, 6})), 0.0);
}

TEST(MatrixMaths, MissingValuesStayZero) {
    const Matrix a = Make(2, 2, {1, 2, 3});
    EXPECT_EQ(a.At(2, 1), 3.0);
    EXPECT_EQ(a.At(2, 2), 0.0);
    EXPECT_EQ(TransposeMatrix(a).At(1, 2), 3.0);
    EXPECT_THROW(a.At(3, 1), std::out_of_range);
}

TEST(CurveFit, PolynomialThroughItsOwnPoints) {
    std::vector<std::array<float, 2>> points;
    for (const float x : {0.0F, 1.0F, 2.0F, 3.0F, 4.0F})
        points.push_back({x, 1.0F + 2.0F * x + 3.0F * x * x});
    std::vector<float> coefficients;
    ASSERT_TRUE(CalculateMCPoly(points, coefficients, 3));
    ASSERT_EQ(coefficients.size(), 3U);
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_FLOAT_EQ(coefficients.at(k), static_cast<float>(k + 1));

    EXPECT_FALSE(CalculateMCPoly(std::span(points).first(2), coefficients, 3)) << "too few";
    EXPECT_FALSE(CalculateMCPoly({}, coefficients, 3));
    EXPECT_FALSE(
        CalculateMCPoly(std::vector<std::array<float, 2>>(5, {2.0F, 7.0F}), coefficients, 3))
        << "all at one place";
}

TEST(CurveFit, SegmentsPassThroughTheMeanReadings) {
    ChannelMeasurement measured;
    measured.Demand = {{655}, {2621}, {5243}};
    measured.Rising = {{661}, {2630}, {5240}};
    measured.Falling = {{670}, {2633}, {5261}};
    const ACUChannelCal table = FitSegments(measured);
    EXPECT_EQ(table.Demand[2], 5243);
    EXPECT_EQ(table.M[0], 1966.0F / 1966.0F);
    EXPECT_EQ(table.M[1], static_cast<float>(2619.0 / 2622.0));
    EXPECT_EQ(table.C[1], static_cast<float>(5250.5 - static_cast<double>(table.M[1]) * 5243));
    EXPECT_NEAR(table.M[0] * 655.0F + table.C[0], 665.5F, 1e-3F);
    EXPECT_EQ(table.M[2], 0.0F) << "three points make two segments";
}

TEST(CurveFit, LinearFitFindsTheLine) {
    const std::vector<std::array<std::int32_t, 2>> table = {{9, 9}, {0, 1}, {1, 3}, {2, 5}};
    Line line{7.0F, 7.0F};
    EXPECT_TRUE(LinearFit(table, 1, 3, line));
    EXPECT_FLOAT_EQ(line.Slope, 2.0F);
    EXPECT_FLOAT_EQ(line.Intercept, 1.0F);
    EXPECT_FALSE(LinearFit(table, 2, 2, line)) << "one point has no slope";
    EXPECT_FLOAT_EQ(line.Slope, 2.0F);
    EXPECT_FALSE(LinearFit(table, 3, 2, line));
    EXPECT_FLOAT_EQ(line.Slope, 0.0F);
}

} // namespace
} // namespace ombrix

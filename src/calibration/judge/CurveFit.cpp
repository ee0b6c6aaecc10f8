#include "calibration/judge/CurveFit.h"

#include "calibration/judge/MatrixMaths.h"

#include <cmath>

namespace ombrix {

bool LinearFit(std::span<const std::array<std::int32_t, 2>> table, int first, int last,
               Line& line) {
    if (first > last) {
        line = {};
        return false;
    }
    const auto count = static_cast<float>(last - first + 1);
    float sumX = 0.0F;
    float sumY = 0.0F;
    float sumXX = 0.0F;
    float sumXY = 0.0F;
    for (int row = first; row <= last; ++row) {
        const auto x = static_cast<float>(table[static_cast<std::size_t>(row)][0]);
        const auto y = static_cast<float>(table[static_cast<std::size_t>(row)][1]);
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    const float divisor = count * sumXX - sumX * sumX;
    if (divisor == 0.0F)
        return false;
    line.Slope = (count * sumXY - sumX * sumY) / divisor;
    line.Intercept = sumY / count - line.Slope * sumX / count;
    return true;
}

bool CalculateMCPoly(std::span<const std::array<float, 2>> data, std::vector<float>& coefficients,
                     std::int32_t order) {
    coefficients.clear();
    if (static_cast<std::int64_t>(data.size()) < order)
        return false;
    try {
        const auto rows = static_cast<std::int16_t>(data.size());
        Matrix x = CreateMatrix(rows, static_cast<std::int16_t>(order));
        Matrix y = CreateMatrix(rows, 1);
        for (int row = 1; row <= x.Rows; ++row) {
            const auto& [pointX, pointY] = data[static_cast<std::size_t>(row - 1)];
            for (int power = 0; power < order; ++power)
                x.At(row, power + 1) = std::pow(static_cast<double>(pointX), power);
            y.At(row, 1) = pointY;
        }
        const Matrix transposed = TransposeMatrix(x);
        const Matrix inverse = InvertMatrix(MultiplyMatrix(transposed, x));
        const Matrix b = MultiplyMatrix(MultiplyMatrix(inverse, transposed), y);
        for (int power = 1; power <= order; ++power)
            coefficients.push_back(static_cast<float>(b.At(power, 1)));
        return true;
    } catch (const MatrixError&) {
        return false;
    }
}

ACUChannelCal FitSegments(const ChannelMeasurement& measured) {
    ACUChannelCal table;
    const auto mean = [&measured](std::size_t point) {
        return (measured.Rising.at(point).Reading_bits + measured.Falling.at(point).Reading_bits) /
               2.0;
    };
    for (std::size_t point = 0; point < measured.Demand.size(); ++point)
        table.Demand.at(point) = measured.Demand.at(point).Bits;
    for (std::size_t point = 1; point < measured.Demand.size(); ++point) {
        const auto rise = static_cast<float>(mean(point) - mean(point - 1));
        const std::int32_t run = table.Demand.at(point) - table.Demand.at(point - 1);
        const auto slope = static_cast<float>(static_cast<double>(rise) / run);
        table.M.at(point - 1) = slope;
        table.C.at(point - 1) =
            static_cast<float>(mean(point) - static_cast<double>(slope) * table.Demand.at(point));
    }
    return table;
}

} // namespace ombrix

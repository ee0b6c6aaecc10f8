#pragma once

#include "calibration/judge/Measurement.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace ombrix {

/// A straight line y = Slope · x + Intercept.
struct Line {
    float Slope = 0.0F;
    float Intercept = 0.0F;
};

/// Least-squares line y = Slope · x + Intercept through rows first to last of a table of
/// (x, y), in Single arithmetic. False without rows; false, with the line unchanged, when all
/// x are equal.
bool LinearFit(std::span<const std::array<std::int32_t, 2>> table, int first, int last, Line& line);

/// Least-squares polynomial y ≈ Σ coefficients(k) · x^k through the points, by the normal
/// equations B = (XᵀX)⁻¹ · Xᵀ · Y.
/// @param data x and y of each point @param order number of coefficients
/// @return false, without coefficients, when the points do not determine the polynomial
bool CalculateMCPoly(std::span<const std::array<float, 2>> data, std::vector<float>& coefficients,
                     std::int32_t order);

/// The calibration that a system run has measured: demands, and straight segments through the
/// means of the rising and falling readings at neighbouring points.
ACUChannelCal FitSegments(const ChannelMeasurement& measured);

} // namespace ombrix

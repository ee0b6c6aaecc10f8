#pragma once

#include "calibration/judge/VelocityMeasurement.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ombrix {

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

#include "calibration/air/AirUnits.h"

#include "platform/text/Rounding.h"

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

double RadiusSquared_mm2(float diameter_mm) {
    const double diameter = diameter_mm == 0.0F ? StandardBase_mm : diameter_mm;
    return diameter / 2.0 * (diameter / 2.0);
}

} // namespace

float FlowToVelocity(float flow_ml_m, float diameter_mm) {
    constexpr float sixtyPi = 188.49554F;
    return static_cast<float>(
        flow_ml_m / (RadiusSquared_mm2(diameter_mm) * static_cast<double>(sixtyPi) / 1e6 * 1000.0));
}

float VelocityToFlow(float velocity_mms, float diameter_mm) {
    constexpr double pi = 3.1415925;
    return static_cast<float>(RadiusSquared_mm2(diameter_mm) * static_cast<double>(velocity_mms) *
                              60.0 * pi / 1e6 * 1000.0);
}

float FlowOfBits(std::int32_t bits, float capacity_ml_m) {
    return static_cast<float>(static_cast<double>(capacity_ml_m) / FullScale_bits * bits);
}

float FlowOfReading(std::int32_t bits, float capacity_ml_m) {
    constexpr double cutOff_bits = 655.34;
    return bits < cutOff_bits ? 0.0F : FlowOfBits(bits, capacity_ml_m);
}

float DemandFromTable(float flow_ml_m, float capacity_ml_m, const ACUChannelCal& table,
                      std::int32_t points) {
    const auto usable = std::min(points, static_cast<std::int32_t>(MaxCalibrationPoints));
    if (usable < 2 || !(capacity_ml_m > 0.0F))
        return 0.0F;
    const std::int32_t target =
        RoundHalfEven(static_cast<double>(FullScale_bits) / static_cast<double>(capacity_ml_m) *
                      static_cast<double>(flow_ml_m));
    const auto lastSegment = static_cast<std::size_t>(usable) - 2;
    std::size_t segment = 0;
    while (segment < lastSegment &&
           table.Demand.at(segment + 1) * static_cast<double>(table.M.at(segment)) +
                   static_cast<double>(table.C.at(segment)) <
               target)
        ++segment;
    const double slope = table.M.at(segment);
    if (slope == 0.0)
        return 0.0F;
    const auto demand =
        static_cast<float>((target - static_cast<double>(table.C.at(segment))) / slope);
    // A damaged table may hold any bits; what is no number is no demand.
    if (std::isnan(demand))
        return 0.0F;
    return std::clamp(demand, 0.0F, static_cast<float>(FullScale_bits));
}

} // namespace ombrix

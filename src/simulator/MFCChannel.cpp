#include "simulator/MFCChannel.h"

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

/// Below this demand a controller keeps its valve shut.
constexpr double ValveShutBelow_bits = 130.0;

} // namespace

double MFCChannel::SteadyOutput(const MFCCharacteristics& characteristics, double demand_bits) {
    if (demand_bits < ValveShutBelow_bits)
        return 0.0;
    const double share = demand_bits / FullScale_bits;
    const double bow = 4.0 * share * (1.0 - share);
    return demand_bits * characteristics.Gain + characteristics.Offset_bits +
           characteristics.NonLinearity_bits * bow;
}

void MFCChannel::SetDemand(double demand_bits, double now_s) {
    // A demand repeated is no movement and must not change the side it is reached from.
    if (demand_bits == m_Demand_bits)
        return;
    Flow_bits(now_s);
    const double side = demand_bits > m_Demand_bits ? -0.5 : 0.5;
    m_Demand_bits = demand_bits;
    m_Target_bits = SteadyOutput(m_Characteristics, demand_bits);
    if (m_Target_bits > 0.0)
        m_Target_bits += side * m_Characteristics.Hysteresis_bits;
}

double MFCChannel::Flow_bits(double now_s) {
    const double elapsed_s = now_s - m_Time_s;
    m_Time_s = now_s;
    // After 40 time constants nothing is left of the step.
    if (elapsed_s > 40.0 * m_Characteristics.TimeConstant_s)
        m_Flow_bits = m_Target_bits;
    else if (elapsed_s > 0.0)
        m_Flow_bits += (m_Target_bits - m_Flow_bits) *
                       -std::expm1(-elapsed_s / m_Characteristics.TimeConstant_s);
    return m_Flow_bits;
}

double MFCChannel::Reading_bits(double now_s, Noise& noise) {
    return std::max(0.0, Flow_bits(now_s) + m_Characteristics.Noise_bits * noise.Normal());
}

} // namespace ombrix

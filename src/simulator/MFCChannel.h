#pragma once

#include "simulator/Noise.h"

namespace ombrix {

/// How a mass-flow controller differs from the ideal; amounts in bits of 65534 full scale.
struct MFCCharacteristics {
    double Gain = 1.0;
    double Offset_bits = 0.0;
    /// Largest deviation from the straight line, at half scale.
    double NonLinearity_bits = 0.0;
    /// Difference between the outputs reached from above and from below.
    double Hysteresis_bits = 0.0;
    double Noise_bits = 0.0;
    /// First-order response: 63 % of a step after this time.
    double TimeConstant_s = 0.15;
};

/// One air channel: takes a demand, lets the flow follow, and reads it back.
class MFCChannel {
  public:
    static constexpr double FullScale_bits = 65534.0;

    explicit MFCChannel(const MFCCharacteristics& characteristics)
        : m_Characteristics(characteristics) {}

    /// Another controller in its place; what it does shows with the next demand.
    void SetCharacteristics(const MFCCharacteristics& characteristics) {
        m_Characteristics = characteristics;
    }

    /// Output in bits that a demand settles at, midway between rising and falling.
    static double SteadyOutput(const MFCCharacteristics& characteristics, double demand_bits);

    /// @param now_s never runs backwards
    void SetDemand(double demand_bits, double now_s);
    /// The demand was set long ago: the flow is what it settles at.
    void Settle() { m_Flow_bits = m_Target_bits; }
    /// The flow in bits of full scale.
    double Flow_bits(double now_s);
    /// What the controller reports of its flow: with noise, never below 0.
    double Reading_bits(double now_s, Noise& noise);

  private:
    MFCCharacteristics m_Characteristics;
    double m_Demand_bits = 0.0;
    double m_Target_bits = 0.0;
    double m_Flow_bits = 0.0;
    double m_Time_s = 0.0;
};

} // namespace ombrix

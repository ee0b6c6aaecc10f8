#pragma once

#include "benchtests/TestRigJobs.h"

#include <array>
#include <cstdint>
#include <string>

namespace ombrix {

/// Tells whether the inputs of a ramp followed the outputs that feed them.
///
/// The ramp itself applies no criterion: it drives and records, and the recording is what is
/// examined. But the operator is shown a step as passed or failed, and neither may be said of
/// something that nobody has looked at. So the settled readings of each level are held against
/// the value that was sent. The tolerance is wide enough for any two converters in order and far
/// too narrow for an open wire, a dead channel or a short circuit.
class LoopThroughCheck {
  public:
    /// One per cent of full scale.
    static constexpr std::int32_t Tolerance_bits = 655;

    explicit LoopThroughCheck(const RampStep& ramp) : m_Ramp(ramp) {}

    void BeginLevel(std::int32_t output_bits);
    /// @param levelTime_s since the level began; the first half of it is for settling
    void Note(double levelTime_s, const std::array<std::int32_t, 4>& inputs);
    /// A channel has followed when most of its readings have: one that failed does not count.
    void EndLevel();

    bool Followed() const { return m_Deviation.empty(); }
    /// The first channel and level that did not follow; empty when all did.
    const std::string& Deviation() const { return m_Deviation; }

  private:
    struct Channel {
        int Strays = 0;
        std::int32_t LastStray_bits = 0;
    };

    RampStep m_Ramp;
    std::int32_t m_Output_bits = 0;
    int m_Readings = 0;
    std::array<Channel, 4> m_Channels{};
    std::string m_Deviation;
};

} // namespace ombrix

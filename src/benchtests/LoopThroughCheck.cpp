#include "benchtests/LoopThroughCheck.h"

#include <fmt/format.h>

#include <cstdlib>

namespace ombrix {

void LoopThroughCheck::BeginLevel(std::int32_t output_bits) {
    m_Output_bits = output_bits;
    m_Readings = 0;
    m_Channels = {};
}

void LoopThroughCheck::Note(double levelTime_s, const std::array<std::int32_t, 4>& inputs) {
    if (levelTime_s < m_Ramp.LevelDuration_s / 2.0)
        return;
    ++m_Readings;
    for (std::size_t channel = 0; channel < inputs.size(); ++channel) {
        const std::int32_t input_bits = inputs.at(channel);
        if (std::abs(input_bits - m_Output_bits) <= Tolerance_bits)
            continue;
        ++m_Channels.at(channel).Strays;
        m_Channels.at(channel).LastStray_bits = input_bits;
    }
}

void LoopThroughCheck::EndLevel() {
    for (std::int32_t number = 0; number < static_cast<std::int32_t>(m_Channels.size()); ++number) {
        const Channel& channel = m_Channels.at(static_cast<std::size_t>(number));
        if (!Followed() || !m_Ramp.Drives(number) || 2 * channel.Strays <= m_Readings)
            continue;
        m_Deviation = fmt::format("Input {} of board {} read {} while output {} of board {} was {}",
                                  number, m_Ramp.InputBoard + 1, channel.LastStray_bits, number,
                                  m_Ramp.OutputBoard + 1, m_Output_bits);
    }
}

} // namespace ombrix

#pragma once

#include "board/Station.h"
#include "platform/text/Rounding.h"

#include <algorithm>
#include <cstdint>

namespace ombrix {

/// The DAC sliders of the operator's panel: procedures set demands by moving them, so that the
/// panel always shows what the board was told. A slider holds half the DAC value.
class DACSliders {
  public:
    static constexpr std::int32_t Max = 32767;
    /// 65535 is never sent from the panel.
    static constexpr std::int32_t LargestDAC = 65534;

    virtual ~DACSliders() = default;

    /// Moves a slider (channel 0 to 3, position 0 to Max) and sends twice its position to the
    /// DAC, also when the slider stands there already.
    virtual void SetValue(std::int32_t channel, std::int32_t position) = 0;
    /// Moves a slider as a display of what the board has been told already.
    virtual void Show(std::int32_t channel, std::int32_t position) = 0;

    /// Shows that every output of the board is off.
    void ShowAllOff() {
        for (std::int32_t channel = 0; channel < clsAIB::DACChannels; ++channel)
            Show(channel, 0);
    }

    static constexpr std::int32_t HeldToRange(std::int32_t value) {
        return std::clamp(value, 0, LargestDAC);
    }
    static std::int32_t PositionOf(std::int32_t dacValue) { return RoundHalfEven(dacValue / 2.0); }
};

/// Sliders without a window, for the terminal: the current board is told the same values.
class BoardDACSliders final : public DACSliders {
  public:
    explicit BoardDACSliders(Station& station) : m_Station(station) {}

    void SetValue(std::int32_t channel, std::int32_t position) override {
        m_Station.g_CurrentAIB->SetDAC(channel, HeldToRange(position * 2));
    }
    void Show(std::int32_t /*channel*/, std::int32_t /*position*/) override {}

  private:
    Station& m_Station;
};

} // namespace ombrix

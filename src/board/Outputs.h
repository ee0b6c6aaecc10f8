#pragma once

#include "board/AIB.h"
#include "board/procedure/BoardClaims.h"
#include "board/procedure/Listeners.h"

#include <cstdint>
#include <functional>

namespace ombrix {

/// A demand as it was sent to a board.
struct OutputChange {
    const AIB& Board;
    std::int32_t Channel = 0;
    std::int32_t Bits = 0;
    /// The board's answer; AccessDenied where another program has the board.
    AIBStatus Answer = Status::NoError;
};

/// The one way in which the outputs of a board are told anything: the board is claimed, told, and
/// whoever shows its outputs hears of it. The answer goes to the one who asked.
class Outputs {
  public:
    explicit Outputs(BoardClaims& claims) : m_Claims(claims) {}

    /// Tells a DAC or, of a digital setup, an MFC.
    /// @param channel 0 to 3 @param bits 0 to 65535
    /// @throws DriveError when the board cannot be kept from other programs
    AIBStatus Set(AIB& board, std::int32_t channel, std::int32_t bits);
    /// Tells a digital MFC over its link, whatever mode is selected. @param channel 0 or 1
    AIBStatus SetDigital(AIB& board, std::int32_t channel, std::int32_t bits);
    /// Switches the solenoid valves over.
    AIBStatus SetValve(AIB& board, bool set);
    /// Brings both air channels to zero, as at the end of a sequence; never throws.
    void ZeroAirChannels(AIB& board) noexcept;
    /// AIB::SwitchOutputsOff
    bool SwitchOff(AIB& board) noexcept;

    [[nodiscard]] Subscription Listen(std::function<void(const OutputChange&)> listener) {
        return m_Listeners.Listen(std::move(listener));
    }
    /// The windows are gone: nothing is shown any more.
    void TellNobody() { m_Listeners.Clear(); }

  private:
    template <class Call>
    AIBStatus WhenClaimed(const AIB& board, const Call& call);

    BoardClaims& m_Claims;
    Listeners<const OutputChange&> m_Listeners;
};

/// What the operator's sliders can be set to: a slider holds half of what it sends.
namespace SliderScale {

inline constexpr std::int32_t Top = 32767;
inline constexpr std::int32_t LargestDemand = 2 * Top;

/// The position that shows a demand.
std::int32_t PositionOf(std::int32_t bits);
/// The demand that a slider sends in the place of another one, held to its range.
std::int32_t DemandNear(std::int32_t bits);
/// The demand of a share of full scale, 0 to 1, as a slider sends it.
std::int32_t DemandOfShare(float share);
/// A demand held to what sliders send.
std::int32_t HeldToRange(std::int32_t bits);

} // namespace SliderScale

} // namespace ombrix

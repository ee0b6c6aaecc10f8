#pragma once

#include "board/AIB.h"
#include "board/procedure/BoardClaims.h"
#include "board/procedure/Listeners.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

namespace ombrix {

/// A demand, and how the board took it. What it drives is AIB::DAC.
struct OutputChange {
    const AIB& Board;
    std::int32_t Channel = 0;
    BoardAnswer Answer;
};

/// The one way in which the outputs of a board are told anything: the board is claimed, told, and
/// whoever shows its outputs hears of it. The answer goes to the one who asked. While no procedure
/// drives, a board has a mark from before its first demand until it drives nothing any more.
class Outputs {
  public:
    /// How long a board may refuse what a procedure tells it.
    static constexpr double Patience_s = 1.0;

    Outputs(BoardClaims& claims, Platform& world)
        : m_Claims(claims), m_World(world), m_Clock(world.Time) {}

    /// Tells a DAC or, of a digital setup, an MFC.
    /// @param channel 0 to 3 @param bits 0 to 65535
    /// @throws DriveError when the board cannot be kept from other programs
    BoardAnswer Set(AIB& board, std::int32_t channel, std::int32_t bits);
    /// Tells a digital MFC over its link, whatever mode is selected. @param channel 0 or 1
    BoardAnswer SetDigital(AIB& board, std::int32_t channel, std::int32_t bits);
    /// Has the air channels driven by the digital MFCs or by the analog converters. They are
    /// brought to zero on the way that is left first, which keeps the board as it is when that
    /// is refused.
    BoardAnswer SetDigitalSetup(AIB& board, bool digital);
    /// Switches the solenoid valves over.
    BoardAnswer SetValve(AIB& board, bool set);
    /// Makes the pin that switches the valves an output, on boards that have them on one.
    BoardAnswer PrepareValve(AIB& board);
    /// Which of the pins 0 to 19 are outputs, a bit each.
    BoardAnswer SetDirections(AIB& board, std::int32_t mask);
    BoardAnswer SetPin(AIB& board, std::int32_t pin, bool high);
    /// An extended output, as the power of the MFCs.
    BoardAnswer SetExtendedPin(AIB& board, std::int32_t pin, bool on);
    /// Brings both air channels to zero, as at the end of a sequence; never throws.
    void ZeroAirChannels(AIB& board) noexcept;
    /// AIB::SwitchOutputsOff
    bool SwitchOff(AIB& board) noexcept;

    /// While it lives, what a board refuses is told to it again until it takes it: a procedure
    /// must not measure what it believes to drive.
    class Insistence {
      public:
        explicit Insistence(Outputs& outputs) : m_Outputs(outputs) { Begin(true); }
        Insistence(const Insistence&) = delete;
        Insistence& operator=(const Insistence&) = delete;
        ~Insistence() { Begin(false); }

      private:
        void Begin(bool insists) {
            m_Outputs.m_Insists = insists;
            m_Outputs.m_Refused.clear();
        }
        Outputs& m_Outputs;
    };
    /// Tells boards again what they have refused. @throws BoardError, naming the output, when it
    /// has been refused for a second
    void TellAgain();
    /// Nothing that boards were told meanwhile stands refused.
    bool AllTaken() const { return m_Refused.empty(); }

    [[nodiscard]] Subscription Listen(std::function<void(const OutputChange&)> listener) {
        return m_Listeners.Listen(std::move(listener));
    }
    /// The windows are gone: nothing is shown any more.
    void TellNobody() { m_Listeners.Clear(); }

  private:
    struct Refusal {
        std::function<void()> Again;
        BoardAnswer Answer;
        double Since_s = 0.0;
    };

    template <class Call>
    BoardAnswer WhenClaimed(const AIB& board, const Call& call);
    /// Tells a claimed board a demand, with the mark of a board that is driven by hand.
    template <class Call>
    BoardAnswer WhenMarked(const AIB& board, std::int32_t bits, const Call& call);
    /// @param output as messages name it ("DAC 0") @param again tells it once more
    BoardAnswer Noted(AIB& board, const std::string& output, const BoardAnswer& answer,
                      const std::function<void()>& again);

    BoardClaims& m_Claims;
    Platform& m_World;
    const Clock& m_Clock;
    Listeners<const OutputChange&> m_Listeners;
    bool m_Insists = false;
    std::map<std::pair<AIB*, std::string>, Refusal> m_Refused;
    double m_TellDue_s = 0.0;
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

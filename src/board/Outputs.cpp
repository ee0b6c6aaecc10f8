#include "board/Outputs.h"

#include "platform/text/Rounding.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>

namespace ombrix {

namespace {

/// How often a board is told again what it has refused.
constexpr double TellSpacing_s = 0.05;

std::string NameOfChannel(const AIB& board, std::int32_t channel) {
    return fmt::format("{} {}", board.IsDigitalChannel(channel) ? "MFC" : "DAC", channel);
}

} // namespace

template <class Call>
BoardAnswer Outputs::WhenClaimed(const AIB& board, const Call& call) {
    // A board that another program has is looked at, not driven.
    return {m_Claims.Claim(board.DevSerialNum()) ? call() : Status::AccessDenied};
}

template <class Call>
BoardAnswer Outputs::WhenMarked(const AIB& board, std::int32_t bits, const Call& call) {
    const std::int32_t serial = board.DevSerialNum();
    return WhenClaimed(board, [&] {
        // A procedure leaves a mark of its own; one that is there says more.
        if (bits != 0 && !m_Insists && !FindMark(m_World, serial))
            LeaveMark(m_World, serial, DrivingByHand);
        const BoardAnswer answer{call()};
        // What was refused may have been taken all the same.
        if (bits == 0 && !m_Insists && answer.Taken() && !board.Drives() &&
            IsOwnMarkByHand(m_World, serial))
            RemoveMark(m_World, serial);
        return answer.Code;
    });
}

BoardAnswer Outputs::Noted(AIB& board, const std::string& output, const BoardAnswer& answer,
                           const std::function<void()>& again) {
    const std::pair key(&board, output);
    if (answer.Taken()) {
        m_Refused.erase(key);
    } else if (m_Insists) {
        const auto [refusal, isNew] = m_Refused.try_emplace(key);
        refusal->second.Answer = answer;
        refusal->second.Again = again;
        if (isNew)
            refusal->second.Since_s = MonotonicSeconds(m_Clock);
    }
    return answer;
}

void Outputs::TellAgain() {
    const double now_s = MonotonicSeconds(m_Clock);
    if (m_Refused.empty() || now_s < m_TellDue_s)
        return;
    m_TellDue_s = now_s + TellSpacing_s;
    for (const auto& [output, refusal] : std::map(m_Refused)) // what is taken leaves the list
        refusal.Again();
    for (const auto& [output, refusal] : m_Refused) {
        if (now_s - refusal.Since_s >= Patience_s)
            throw BoardError("The board does not take what it is told: " + output.second + ": " +
                             refusal.Answer.Sentence() +
                             "\r\n\r\nPlease check its cable and its power, then detect the boards "
                             "again.");
    }
}

BoardAnswer Outputs::Set(AIB& board, std::int32_t channel, std::int32_t bits) {
    // A procedure waits for MFCs that are about to be ready.
    if (m_Insists && !board.Reaches(channel))
        board.CheckMFCReady();
    BoardAnswer answer = WhenMarked(board, bits, [&] { return board.SetDAC(channel, bits); });
    answer.MFCsNotReady = !board.Reaches(channel);
    Noted(board, NameOfChannel(board, channel), answer,
          [this, &board, channel, bits] { Set(board, channel, bits); });
    m_Listeners.Tell({board, channel, answer});
    return answer;
}

BoardAnswer Outputs::SetDigital(AIB& board, std::int32_t channel, std::int32_t bits) {
    BoardAnswer answer = WhenMarked(board, bits, [&] { return board.SetDAC_UART(channel, bits); });
    answer.MFCsNotReady = !board.MFCReady();
    return Noted(board, fmt::format("MFC {}", channel), answer,
                 [this, &board, channel, bits] { SetDigital(board, channel, bits); });
}

BoardAnswer Outputs::SetDigitalSetup(AIB& board, bool digital) {
    if (digital != board.IsDigitalSetup()) {
        for (const std::int32_t channel : {0, 1}) {
            const BoardAnswer answer = Set(board, channel, 0);
            // MFCs that take no demands drive nothing either.
            if (!answer.Taken() && !answer.MFCsNotReady)
                return answer;
        }
    }
    board.IsDigitalSetup(digital);
    return {};
}

BoardAnswer Outputs::SetValve(AIB& board, bool set) {
    if (board.IsUsb())
        return SetExtendedPin(board, ACUWiring::UsbValveOutput, set);
    if (board.IsFireWire())
        return SetPin(board, ACUWiring::FireWireValvePin, set);
    return {}; // no board whose wiring is known
}

BoardAnswer Outputs::PrepareValve(AIB& board) {
    constexpr std::int32_t valveBit = 1 << ACUWiring::FireWireValvePin;
    return board.IsFireWire() ? SetDirections(board, board.Directions() | valveBit) : BoardAnswer{};
}

BoardAnswer Outputs::SetDirections(AIB& board, std::int32_t mask) {
    const BoardAnswer answer = WhenClaimed(board, [&] { return board.ConfigureGPIO(mask); });
    return Noted(board, "the directions of the pins", answer,
                 [this, &board, mask] { SetDirections(board, mask); });
}

BoardAnswer Outputs::SetPin(AIB& board, std::int32_t pin, bool high) {
    const BoardAnswer answer =
        WhenClaimed(board, [&] { return high ? board.SetGPO(pin) : board.ClearGPO(pin); });
    return Noted(board, fmt::format("pin {}", pin), answer,
                 [this, &board, pin, high] { SetPin(board, pin, high); });
}

BoardAnswer Outputs::SetExtendedPin(AIB& board, std::int32_t pin, bool on) {
    const BoardAnswer answer =
        WhenClaimed(board, [&] { return on ? board.SetExtGPO(pin) : board.ClearExtGPO(pin); });
    return Noted(board, fmt::format("extended output {}", pin), answer,
                 [this, &board, pin, on] { SetExtendedPin(board, pin, on); });
}

void Outputs::ZeroAirChannels(AIB& board) noexcept {
    for (const std::int32_t channel : {0, 1}) {
        try {
            // What is refused is tried again, and told, when the procedure switches all off.
            Set(board, channel, 0);
        } catch (const std::exception&) {
            continue;
        }
    }
}

bool Outputs::SwitchOff(AIB& board) noexcept {
    const bool taken = board.SwitchOutputsOff();
    try {
        for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
            m_Listeners.Tell({board, channel, {}});
    } catch (const std::exception&) {
        return taken; // what cannot be shown has been switched off all the same
    }
    return taken;
}

std::int32_t SliderScale::PositionOf(std::int32_t bits) {
    return RoundHalfEven(bits / 2.0);
}

std::int32_t SliderScale::DemandNear(std::int32_t bits) {
    return HeldToRange(2 * PositionOf(bits));
}

std::int32_t SliderScale::DemandOfShare(float share) {
    return HeldToRange(2 * RoundHalfEven(static_cast<float>(Top) * share));
}

std::int32_t SliderScale::HeldToRange(std::int32_t bits) {
    return std::clamp(bits, 0, LargestDemand);
}

} // namespace ombrix

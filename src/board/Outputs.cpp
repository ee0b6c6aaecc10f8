#include "board/Outputs.h"

#include "platform/text/Rounding.h"

#include <algorithm>
#include <exception>

namespace ombrix {

template <class Call>
AIBStatus Outputs::WhenClaimed(const AIB& board, const Call& call) {
    // A board that another program has is looked at, not driven.
    return m_Claims.Claim(board.DevSerialNum()) ? call() : Status::AccessDenied;
}

AIBStatus Outputs::Set(AIB& board, std::int32_t channel, std::int32_t bits) {
    const AIBStatus answer = WhenClaimed(board, [&] { return board.SetDAC(channel, bits); });
    m_Listeners.Tell({board, channel, bits, answer});
    return answer;
}

AIBStatus Outputs::SetDigital(AIB& board, std::int32_t channel, std::int32_t bits) {
    return WhenClaimed(board, [&] { return board.SetDAC_UART(channel, bits); });
}

AIBStatus Outputs::SetValve(AIB& board, bool set) {
    return WhenClaimed(board, [&] {
        if (board.IsUsb())
            return set ? board.SetExtGPO(ACUWiring::UsbValveOutput)
                       : board.ClearExtGPO(ACUWiring::UsbValveOutput);
        if (board.IsFireWire())
            return set ? board.SetGPO(ACUWiring::FireWireValvePin)
                       : board.ClearGPO(ACUWiring::FireWireValvePin);
        return Status::NoError; // no board whose wiring is known
    });
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
            m_Listeners.Tell({board, channel, 0, Status::NoError});
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

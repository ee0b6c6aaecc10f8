#include "calibration/air/AirChannelControl.h"

#include "board/AIB.h"
#include "calibration/air/AirUnits.h"
#include "platform/text/Rounding.h"

#include <algorithm>

namespace ombrix {

namespace {

ChangeOverState StateForNewDemand(const ChangeOverInputs& inputs) {
    if (inputs.Demand_bits == 0)
        return ChangeOverState::Off;
    if (inputs.Output_bits > 0)
        return ChangeOverState::Settled; // it flows already
    return inputs.Demand_bits >= PreChargeLimit_bits ? ChangeOverState::Settle
                                                     : ChangeOverState::PreCharge;
}

} // namespace

ChangeOverState NextChangeOverState(ChangeOverState present, const ChangeOverInputs& inputs) {
    switch (present) {
    case ChangeOverState::NewDemand: return StateForNewDemand(inputs);
    case ChangeOverState::PreCharge:
        return inputs.Reading_bits > AirHasCome_bits ? ChangeOverState::Settle : present;
    case ChangeOverState::Settle:
        return inputs.InState_s >= SettleTime_s ? ChangeOverState::Settled : present;
    case ChangeOverState::Settled:
    case ChangeOverState::Off: return present;
    }
    return present;
}

namespace {

/// 1 % of full scale.
constexpr double CutOff_bits = 655.34;
constexpr std::int32_t LargestDAC = 65535;
template <class Array>
auto& At(Array& values, std::int32_t channel) {
    return values.at(static_cast<std::size_t>(channel));
}

} // namespace

float AirChannelControl::Capacity(std::int32_t channel) const {
    return At(m_Record.m_ChannelCapacity, channel);
}

float AirChannelControl::Flow_ml_m(std::int32_t channel, std::int32_t bits, bool zeroCutOff) const {
    return FlowOfBits(zeroCutOff && bits < CutOff_bits ? 0 : bits, Capacity(channel));
}

float AirChannelControl::FlowOfReading(std::int32_t channel, std::int32_t bits) const {
    return Flow_ml_m(channel, bits, true);
}

float AirChannelControl::CurrentChannelAir_ml_m(std::int32_t channel) {
    std::int32_t bits = 0;
    return m_AIB.GetADC(channel, bits) == Status::NoError ? FlowOfReading(channel, bits) : 0.0F;
}

float AirChannelControl::CurrentAir_mms(bool zeroCutOff) {
    std::array<float, 2> flow_ml_m{};
    for (const std::int32_t channel : {0, 1}) {
        std::int32_t bits = 0;
        if (m_AIB.GetADC(channel, bits) == Status::NoError)
            At(flow_ml_m, channel) = Flow_ml_m(channel, bits, zeroCutOff);
    }
    if (m_Record.m_VelocitySystemDate != OleDate() && m_State.m_ChangeOverBusy)
        UpdateChannelChangeOver();
    if (m_Record.m_HasSolenoidValves == 0)
        return FlowToVelocity(flow_ml_m[0] + flow_ml_m[1]);
    return FlowToVelocity(At(flow_ml_m, OtherChannel(m_State.m_ValveState)));
}

float AirChannelControl::DemandFromCalibration(float flow_ml_m, std::int32_t channel) const {
    if (!m_Record.m_ACUInitialised)
        return 0.0F;
    return DemandFromTable(flow_ml_m, Capacity(channel), At(m_Record.m_VelocityCal, channel),
                           m_Record.m_CalibrationPoints);
}

AirChannelControl::ChannelDemand
AirChannelControl::GetAirChannelAndDemand(float velocity_mms, std::int32_t channel) const {
    ChannelDemand result;
    result.Flow_ml_m = VelocityToFlow(velocity_mms);
    if (Capacity(0) <= Capacity(1))
        return result;
    result.Channel = channel;
    if (channel == ChooseChannel)
        result.Channel = result.Flow_ml_m <= Capacity(1) ? 1 : 0;
    result.DemandBits =
        RoundHalfEven(static_cast<double>(DemandFromCalibration(result.Flow_ml_m, result.Channel)));
    result.Found = true;
    return result;
}

AirSetting AirChannelControl::SetAirVelocityInternal_ml_m(float flow_ml_m, std::int32_t channel) {
    return SetAirVelocityInternal_mm_s(FlowToVelocity(flow_ml_m), channel);
}

AirSetting AirChannelControl::SetAirVelocityInternal_mm_s(float velocity_mms,
                                                          std::int32_t channel) {
    m_State.m_Velocity_mms = velocity_mms;
    if (velocity_mms == 0.0F) {
        if (m_State.m_DACOut[0] == 0 || m_State.m_DACOut[1] != 0)
            StartState(ChangeOverState::Off);
        AllChannelsOff();
        return {0, 0.0F, velocity_mms};
    }
    const ChannelDemand demand = GetAirChannelAndDemand(velocity_mms, channel);
    if (demand.Found)
        SetAirVelocityInternal_bits(demand.Channel, demand.DemandBits);
    return {demand.DemandBits, demand.Flow_ml_m, velocity_mms};
}

void AirChannelControl::SetAirVelocityInternal_bits(std::int32_t channel, std::int32_t demandBits) {
    m_State.m_ActiveChannel = channel;
    if (m_Record.m_HasSolenoidValves != -1) {
        if (demandBits != 0)
            m_State.m_ValveState = channel;
        SetChannelDAC(OtherChannel(channel), 0);
    }
    At(m_State.m_DemandBits, channel) = demandBits;
    At(m_State.m_DemandVelocity, channel) = FlowToVelocity(static_cast<float>(
        static_cast<double>(demandBits) / FullScale_bits * static_cast<double>(Capacity(channel))));
    StartState(ChangeOverState::NewDemand);
    m_State.m_ChangeOverBusy = true;
    UpdateChannelChangeOver();
    if (m_State.m_DemandBits[0] + m_State.m_DemandBits[1] == 0)
        AllChannelsOff();
}

void AirChannelControl::SetChannelOutput(std::int32_t channel) {
    m_State.m_ValveState = (channel + 1) % 2;
    const bool set = m_State.m_ValveState == 1;
    if (m_AIB.IsUsb())
        set ? m_AIB.SetExtGPO(ACUWiring::UsbValveOutput)
            : m_AIB.ClearExtGPO(ACUWiring::UsbValveOutput);
    else if (m_AIB.IsFireWire())
        set ? m_AIB.SetGPO(ACUWiring::FireWireValvePin)
            : m_AIB.ClearGPO(ACUWiring::FireWireValvePin);
}

void AirChannelControl::SetChannelDAC(std::int32_t channel, std::int32_t bits) {
    const std::int32_t held = std::clamp(bits, 0, LargestDAC);
    At(m_State.m_DACOut, channel) = held;
    m_AIB.SetDAC(channel, held);
    m_Display.Show(channel, DACSliders::PositionOf(held));
}

void AirChannelControl::AllChannelsOff() {
    for (std::int32_t channel = 0; channel < clsAIB::DACChannels; ++channel)
        SetChannelDAC(channel, 0);
    SetChannelOutput(0);
    m_State.m_ChangeOverBusy = false;
}

void AirChannelControl::StartState(ChangeOverState state) {
    m_State.m_ChangeOverState = state;
    m_State.m_StateStartTime = MonotonicSeconds(m_Clock);
}

void AirChannelControl::ForgetDemand(std::int32_t channel) {
    At(m_State.m_DemandBits, channel) = 0;
    At(m_State.m_DemandVelocity, channel) = 0.0F;
}

ChangeOverInputs AirChannelControl::InputsOf(std::int32_t channel) {
    ChangeOverInputs inputs;
    inputs.Demand_bits = At(m_State.m_DemandBits, channel);
    inputs.Output_bits = At(m_State.m_DACOut, channel);
    // Only the pre-charge waits for air; a reading costs a call to the board. One that fails
    // leaves 0: the air has not come yet.
    std::int32_t reading = 0;
    if (m_State.m_ChangeOverState == ChangeOverState::PreCharge &&
        m_AIB.GetADC(channel, reading) == Status::NoError)
        inputs.Reading_bits = reading;
    inputs.InState_s = MonotonicSeconds(m_Clock) - m_State.m_StateStartTime;
    return inputs;
}

void AirChannelControl::UpdateChannelChangeOver() {
    if (!m_Record.m_ACUInitialised)
        return;
    if (m_State.m_DemandBits[0] + m_State.m_DemandBits[1] == 0) {
        AllChannelsOff();
        return;
    }
    const std::int32_t active = m_State.m_ActiveChannel;
    if (m_Record.m_HasSolenoidValves == 0) {
        // Both channels lead to the same outlet: there is nothing to hand over.
        SetChannelDAC(active, At(m_State.m_DemandBits, active));
        m_State.m_ChangeOverState = ChangeOverState::Settled;
        m_State.m_ChangeOverBusy = false;
        return;
    }
    const ChangeOverState next = NextChangeOverState(m_State.m_ChangeOverState, InputsOf(active));
    if (next != m_State.m_ChangeOverState)
        Enter(next, active, OtherChannel(active));
}

void AirChannelControl::Enter(ChangeOverState state, std::int32_t active, std::int32_t other) {
    m_State.m_ChangeOverBusy =
        state == ChangeOverState::PreCharge || state == ChangeOverState::Settle;
    if (state == ChangeOverState::PreCharge) {
        At(m_State.m_DACOut, active) = PreChargeOutput_bits;
    } else {
        At(m_State.m_DACOut, active) =
            state == ChangeOverState::Off ? 0 : At(m_State.m_DemandBits, active);
        ForgetDemand(other);
        // While it settles, the other channel goes on flowing beside it.
        if (state != ChangeOverState::Settle)
            At(m_State.m_DACOut, other) = 0;
    }
    SetChannelOutput(active);
    SetChannelDAC(active, At(m_State.m_DACOut, active));
    SetChannelDAC(other, At(m_State.m_DACOut, other));
    StartState(state);
}

} // namespace ombrix

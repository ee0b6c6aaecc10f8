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

std::int32_t PressureFlowOffset(const ACURecord& record, float flow_ml_m) {
    const double flow = flow_ml_m;
    const auto sum =
        static_cast<float>(static_cast<double>(record.PressureCoeff[2]) * (flow * flow) +
                           static_cast<double>(record.PressureCoeff[1]) * flow +
                           static_cast<double>(record.PressureCoeff[0]));
    return RoundHalfEven(static_cast<double>(sum));
}

} // namespace

AirChannelControl::AirChannelControl(Station& station)
    : m_AIB(station.CurrentAIB), m_Unit(station.Calibration()), m_Outputs(station.Outputs),
      m_Clock(station.World.Time) {}

float AirChannelControl::Capacity(std::int32_t channel) const {
    return Record().ChannelCapacity.at(static_cast<std::size_t>(channel));
}

float AirChannelControl::FlowOf(std::int32_t channel, std::int32_t bits) const {
    return FlowOfReading(bits, Capacity(channel));
}

std::optional<float> AirChannelControl::CurrentChannelAir_ml_m(std::int32_t channel,
                                                               BoardAnswer* answer) {
    const auto bits = m_AIB->Reading(channel, answer);
    return bits ? std::optional(FlowOf(channel, *bits)) : std::nullopt;
}

std::optional<float> AirChannelControl::FlowOfBothChannels_ml_m(BoardAnswer* answer) {
    const auto first = CurrentChannelAir_ml_m(0, answer);
    if (!first)
        return std::nullopt;
    const auto second = CurrentChannelAir_ml_m(1, answer);
    return second ? std::optional(*first + *second) : std::nullopt;
}

std::optional<float> AirChannelControl::LineFlow_ml_m(BoardAnswer* answer) {
    if (Record().HasSolenoidValves == 0)
        return FlowOfBothChannels_ml_m(answer);
    // The state is the valves' output; the channel that it lets through is the other number.
    return CurrentChannelAir_ml_m(OtherChannel(m_ValveState), answer);
}

float AirChannelControl::CurrentAir_mms(bool zeroCutOff) {
    std::array<float, 2> flow_ml_m{};
    for (const std::int32_t channel : {0, 1}) {
        if (const auto bits = m_AIB->Reading(channel))
            flow_ml_m.at(static_cast<std::size_t>(channel)) =
                zeroCutOff ? FlowOf(channel, *bits) : FlowOfBits(*bits, Capacity(channel));
    }
    if (Record().VelocitySystemDate != OleDate() && m_ChangeOverBusy)
        UpdateChannelChangeOver();
    if (Record().HasSolenoidValves == 0)
        return FlowToVelocity(flow_ml_m[0] + flow_ml_m[1]);
    return FlowToVelocity(flow_ml_m.at(static_cast<std::size_t>(OtherChannel(m_ValveState))));
}

float AirChannelControl::DemandFromCalibration(float flow_ml_m, std::int32_t channel) const {
    if (!Record().ACUInitialised)
        return 0.0F;
    return DemandFromTable(flow_ml_m, Capacity(channel),
                           Record().VelocityCal.at(static_cast<std::size_t>(channel)),
                           Record().CalibrationPoints);
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
    if (velocity_mms == 0.0F) {
        if (OutputOf(0) == 0 || OutputOf(1) != 0)
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
    m_ActiveChannel = channel;
    if (Record().HasSolenoidValves != -1) {
        if (demandBits != 0)
            m_ValveState = channel;
        SetChannelDAC(OtherChannel(channel), 0);
    }
    Of(channel).Demand_bits = demandBits;
    StartState(ChangeOverState::NewDemand);
    m_ChangeOverBusy = true;
    UpdateChannelChangeOver();
    if (NothingIsDemanded())
        AllChannelsOff();
}

// The procedure tells a board again what it has refused, and ends when that goes on being refused.

void AirChannelControl::SetChannelOutput(std::int32_t channel) {
    m_ValveState = (channel + 1) % 2;
    m_Outputs.SetValve(*m_AIB, m_ValveState == 1);
}

void AirChannelControl::SetChannelDAC(std::int32_t channel, std::int32_t bits) {
    const std::int32_t held = std::clamp(bits, 0, AIB::DACFullScale);
    Of(channel).Output_bits = held;
    m_Outputs.Set(*m_AIB, channel, held);
}

void AirChannelControl::AllChannelsOff() {
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        SetChannelDAC(channel, 0);
    SetChannelOutput(0);
    m_ChangeOverBusy = false;
}

std::int32_t AirChannelControl::DemandOf(std::int32_t channel) const {
    return Of(channel).Demand_bits;
}

std::int32_t AirChannelControl::OutputOf(std::int32_t channel) const {
    return Of(channel).Output_bits;
}

bool AirChannelControl::NothingIsDemanded() const {
    return DemandOf(0) + DemandOf(1) == 0;
}

void AirChannelControl::StartState(ChangeOverState state) {
    m_ChangeOverState = state;
    m_StateStartTime = MonotonicSeconds(m_Clock);
}

ChangeOverInputs AirChannelControl::InputsOf(std::int32_t channel) {
    ChangeOverInputs inputs;
    inputs.Demand_bits = DemandOf(channel);
    inputs.Output_bits = OutputOf(channel);
    // Only the pre-charge waits for air; a reading costs a call to the board. One that fails
    // leaves 0: the air has not come yet.
    if (m_ChangeOverState == ChangeOverState::PreCharge)
        inputs.Reading_bits = m_AIB->Reading(channel).value_or(0);
    inputs.InState_s = MonotonicSeconds(m_Clock) - m_StateStartTime;
    return inputs;
}

void AirChannelControl::UpdateChannelChangeOver() {
    if (!Record().ACUInitialised)
        return;
    if (NothingIsDemanded()) {
        AllChannelsOff();
        return;
    }
    const std::int32_t active = m_ActiveChannel;
    if (Record().HasSolenoidValves == 0) {
        // Both channels lead to the same outlet: there is nothing to hand over.
        SetChannelDAC(active, DemandOf(active));
        m_ChangeOverState = ChangeOverState::Settled;
        m_ChangeOverBusy = false;
        return;
    }
    const ChangeOverState next = NextChangeOverState(m_ChangeOverState, InputsOf(active));
    if (next != m_ChangeOverState)
        Enter(next, active, OtherChannel(active));
}

void AirChannelControl::Enter(ChangeOverState state, std::int32_t active, std::int32_t other) {
    m_ChangeOverBusy = state == ChangeOverState::PreCharge || state == ChangeOverState::Settle;
    if (state == ChangeOverState::PreCharge) {
        Of(active).Output_bits = PreChargeOutput_bits;
    } else {
        Of(active).Output_bits = state == ChangeOverState::Off ? 0 : DemandOf(active);
        Of(other).Demand_bits = 0;
        // While it settles, the other channel goes on flowing beside it.
        if (state != ChangeOverState::Settle)
            Of(other).Output_bits = 0;
    }
    SetChannelOutput(active);
    SetChannelDAC(active, OutputOf(active));
    SetChannelDAC(other, OutputOf(other));
    StartState(state);
}

std::optional<float> AirChannelControl::PressureGet_mBar(BoardAnswer* answer) {
    const auto raw = m_AIB->Reading(ACUWiring::PressureInput, answer);
    const auto flow_ml_m = raw ? LineFlow_ml_m(answer) : std::nullopt;
    if (!flow_ml_m)
        return std::nullopt;
    // In Double: damaged coefficients must not overflow the 32 bits.
    const double bits = static_cast<double>(*raw) - PressureFlowOffset(Record(), *flow_ml_m) -
                        Record().PressureZero;
    return static_cast<float>(static_cast<double>(Record().PressureScale) * bits);
}

bool AirChannelControl::PressureZero(BoardAnswer* answer) {
    const auto raw = m_AIB->Reading(ACUWiring::PressureInput, answer);
    // Of both channels, whether the unit has valves or not.
    const auto flow_ml_m = raw ? FlowOfBothChannels_ml_m(answer) : std::nullopt;
    if (!flow_ml_m)
        return false;
    m_Unit.PressureZero(
        RoundHalfEven(static_cast<double>(*raw) - PressureFlowOffset(Record(), *flow_ml_m)));
    return true;
}

} // namespace ombrix

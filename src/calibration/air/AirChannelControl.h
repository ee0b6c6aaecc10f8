#pragma once

#include "board/Station.h"
#include "platform/ports/Clock.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace ombrix {

/// Where the hand-over of the air from one channel to the other stands. Numbers as they are in
/// the unit's documentation; 4 does not exist.
enum class ChangeOverState : std::int32_t {
    /// No air is wanted.
    Off = 0,
    /// The new channel is opened to 30 % until its air comes; the other one goes on flowing.
    PreCharge = 1,
    /// Both channels flow, the new one at its demand.
    Settle = 2,
    /// The new channel flows alone.
    Settled = 3,
    /// A demand has come and has not been looked at.
    NewDemand = 5,
};

/// What decides where the change-over goes; all of it concerns the channel that is to carry the
/// air.
struct ChangeOverInputs {
    std::int32_t Demand_bits = 0;
    /// What its DAC was last told.
    std::int32_t Output_bits = 0;
    std::int32_t Reading_bits = 0;
    /// Time since the present state was entered.
    double InState_s = 0.0;
};

/// Output of a channel while it is pre-charged: 30 % of full scale. A demand of that share or
/// more needs no pre-charge.
inline constexpr std::int32_t PreChargeOutput_bits = 19660;
inline constexpr double PreChargeLimit_bits = 19660.2;
/// A channel that reads more than this has its air.
inline constexpr std::int32_t AirHasCome_bits = 9999;
inline constexpr double SettleTime_s = 5.0;

/// The state that follows the present one; the present one when nothing is to happen yet.
ChangeOverState NextChangeOverState(ChangeOverState present, const ChangeOverInputs& inputs);

/// What came of a request for air.
struct AirSetting {
    std::int32_t DemandBits = 0;
    float Flow_ml_m = 0.0F;
    float Velocity_mms = 0.0F;
};

/// Drives and reads the air channels of the ACU behind the current board: picks the channel that
/// suits a flow, finds its demand in the channel's stored calibration, and hands the air over from
/// one channel to the other without stopping it. One object serves one procedure.
class AirChannelControl {
  public:
    /// Has the channel chosen by the flow: the small one up to its capacity.
    static constexpr std::int32_t ChooseChannel = -1;

    explicit AirChannelControl(Station& station);

    /// Reads both channels and advances a change-over that is going on; a unit that has never
    /// been calibrated is not advanced.
    /// @param zeroCutOff a channel below 1 % of full scale counts as zero
    /// @return the present velocity in mm/s through the standard base: of the selected channel
    ///         with solenoid valves, of both without
    float CurrentAir_mms(bool zeroCutOff);
    /// The channel's present flow in ml/min, 0 below 1 % of full scale; nothing when it cannot be
    /// read. @param answer takes how the reading went, when given, here and below
    std::optional<float> CurrentChannelAir_ml_m(std::int32_t channel,
                                                BoardAnswer* answer = nullptr);
    /// The flow of a channel that reads so many bits, 0 below 1 % of full scale.
    float FlowOf(std::int32_t channel, std::int32_t bits) const;

    /// Sets the air to a flow in ml/min or a velocity in mm/s. Nothing is changed when channel 0
    /// is not the larger one.
    /// @param channel 0 or 1, or ChooseChannel
    AirSetting SetAirVelocityInternal_ml_m(float flow_ml_m, std::int32_t channel = ChooseChannel);
    AirSetting SetAirVelocityInternal_mm_s(float velocity_mms,
                                           std::int32_t channel = ChooseChannel);
    /// Sets a channel's demand in bits and starts the change-over to it.
    void SetAirVelocityInternal_bits(std::int32_t channel, std::int32_t demandBits);
    /// Sets the solenoid valves for a channel.
    void SetChannelOutput(std::int32_t channel);
    /// Writes a channel's DAC, held to 0 to 65535, whatever the change-over does.
    void SetChannelDAC(std::int32_t channel, std::int32_t bits);
    void AllChannelsOff();

    bool ChangeOverBusy() const { return m_ChangeOverBusy; }
    /// One step of the change-over.
    void UpdateChannelChangeOver();
    /// Names the channel whose air the valves are about to let through.
    void SetValveState(std::int32_t valveState) { m_ValveState = valveState; }
    /// (channel + 1) mod 2 of the channel last selected: 1 for channel 0, 0 for channel 1.
    std::int32_t ValveState() const { return m_ValveState; }
    /// What a channel has been demanded, and what its output has been told; in bits.
    std::int32_t DemandOf(std::int32_t channel) const;
    std::int32_t OutputOf(std::int32_t channel) const;

    /// The present pressure in mBar, without the back-pressure of the flow and the zero; nothing
    /// when the sensor or the flow cannot be read.
    std::optional<float> PressureGet_mBar(BoardAnswer* answer = nullptr);
    /// Takes the present pressure reading as zero. False when it cannot be read.
    bool PressureZero(BoardAnswer* answer = nullptr);

  private:
    struct ChannelDemand {
        std::int32_t Channel = 0;
        float Flow_ml_m = 0.0F;
        std::int32_t DemandBits = 0;
        bool Found = false;
    };
    /// What a channel was told last.
    struct Channel {
        std::int32_t Demand_bits = 0;
        std::int32_t Output_bits = 0;
    };

    const ACURecord& Record() const { return m_Unit.Record(); }
    Channel& Of(std::int32_t channel) { return m_Channels.at(static_cast<std::size_t>(channel)); }
    const Channel& Of(std::int32_t channel) const {
        return m_Channels.at(static_cast<std::size_t>(channel));
    }
    bool NothingIsDemanded() const;
    ChannelDemand GetAirChannelAndDemand(float velocity_mms, std::int32_t channel) const;
    float DemandFromCalibration(float flow_ml_m, std::int32_t channel) const;
    float Capacity(std::int32_t channel) const;
    std::optional<float> FlowOfBothChannels_ml_m(BoardAnswer* answer);
    std::optional<float> LineFlow_ml_m(BoardAnswer* answer);
    static std::int32_t OtherChannel(std::int32_t channel) { return channel == 0 ? 1 : 0; }
    ChangeOverInputs InputsOf(std::int32_t channel);
    void Enter(ChangeOverState state, std::int32_t active, std::int32_t other);
    void StartState(ChangeOverState state);

    std::shared_ptr<AIB> m_AIB;
    ACUCalibration& m_Unit;
    Outputs& m_Outputs;
    const Clock& m_Clock;
    /// Four, as a board has outputs; the air goes through the first two.
    std::array<Channel, ACUChannels> m_Channels{};
    std::int32_t m_ValveState = 0;
    /// The channel that is to carry the air.
    std::int32_t m_ActiveChannel = 0;
    /// A change-over is going on; it advances with each poll.
    bool m_ChangeOverBusy = false;
    ChangeOverState m_ChangeOverState = ChangeOverState::Off;
    /// Seconds of the monotonic clock when the state was entered.
    double m_StateStartTime = 0.0;
};

} // namespace ombrix

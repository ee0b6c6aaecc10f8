#pragma once

#include <cstdint>

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

} // namespace ombrix

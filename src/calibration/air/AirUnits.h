#pragma once

#include "board/unit/ACURecord.h"

#include <cstdint>

namespace ombrix {

/// Bits of a demand or a reading at full scale of an air channel.
inline constexpr std::int32_t FullScale_bits = 65534;

/// Diameter of the circular base that velocities refer to when none is given.
inline constexpr float StandardBase_mm = 50.0F;

/// Superficial velocity in mm/s of a flow in ml/min through a circular base: the flow divided
/// by the base's area. A diameter of 0 stands for the standard base.
float FlowToVelocity(float flow_ml_m, float diameter_mm = StandardBase_mm);

/// The flow in ml/min of a superficial velocity in mm/s. Its π is not that of FlowToVelocity:
/// stored tables depend on either as it is, so the two are not exact inverses.
float VelocityToFlow(float velocity_mms, float diameter_mm = StandardBase_mm);

/// The flow in ml/min that a reading in bits stands for.
float FlowOfBits(std::int32_t bits, float capacity_ml_m);
/// The same of a channel in use: below 1 % of full scale it counts as closed.
float FlowOfReading(std::int32_t bits, float capacity_ml_m);

/// The demand in bits, 0 to 65534, at which a calibrated channel delivers a flow: the segment
/// of its table that reaches the flow first, solved for the demand. Flows below and above the
/// table continue its first and last segment. 0 where the table has no slope.
/// @param points number of calibration points of the table
float DemandFromTable(float flow_ml_m, float capacity_ml_m, const ACUChannelCal& table,
                      std::int32_t points);

} // namespace ombrix

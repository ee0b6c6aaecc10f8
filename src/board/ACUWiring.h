#pragma once

#include <cstdint>

/// How an ACU hangs on its board.
namespace ombrix::ACUWiring {

/// The ADC that reads the pressure sensor.
constexpr std::int32_t PressureInput = 2;
/// The digital output of a USB board that switches the solenoid valves over.
constexpr std::int32_t UsbValveOutput = 8;
/// The pin of a FireWire board that does.
constexpr std::int32_t FireWireValvePin = 0;

} // namespace ombrix::ACUWiring

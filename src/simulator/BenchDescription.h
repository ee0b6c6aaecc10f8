#pragma once

#include "board/AIBControl.h"
#include "simulator/MFCChannel.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// What stands in a board's EPROM before anybody has written it.
struct UnitDescription {
    bool Calibrated = false;
    bool SolenoidValves = true;
    /// Full scale of the pressure sensor; 400 or 1000.
    float MaxPressure_mBar = 1000.0F;
    std::string MFCNumber;
    std::array<float, 2> Capacity_ml_m = {5000.0F, 200.0F};
};

/// One board of a bench and the unit behind it.
struct BoardDescription {
    BusType Bus = BusType::Usb;
    std::int32_t Serial = 0;
    /// 0 analog MFCs only, 1 digital and analog, 2 digital only.
    std::int32_t HWVersion = 0;
    UnitDescription Unit;
    std::array<MFCCharacteristics, 2> Channels;
    /// Analog inputs are fed by this board's outputs; -1 for the unit's own sensors.
    int InputsFromBoard = -1;
    /// Analog input 0 measures the air line of this board's unit; -1 for none.
    int MeasuresLineOfBoard = -1;
};

/// No bench of that name; the message lists those there are.
class BenchError : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/// The boards of the bench of that name. @throws BenchError
std::vector<BoardDescription> DescribeBench(std::string_view name);

/// The names of all benches for a sentence. @param conjunction before the last ("and")
std::string BenchNames(std::string_view conjunction);

/// Back-pressure in mBar of an open 50 mm base at a flow.
double BackPressure_mBar(double flow_ml_m);

/// Reading of the pressure sensor: 0.5 V at zero, 4.5 V at full scale, 5 V being 65534 bits.
double PressureReading_bits(double pressure_mBar, double maxPressure_mBar);

} // namespace ombrix

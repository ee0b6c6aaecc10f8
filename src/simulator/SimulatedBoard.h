#pragma once

#include "simulator/Faults.h"
#include "simulator/SimulatorFiles.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>

namespace ombrix {

/// One simulated board with the unit behind it. It knows neither other boards nor the library's
/// call rules: the bench wires boards together and checks arguments.
class SimulatedBoard {
  public:
    static constexpr std::int32_t Registers = 256;
    static constexpr std::int32_t GPIOPins = 20;
    static constexpr std::int32_t ExtendedPins = 16;
    static constexpr std::int32_t AnalogChannels = 4;
    static constexpr std::int32_t AirChannels = 2;

    /// @param folder where EPROM, identity and outputs are kept; empty for memory only
    SimulatedBoard(const BoardDescription& description, const Faults& faults,
                   const std::filesystem::path& folder, std::uint64_t seed);

    /// To be called when the faults that the board refers to have changed.
    void FaultsChanged();

    AccessoryInfo Identity() const;
    /// Takes effect in the identity that the next opening reads.
    void SetIdentity(std::int32_t code, std::int32_t serial);
    const BoardDescription& Description() const { return m_Description; }
    SimulatedEPROM& Eprom() { return m_Eprom; }

    void WriteRegister(std::int32_t address, std::int32_t value);
    std::int32_t ReadRegister(std::int32_t address, double now_s);

    void SetDirections(std::int32_t mask) { m_Directions = static_cast<std::uint32_t>(mask); }
    void SetPin(std::int32_t pin, bool high);
    void SetExtendedPin(std::int32_t pin, bool on);
    bool PinLevel(std::int32_t pin, double now_s) const;

    void SetDAC(std::int32_t channel, std::int32_t value, double now_s);
    std::int32_t DAC(std::int32_t channel) const {
        return m_Outputs.DAC.at(static_cast<std::size_t>(channel));
    }
    std::int32_t FlowSetPoint(std::int32_t channel) const {
        return m_Outputs.SetPoint.at(static_cast<std::size_t>(channel));
    }
    /// An analog input in bits, fed by the unit's own sensors.
    std::int32_t AnalogInput(std::int32_t channel, double now_s);
    /// A signal of so many bits as an analog input reads it.
    std::int32_t Digitised(double signal_bits);

    /// Digital MFC link, 0 to 32000.
    void SetFlowSetPoint(std::int32_t channel, std::int32_t setPoint, double now_s);
    std::int32_t FlowReading(std::int32_t channel, double now_s);

    std::int32_t Variable(std::int32_t number) const;
    void SetVariable(std::int32_t number, std::int32_t value) { m_Variables[number] = value; }

    /// Flow on the unit's air line in ml/min: of the channel that the valve selects, of both
    /// on a unit without valves.
    double LineFlow_ml_m(double now_s);

  private:
    void HoldOutputs();
    void SetDemand(std::int32_t channel, double demand_bits, double now_s);
    std::int32_t Pressure(double now_s);
    bool ValveSelectsLargeChannel() const;

    BoardDescription m_Description;
    const Faults& m_Faults;
    std::filesystem::path m_IdentityFile;
    SimulatedEPROM m_Eprom;
    Noise m_Noise;
    std::array<MFCChannel, AirChannels> m_Channels;
    std::array<std::int32_t, Registers> m_Registers{};
    std::uint32_t m_Directions = 0;
    std::uint32_t m_Pins = 0;
    std::uint32_t m_ExtendedPins;
    OutputsFile m_OutputsFile;
    BoardOutputs m_Outputs;
    std::map<std::int32_t, std::int32_t> m_Variables;
};

} // namespace ombrix

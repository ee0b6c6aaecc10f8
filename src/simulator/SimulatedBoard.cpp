#include "simulator/SimulatedBoard.h"

#include "platform/os/FolderDrive.h"
#include "platform/text/Rounding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace ombrix {

namespace {

constexpr std::int32_t PressureRegister = 92;
constexpr std::int32_t WalkingTestRegister = 16;
constexpr std::int32_t StatusVariable = 6;
constexpr std::int32_t SetPointFullScale = 32000;
constexpr std::int32_t LargestReading = 65535;
constexpr std::int32_t ValveExtendedPin = 8;
constexpr std::int32_t HeartbeatPin = 19;

constexpr std::uint32_t Bit(std::int32_t number) {
    return 1U << static_cast<unsigned>(number);
}

MFCCharacteristics Spoilt(const BoardDescription& board, const Faults& faults,
                          std::int32_t channel) {
    MFCCharacteristics mfc = board.Channels.at(static_cast<std::size_t>(channel));
    mfc.Hysteresis_bits += Faults::Sum(faults.Hysteresis_bits, channel);
    mfc.Gain *= 1.0 + Faults::Sum(faults.Gain_percent, channel) / 100.0;
    return mfc;
}

SimulatedEPROM MakeEprom(const BoardDescription& board, const std::filesystem::path& folder) {
    if (folder.empty())
        return SimulatedEPROM(FactoryContent(board));
    return {folder / fmt::format("EPROM_{}.bin", board.Serial), FactoryContent(board)};
}

OutputsFile MakeOutputsFile(const BoardDescription& board, const std::filesystem::path& folder) {
    if (folder.empty())
        return {};
    return OutputsFile(folder / fmt::format("OUTPUTS_{}.txt", board.Serial));
}

/// The identity that was written to a board outlives the program, as its EPROM does.
void ReadIdentity(const std::filesystem::path& file, BoardDescription& board) {
    if (file.empty() || !std::filesystem::exists(file))
        return;
    std::istringstream text(ReadWholeFile(file));
    std::int32_t serial = 0;
    std::int32_t code = 0;
    if (text >> serial >> code) {
        board.Serial = serial;
        board.HWVersion = code;
    }
}

} // namespace

SimulatedBoard::SimulatedBoard(const BoardDescription& description, const Faults& faults,
                               const std::filesystem::path& folder, std::uint64_t seed)
    : m_Description(description), m_Faults(faults),
      m_IdentityFile(folder.empty() ? folder
                                    : folder / fmt::format("IDENTITY_{}.txt", description.Serial)),
      m_Eprom(MakeEprom(description, folder)),
      m_Noise(seed), m_Channels{MFCChannel(Spoilt(description, faults, 0)),
                                MFCChannel(Spoilt(description, faults, 1))},
      // At rest the valve stands for the large channel.
      m_ExtendedPins(Bit(ValveExtendedPin)), m_OutputsFile(MakeOutputsFile(description, folder)) {
    if (description.Bus == BusType::FireWire)
        m_Pins = Bit(0);
    ReadIdentity(m_IdentityFile, m_Description);
    HoldOutputs();
}

void SimulatedBoard::HoldOutputs() {
    m_Outputs = m_OutputsFile.Kept();
    for (std::size_t channel = 0; channel < m_Channels.size(); ++channel) {
        m_Channels.at(channel).SetDemand(m_Outputs.Demand_bits.at(channel), 0.0);
        m_Channels.at(channel).Settle();
    }
}

void SimulatedBoard::FaultsChanged() {
    for (std::int32_t channel = 0; channel < AirChannels; ++channel)
        m_Channels.at(static_cast<std::size_t>(channel))
            .SetCharacteristics(Spoilt(m_Description, m_Faults, channel));
}

AccessoryInfo SimulatedBoard::Identity() const {
    AccessoryInfo info;
    info.BusType = static_cast<std::int32_t>(m_Description.Bus);
    info.HWVersion = m_Description.HWVersion;
    info.DevType = 1;
    info.DevSerialNum = m_Description.Serial;
    info.Vendor = "Simulated Instruments";
    info.Module = m_Description.Bus == BusType::Usb ? "Accessory Interface Board USB"
                                                    : "Accessory Interface Board 1394";
    info.ConfigBits = 0x1F;
    info.BuildDate = "Mar 12 2024 10:21:07";
    return info;
}

void SimulatedBoard::SetIdentity(std::int32_t code, std::int32_t serial) {
    m_Description.HWVersion = code;
    m_Description.Serial = serial;
    if (!m_IdentityFile.empty())
        ReplaceWholeFile(m_IdentityFile, fmt::format("{} {}\n", serial, code));
}

void SimulatedBoard::WriteRegister(std::int32_t address, std::int32_t value) {
    if (address == WalkingTestRegister) {
        for (const int bit : m_Faults.StuckBits)
            value &= ~static_cast<std::int32_t>(Bit(bit));
    }
    m_Registers.at(static_cast<std::size_t>(address)) = value;
}

std::int32_t SimulatedBoard::ReadRegister(std::int32_t address, double now_s) {
    if (address == PressureRegister)
        return Pressure(now_s);
    return m_Registers.at(static_cast<std::size_t>(address));
}

void SimulatedBoard::SetPin(std::int32_t pin, bool high) {
    m_Pins = high ? m_Pins | Bit(pin) : m_Pins & ~Bit(pin);
}

void SimulatedBoard::SetExtendedPin(std::int32_t pin, bool on) {
    m_ExtendedPins = on ? m_ExtendedPins | Bit(pin) : m_ExtendedPins & ~Bit(pin);
}

bool SimulatedBoard::PinLevel(std::int32_t pin, double now_s) const {
    if ((m_Directions & Bit(pin)) != 0)
        return (m_Pins & Bit(pin)) != 0;
    // Inputs 8 and 9 detect the MFC power that the extended outputs of those numbers switch.
    if (pin == 8 || pin == 9)
        return (m_ExtendedPins & Bit(pin)) != 0;
    // The FPGA's heartbeat, one second high, one second low.
    return pin == HeartbeatPin && std::fmod(now_s, 2.0) < 1.0;
}

void SimulatedBoard::SetDemand(std::int32_t channel, double demand_bits, double now_s) {
    m_Channels.at(static_cast<std::size_t>(channel)).SetDemand(demand_bits, now_s);
    m_Outputs.Demand_bits.at(static_cast<std::size_t>(channel)) = RoundHalfEven(demand_bits);
}

void SimulatedBoard::SetDAC(std::int32_t channel, std::int32_t value, double now_s) {
    m_Outputs.DAC.at(static_cast<std::size_t>(channel)) = value;
    if (channel < AirChannels)
        SetDemand(channel, value, now_s);
    m_OutputsFile.Keep(m_Outputs);
}

void SimulatedBoard::SetFlowSetPoint(std::int32_t channel, std::int32_t setPoint, double now_s) {
    m_Outputs.SetPoint.at(static_cast<std::size_t>(channel)) = setPoint;
    SetDemand(channel, MFCChannel::FullScale_bits * setPoint / SetPointFullScale, now_s);
    m_OutputsFile.Keep(m_Outputs);
}

std::int32_t SimulatedBoard::Digitised(double signal_bits) {
    constexpr double converterNoise_bits = 1.5;
    return std::clamp(RoundHalfEven(signal_bits + converterNoise_bits * m_Noise.Normal()), 0,
                      LargestReading);
}

std::int32_t SimulatedBoard::AnalogInput(std::int32_t channel, double now_s) {
    if (channel < AirChannels) {
        if (m_Faults.NoAir)
            return Digitised(0.0);
        MFCChannel& mfc = m_Channels.at(static_cast<std::size_t>(channel));
        return Digitised(mfc.Reading_bits(now_s, m_Noise));
    }
    if (channel == 2)
        return Pressure(now_s);
    // Nothing is connected to the last input: it drifts about.
    return Digitised(2100.0 + 60.0 * std::sin(now_s / 7.0) + 12.0 * m_Noise.Normal());
}

std::int32_t SimulatedBoard::FlowReading(std::int32_t channel, double now_s) {
    const double reading_bits =
        m_Faults.NoAir
            ? 0.0
            : m_Channels.at(static_cast<std::size_t>(channel)).Reading_bits(now_s, m_Noise);
    return std::clamp(RoundHalfEven(reading_bits / MFCChannel::FullScale_bits * SetPointFullScale),
                      0, SetPointFullScale);
}

std::int32_t SimulatedBoard::Variable(std::int32_t number) const {
    if (number == StatusVariable) {
        std::uint32_t ready = Bit(16) | Bit(17);
        for (const std::int32_t channel : m_Faults.NotReadyChannels)
            ready &= ~Bit(16 + channel);
        return static_cast<std::int32_t>(ready);
    }
    const auto found = m_Variables.find(number);
    return found == m_Variables.end() ? 0 : found->second;
}

bool SimulatedBoard::ValveSelectsLargeChannel() const {
    if (m_Description.Bus == BusType::Usb)
        return (m_ExtendedPins & Bit(ValveExtendedPin)) != 0;
    // A pin that is an input drives nothing: the valve is at rest.
    return (m_Directions & Bit(0)) == 0 || (m_Pins & Bit(0)) != 0;
}

double SimulatedBoard::LineFlow_ml_m(double now_s) {
    if (m_Faults.NoAir)
        return 0.0;
    std::array<double, AirChannels> flow{};
    for (std::size_t channel = 0; channel < flow.size(); ++channel)
        flow.at(channel) = m_Channels.at(channel).Flow_bits(now_s) / MFCChannel::FullScale_bits *
                           m_Description.Unit.Capacity_ml_m.at(channel);
    if (!m_Description.Unit.SolenoidValves)
        return flow[0] + flow[1];
    return ValveSelectsLargeChannel() ? flow[0] : flow[1];
}

std::int32_t SimulatedBoard::Pressure(double now_s) {
    constexpr double sensorNoise_bits = 4.0;
    const double maxPressure = m_Description.Unit.MaxPressure_mBar;
    if (m_Faults.PressureFrozen)
        return RoundHalfEven(PressureReading_bits(0.0, maxPressure));
    const double pressure = BackPressure_mBar(LineFlow_ml_m(now_s));
    return Digitised(PressureReading_bits(pressure, maxPressure) +
                     sensorNoise_bits * m_Noise.Normal());
}

} // namespace ombrix

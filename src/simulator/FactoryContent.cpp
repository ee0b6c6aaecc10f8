// The EPROM contents with which the units of the simulated benches are delivered.
#include "board/eprom/EpromFields.h"
#include "board/eprom/EpromStorage.h"
#include "platform/text/OleDate.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "simulator/SimulatorFiles.h"

namespace ombrix {

namespace {

namespace Map = ACUMemoryMap;

constexpr std::array<int, 10> CalibrationPercent = {1, 4, 8, 12, 16, 20, 40, 60, 80, 95};

class ContentWriter final : public EpromSink {
  public:
    explicit ContentWriter(SimulatedEPROM::Words& words) : m_Words(words) {}

    AIBStatus WriteEPROM(std::int32_t address, std::int32_t word) override {
        m_Words.at(static_cast<std::size_t>(address / EpromWordBytes)) = word;
        return Status::NoError;
    }
    void Long(std::int32_t address, std::int32_t value) { WriteEPROMLng(address, value); }
    void Single(std::int32_t address, double value) {
        WriteEPROMSng(address, static_cast<float>(value));
    }
    void Date(std::int32_t address, OleDate date) { WriteEPROMDate(address, date); }
    void Text(std::int32_t address, const std::string& text, std::int32_t length) {
        WriteEPROMString(address, FixedWidth(text, static_cast<std::size_t>(length)), length);
    }

  private:
    SimulatedEPROM::Words& m_Words;
};

struct DateBlock {
    std::int32_t Date;
    std::int32_t Passed;
    std::int32_t User;
};

void WriteDateBlock(ContentWriter& writer, const DateBlock& block, OleDate date) {
    constexpr std::int32_t stored = -1; // True
    writer.Date(block.Date, date);
    writer.Long(block.Passed, stored);
    writer.Text(block.User, "QUILLON", Map::UserLength);
}

void WriteVelocityTable(ContentWriter& writer, const BoardDescription& board,
                        std::int32_t channel) {
    const MFCCharacteristics& mfc = board.Channels.at(static_cast<std::size_t>(channel));
    std::array<double, CalibrationPercent.size()> demand{};
    std::array<double, CalibrationPercent.size()> output{};
    for (std::size_t point = 0; point < CalibrationPercent.size(); ++point) {
        const double exact = CalibrationPercent.at(point) * MFCChannel::FullScale_bits / 100.0;
        const std::int32_t bits = RoundHalfEven(exact);
        demand.at(point) = bits;
        output.at(point) = MFCChannel::SteadyOutput(mfc, bits);
        writer.Long(Map::VelocityCal + 4 * static_cast<std::int32_t>(point), bits);
    }
    std::int32_t address =
        Map::VelocityCal + channel * Map::VelocityCalBytes + Map::VelocityCalDemandBytes;
    for (std::size_t point = 1; point < demand.size(); ++point) {
        const double slope =
            (output.at(point) - output.at(point - 1)) / (demand.at(point) - demand.at(point - 1));
        writer.Single(address, slope);
        writer.Single(address + 4, output.at(point) - slope * demand.at(point));
        address += 8;
    }
}

void WritePressure(ContentWriter& writer, const UnitDescription& unit) {
    writer.Long(Map::PressurePresent, Map::PressurePresentCode);
    writer.Single(Map::MaxPressure, unit.MaxPressure_mBar);
    writer.Single(Map::BaseDiameter, 50.0);
    // The polynomial of the back-pressure, found from its values at three flows.
    const auto reading = [&unit](double flow_ml_m) {
        return PressureReading_bits(BackPressure_mBar(flow_ml_m), unit.MaxPressure_mBar);
    };
    constexpr double step_ml_m = 1000.0;
    const double zero = reading(0.0);
    const double first = reading(step_ml_m) - zero;
    const double second = reading(2.0 * step_ml_m) - zero;
    writer.Single(Map::PressureCoeff, zero);
    writer.Single(Map::PressureCoeff + 4, (2.0 * first - second / 2.0) / step_ml_m);
    writer.Single(Map::PressureCoeff + 8, (second / 2.0 - first) / (step_ml_m * step_ml_m));
}

void WriteRecord(ContentWriter& writer, const BoardDescription& board) {
    const UnitDescription& unit = board.Unit;
    constexpr std::int32_t dataVersion = 2;
    writer.Long(board.Bus == BusType::Usb ? Map::DataVersion_USB : Map::DataVersion_FireWire,
                dataVersion);
    writer.Single(Map::ChannelCapacity, unit.Capacity_ml_m[0]);
    writer.Single(Map::ChannelCapacity + 4, unit.Capacity_ml_m[1]);
    writer.Single(Map::ChannelCapacity + 8, 0.0);
    writer.Single(Map::ChannelCapacity + 12, 0.0);
    writer.Long(Map::CalibrationPoints, static_cast<std::int32_t>(CalibrationPercent.size()));
    writer.Long(Map::HasSolenoidValves, unit.SolenoidValves ? -1 : 0);
    writer.Long(Map::DigitalMFCConfig, board.HWVersion);
    writer.Long(Map::DigitalPressureConfig, 0);
    WriteVelocityTable(writer, board, 0);
    WriteVelocityTable(writer, board, 1);
    writer.Text(Map::MFCNumber, unit.MFCNumber, Map::MFCNumberLength);

    WriteDateBlock(writer,
                   {Map::VelocitySystemDate, Map::VelocitySystemPassed, Map::VelocitySystemUser},
                   OleDate::FromCivil({2024, 3, 12, 9, 41, 0}));
    WriteDateBlock(writer,
                   {Map::VelocityAuditDate, Map::VelocityAuditPassed, Map::VelocityAuditUser},
                   OleDate::FromCivil({2024, 3, 12, 10, 2, 0}));
    WritePressure(writer, unit);
    WriteDateBlock(writer,
                   {Map::PressureSystemDate, Map::PressureSystemPassed, Map::PressureSystemUser},
                   OleDate::FromCivil({2024, 3, 12, 10, 31, 0}));
    WriteDateBlock(writer,
                   {Map::PressureAuditDate, Map::PressureAuditPassed, Map::PressureAuditUser},
                   OleDate::FromCivil({2024, 3, 12, 10, 44, 0}));
}

} // namespace

SimulatedEPROM::Words FactoryContent(const BoardDescription& board) {
    SimulatedEPROM::Words words{};
    words.fill(-1);
    if (board.Unit.Calibrated) {
        ContentWriter writer(words);
        WriteRecord(writer, board);
    }
    return words;
}

} // namespace ombrix

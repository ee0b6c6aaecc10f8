// A unit's history as text: for a spreadsheet, and for people.
#include "calibration/history/HistoryDrift.h"
#include "platform/text/DateText.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// A field of comma-separated values.
std::string Field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char character : text)
        quoted += character == '"' ? "\"\"" : std::string(1, character);
    return quoted + "\"";
}

std::string ReadingFields(const PointReading& reading) {
    return reading.Valid
               ? fmt::format("{},{}", reading.Reading_bits, GeneralText(reading.Flow_ml_m))
               : ",";
}

void AddVelocityLines(std::string& csv, const std::string& head, const HistoryEntry& run) {
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ChannelMeasurement& measured = run.Velocity.Channels.at(channel);
        for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
            const PointDemand& demand = measured.Demand.at(point);
            csv +=
                fmt::format("{},{},{},{},{},{},{},\r\n", head, channel + 1, point + 1, demand.Bits,
                            GeneralText(demand.Flow_ml_m), ReadingFields(measured.Rising.at(point)),
                            ReadingFields(measured.Falling.at(point)));
        }
    }
}

void AddPressureLines(std::string& csv, const std::string& head, const HistoryEntry& run) {
    int number = 0;
    for (const PressureReading& point : run.Pressure)
        csv += fmt::format("{},pressure,{},,{},,,,,{}\r\n", head, ++number,
                           GeneralText(point.Flow_ml_m), GeneralText(point.Reading));
}

std::string DateOrNever(OleDate date) {
    return date == OleDate() ? "never" : DateText(date, "dd/mm/yyyy hh:nn");
}

std::string ReadingText(const PointReading& reading) {
    return reading.Valid ? fmt::format("{:>7} {:>9}", reading.Reading_bits,
                                       FixedText(static_cast<double>(reading.Flow_ml_m), 2))
                         : fmt::format("{:>17}", "-");
}

std::string ChannelText(const ChannelMeasurement& measured, std::size_t channel) {
    if (measured.Demand.empty())
        return {};
    std::string text =
        fmt::format("\nChannel {}, {} ml/min\nPoint       Demand             Rising           "
                    "Falling\n          bits ml/min     bits    ml/min    bits    ml/min\n",
                    channel + 1, GeneralText(measured.Capacity_ml_m));
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const PointDemand& demand = measured.Demand.at(point);
        text += fmt::format("{:>5} {:>8} {:>6}  {} {}\n", point + 1, demand.Bits,
                            FixedText(static_cast<double>(demand.Flow_ml_m), 0),
                            ReadingText(measured.Rising.at(point)),
                            ReadingText(measured.Falling.at(point)));
    }
    return text;
}

std::string PressureText(const HistoryEntry& run) {
    std::string text =
        fmt::format("\n  ml/min  {}\n", run.Kind == RunKind::PressureAudit ? "mBar" : "bits");
    for (const PressureReading& point : run.Pressure)
        text += fmt::format("{:>8}  {}\n", FixedText(static_cast<double>(point.Flow_ml_m), 0),
                            FixedText(static_cast<double>(point.Reading), 2));
    return text;
}

std::string FoundText(const ACURecord& found) {
    return fmt::format(
        "As found: velocity {}, audit {};\n          pressure {}, audit {}\n",
        DateOrNever(found.m_VelocitySystemDate), DateOrNever(found.m_VelocityAuditDate),
        DateOrNever(found.m_PressureSystemDate), DateOrNever(found.m_PressureAuditDate));
}

} // namespace

std::string HistoryCsv(const CalibrationHistory& history) {
    std::string csv = "when,unit,station,kind,verdict,channel,point,demand_bits,demand_ml_m,"
                      "rising_bits,rising_ml_m,falling_bits,falling_ml_m,pressure\r\n";
    for (const HistoryEntry& run : history.Runs) {
        const std::string head = fmt::format(
            "{},ACU{:05},{},{},{}", DateText(run.When, "yyyy-mm-dd hh:nn:ss"), run.Serial,
            Field(run.Program.Computer), NameOf(run.Kind), Field(run.Verdict));
        if (IsVelocity(run.Kind))
            AddVelocityLines(csv, head, run);
        else
            AddPressureLines(csv, head, run);
    }
    return csv;
}

std::string DetailsOf(const HistoryEntry& run) {
    std::string text = fmt::format("{}: {}\n{} on {}, {} {}\n", TitleOf(run.Kind), run.Verdict,
                                   DateText(run.When, "dd/mm/yyyy hh:nn:ss"), run.Program.Computer,
                                   run.Program.Name, run.Program.Version);
    for (const std::string& reason : run.Reasons)
        text += reason + "\n";
    text += FoundText(run.Found);
    text += run.Left ? "As left:  new values were stored in the unit\n"
                     : "As left:  no values were changed\n";
    if (IsVelocity(run.Kind)) {
        for (std::size_t channel = 0; channel < AirChannels; ++channel)
            text += ChannelText(run.Velocity.Channels.at(channel), channel);
    } else {
        text += PressureText(run);
    }
    if (!run.Limits.empty())
        text += "\nLimits\n";
    for (const auto& [name, value] : run.Limits)
        text += fmt::format("{}: {}\n", name, GeneralText(value));
    if (!run.Files.empty())
        text += "\nFiles\n";
    for (const std::string& file : run.Files)
        text += file + "\n";
    return text;
}

} // namespace ombrix

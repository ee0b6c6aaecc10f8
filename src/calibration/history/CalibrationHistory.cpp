#include "calibration/history/CalibrationHistory.h"

#include "calibration/history/HistoryChain.h"
#include "calibration/judge/Judgement.h"
#include "journal/UnitJson.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace ombrix {

bool AppendToHistory(Platform& world, HistoryEntry entry) {
    if (IsCalibration(entry.Kind))
        entry.Limits = LimitsOf(entry.Kind);
    try {
        AppendToChain(world.Files, world.Time, entry.Serial, EntryJson(entry));
        return true;
    } catch (const DriveError& error) {
        TellOperator(world,
                     std::string("The run could not be added to the calibration history:\r\n\r\n") +
                         error.what() + "\r\n\r\nPlease make room on the disk and keep the report.",
                     MessageIcon::Warning);
        return false;
    }
}

bool IsInHistory(const Drive& files, const HistoryEntry& run) {
    const std::vector<HistoryEntry> runs = ReadHistory(files, run.Serial).Runs;
    return std::any_of(runs.begin(), runs.end(), [&run](const HistoryEntry& other) {
        return other.Kind == run.Kind && other.When == run.When &&
               other.Program.ProcessId == run.Program.ProcessId &&
               other.Program.Computer == run.Program.Computer;
    });
}

std::vector<std::int32_t> UnitsWithHistory(const Drive& files) {
    std::vector<std::int32_t> serials = UnitsWithChain(files);
    std::erase_if(serials,
                  [&files](std::int32_t serial) { return !files.FileExists(HistoryPath(serial)); });
    return serials;
}

CalibrationHistory ReadHistory(const Drive& files, std::int32_t serial) {
    CalibrationHistory history;
    if (!files.FileExists(HistoryPath(serial)))
        return history;
    std::istringstream text(files.ReadFile(HistoryPath(serial)));
    for (std::string line; std::getline(text, line);) {
        try {
            history.Runs.push_back(EntryOf(SingleJson::parse(line)));
            history.Runs.back().Line = line;
        } catch (const std::exception&) {
            ++history.DamagedLines;
        }
    }
    return history;
}

namespace {

/// [bits, ml/min]; null where nothing was measured.
SingleJson ReadingJson(const PointReading& reading) {
    return reading.Valid ? DemandJson({reading.Reading_bits, reading.Flow_ml_m}) : SingleJson();
}

PointReading ReadingOf(const SingleJson& json) {
    if (json.is_null())
        return {};
    const PointDemand reading = DemandOf(json);
    return {reading.Bits, reading.Flow_ml_m, true};
}

SingleJson ChannelJson(const ChannelMeasurement& measured) {
    SingleJson channel = {{"capacity_ml_m", ToJson(measured.Capacity_ml_m)}};
    channel["points"] = SingleJson::array();
    for (std::size_t point = 0; point < measured.Demand.size(); ++point)
        channel["points"].push_back({{"demand", DemandJson(measured.Demand.at(point))},
                                     {"rising", ReadingJson(measured.Rising.at(point))},
                                     {"falling", ReadingJson(measured.Falling.at(point))}});
    channel["steps"] = SingleJson::array();
    for (const StepMeasurement& step : measured.Steps)
        channel["steps"].push_back({{"point", step.Point},
                                    {"demand", DemandJson(step.Demand)},
                                    {"reading", ReadingJson(step.Reading)}});
    return channel;
}

ChannelMeasurement ChannelOf(const SingleJson& json) {
    ChannelMeasurement channel;
    channel.Capacity_ml_m = SingleOf(json.at("capacity_ml_m"));
    for (const SingleJson& point : json.at("points")) {
        channel.Demand.push_back(DemandOf(point.at("demand")));
        channel.Rising.push_back(ReadingOf(point.at("rising")));
        channel.Falling.push_back(ReadingOf(point.at("falling")));
    }
    for (const SingleJson& step : json.at("steps"))
        channel.Steps.push_back({IntegerOf<std::int32_t>(step.at("point")),
                                 DemandOf(step.at("demand")), ReadingOf(step.at("reading"))});
    return channel;
}

SingleJson CheckJson(const HealthCheckFigures& check) {
    SingleJson json = {{"outcome", check.Outcome}, {"options", check.Options},
                       {"steps", check.Steps},     {"passed", check.Passed},
                       {"failed", check.Failed},   {"notEvaluated", check.NotEvaluated()},
                       {"worst", SingleJson()}};
    if (check.Worst)
        json["worst"] = {{"sheet", check.Worst->Sheet},
                         {"step", check.Worst->Step},
                         {"channel", check.Worst->Channel},
                         {"percentOfFullScale", ToJson(check.Worst->Percent_ofFullScale)}};
    return json;
}

HealthCheckFigures CheckOf(const SingleJson& json) {
    HealthCheckFigures check{
        json.at("outcome").get<std::string>(), json.at("options").get<std::vector<std::string>>(),
        IntegerOf<int>(json.at("steps")),      IntegerOf<int>(json.at("passed")),
        IntegerOf<int>(json.at("failed")),     {}};
    if (const SingleJson& worst = json.at("worst"); !worst.is_null())
        check.Worst = {worst.at("sheet").get<std::string>(), IntegerOf<int>(worst.at("step")),
                       IntegerOf<int>(worst.at("channel")),
                       SingleOf(worst.at("percentOfFullScale"))};
    return check;
}

SingleJson MeasuredJson(const HistoryEntry& entry) {
    if (!IsCalibration(entry.Kind))
        return CheckJson(entry.Check);
    SingleJson list = SingleJson::array();
    if (IsVelocity(entry.Kind)) {
        for (const ChannelMeasurement& channel : entry.Velocity.Channels)
            list.push_back(ChannelJson(channel));
    } else {
        for (const PressureReading& point : entry.Pressure)
            list.push_back({ToJson(point.Flow_ml_m), ToJson(point.Reading)});
    }
    return list;
}

void TakeMeasured(HistoryEntry& entry, const SingleJson& list) {
    if (!IsCalibration(entry.Kind)) {
        entry.Check = CheckOf(list);
    } else if (IsVelocity(entry.Kind)) {
        entry.Velocity.Kind = CalibrationKindOf(entry.Kind);
        for (std::size_t channel = 0; channel < AirChannels; ++channel)
            entry.Velocity.Channels.at(channel) = ChannelOf(list.at(channel));
    } else {
        for (const SingleJson& point : list)
            entry.Pressure.push_back({SingleOf(point.at(0)), SingleOf(point.at(1))});
    }
}

const char* NameOfMeasured(RunKind kind) {
    return !IsCalibration(kind) ? "check" : IsVelocity(kind) ? "channels" : "pressure";
}

} // namespace

std::string CountsText(const HealthCheckFigures& check) {
    return fmt::format("{} of {} steps passed, {} failed, {} not evaluated", check.Passed,
                       check.Steps, check.Failed, check.NotEvaluated());
}

std::string WorstText(const HealthCheckFigures& check) {
    if (!check.Worst)
        return {};
    return fmt::format(
        "Largest deviation {} % of full scale: channel {}, step {} of {}",
        FixedText(std::abs(static_cast<double>(check.Worst->Percent_ofFullScale)), 2),
        check.Worst->Channel, check.Worst->Step, check.Worst->Sheet);
}

RunKind KindOf(const SingleJson& json) {
    const auto kind = RunKindNamed(json.get<std::string>());
    if (!kind)
        throw std::runtime_error("it is of no kind that is known");
    return *kind;
}

SingleJson DemandJson(const PointDemand& demand) {
    return {demand.Bits, ToJson(demand.Flow_ml_m)};
}

PointDemand DemandOf(const SingleJson& json) {
    return {IntegerOf<std::int32_t>(json.at(0)), SingleOf(json.at(1))};
}

std::vector<std::pair<std::string, float>> LimitsOf(RunKind kind) {
    using namespace AcceptanceLimits;
    switch (kind) {
    case RunKind::VelocitySystem:
        return {{"hysteresis_bits", static_cast<float>(Hysteresis_bits)},
                {"deviationWarning_bits", static_cast<float>(Deviation_bits)}};
    case RunKind::VelocityAudit:
        return {{"error_percentOfReading", Error_percent},
                {"lowError_percentOfFullScale", LowError_percent},
                {"lowUpTo_percentOfFullScale", static_cast<float>(LowPoint_percent)}};
    case RunKind::PressureAudit: return {{"error_mBar", Pressure_mBar}};
    case RunKind::PressureSystem:
    case RunKind::HealthCheck: break;
    }
    return {};
}

SingleJson EntryJson(const HistoryEntry& entry) {
    SingleJson json = {{"when", DateJson(entry.When)},
                       {"serial", entry.Serial},
                       {"unit", fmt::format("ACU{:05}", entry.Serial)},
                       {"station", entry.Program.Computer},
                       {"program", entry.Program.Name},
                       {"version", entry.Program.Version},
                       {"kind", NameOf(entry.Kind)},
                       {"verdict", entry.Verdict},
                       {"reasons", entry.Reasons},
                       {"saved", entry.Left.has_value()},
                       {"asFound", UnitJson(entry.Found)},
                       {"asLeft", entry.Left ? UnitJson(*entry.Left) : SingleJson()},
                       {"eprom", entry.Eprom},
                       {NameOfMeasured(entry.Kind), MeasuredJson(entry)}};
    json["limits"] = SingleJson::object();
    for (const auto& [name, value] : entry.Limits)
        json["limits"][name] = value;
    json["files"] = entry.Files;
    return json;
}

HistoryEntry EntryOf(const SingleJson& json) {
    HistoryEntry entry;
    entry.Kind = KindOf(json.at("kind"));
    entry.When = DateOf(json.at("when"));
    entry.Program.Name = json.at("program").get<std::string>();
    entry.Program.Version = json.at("version").get<std::string>();
    entry.Program.Computer = json.at("station").get<std::string>();
    entry.Serial = IntegerOf<std::int32_t>(json.at("serial"));
    entry.Verdict = json.at("verdict").get<std::string>();
    entry.Reasons = json.at("reasons").get<std::vector<std::string>>();
    entry.Found = RecordOf(json.at("asFound"));
    if (!json.at("asLeft").is_null())
        entry.Left = RecordOf(json.at("asLeft"));
    entry.Eprom = json.value("eprom", ""); // runs of earlier versions have none
    TakeMeasured(entry, json.at(NameOfMeasured(entry.Kind)));
    for (const auto& [name, value] : json.at("limits").items())
        entry.Limits.emplace_back(name, SingleOf(value));
    entry.Files = json.at("files").get<std::vector<std::string>>();
    entry.Number = json.value("number", 0); // runs of earlier versions have neither
    entry.Fingerprint = json.value("fingerprint", "");
    return entry;
}

} // namespace ombrix

#include "calibration/judge/PointTable.h"

#include "calibration/air/AirUnits.h"
#include "calibration/judge/Judgement.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

constexpr const char* None = "-";

std::string Fixed(float value, int decimals) {
    return FixedText(static_cast<double>(value), decimals);
}

/// Adds the columns of the judgement.
void AddVerdict(PointLine& line, const std::optional<PointVerdict>& verdict) {
    if (!verdict) {
        line.Cells.insert(line.Cells.end(), {None, None});
        return;
    }
    line.Cells.push_back(verdict->Figure + " " + verdict->Unit);
    line.Cells.push_back(verdict->Limit + " " + verdict->Unit);
    line.Passed = verdict->Passed;
    line.Why = verdict->Why;
    line.OfLimit = verdict->OfLimit;
}

std::string FlowText(float flow_ml_m) {
    return Fixed(flow_ml_m, 2) + " ml/min";
}

} // namespace

PointTable VelocityPoints(const ChannelMeasurement& measured, CalibrationKind kind,
                          std::size_t channel) {
    const char* const unit = kind == CalibrationKind::Audit ? "ml/min" : "bits";
    PointTable table{fmt::format("channel {}, readings in {}", channel + 1, unit),
                     {"Point", "Demand", "mm/s", "Rising", "Falling", "Mean", "Deviation", "Limit"},
                     {}};
    for (std::size_t point = 0; point < measured.Demand.size(); ++point)
        table.Lines.push_back(VelocityPoint(measured, kind, point));
    return table;
}

PointLine VelocityPoint(const ChannelMeasurement& measured, CalibrationKind kind,
                        std::size_t point) {
    const bool isAudit = kind == CalibrationKind::Audit;
    const PointDemand& demand = measured.Demand.at(point);
    const PointReading& rising = measured.Rising.at(point);
    const PointReading& falling = measured.Falling.at(point);
    const auto text = [isAudit](const PointReading& reading) {
        return !reading.Valid ? None
               : isAudit      ? GeneralText(reading.Flow_ml_m)
                              : std::to_string(reading.Reading_bits);
    };
    const bool isMeasured = rising.Valid && falling.Valid;
    PointLine line;
    line.Cells = {std::to_string(point + 1),
                  isAudit ? GeneralText(demand.Flow_ml_m) : std::to_string(demand.Bits),
                  Fixed(FlowToVelocity(demand.Flow_ml_m), 2),
                  text(rising),
                  text(falling),
                  isAudit && isMeasured ? GeneralText(MeanFlow_ml_m(measured, point)) : None};
    AddVerdict(line, isMeasured ? std::optional(JudgePoint(measured, kind, point)) : std::nullopt);
    return line;
}

PointTable PressurePoints(std::span<const float> flows_ml_m, CalibrationKind kind) {
    PointTable table{kind == CalibrationKind::Audit ? "pressure, readings in mBar"
                                                    : "pressure, readings in bits",
                     {"Point", "Demand", "Reading", "Deviation", "Limit"},
                     {}};
    for (const float flow_ml_m : flows_ml_m)
        table.Lines.push_back(
            {{std::to_string(table.Lines.size() + 1), FlowText(flow_ml_m), None, None, None},
             {},
             {},
             {}});
    return table;
}

PointLine PressurePoint(const PressureReading& reading, CalibrationKind kind, std::size_t point) {
    const bool isAudit = kind == CalibrationKind::Audit;
    PointLine line;
    line.Cells = {std::to_string(point + 1), FlowText(reading.Flow_ml_m),
                  isAudit ? Fixed(reading.Reading, 2) : Fixed(reading.Reading, 1)};
    AddVerdict(line, isAudit ? std::optional(JudgePressure(reading)) : std::nullopt);
    return line;
}

} // namespace ombrix

#include "calibration/history/UnitSummary.h"
#include "journal/UnitJson.h"
#include "platform/text/Text.h"
#include "terminal/Command.h"
#include "terminal/Commands.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

Json DateOrNull(std::optional<OleDate> date) {
    return date ? Json(DateJson(*date).get<std::string>()) : Json();
}

Json WorstJson(const std::optional<UnitSummary::Point>& worst) {
    if (!worst)
        return nullptr;
    return {{"channel", worst->Channel},
            {"point", worst->Number},
            {"percentOfLimit", worst->Percent_ofLimit}};
}

Json UnitOf(const UnitSummary& unit) {
    return {
        {"serial", unit.Serial},
        {"mfcNumber", unit.MfcNumber},
        {"lastSystem", DateOrNull(unit.LastSystem)},
        {"lastAudit", DateOrNull(unit.LastAudit)},
        {"verdict", unit.Verdict},
        {"due", DateOrNull(unit.Due)},
        {"worstPoint", WorstJson(unit.WorstPoint)},
        {"drift", unit.Drift_percentOfFullScale ? Json(*unit.Drift_percentOfFullScale) : Json()}};
}

std::string DayText(std::optional<OleDate> date) {
    return date ? DateText(*date, "yyyy-mm-dd") : "never";
}

std::string LineOfUnit(const UnitSummary& unit, OleDate now) {
    const auto& worst = unit.WorstPoint;
    const auto& drift = unit.Drift_percentOfFullScale;
    return fmt::format("ACU{:05}  {:<12}  {:<10}  {:<10}  {:<18}  {:<10} {}  {:<28}  {}\n",
                       unit.Serial, unit.MfcNumber, DayText(unit.LastSystem),
                       DayText(unit.LastAudit), unit.Verdict, DayText(unit.Due),
                       unit.IsDue(now) ? "due" : "   ",
                       worst ? fmt::format("channel {}, point {}: {} %", worst->Channel,
                                           worst->Number, FixedText(worst->Percent_ofLimit, 1))
                             : "-",
                       drift ? FixedText(*drift, 3) + " %" : "-");
}

} // namespace

CommandResult RunUnits(CommandContext& context, bool dueOnly, bool asCsv) {
    const Platform& world = context.TheStation.World;
    const OleDate now = world.Time.Now();
    std::vector<UnitSummary> units = SummariesOfUnits(world.Files);
    if (dueOnly)
        std::erase_if(units, [now](const UnitSummary& unit) { return !unit.IsDue(now); });
    CommandResult result;
    result.Json["units"] = Json::array();
    for (const UnitSummary& unit : units)
        result.Json["units"].push_back(UnitOf(unit));
    if (asCsv) {
        result.Text = UnitsCsv(units);
        return result;
    }
    if (units.empty()) {
        result.Text = dueOnly ? "No unit is due.\n" : "No calibration has been run yet.\n";
        return result;
    }
    result.Text = fmt::format("{:<8}  {:<12}  {:<10}  {:<10}  {:<18}  {:<14}  {:<28}  {}\n", "Unit",
                              "MFC number", "System", "Audit", "Verdict", "Due",
                              "Worst audit point, of limit", "Drift, of full scale");
    for (const UnitSummary& unit : units)
        result.Text += LineOfUnit(unit, now);
    return result;
}

} // namespace ombrix

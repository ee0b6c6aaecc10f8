#include "terminal/Command.h"

#include "calibration/run/ACUSetUp.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

ExitStatus StatusOf(const Outcome& outcome) {
    switch (outcome.Ended) {
    case End::Passed: return outcome.AllStored ? ExitStatus::Done : ExitStatus::NotStored;
    case End::NotStored: return ExitStatus::NotStored;
    default: return ExitStatus::NotPassed;
    }
}

void RequireMFCNumber(const std::string& number) {
    if (Trimmed(number).empty() || number == ACUSetUp::MFCNumberPlaceholder)
        throw CommandError(ExitStatus::WrongUsage,
                           fmt::format("\"{}\" is no MFC number of a unit.", number));
    if (!ACURecord::IsMFCNumber(number))
        throw CommandError(ExitStatus::WrongUsage, ACURecord::NumberRefusal(number));
}

void AddFiles(CommandResult& result, const std::vector<std::filesystem::path>& files) {
    result.Json["files"] = nlohmann::ordered_json::array();
    for (const auto& file : files) {
        result.Json["files"].push_back(file.string());
        result.Text += file.string() + "\n";
    }
}

void AddOutcome(CommandResult& result, const Outcome& outcome, const std::string& name) {
    AddFiles(result, outcome.Files);
    result.Status = StatusOf(outcome);
    const auto add = [&error = result.Error](const std::string& text) {
        error += (error.empty() || text.empty() ? "" : "\n\n") + text;
    };
    if (outcome.Ended == End::Cancelled)
        add(name + " has been cancelled.");
    add(WithPlainLineEnds(outcome.Error));
    add(WithPlainLineEnds(outcome.KeptElsewhere));
}

} // namespace ombrix

#include "terminal/Command.h"

namespace ombrix {

namespace {

ExitStatus StatusOf(End ended) {
    switch (ended) {
    case End::Passed: return ExitStatus::Done;
    case End::NotStored: return ExitStatus::NotStored;
    default: return ExitStatus::NotPassed;
    }
}

} // namespace

void AddFiles(CommandResult& result, const std::vector<std::filesystem::path>& files) {
    result.Json["files"] = nlohmann::ordered_json::array();
    for (const auto& file : files) {
        result.Json["files"].push_back(file.string());
        result.Text += file.string() + "\n";
    }
}

void AddOutcome(CommandResult& result, const Outcome& outcome, const std::string& name) {
    AddFiles(result, outcome.Files);
    result.Status = StatusOf(outcome.Ended);
    result.Error = WithPlainLineEnds(outcome.Error);
    if (outcome.Ended == End::Cancelled)
        result.Error =
            name + " has been cancelled." + (result.Error.empty() ? "" : "\n\n" + result.Error);
}

} // namespace ombrix

#include "calibration/history/CalibrationHistory.h"
#include "calibration/history/HistoryChain.h"
#include "calibration/history/HistoryText.h"
#include "journal/RunJournal.h"
#include "journal/UnfinishedRuns.h"
#include "platform/os/FolderDrive.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"
#include "terminal/Command.h"
#include "terminal/Commands.h"

#include <fmt/format.h>

#include <cstdio>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;
namespace fs = std::filesystem;

std::string RunText(const HistoryEntry& run) {
    std::vector<std::string> remarks = run.Reasons;
    if (run.Verdict != VerdictOf(End::Passed) && !run.Eprom.empty())
        remarks.push_back(run.Eprom);
    if (const std::string worst = WorstText(run.Check); !worst.empty())
        remarks.push_back(worst);
    return fmt::format("ACU{:05}  {}  {:<27}  {:<18}  {:<12}  {}\n", run.Serial, IsoText(run.When),
                       TitleOf(run.Kind), ShownVerdict(run), run.Program.Computer,
                       fmt::join(remarks, "; "));
}

std::string ChainText(const ChainCheck& check) {
    std::string text = fmt::format("ACU{:05}  {} record(s) verified", check.Serial, check.Records);
    if (check.Unchained > 0)
        text += fmt::format(", {} before them from earlier versions, without fingerprints",
                            check.Unchained);
    if (check.FirstBroken)
        text += fmt::format("; broken at record {}: {}", *check.FirstBroken, check.Reason);
    return text + "\n";
}

/// The unfinished run's journal among the program's own; nothing for a copy elsewhere.
std::optional<std::string> OwnJournal(const Drive& files, const fs::path& journal) {
    std::error_code error;
    const fs::path folder = files.RealPath(Paths::Journals);
    return fs::equivalent(fs::absolute(journal).parent_path(), folder, error)
               ? std::optional(Paths::Journals + journal.filename().string())
               : std::nullopt;
}

std::unique_ptr<JournalledRun> ReadRun(const JournalReaders& readers, const fs::path& journal) {
    try {
        return readers.Read(ReadWholeFile(journal));
    } catch (const JournalError& error) {
        throw CommandError(ExitStatus::NotStored, journal.string() + ": " + error.what());
    }
}

CommandResult ListUnfinished(CommandContext& context) {
    Platform& world = context.TheStation.World;
    CommandResult result;
    result.Json["journals"] = Json::array();
    for (const UnfinishedRun& run : FindUnfinishedRuns(world)) {
        const fs::path path = world.Files.RealPath(run.Journal);
        std::string what;
        try {
            what = context.Journals.Read(world.Files.ReadFile(run.Journal))->Describe();
        } catch (const JournalError& error) {
            what = error.what();
        }
        result.Json["journals"].push_back({{"file", path.string()}, {"run", what}});
        result.Text += fmt::format("{}\n  {}\n", path.string(), what);
    }
    if (result.Text.empty())
        result.Text = "No run is unfinished.\n";
    return result;
}

} // namespace

CommandResult RunHistory(CommandContext& context, std::int32_t serial) {
    const Drive& files = context.TheStation.World.Files;
    CommandResult result;
    result.Json["runs"] = Json::array();
    int damaged = 0;
    for (const std::int32_t unit : serial > 0 ? std::vector{serial} : UnitsWithHistory(files)) {
        const CalibrationHistory history = ReadHistory(files, unit);
        damaged += history.DamagedLines;
        for (const HistoryEntry& run : history.Runs) {
            result.Json["runs"].push_back(Json::parse(run.Line));
            result.Text += RunText(run);
        }
    }
    result.Json["damagedLines"] = damaged;
    if (result.Text.empty())
        result.Text = "No calibration has been run yet.\n";
    if (damaged > 0)
        result.Text += fmt::format("{} damaged line(s) have been passed over.\n", damaged);
    return result;
}

CommandResult RunVerifyHistory(CommandContext& context, std::int32_t serial) {
    const Drive& files = context.TheStation.World.Files;
    CommandResult result;
    int records = 0;
    Json firstBroken = nullptr;
    Json units = Json::array();
    for (const std::int32_t unit : serial > 0 ? std::vector{serial} : UnitsWithChain(files)) {
        const ChainCheck check = CheckChain(files, unit);
        records += check.Records;
        const Json broken = check.FirstBroken ? Json(*check.FirstBroken) : Json();
        units.push_back({{"serial", unit},
                         {"records", check.Records},
                         {"withoutFingerprint", check.Unchained},
                         {"firstBroken", broken},
                         {"reason", check.Reason},
                         {"fingerprint", check.Fingerprint}});
        result.Text += ChainText(check);
        if (!check.FirstBroken || !firstBroken.is_null())
            continue;
        firstBroken = broken;
        result.Status = ExitStatus::NotPassed;
        result.Error = fmt::format("The history of ACU{:05} is broken at record {}: {}.", unit,
                                   *check.FirstBroken, check.Reason);
    }
    result.Json["records"] = records;
    result.Json["firstBroken"] = firstBroken;
    result.Json["units"] = units;
    if (result.Text.empty())
        result.Text = "No calibration has been run yet.\n";
    return result;
}

CommandResult RunReport(CommandContext& context, const fs::path& journal) {
    if (journal.empty())
        return ListUnfinished(context);
    Station& station = context.TheStation;
    Drive& files = station.World.Files;
    const std::unique_ptr<JournalledRun> run = ReadRun(context.Journals, journal);
    const auto own = run->Ended() ? std::nullopt : OwnJournal(files, journal);
    const std::unique_ptr<FileLock> hold = own ? files.TryLock(RunningMarkOf(*own), "") : nullptr;
    if (own && !hold)
        throw CommandError(ExitStatus::NotPassed,
                           journal.string() + ": this run is still going on.");
    const RemadeReport remade = run->MakeReport();
    CommandResult result;
    result.Json["run"] = run->Describe();
    result.Text = run->Describe() + "\n";
    if (!run->HasReport())
        result.Text += "There is nothing to make a workbook of.\n";
    AddFiles(result, remade.Files);
    if (!remade.AllStored) {
        result.Status = ExitStatus::NotStored;
        result.Error = "A workbook could not be stored where it belongs.";
    } else if (own && !SettleUnfinishedRun(station.World, *own, *run, remade.Files)) {
        result.Status = ExitStatus::NotStored;
        result.Error = "The interruption could not be added to the unit's history.";
    }
    return result;
}

void TellOfUnfinishedRuns(CommandContext& context) {
    try {
        Platform& world = context.TheStation.World;
        const std::vector<UnfinishedRun> runs = FindUnfinishedRuns(world);
        if (!runs.empty())
            fmt::print(stderr,
                       "An unfinished run was found. Its report: ombrixctl report "
                       "--journal '{}'\n",
                       world.Files.RealPath(runs.front().Journal).string());
    } catch (const DriveError&) {
        // Not what the command is about.
    }
}

} // namespace ombrix

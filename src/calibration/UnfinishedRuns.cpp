#include "calibration/UnfinishedRuns.h"

#include "calibration/RunJournal.h"
#include "calibration/RunJson.h"
#include "platform/ProgramLog.h"
#include "platform/TellOperator.h"
#include "support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

std::string JournalOf(const std::string& mark) {
    return JournalFolder + mark.substr(0, mark.size() - std::string_view(RunningEnding).size()) +
           JournalEnding;
}

bool HasEnded(Platform& world, const std::string& journal) {
    try {
        return ReadJournal(world, world.Files.ReadFile(journal)).Ended;
    } catch (const JournalError&) {
        return false;
    }
}

std::size_t ReadingsOf(const VelocityMeasurement& measured) {
    std::size_t count = 0;
    for (const ChannelMeasurement& channel : measured.Channels) {
        for (const auto* sweep : {&channel.Rising, &channel.Falling})
            count += static_cast<std::size_t>(
                std::count_if(sweep->begin(), sweep->end(),
                              [](const PointReading& reading) { return reading.Valid; }));
    }
    return count;
}

void Discard(Platform& world, const std::string& journal) {
    world.Files.RemoveFile(journal);
    world.Files.RemoveFile(RunningMarkOf(journal));
    WriteLog(world, "Discarded the unfinished run of " + journal);
}

Answer AskAbout(Platform& world, const std::string& what, bool hasReport) {
    const std::string text = "A calibration was not finished, because the program ended while it "
                             "ran:\r\n\r\n   " +
                             what +
                             (hasReport ? "\r\n\r\nWrite the report of what there is?\r\n\r\n"
                                          "Yes writes it.\r\nNo discards what was measured.\r\n"
                                          "Cancel asks again at the next start."
                                        : "\r\n\r\nThere is no report to write of it. Discard what "
                                          "was measured?");
    return world.Messages.Ask({text, MessageIcon::Question,
                               hasReport ? MessageButtons::YesNoCancel : MessageButtons::YesNo,
                               "Unfinished Calibration"});
}

void WriteReport(const CalibrationServices& services, const std::string& journal,
                 const RecordedRun& run) {
    Platform& world = services.TheStation.World;
    const RemadeReport remade = MakeReport(services, run);
    if (remade.Files.empty())
        return; // told already; asked again at the next start
    SettleUnfinishedRun(world, journal, run, remade.Files);
    std::string text = "The report has been written:\r\n";
    for (const std::filesystem::path& file : remade.Files)
        text += "\r\n   " + file.string();
    TellOperator(world, text);
}

void Offer(const CalibrationServices& services, const std::string& journal) {
    Platform& world = services.TheStation.World;
    try {
        const RecordedRun run = ReadJournal(world, world.Files.ReadFile(journal));
        const bool hasReport = MakesWorkbooks(run.Kind);
        const Answer answer = AskAbout(world, Describe(run), hasReport);
        if (hasReport && answer == Answer::Yes)
            WriteReport(services, journal, run);
        else if (answer == (hasReport ? Answer::No : Answer::Yes))
            Discard(world, journal);
    } catch (const JournalError& error) {
        const std::string file = world.Files.RealPath(journal).string();
        if (AskAbout(world, file + "\r\n\r\n" + error.what(), false) == Answer::Yes)
            Discard(world, journal);
    }
}

} // namespace

std::vector<UnfinishedRun> FindUnfinishedRuns(Platform& world) {
    std::vector<UnfinishedRun> runs;
    for (const std::string& name : world.Files.FilesIn(JournalFolder)) {
        if (!name.ends_with(RunningEnding))
            continue;
        UnfinishedRun run{JournalOf(name), world.Files.TryLock(JournalFolder + name, "")};
        if (!run.Hold)
            continue;
        if (world.Files.FileExists(run.Journal) && !HasEnded(world, run.Journal))
            runs.push_back(std::move(run));
        else
            world.Files.RemoveFile(JournalFolder + name);
    }
    return runs;
}

void SettleUnfinishedRun(Platform& world, const std::string& journal, const RecordedRun& run,
                         const std::vector<std::filesystem::path>& files) {
    HistoryEntry entry;
    entry.Kind = run.Kind;
    entry.When = run.Start;
    entry.Program = run.Program;
    entry.Serial = run.Serial;
    entry.Verdict = Verdicts::Interrupted;
    entry.Found = run.Unit;
    entry.Velocity = run.Velocity;
    entry.Pressure = run.Pressure;
    for (const std::filesystem::path& file : files)
        entry.Files.push_back(file.string());
    // A line that was cut off goes: it would be a damaged one in front of the last.
    std::string text = world.Files.ReadFile(journal);
    text.erase(text.rfind('\n') + 1);
    world.Files.ReplaceFile(journal, text + LineOf({{"end", DateJson(world.Time.Now())},
                                                    {"verdict", entry.Verdict},
                                                    {"files", entry.Files}}));
    world.Files.RemoveFile(RunningMarkOf(journal));
    AppendToHistory(world, entry);
}

std::string Describe(const RecordedRun& run) {
    const std::string points = IsVelocity(run.Kind)
                                   ? fmt::format("{} readings", ReadingsOf(run.Velocity))
                                   : fmt::format("{} points", run.Pressure.size());
    return fmt::format("{} of ACU{:05}, {}: {}", TitleOf(run.Kind), run.Serial,
                       DateText(run.Start, "dd/mm/yyyy hh:nn:ss"), points);
}

void OfferUnfinishedRuns(const CalibrationServices& services) {
    for (const UnfinishedRun& run : FindUnfinishedRuns(services.TheStation.World)) {
        if (!services.TheStation.World.Events.ProgramEnding())
            Offer(services, run.Journal);
    }
}

} // namespace ombrix

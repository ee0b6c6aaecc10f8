#include "journal/UnfinishedRuns.h"

#include "journal/RunJournal.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Paths.h"

namespace ombrix {

namespace {

std::string JournalOf(const std::string& mark) {
    return Paths::Journals + mark.substr(0, mark.size() - std::string_view(RunningEnding).size()) +
           JournalEnding;
}

void Discard(Platform& world, const std::string& journal) {
    world.Files.RemoveFile(journal);
    world.Files.RemoveFile(RunningMarkOf(journal));
    WriteLog(world, "Discarded the unfinished run of " + journal);
}

Answer AskAbout(Platform& world, const std::string& what, bool hasReport) {
    const std::string text =
        "A run was not finished, because the program ended while it went on:\r\n\r\n   " + what +
        (hasReport ? "\r\n\r\nWrite the report of what there is?\r\n\r\n"
                     "Yes writes it.\r\nNo discards what was measured.\r\n"
                     "Cancel asks again at the next start."
                   : "\r\n\r\nThere is no report to write of it. Discard what was measured?");
    return world.Messages.Ask({text, MessageIcon::Question,
                               hasReport ? MessageButtons::YesNoCancel : MessageButtons::YesNo,
                               "Unfinished Run"});
}

void WriteReport(Platform& world, const std::string& journal, const JournalledRun& run) {
    const RemadeReport remade = run.MakeReport();
    if (remade.Files.empty())
        return; // told already; asked again at the next start
    SettleUnfinishedRun(world, journal, run, remade.Files);
    std::string text = "The report has been written:\r\n";
    for (const std::filesystem::path& file : remade.Files)
        text += "\r\n   " + file.string();
    TellOperator(world, text);
}

void Offer(Platform& world, const std::string& journal, const JournalReaders& readers) {
    try {
        const std::unique_ptr<JournalledRun> run = readers.Read(world.Files.ReadFile(journal));
        const Answer answer = AskAbout(world, run->Describe(), run->HasReport());
        if (run->HasReport() && answer == Answer::Yes)
            WriteReport(world, journal, *run);
        else if (answer == (run->HasReport() ? Answer::No : Answer::Yes) &&
                 run->NoteInterruption(world, {}))
            Discard(world, journal);
    } catch (const JournalError& error) {
        const std::string file = world.Files.RealPath(journal).string();
        if (AskAbout(world, file + "\r\n\r\n" + error.what(), false) == Answer::Yes)
            Discard(world, journal);
    }
}

/// False for a journal that cannot be read as well: its run is offered, and told of then.
bool IsOver(const Drive& files, const std::string& journal) {
    try {
        return !files.FileExists(journal) || HasEnded(files.ReadFile(journal));
    } catch (const DriveError&) {
        return false;
    }
}

} // namespace

std::unique_ptr<JournalledRun> JournalReaders::Read(std::string_view text) const {
    const auto reading = m_Readings.find(KindOfJournal(text));
    if (reading != m_Readings.end())
        return reading->second(text);
    ReadJournalLines(text, [](const SingleJson& line) {
        HeaderOf(line); // a version that is not known says more
        throw std::runtime_error("it is of no kind that is known");
    });
    throw JournalError("The journal is of no kind that is known.");
}

std::vector<UnfinishedRun> FindUnfinishedRuns(Platform& world) {
    std::vector<UnfinishedRun> runs;
    for (const std::string& name : world.Files.FilesIn(Paths::Journals)) {
        if (!name.ends_with(RunningEnding))
            continue;
        UnfinishedRun run{JournalOf(name), world.Files.TryLock(Paths::Journals + name, "")};
        if (!run.Hold)
            continue;
        if (IsOver(world.Files, run.Journal))
            world.Files.RemoveFile(Paths::Journals + name);
        else
            runs.push_back(std::move(run));
    }
    return runs;
}

bool SettleUnfinishedRun(Platform& world, const std::string& journal, const JournalledRun& run,
                         const std::vector<std::filesystem::path>& files) {
    std::vector<std::string> names;
    for (const std::filesystem::path& file : files)
        names.push_back(file.string());
    if (!run.NoteInterruption(world, names))
        return false;
    // A line that was cut off goes: it would be a damaged one in front of the last.
    std::string text = world.Files.ReadFile(journal);
    text.erase(text.rfind('\n') + 1);
    world.Files.ReplaceFile(journal, text + EndLine(world.Time.Now(), InterruptedVerdict, names));
    world.Files.RemoveFile(RunningMarkOf(journal));
    return true;
}

void OfferUnfinishedRuns(Platform& world, const JournalReaders& readers) {
    for (const UnfinishedRun& run : FindUnfinishedRuns(world)) {
        if (world.Events.ProgramEnding())
            return;
        try {
            Offer(world, run.Journal, readers);
        } catch (const DriveError& error) {
            TellOperator(world,
                         std::string("An unfinished run could not be dealt with:\r\n\r\n   ") +
                             error.what() + "\r\n\r\nIt is asked about again at the next start.",
                         MessageIcon::Warning);
        }
    }
}

} // namespace ombrix

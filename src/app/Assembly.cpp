#include "app/Assembly.h"

#include "board/HostedAIBControl.h"
#include "board/LoadedAIBControl.h"
#include "calibration/history/RecordedRun.h"
#include "healthcheck/HealthCheckJournal.h"
#include "platform/os/Clocks.h"
#include "platform/os/Computer.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Paths.h"
#include "simulator/SimulatorFiles.h"
#include "spreadsheet/XlsxApplication.h"

#include <fmt/ranges.h>

#include <chrono>
#include <cmath>
#include <system_error>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

fs::path FolderOfPrograms() {
    return ProgramFile().parent_path();
}

/// A checkout has the templates beside the programs, an installation in its shared data.
fs::path FolderWithTemplates() {
    const fs::path programs = FolderOfPrograms();
    const fs::path installed = programs.parent_path() / "share" / "ombrix";
    return !fs::exists(programs / "Templates") && fs::exists(installed / "Templates") ? installed
                                                                                      : programs;
}

/// A checkout has it beside the programs, an installation where programs lie that nobody starts by
/// hand.
fs::path BoardHostProgram() {
    constexpr const char* name = "ombrix-boardhost";
    const fs::path programs = FolderOfPrograms();
    const fs::path beside = programs / name;
    return fs::exists(beside) ? beside : programs.parent_path() / "libexec" / "ombrix" / name;
}

const fs::path& Made(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw DriveError("The data folder " + folder.string() + " cannot be made: " +
                         error.message() + ". Choose another one with --data-root.");
    return folder;
}

ProgramIdentity Identity(const std::string& program) {
    return {program, OMBRIX_VERSION, ComputerName(), ProcessId()};
}

/// A bench that runs in the system's time has the system's clock, whose date follows changes.
std::unique_ptr<Clock> MakeClock(const StationOptions& options, Clock& base) {
    if (options.TimeScale == 1.0 && !options.StartAt)
        return std::make_unique<SystemClock>();
    const OleDate start = options.StartAt.value_or(base.Now());
    if (options.TimeScale == 0.0)
        return std::make_unique<VirtualClock>(start);
    return std::make_unique<ScaledClock>(base, options.TimeScale, start);
}

} // namespace

Assembly::Assembly(const StationOptions& options, const UserPorts& ports,
                   const std::string& program)
    : m_Options(options), m_Drive(Made(fs::absolute(options.DataRoot))),
      m_Converter({.WhileWaiting = [&events = ports.Events] { events.ProcessPendingEvents(); }}),
      m_BaseClock(std::make_unique<SystemClock>()), m_Clock(MakeClock(options, *m_BaseClock)),
      m_Messages(ports.Messages, m_World),
      m_End(ports.End, m_World), m_World{*m_Clock,        ports.Events, m_Messages,       m_Drive,
                                         ports.Documents, m_End,        Identity(program)},
      m_Library(MakeLibrary()) {
    MountFolders();
    m_Station = std::make_unique<Station>(BoardServices{*m_Library, m_World});
    LogStart();
}

void Assembly::MountFolders() {
    m_Drive.Mount(Paths::Program, FolderWithTemplates());
    m_Drive.Mount(Paths::TemporaryDrive, fs::temp_directory_path());
    MountClaims();
    if (!m_Options.Share.empty())
        m_Drive.Mount(Paths::ShareDrive, m_Options.Share);
    if (m_Options.FpgaFolder.empty())
        return;
    // The logs that lie in the system folder stay where they are.
    const std::string logs = std::string(Paths::SystemFolders[0]) + Paths::CalibrationLogs;
    const fs::path present = m_Drive.RealPath(logs);
    for (const std::string_view folder : Paths::SystemFolders)
        m_Drive.Mount(folder, m_Options.FpgaFolder);
    m_Drive.Mount(logs, present);
}

void Assembly::MountClaims() {
    // Boards are the machine's, whoever works with them; those of a bench are the data folder's.
    fs::path folder = m_Options.ClaimsFolder;
    if (folder.empty() && IsSimulated())
        return;
    if (folder.empty())
        folder = BoardsFolder();
    MakeSharedFolder(folder);
    m_Drive.Mount(Paths::Claims, folder);
}

Assembly::~Assembly() {
    WriteLog(m_World, "Program ended");
}

void Assembly::LogStart() {
    RemoveOldLogs(m_World);
    std::string options = OptionsText();
    options.pop_back();
    WriteLog(m_World, "Program started\n" + options);
    std::vector<std::string> crashes = m_Drive.FilesIn(Paths::Diagnostics);
    std::erase_if(crashes, [](const std::string& name) { return !name.starts_with("crash_"); });
    if (!crashes.empty())
        WriteLog(m_World, fmt::format("Crash reports that lie in {}: {}", Paths::DiagnosticsName,
                                      fmt::join(crashes, ", ")));
}

std::string Assembly::OptionsText() const {
    std::string text = fmt::format("Version {}\n", OMBRIX_VERSION);
    text += IsSimulated() ? fmt::format("Simulated bench {}, seed {}, time scale {}, faults: {}\n",
                                        m_Options.Bench, m_Options.Seed, m_Options.TimeScale,
                                        fmt::join(m_Options.FaultTexts, ", "))
                          : fmt::format("Board library {}{}\n", m_Options.Library,
                                        m_Options.InProcess ? ", in this process" : "");
    text += fmt::format("Data folder {}\n", fs::absolute(m_Options.DataRoot).string());
    if (!m_Options.FpgaFolder.empty())
        text += fmt::format("FPGA files in {}\n", fs::absolute(m_Options.FpgaFolder).string());
    text += fmt::format("Share {}\n", m_Options.Share.empty() ? "none" : m_Options.Share.string());
    return text + fmt::format("Board {}\n", m_Options.Board);
}

std::string Assembly::SimulationText() const {
    if (!IsSimulated())
        return {};
    std::string text = m_Options.Bench;
    for (const std::string& fault : m_Options.FaultTexts)
        text += ", " + fault;
    if (m_Options.TimeScale != 1.0)
        text += m_Options.TimeScale > 0.0 ? fmt::format(", time × {}", m_Options.TimeScale)
                                          : ", virtual time";
    return text;
}

std::unique_ptr<AIBControl> Assembly::MakeLibrary() {
    if (!IsSimulated() && m_Options.InProcess)
        return std::make_unique<LoadedAIBControl>(m_Options.Library);
    if (!IsSimulated())
        return std::make_unique<HostedAIBControl>(HostedAIBControl::Options{
            .Program = BoardHostProgram().string(),
            .Library = m_Options.Library,
            .CallTimeout = std::chrono::milliseconds(std::llround(m_Options.CallTimeout_s * 1000)),
            .Log = [this](const std::string& line) { WriteLog(m_World, line); }});
    auto bench = std::make_unique<SimulatedBench>(
        *m_Clock, BenchOptions{m_Options.Bench, Faults::Parse(m_Options.FaultTexts), m_Options.Seed,
                               PrepareSimulatorFolder(fs::absolute(m_Options.DataRoot))});
    if (!m_Options.EpromImage.empty() && m_Options.Board < bench->OpenAIBAPI())
        bench->LoadEprom(m_Options.Board, ReadWholeFile(m_Options.EpromImage));
    return bench;
}

ReportTools Assembly::Reports(OpenExcelView& wait) {
    return {*m_Station, [this] { return std::make_unique<XlsxApplication>(m_Drive, m_Converter); },
            wait, Paths::Templates};
}

JournalReaders ReadersOfJournals(const ReportTools& tools) {
    JournalReaders readers;
    AddCalibrationReaders(readers, tools);
    AddHealthCheckReader(readers, tools);
    return readers;
}

} // namespace ombrix

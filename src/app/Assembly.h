#pragma once

#include "app/StationOptions.h"
#include "board/Station.h"
#include "journal/UnfinishedRuns.h"
#include "platform/os/FolderDrive.h"
#include "platform/os/ProgramLog.h"
#include "reports/ReportFile.h"
#include "simulator/SimulatedBench.h"
#include "spreadsheet/LibreOfficeConverter.h"

#include <memory>
#include <string>

namespace ombrix {

/// The ports that differ between the desktop program and the terminal.
struct UserPorts {
    EventPump& Events;
    Operator& Messages;
    DocumentOpener& Documents;
    ProgramEnd& End;
};

/// Chooses the implementations that the command line asks for and wires them to a station.
class Assembly {
  public:
    /// @param program "ombrix" or "ombrixctl"
    /// @throws DriveError when the data folder or an image cannot be used
    Assembly(const StationOptions& options, const UserPorts& ports, const std::string& program);
    Assembly(const Assembly&) = delete;
    Assembly& operator=(const Assembly&) = delete;
    ~Assembly();

    Station& TheStation() { return *m_Station; }
    Clock& Time() { return *m_Clock; }
    /// What report files are made with. @param wait shows that one is being opened
    ReportTools Reports(OpenExcelView& wait);
    /// The options in use, a line each.
    std::string OptionsText() const;
    /// What is simulated, in a line ("acu, no-air, time × 60"); empty for real boards.
    std::string SimulationText() const;

  private:
    bool IsSimulated() const { return !m_Options.Bench.empty(); }
    std::unique_ptr<AIBControl> MakeLibrary();
    void MountFolders();
    void MountClaims();
    void LogStart();

    StationOptions m_Options;
    FolderDrive m_Drive;
    LibreOfficeConverter m_Converter;
    std::unique_ptr<Clock> m_BaseClock;
    std::unique_ptr<Clock> m_Clock;
    LoggedOperator m_Messages;
    LoggedEnd m_End;
    Platform m_World;
    std::unique_ptr<AIBControl> m_Library;
    std::unique_ptr<Station> m_Station;
};

/// The readers of the journals of every kind of run.
JournalReaders ReadersOfJournals(const ReportTools& tools);

} // namespace ombrix

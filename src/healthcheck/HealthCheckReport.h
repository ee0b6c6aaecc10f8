#pragma once

#include "board/Station.h"
#include "reports/ReportFile.h"

#include <filesystem>
#include <optional>
#include <string>

namespace ombrix {

/// The unit that a report is about.
struct ReportUnit {
    std::int32_t Serial = 0;
    /// The MFC number as it stands in the names of files.
    std::string MFCNumber{};
    std::int32_t PressureConfig = 0;
};

ReportUnit ReportUnitOf(clsAIB& board);

/// Where a report lies.
struct SavedReport {
    /// Its path in the program; empty when it does not lie where it belongs.
    std::string Path{};
    /// Its real path; nothing when it lies nowhere.
    std::optional<std::filesystem::path> File{};
    /// Why it does not lie where it belongs; the operator has been told.
    std::string Error{};
};

/// The workbook of a health check: opened from its template, filled by the sequences, saved into
/// the folder of the unit.
class HealthCheckReport {
  public:
    /// @param templates path of the folder with the report templates, ended by a backslash
    HealthCheckReport(Station& station, SpreadsheetLauncher launcher, OpenExcelView& wait,
                      std::string templates);

    /// Opens it. Empty, or the reason why there is none, which the operator has been told.
    std::string Open();
    Workbook& Book() { return *m_Opened.Book; }
    /// Row at which the overview goes on.
    std::int32_t& OverviewRow() { return m_OverviewRow; }
    /// Saves it; it replaces no other. @param date for its name
    SavedReport Save(const ReportUnit& unit, OleDate date);

  private:
    SavedReport SaveInUnitFolder(const ReportUnit& unit, const std::string& name);
    SavedReport KeepElsewhere(const std::string& name, std::string error);

    Station& m_Station;
    SpreadsheetLauncher m_Launcher;
    OpenExcelView& m_Wait;
    std::string m_Templates;
    OpenedWorkbook m_Opened;
    std::int32_t m_OverviewRow = 7;
};

/// Where the reports of the health check are kept: the production file server's share when it
/// can be reached, else the local drive.

/// The root of all units' folders, made if need be. False when it cannot be had.
bool GetSaveRootFolder(Station& station, std::string& folder);

/// The folder of the current board's ACU, made if need be. False when it cannot be had.
bool GetACUFolder(Station& station, std::string& folder);

/// The same for a unit that no board need stand for.
bool GetUnitFolder(Station& station, const ReportUnit& unit, std::string& folder);

/// Opens the root in the desktop's file manager, or says why that is not possible.
void OpenSaveFolder(Station& station);

} // namespace ombrix

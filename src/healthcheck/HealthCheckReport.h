#pragma once

#include "board/Station.h"
#include "healthcheck/HealthCheckVerdict.h"
#include "reports/ReportFile.h"
#include "reports/layout/HealthCheckLayout.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace ombrix {

/// The workbook of a health check: opened from its template, filled by the sequences, saved into
/// the folder of the unit.
class HealthCheckReport {
  public:
    explicit HealthCheckReport(ReportTools tools) : m_Tools(std::move(tools)) {}

    /// Opens it. Empty, or the reason why there is none, which the operator has been told.
    std::string Open();
    Workbook& Book() { return *m_Opened.Book; }
    /// What the sheets will judge by.
    HealthCheckLimits Limits();
    /// Row at which the overview goes on.
    std::int32_t& OverviewRow() { return m_OverviewRow; }
    /// Where the report lies.
    struct Saved {
        /// Its path in the program; empty when it does not lie where it belongs.
        std::string Path{};
        /// Its real path; nothing when it lies nowhere.
        std::optional<std::filesystem::path> File{};
        /// Why it does not lie where it belongs; the operator has been told.
        std::string Error{};
    };
    /// Saves it; it replaces no other. @param date for its name
    /// @param outcome how the check ended, as the overview tells it
    Saved Save(const ACU& unit, OleDate date, const std::string& outcome);

  private:
    Saved SaveInUnitFolder(const ACU& unit, const std::string& name);
    Saved KeepElsewhere(const std::string& name, std::string error);

    ReportTools m_Tools;
    OpenedWorkbook m_Opened;
    std::int32_t m_OverviewRow = HealthCheckLayout::Overview::HeadRow;
};

/// Where the reports of the health check are kept: the production file server's share when it
/// can be reached, else the local drive.

/// The root of all units' folders, made if need be. False when it cannot be had.
bool GetSaveRootFolder(Station& station, std::string& folder);

/// The folder of the current board's ACU, made if need be. False when it cannot be had.
bool GetACUFolder(Station& station, std::string& folder);

/// The same for a unit that no board need stand for.
bool GetUnitFolder(Station& station, const ACU& unit, std::string& folder);

/// Opens the root in the desktop's file manager, or says why that is not possible.
void OpenSaveFolder(Station& station);

} // namespace ombrix

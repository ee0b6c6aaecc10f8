#include "healthcheck/HealthCheckReport.h"

#include "platform/os/ProgramLog.h"
#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"
#include "reports/layout/HealthCheckLayout.h"

#include <fmt/format.h>

#include <utility>

namespace ombrix {

namespace {

constexpr const char* ReportExtension = ".xlsx";

} // namespace

std::string HealthCheckReport::Open() {
    m_Opened = OpenExcel(m_Tools, "Initialising Excel Report", HealthCheckLayout::Template);
    m_Tools.Wait.Close();
    if (m_Opened)
        return {};
    if (m_Opened.Error.empty())
        return "The template of the report has not been found.";
    TellOperator(m_Tools.TheStation.World,
                 "The report could not be opened.\r\n\r\n" + m_Opened.Error, MessageIcon::Critical);
    return m_Opened.Error;
}

HealthCheckLimits HealthCheckReport::Limits() {
    const Worksheet& overview = Book().Sheet(HealthCheckLayout::OverviewSheet);
    HealthCheckLimits limits;
    const auto read = [&overview](const char* cell, double& limit) {
        const CellValue value = overview.Value(cell);
        if (const auto* number = std::get_if<double>(&value))
            limit = *number;
    };
    read(HealthCheckLayout::Overview::Limit, limits.Limit_share);
    read(HealthCheckLayout::Overview::FullScale, limits.FullScale_bits);
    return limits;
}

HealthCheckReport::Saved HealthCheckReport::Save(const ACU& unit, OleDate date,
                                                 const std::string& outcome) {
    const std::string name = fmt::format("{}_ACU{}_{}", unit.Record.CleanNumberInNames(),
                                         unit.Serial, DateText(date, "yyyymmdd_hhnnss"));
    try {
        Worksheet& overview = Book().Sheet(HealthCheckLayout::OverviewSheet);
        overview.SetValue(HealthCheckLayout::Overview::Outcome, outcome);
        overview.SetVisible(SheetVisibility::Visible);
        overview.Select();
        Book().Sheet(HealthCheckLayout::DataSheet).SetVisible(SheetVisibility::Hidden);
        m_Opened.Application->SetVisible(true);
        return SaveInUnitFolder(unit, name);
    } catch (const std::exception& error) {
        TellOperator(m_Tools.TheStation.World,
                     std::string("The report could not be saved.\r\n\r\n") + error.what(),
                     MessageIcon::Critical);
        return KeepElsewhere(name, error.what());
    }
}

HealthCheckReport::Saved HealthCheckReport::SaveInUnitFolder(const ACU& unit,
                                                             const std::string& name) {
    const Drive& files = m_Tools.TheStation.World.Files;
    std::string folder;
    if (GetUnitFolder(m_Tools.TheStation, unit, folder)) {
        Book().SaveAs(folder + name + ReportExtension, FileFormat::ByExtension);
        return {Book().FullName(), files.RealPath(Book().FullName()), {}};
    }
    const std::string shown =
        fmt::format("{:05}_{}\\'", unit.Serial, unit.Record.CleanNumberInNames());
    const std::string warning =
        std::string("Unable to Save Excel File in following locations:\r\n\r\n   '") +
        Paths::ShareReports + shown + "\r\n\r\n'" + Paths::LocalReports + shown +
        ".\r\n\r\nYou will need to do this manually.";
    TellOperator(m_Tools.TheStation.World, warning, MessageIcon::Warning);
    return KeepElsewhere(name, warning);
}

HealthCheckReport::Saved HealthCheckReport::KeepElsewhere(const std::string& name,
                                                          std::string error) {
    return {{},
            KeepWorkbook(m_Tools.TheStation.World, Book(), name + ReportExtension),
            std::move(error)};
}

bool GetSaveRootFolder(Station& station, std::string& folder) {
    folder = station.World.Files.FileExists(Paths::ShareMarker) ? Paths::ShareReports
                                                                : Paths::LocalReports;
    return CheckFolderExists(station.World.Files, station.World.Messages, folder,
                             FolderMode::Create);
}

bool GetACUFolder(Station& station, std::string& folder) {
    return GetUnitFolder(station, station.Calibration().Unit(), folder);
}

bool GetUnitFolder(Station& station, const ACU& unit, std::string& folder) {
    if (!GetSaveRootFolder(station, folder))
        return false;
    folder += fmt::format("ACU{:05}_{}\\", unit.Serial, unit.Record.CleanNumberInNames());
    return CheckFolderExists(station.World.Files, station.World.Messages, folder,
                             FolderMode::Create);
}

void OpenSaveFolder(Station& station) {
    std::string folder;
    if (GetSaveRootFolder(station, folder) &&
        ShellOpenFile(station.World.Files, station.World.Documents, folder))
        return;
    station.World.Messages.Ask({std::string("Unable to Open the following locations:\r\n\r\n   '") +
                                    Paths::ShareReports + "'\r\n\r\n'" + Paths::LocalReports +
                                    "'.\r\n\r\nYou will need to do this manually.",
                                MessageIcon::Warning, MessageButtons::Ok});
}

} // namespace ombrix

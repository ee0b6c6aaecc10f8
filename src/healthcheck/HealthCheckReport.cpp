#include "healthcheck/HealthCheckReport.h"

#include "board/AIBTools.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/os/ProgramLog.h"
#include "platform/ports/FreePath.h"
#include "platform/text/OleDate.h"
#include "reports/ReportFile.h"

#include <fmt/format.h>

#include <utility>

namespace ombrix {

namespace {

constexpr const char* ReportExtension = ".xlsx";

} // namespace

ReportUnit ReportUnitOf(clsAIB& board) {
    const clsACUCalibration& record = board.Calibration();
    return {board.SerialNumber(), record.MFCSerialNumber_Clean(), record.PressureConfig()};
}

HealthCheckReport::HealthCheckReport(Station& station, SpreadsheetLauncher launcher,
                                     OpenExcelView& wait, std::string templates)
    : m_Station(station), m_Launcher(std::move(launcher)), m_Wait(wait),
      m_Templates(std::move(templates)) {}

std::string HealthCheckReport::Open() {
    m_Opened = OpenExcel(m_Wait, m_Station.World, m_Launcher, "Initialising Excel Report",
                         m_Templates + "ACUHealthCheck.xltx");
    m_Wait.Close();
    if (m_Opened)
        return {};
    if (m_Opened.Error.empty())
        return "The template of the report has not been found.";
    TellOperator(m_Station.World, "The report could not be opened.\r\n\r\n" + m_Opened.Error,
                 MessageIcon::Critical);
    return m_Opened.Error;
}

SavedReport HealthCheckReport::Save(const ReportUnit& unit, OleDate date) {
    const std::string name =
        fmt::format("{}_ACU{}_{}", unit.MFCNumber, unit.Serial, DateText(date, "yyyymmdd_hhnnss"));
    try {
        Book().Sheet("DataTemplate").SetVisible(SheetVisibility::Hidden);
        Book().Sheet("Overview").Select();
        m_Opened.Application->SetVisible(true);
        return SaveInUnitFolder(unit, name);
    } catch (const std::exception& error) {
        TellOperator(m_Station.World,
                     std::string("The report could not be saved.\r\n\r\n") + error.what(),
                     MessageIcon::Critical);
        return KeepElsewhere(name, error.what());
    }
}

SavedReport HealthCheckReport::SaveInUnitFolder(const ReportUnit& unit, const std::string& name) {
    const Drive& files = m_Station.World.Files;
    std::string folder;
    if (GetUnitFolder(m_Station, unit, folder)) {
        const std::string path = FreePath(files, folder + name, ReportExtension);
        Book().SaveAs(path, FileFormat::ByExtension);
        return {path, files.RealPath(path), {}};
    }
    const std::string shown = fmt::format("{:05}_{}\\'", unit.Serial, unit.MFCNumber);
    const std::string warning = "Unable to Save Excel File in following locations:\r\n\r\n"
                                "   'S:\\Production\\ACUs\\_Initial Tests\\" +
                                shown + "\r\n\r\n'C:\\ACUs\\" + shown +
                                ".\r\n\r\nYou will need to do this manually.";
    TellOperator(m_Station.World, warning, MessageIcon::Warning);
    return KeepElsewhere(name, warning);
}

SavedReport HealthCheckReport::KeepElsewhere(const std::string& name, std::string error) {
    return {{}, KeepWorkbook(m_Station.World, Book(), name + ReportExtension), std::move(error)};
}

namespace {

constexpr std::string_view ShareMarker = R"(S:\.aibshare)";
constexpr std::string_view ShareFolder = R"(S:\Production\ACUs\_Initial Tests\)";
constexpr std::string_view LocalFolder = R"(C:\ACUs\)";

} // namespace

bool GetSaveRootFolder(Station& station, std::string& folder) {
    folder = station.World.Files.FileExists(ShareMarker) ? ShareFolder : LocalFolder;
    return CheckFolderExists(station.World.Files, station.World.Messages, folder,
                             FolderMode::Create);
}

bool GetACUFolder(Station& station, std::string& folder) {
    return GetUnitFolder(station, ReportUnitOf(*station.g_CurrentAIB), folder);
}

bool GetUnitFolder(Station& station, const ReportUnit& unit, std::string& folder) {
    if (!GetSaveRootFolder(station, folder))
        return false;
    folder += fmt::format("ACU{:05}_{}\\", unit.Serial, unit.MFCNumber);
    return CheckFolderExists(station.World.Files, station.World.Messages, folder,
                             FolderMode::Create);
}

void OpenSaveFolder(Station& station) {
    std::string folder;
    if (GetSaveRootFolder(station, folder) &&
        ShellOpenFile(station.World.Files, station.World.Documents, folder))
        return;
    station.World.Messages.Ask({"Unable to Open the following locations:\r\n\r\n"
                                "   'S:\\Production\\ACUs\\_Initial Tests\\'\r\n\r\n"
                                "'C:\\ACUs\\'.\r\n\r\n"
                                "You will need to do this manually.",
                                MessageIcon::Warning, MessageButtons::Ok});
}

} // namespace ombrix

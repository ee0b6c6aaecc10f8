#include "reports/CalibrationWorkbooks.h"

#include "board/AIBTools.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/FileNamePart.h"
#include "platform/text/OleDate.h"

namespace ombrix {

namespace {

std::string TimeStamp(Station& station) {
    return DateText(station.World.Time.Now(), "yymmdd_hhnnss");
}

OpenedWorkbook Failed(const CalibrationServices& services, const std::string& heading,
                      const std::string& reason) {
    TellOperator(services.TheStation.World, heading + "\r\n\r\n" + reason, MessageIcon::Critical);
    return {};
}

} // namespace

std::string AutoSaveFolderName(Station& station, const clsACUCalibration& record) {
    const std::string mfcNumber = FileNamePart(record.ACUMFCNumber());
    return R"(C:\)" + record.SerialNumberStr() + "\\" +
           (mfcNumber.empty() ? "UNKNOWN" : mfcNumber) + "_" + TimeStamp(station);
}

bool MakeAutoSaveFolder(Station& station, const clsACUCalibration& record) {
    std::string& folder = station.g_AutoSaveFolder;
    if (folder.empty())
        folder = AutoSaveFolderName(station, record);
    return CheckFolderExists(station.World.Files, station.World.Messages, folder,
                             FolderMode::Create);
}

std::string AutoSaveName(Station& station, const clsACUCalibration& record,
                         const std::string& prefix, const std::string& ending) {
    if (!MakeAutoSaveFolder(station, record))
        return "";
    return AddBackslash(station.g_AutoSaveFolder) + prefix + record.SerialNumberStr() + "_" +
           FileNamePart(record.ACUMFCNumber()) + "_" + TimeStamp(station) + ending;
}

OpenedWorkbook OpenFilled(const CalibrationServices& services, const std::string& message,
                          const std::string& templateName,
                          const std::function<void(Workbook&)>& fill) {
    OpenedWorkbook opened = OpenExcel(services.Wait, services.TheStation.World, services.Launcher,
                                      message, services.Templates + templateName);
    if (!opened) {
        services.Wait.Close();
        // A missing template has been told already.
        return opened.Error.empty()
                   ? OpenedWorkbook()
                   : Failed(services, "The report could not be opened.", opened.Error);
    }
    try {
        fill(*opened.Book);
        services.Wait.Close();
        return opened;
    } catch (const std::exception& error) {
        services.Wait.Close();
        return Failed(services, "The report could not be filled.", error.what());
    }
}

} // namespace ombrix

#include "healthcheck/SaveFolder.h"

#include "board/AIBTools.h"
#include "healthcheck/HealthCheckReport.h"

#include <fmt/format.h>

namespace ombrix {

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

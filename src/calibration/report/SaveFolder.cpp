#include "calibration/report/SaveFolder.h"

#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <utility>

namespace ombrix {

namespace {

std::string TimeStamp(Station& station) {
    return DateText(station.World.Time.Now(), "yymmdd_hhnnss");
}

} // namespace

std::string AutoSaveFolderName(Station& station, const ACU& unit) {
    return Paths::DriveC + unit.SerialNumberStr() + "\\" + unit.Record.NumberInNames() + "_" +
           TimeStamp(station);
}

bool MakeAutoSaveFolder(Station& station, const ACU& unit) {
    std::string& folder = station.AutoSaveFolder;
    if (folder.empty())
        folder = AutoSaveFolderName(station, unit);
    return CheckFolderExists(station.World.Files, station.World.Messages, folder,
                             FolderMode::Create);
}

std::string AutoSaveName(Station& station, const ACU& unit, const std::string& prefix,
                         const std::string& ending) {
    if (!MakeAutoSaveFolder(station, unit))
        return "";
    return AddBackslash(station.AutoSaveFolder) + prefix + unit.SerialNumberStr() + "_" +
           unit.Record.NumberInNames() + "_" + TimeStamp(station) + ending;
}

OwnSaveFolder::OwnSaveFolder(Station& station, const ACU& unit)
    : m_Station(station),
      m_Usual(std::exchange(station.AutoSaveFolder, AutoSaveFolderName(station, unit))) {
    const std::string name = station.AutoSaveFolder;
    for (int number = 2; station.World.Files.FolderExists(station.AutoSaveFolder); ++number)
        station.AutoSaveFolder = fmt::format("{} ({})", name, number);
}

OwnSaveFolder::~OwnSaveFolder() {
    m_Station.AutoSaveFolder = std::move(m_Usual);
}

} // namespace ombrix

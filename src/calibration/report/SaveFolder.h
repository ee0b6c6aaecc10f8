#pragma once

#include "board/Station.h"

#include <string>

namespace ombrix {

/// Name of a folder of automatically saved workbooks, from serial number, MFC number and time.
std::string AutoSaveFolderName(Station& station, const ACU& unit);

/// Builds the folder of automatically saved workbooks with the first call of the program's run
/// and makes sure that it is there.
bool MakeAutoSaveFolder(Station& station, const ACU& unit);

/// Full name of an automatically saved workbook: the automatic save folder, a prefix ("ACU_"),
/// serial number, MFC number, time, and the ending ("_System.xls"). Empty when there is no such
/// folder. What cannot stand in a file name becomes "_".
std::string AutoSaveName(Station& station, const ACU& unit, const std::string& prefix,
                         const std::string& ending);

/// While it lives, workbooks are saved into a folder that is not there yet.
class OwnSaveFolder {
  public:
    OwnSaveFolder(Station& station, const ACU& unit);
    OwnSaveFolder(const OwnSaveFolder&) = delete;
    OwnSaveFolder& operator=(const OwnSaveFolder&) = delete;
    ~OwnSaveFolder();

  private:
    Station& m_Station;
    std::string m_Usual;
};

} // namespace ombrix

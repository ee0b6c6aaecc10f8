#pragma once

#include "calibration/run/CalibrationServices.h"
#include "calibration/unit/ACURecord.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace ombrix {

class clsACUCalibration;

/// What became of a workbook.
struct WorkbookOutcome {
    bool Saved = false;
    /// Where it lies; nothing when it lies nowhere.
    std::optional<std::filesystem::path> File;
    /// It has the name and the format that it was to have.
    bool WhereItBelongs = false;
    /// What it does not hold and should; the operator has been told.
    std::string Lack = {};
};

/// Adds a workbook to what a run has written. @tparam Outcome has AllStored and Files
template <class Outcome>
void AddWorkbook(Outcome& outcome, const WorkbookOutcome& workbook) {
    outcome.AllStored = outcome.AllStored && workbook.WhereItBelongs;
    if (workbook.File)
        outcome.Files.push_back(*workbook.File);
}

/// Name of a folder of automatically saved workbooks, from serial number, MFC number and time.
std::string AutoSaveFolderName(Station& station, const clsACUCalibration& record);

/// Builds the folder of automatically saved workbooks with the first call of the program's run
/// and makes sure that it is there.
bool MakeAutoSaveFolder(Station& station, const clsACUCalibration& record);

/// Full name of an automatically saved workbook: the automatic save folder, a prefix ("ACU_"),
/// serial number, MFC number, time, and the ending ("_System.xls"). Empty when there is no such
/// folder. What cannot stand in a file name becomes "_".
std::string AutoSaveName(Station& station, const clsACUCalibration& record,
                         const std::string& prefix, const std::string& ending);

/// Opens a template and has its workbook filled, under the wait window. What goes wrong is told
/// to the operator; there is no workbook then.
/// @param templateName file name in the folder of the templates
OpenedWorkbook OpenFilled(const CalibrationServices& services, const std::string& message,
                          const std::string& templateName,
                          const std::function<void(Workbook&)>& fill);

/// Saves a filled workbook. An operator who is there is asked whether to view it; whatever goes
/// wrong is told, with the offer to try again, and in the end the workbook is kept in the folder
/// for temporary files, so that nothing measured is lost.
/// @param autoSave nobody is asked whether to view the results
WorkbookOutcome SaveCalibrationExcelWorkbook(const CalibrationServices& services,
                                             OpenedWorkbook& workbook, std::string fileName,
                                             bool autoSave);

} // namespace ombrix

#pragma once

#include "board/Station.h"
#include "reports/layout/ReportTemplate.h"
#include "spreadsheet/Spreadsheet.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ombrix {

/// The small window that says that a report is being opened.
class OpenExcelView {
  public:
    virtual ~OpenExcelView() = default;

    /// Shows the window without blocking, with a message on its message line.
    virtual void Show(const std::string& message) = 0;
    virtual void Close() = 0;
};

/// The handles that travel through a report. Without a workbook, Error says why; it is empty
/// when the operator has been told already.
struct OpenedWorkbook {
    std::unique_ptr<SpreadsheetApplication> Application;
    Workbook* Book = nullptr;
    Worksheet* Sheet = nullptr;
    std::string Error;

    explicit operator bool() const { return Book != nullptr; }
};

/// What report files are made with.
struct ReportTools {
    Station& TheStation;
    SpreadsheetLauncher Launcher;
    OpenExcelView& Wait;
    /// Folder of the report templates, ended by a backslash.
    std::string Templates;
};

/// Where a report lies.
struct StoredReport {
    /// Its real path; nothing when it lies nowhere.
    std::optional<std::filesystem::path> File{};
    /// It has the name and the format that it was to have.
    bool WhereItBelongs = false;
};

/// Adds a report to what a procedure has written. @tparam Written has AllStored and Files
template <class Written>
void AddReport(Written& written, const StoredReport& report) {
    written.AllStored = written.AllStored && report.WhereItBelongs;
    if (report.File)
        written.Files.push_back(*report.File);
}

/// Starts the spreadsheet application and makes a workbook from a report's template, if the report
/// can be made of it (TemplateCheck.h). A missing template is told to the operator.
OpenedWorkbook OpenWorkbookFromTemplate(const ReportTools& tools, const ReportTemplate& report);

/// The same with the wait window, which the caller closes when it has filled the sheet.
OpenedWorkbook OpenExcel(const ReportTools& tools, const std::string& message,
                         const ReportTemplate& report);

/// Opens a template and has its workbook filled, under the wait window. What goes wrong is told
/// to the operator; there is no workbook then.
OpenedWorkbook OpenFilled(const ReportTools& tools, const std::string& message,
                          const ReportTemplate& report, const std::function<void(Workbook&)>& fill);

/// Tells the operator if a report that will be made later, when all is measured, cannot be made of
/// its template.
void TellIfUnusable(const ReportTools& tools, const ReportTemplate& report);

/// Saves in the binary format where the application knows it (version 12 on). A save that
/// fails makes the application visible, so that the workbook is kept, and still counts as done.
/// @param reason takes why a save has failed, when given
bool SaveWorkbookAs(Workbook& workbook, const std::string& path, std::string* reason = nullptr);

/// Saves a filled workbook. An operator who is there is asked whether to view it; whatever goes
/// wrong is told, with the offer to try again, and in the end the workbook is kept in the folder
/// for temporary files, so that nothing measured is lost.
/// @param autoSave nobody is asked whether to view the results
StoredReport SaveCalibrationExcelWorkbook(const ReportTools& tools, OpenedWorkbook& workbook,
                                          std::string fileName, bool autoSave);

/// The last resort for a report that cannot be stored where it belongs: the folder for
/// temporary files. The operator is told where it lies, or that not even that was possible.
/// @param fileName ends in ".xlsx"; numbered when there is such a file already
/// @return the real path; nothing when the report lies nowhere
std::optional<std::filesystem::path> KeepWorkbook(Platform& world, Workbook& workbook,
                                                  const std::string& fileName);

} // namespace ombrix

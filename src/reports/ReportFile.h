#pragma once

#include "platform/ports/Platform.h"
#include "spreadsheet/Spreadsheet.h"

#include <filesystem>
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

/// Starts the spreadsheet application and makes a workbook from a template ("….xltx"; "….xlt"
/// also stands for "….xltx" beside it). A missing template is told to the operator.
OpenedWorkbook OpenWorkbookFromTemplate(Platform& world, const SpreadsheetLauncher& launcher,
                                        const std::string& templatePath);

/// The same with the wait window, which the caller closes when it has filled the sheet.
OpenedWorkbook OpenExcel(OpenExcelView& view, Platform& world, const SpreadsheetLauncher& launcher,
                         const std::string& message, const std::string& templatePath);

/// Saves in the binary format where the application knows it (version 12 on). A save that
/// fails makes the application visible, so that the workbook is kept, and still counts as done.
bool SaveWorkbookAs(Workbook& workbook, const std::string& path);

/// The last resort for a report that cannot be stored where it belongs: the folder for
/// temporary files. The operator is told where it lies, or that not even that was possible.
/// @param fileName ends in ".xlsx"; numbered when there is such a file already
/// @return the real path; nothing when the report lies nowhere
std::optional<std::filesystem::path> KeepWorkbook(Platform& world, Workbook& workbook,
                                                  const std::string& fileName);

} // namespace ombrix

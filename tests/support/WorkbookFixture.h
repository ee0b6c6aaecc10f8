#pragma once

#include "platform/os/FolderDrive.h"
#include "spreadsheet/XlsxApplication.h"
#include "support/TemporaryFolder.h"
#include "support/WorkbookProbe.h"
#include "templates/ReportTemplates.h"

#include <gtest/gtest.h>

#include <string>

namespace ombrix {

/// Converts by putting the formats before the content; fails when told to.
class FakeConverter final : public DocumentConverter {
  public:
    bool Missing = false;

    std::string Convert(std::string_view content, std::string_view from,
                        std::string_view to) override {
        if (Missing)
            throw SpreadsheetError("no LibreOffice here");
        return std::string(from) + ">" + std::string(to) + ":" + std::string(content);
    }
};

inline const std::string& HealthCheckTemplate() {
    static const std::string bytes = templates::MakeACUHealthCheck();
    return bytes;
}

/// A workbook made from the health check's template, or from another one.
class WorkbookFixture {
  public:
    explicit WorkbookFixture(const std::string& templateBytes = HealthCheckTemplate()) {
        Files.ReplaceFile(R"(C:\Report.xltx)", templateBytes);
        Book = &Application.Add(R"(C:\Report.xltx)");
    }

    TemporaryFolder Folder;
    FolderDrive Files{Folder.Path()};
    FakeConverter Converter;
    XlsxApplication Application{Files, Converter};
    Workbook* Book = nullptr;

    Worksheet& Sheet(const std::string& name) { return Book->Sheet(name); }

    /// Stores the workbook and looks into it.
    WorkbookProbe Saved() {
        Book->SaveAs(R"(C:\saved.xlsx)", FileFormat::ByExtension);
        return WorkbookProbe(Files.ReadFile(R"(C:\saved.xlsx)"));
    }
};

} // namespace ombrix

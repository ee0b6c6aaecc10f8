#pragma once

#include "platform/ports/Drive.h"
#include "spreadsheet/LibreOfficeConverter.h"
#include "spreadsheet/Spreadsheet.h"

#include <memory>
#include <string>
#include <vector>

namespace ombrix {

namespace xlsx {
class XlsxWorkbook;
}

/// The workbook engine: fills templates of the Office Open XML format. What it does not change
/// it keeps as the template has it.
class XlsxApplication final : public SpreadsheetApplication {
  public:
    /// @param files knows what the paths of templates and workbooks mean
    /// @param converter reads and writes the binary format of ".xls"
    /// @param currentFolder where workbooks saved under a bare name go
    XlsxApplication(Drive& files, DocumentConverter& converter, std::string currentFolder = "C:\\");
    XlsxApplication(const XlsxApplication&) = delete;
    XlsxApplication& operator=(const XlsxApplication&) = delete;
    ~XlsxApplication() override;

    Workbook& Add(std::string_view templatePath) override;
    Workbook& Open(std::string content, std::string_view name) override;
    int WorkbookCount() const override;
    /// Forgets every workbook.
    void Quit() override;
    /// Nothing is shown, but a workbook whose last SaveAs failed is stored beside the name it
    /// was to have, as ".xlsx"; its FullName tells where.
    void SetVisible(bool visible) override;
    void SetWindowState(WindowState state) override;
    void SetScreenUpdating(bool updating) override;
    void SetCalculation(Calculation calculation) override;
    std::string Version() const override;

    /// What workbooks ask of their application.
    Drive& Files() { return m_Files; }
    DocumentConverter& Converter() { return m_Converter; }
    const std::string& CurrentFolder() const { return m_CurrentFolder; }
    Calculation CalculationMode() const { return m_Calculation; }
    void Forget(const Workbook& book);

  private:
    Drive& m_Files;
    DocumentConverter& m_Converter;
    std::string m_CurrentFolder;
    Calculation m_Calculation = Calculation::Automatic;
    std::vector<std::unique_ptr<xlsx::XlsxWorkbook>> m_Books;
};

} // namespace ombrix

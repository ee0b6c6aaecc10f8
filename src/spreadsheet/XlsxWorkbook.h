#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/package/Package.h"
#include "spreadsheet/package/SharedStrings.h"
#include "spreadsheet/package/StyleSheet.h"
#include "spreadsheet/package/WorkbookXml.h"
#include "spreadsheet/sheet/XlsxWorksheet.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ombrix {
class XlsxApplication;
}

namespace ombrix::xlsx {

struct ZipFile;

/// A workbook in the making: the template's package with the parts that are being changed.
class XlsxWorkbook final : public Workbook {
  public:
    /// @param archive the template's bytes
    /// @param templateName gives the workbook its name for as long as it has no other
    /// @throws SpreadsheetError saying what is wrong with the template
    XlsxWorkbook(XlsxApplication& application, std::string_view archive, std::string templateName);

    SpreadsheetApplication& Application() override;
    int WorksheetCount() const override;
    Worksheet& Sheet(int position) override;
    Worksheet& Sheet(std::string_view name) override;
    std::string FreeName(std::string_view name) const override;
    TemplateContents Contents() const override;
    void SaveAs(std::string_view path, FileFormat format) override;
    void Close() override;
    std::string FullName() const override { return m_FullName; }

    /// If the last SaveAs failed: stores the workbook beside the wanted name as ".xlsx", or in
    /// the application's current folder where that fails too. @throws SpreadsheetError
    void KeepUnsaved();

    /// What the sheets ask of their workbook.
    Package& Parts() { return m_Parts; }
    StyleSheet& Styles() { return m_Styles; }
    const SharedStrings& Texts() const { return m_Texts; }
    bool CountsFrom1904() const { return m_Workbook.CountsFrom1904(); }
    std::string NameOf(const XlsxWorksheet& sheet) const;
    void Rename(const XlsxWorksheet& sheet, std::string_view name);
    void SetVisibility(const XlsxWorksheet& sheet, SheetVisibility visibility);
    void Select(const XlsxWorksheet& sheet);
    void ExtendPrintArea(const XlsxWorksheet& sheet, const CellArea& area);
    void CopyAfter(const XlsxWorksheet& sheet, const Worksheet& other);

  private:
    void OpenSheets();
    std::string RelatedPart(std::string_view lastWord) const;
    std::string StylesPart();
    int IndexOf(const Worksheet& sheet) const;
    void RequireCopyable(const XlsxWorksheet& sheet) const;
    void DropCalculationOrder();
    std::string Xlsx();
    std::vector<ZipFile> Files(const Package& parts) const;
    void Store(const std::string& path, FileFormat format);

    XlsxApplication& m_Application;
    Package m_Parts;
    std::string m_WorkbookPart;
    WorkbookXml m_Workbook;
    StyleSheet m_Styles;
    SharedStrings m_Texts;
    /// In the order of their tabs; a tab that is no worksheet has none.
    std::vector<std::unique_ptr<XlsxWorksheet>> m_Sheets;
    std::string m_TemplateName;
    std::string m_FullName;
    /// The name under which the last SaveAs failed.
    std::optional<std::string> m_FailedPath;
};

} // namespace ombrix::xlsx

#pragma once

#include "platform/ports/Drive.h"
#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/sheet/CellArea.h"

#include <pugixml.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

/// Paths are Windows-style texts of the program.

/// A bare name lies in the current folder. @throws SpreadsheetError for an empty name
std::string FullPath(std::string_view path, std::string_view currentFolder);

/// What stands behind the last separator.
std::string FileNameOf(std::string_view path);

/// Whether a workbook is to be written in the binary format of ".xls".
/// @throws SpreadsheetError for a name of a kind that cannot be written
bool IsBinary(std::string_view path, FileFormat format);

/// "….xlsx" beside a name. @param otherwise the file's name where the path has none
std::string PathBeside(std::string_view path, std::string_view currentFolder,
                       std::string_view otherwise);

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

/// The part that lists a workbook's sheets and names. Sheets are numbered from 0, in the order
/// in which their tabs show.
class WorkbookXml {
  public:
    /// @throws SpreadsheetError
    explicit WorkbookXml(std::string_view xml, std::string_view partName);

    int SheetCount() const;
    std::string SheetName(int sheet) const;
    std::string RelationshipId(int sheet) const;
    /// -1 when no sheet has the name.
    int FindSheet(std::string_view name) const;

    /// @throws SpreadsheetError when the name is none for a sheet or is in use
    void Rename(int sheet, std::string_view name);
    /// @throws SpreadsheetError when it is the last visible sheet that is to be hidden
    void SetVisibility(int sheet, SheetVisibility visibility);
    /// @throws SpreadsheetError for a hidden sheet
    void SetActive(int sheet);
    int Active() const;

    /// Has what is printed of a sheet reach down to the end of an area; a sheet that does not say
    /// what is printed of it gets the area.
    void ExtendPrintArea(int sheet, const CellArea& area);

    /// Enters a copy of a sheet at a position, with names of its own in place of those that lead to
    /// the sheet, its own ones and the workbook's.
    /// @return those of the workbook's that the copy has got as its own
    std::vector<std::string> InsertCopy(int source, int position, const std::string& name,
                                        const std::string& relationshipId);
    /// The name itself, or "DataTemplate (2)" where a sheet has it.
    std::string FreeName(std::string_view name) const;

    /// Dates count from 1904 instead of 1900.
    bool CountsFrom1904() const;
    /// Has everything calculated when the workbook is opened.
    void SetCalculation(Calculation calculation);

    std::string Xml() const;

  private:
    pugi::xml_node Sheet(int sheet) const;
    pugi::xml_node View();
    std::vector<std::string> CopyNames(int source, int position, std::string_view name);
    bool IsVisible(int sheet) const;
    int FirstVisible() const;

    pugi::xml_document m_Document;
};

} // namespace ombrix::xlsx

#include "spreadsheet/package/WorkbookXml.h"

#include "platform/text/Text.h"
#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/sheet/FormulaText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace ombrix::xlsx {

namespace {

constexpr std::string_view Separators = "\\/";

std::string Extension(std::string_view path) {
    const std::string name = FileNameOf(path);
    const std::size_t dot = name.find_last_of('.');
    std::string extension = dot == std::string::npos ? "" : name.substr(dot);
    std::transform(extension.begin(), extension.end(), extension.begin(), LowerCase);
    return extension;
}

bool IsComplete(std::string_view path) {
    return path.find_first_of(Separators) == 0 || (path.size() > 1 && path[1] == ':');
}

} // namespace

std::string FileNameOf(std::string_view path) {
    return std::string(path.substr(path.find_last_of(Separators) + 1)); // npos + 1 is 0
}

std::string FullPath(std::string_view path, std::string_view currentFolder) {
    if (FileNameOf(path).empty())
        throw SpreadsheetError("it needs a file name");
    if (IsComplete(path))
        return std::string(path);
    const bool ends =
        !currentFolder.empty() && Separators.find(currentFolder.back()) != std::string_view::npos;
    return fmt::format("{}{}{}", currentFolder, ends ? "" : "\\", path);
}

bool IsBinary(std::string_view path, FileFormat format) {
    const std::string extension = Extension(path);
    if (format == FileFormat::Excel8 || extension == ".xls")
        return true;
    if (extension == ".xlsx")
        return false;
    throw SpreadsheetError("the name must end in .xlsx or .xls");
}

std::string PathBeside(std::string_view path, std::string_view currentFolder,
                       std::string_view otherwise) {
    std::string stem = FullPath(FileNameOf(path).empty() ? otherwise : path, currentFolder);
    stem.resize(stem.size() - Extension(stem).size());
    return stem + ".xlsx";
}

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

namespace {

constexpr std::size_t LongestSheetName = 31;
constexpr std::array<std::string_view, 13> BehindViews = {
    "sheets",        "functionGroups", "externalReferences",  "definedNames",
    "calcPr",        "oleSize",        "customWorkbookViews", "pivotCaches",
    "webPublishing", "fileRecoveryPr", "webPublishObjects",   "smartTagPr",
    "extLst"};
constexpr std::array<std::string_view, 10> BehindNames = {
    "calcPr",        "oleSize",       "customWorkbookViews", "pivotCaches",       "smartTagPr",
    "smartTagTypes", "webPublishing", "fileRecoveryPr",      "webPublishObjects", "extLst"};
constexpr const char* PrintAreaName = "_xlnm.Print_Area";
constexpr std::array<std::string_view, 9> BehindCalculation = {
    "oleSize",       "customWorkbookViews", "pivotCaches",       "smartTagPr", "smartTagTypes",
    "webPublishing", "fileRecoveryPr",      "webPublishObjects", "extLst"};

void CheckSheetName(std::string_view name) {
    if (name.empty() || CharacterCount(name) > LongestSheetName ||
        name.find_first_of("\\/?*[]:") != std::string_view::npos || name.front() == '\'' ||
        name.back() == '\'' || CleanText(name) != name)
        throw SpreadsheetError(fmt::format(
            "\"{}\" is no name for a sheet: 1 to 31 characters, none of \\ / ? * [ ] :", name));
}

std::string Shortened(std::string_view name, std::size_t characters) {
    std::string result(name);
    while (CharacterCount(result) > characters) {
        while ((static_cast<unsigned char>(result.back()) & 0xC0U) == 0x80U)
            result.pop_back();
        result.pop_back();
    }
    return result;
}

} // namespace

WorkbookXml::WorkbookXml(std::string_view xml, std::string_view partName)
    : m_Document(ParseXml(xml, partName, "workbook")) {
    if (SheetCount() == 0)
        throw SpreadsheetError("it holds no sheet");
}

int WorkbookXml::SheetCount() const {
    const auto sheets = m_Document.document_element().child("sheets").children("sheet");
    return static_cast<int>(std::distance(sheets.begin(), sheets.end()));
}

pugi::xml_node WorkbookXml::Sheet(int sheet) const {
    const auto sheets = m_Document.document_element().child("sheets").children("sheet");
    return *std::next(sheets.begin(), sheet);
}

std::string WorkbookXml::SheetName(int sheet) const {
    return Sheet(sheet).attribute("name").value();
}

std::string WorkbookXml::RelationshipId(int sheet) const {
    return Sheet(sheet).attribute("r:id").value();
}

int WorkbookXml::FindSheet(std::string_view name) const {
    for (int sheet = 0; sheet < SheetCount(); ++sheet)
        if (SameIgnoringCase(SheetName(sheet), name))
            return sheet;
    return -1;
}

void WorkbookXml::Rename(int sheet, std::string_view name) {
    CheckSheetName(name);
    const int holder = FindSheet(name);
    if (holder >= 0 && holder != sheet)
        throw SpreadsheetError(fmt::format("a sheet named \"{}\" is there already", name));
    const std::string old = SheetName(sheet);
    SetAttribute(Sheet(sheet), "name", std::string(name).c_str());
    for (pugi::xml_node entry : m_Document.document_element().child("definedNames").children())
        entry.text().set(RenameSheet(entry.text().get(), old, name).c_str());
}

bool WorkbookXml::IsVisible(int sheet) const {
    const std::string_view state = Sheet(sheet).attribute("state").value();
    return state.empty() || state == "visible";
}

int WorkbookXml::FirstVisible() const {
    int sheet = 0;
    while (sheet < SheetCount() && !IsVisible(sheet))
        ++sheet;
    return sheet;
}

void WorkbookXml::SetVisibility(int sheet, SheetVisibility visibility) {
    pugi::xml_node entry = Sheet(sheet);
    const std::string before = entry.attribute("state").value();
    if (visibility == SheetVisibility::Visible) {
        entry.remove_attribute("state");
        return;
    }
    SetAttribute(entry, "state", "hidden");
    if (FirstVisible() == SheetCount()) {
        SetAttribute(entry, "state", before.c_str());
        throw SpreadsheetError(fmt::format("\"{}\" cannot be hidden: it is the workbook's last "
                                           "visible sheet",
                                           SheetName(sheet)));
    }
    if (Active() == sheet)
        SetActive(FirstVisible());
}

pugi::xml_node WorkbookXml::View() {
    pugi::xml_node views = ChildInOrder(m_Document.document_element(), "bookViews", BehindViews);
    return views.child("workbookView") ? views.child("workbookView")
                                       : views.append_child("workbookView");
}

void WorkbookXml::SetActive(int sheet) {
    if (!IsVisible(sheet))
        throw SpreadsheetError(
            fmt::format("\"{}\" cannot be selected: it is hidden", SheetName(sheet)));
    SetAttribute(View(), "activeTab", sheet);
    View().remove_attribute("firstSheet");
}

int WorkbookXml::Active() const {
    const pugi::xml_node root = m_Document.document_element();
    const int active =
        root.child("bookViews").child("workbookView").attribute("activeTab").as_int();
    return active >= 0 && active < SheetCount() ? active : 0;
}

void WorkbookXml::ExtendPrintArea(int sheet, const CellArea& area) {
    pugi::xml_node names = ChildInOrder(m_Document.document_element(), "definedNames", BehindNames);
    pugi::xml_node entry = names.find_child([sheet](const pugi::xml_node& name) {
        return name.attribute("name").value() == std::string_view(PrintAreaName) &&
               name.attribute("localSheetId").as_int(-1) == sheet;
    });
    std::string text;
    if (entry) {
        text = ReachingDown(entry.text().get(), area.Last.Row);
    } else {
        entry = names.append_child("definedName");
        SetAttribute(entry, "name", PrintAreaName);
        SetAttribute(entry, "localSheetId", sheet);
        text = QuotedSheetName(SheetName(sheet)) + "!" + ToAbsoluteText(area);
    }
    entry.text().set(text.c_str());
}

std::vector<std::string> WorkbookXml::InsertCopy(int source, int position, const std::string& name,
                                                 const std::string& relationshipId) {
    const int active = Active();
    unsigned highestId = 0;
    pugi::xml_node sheets = m_Document.document_element().child("sheets");
    for (const pugi::xml_node sheet : sheets.children("sheet"))
        highestId = std::max(highestId, sheet.attribute("sheetId").as_uint());

    std::vector<std::string> bound = CopyNames(source, position, name);
    pugi::xml_node entry = sheets.insert_copy_before(Sheet(source), Sheet(0));
    if (position > 0) {
        const pugi::xml_node neighbour = Sheet(position); // the new entry counts as the first
        sheets.insert_move_after(entry, neighbour);
    }
    SetAttribute(entry, "name", name.c_str());
    SetAttribute(entry, "sheetId", highestId + 1);
    SetAttribute(entry, "r:id", relationshipId.c_str());

    SetAttribute(View(), "activeTab", active >= position ? active + 1 : active);
    return bound;
}

/// Formulas find a sheet's own names before the workbook's, so that those on the copy find it.
std::vector<std::string> WorkbookXml::CopyNames(int source, int position, std::string_view name) {
    const std::string sourceName = SheetName(source);
    pugi::xml_node names = m_Document.document_element().child("definedNames");
    std::vector<pugi::xml_node> own;
    std::vector<pugi::xml_node> global;
    for (pugi::xml_node defined : names.children("definedName")) {
        const pugi::xml_attribute owner = defined.attribute("localSheetId");
        const std::string_view text = defined.text().get();
        if (owner && owner.as_int() == source)
            own.push_back(defined);
        else if (!owner && RenameSheet(text, sourceName, name) != text)
            global.push_back(defined);
        if (owner && owner.as_int() >= position && owner.as_int() < SheetCount())
            SetAttribute(defined, "localSheetId", owner.as_int() + 1);
    }
    std::vector<std::string> bound;
    for (const pugi::xml_node& defined : global) {
        const std::string_view word = defined.attribute("name").value();
        if (std::any_of(own.begin(), own.end(), [word](const pugi::xml_node& other) {
                return SameIgnoringCase(other.attribute("name").value(), word);
            }))
            continue;
        own.push_back(defined);
        bound.emplace_back(word);
    }
    for (const pugi::xml_node& defined : own) {
        pugi::xml_node copy = names.insert_copy_after(defined, defined);
        SetAttribute(copy, "localSheetId", position);
        copy.text().set(RenameSheet(copy.text().get(), sourceName, name).c_str());
    }
    return bound;
}

std::string WorkbookXml::FreeName(std::string_view name) const {
    std::string free(name);
    for (int number = 2; FindSheet(free) >= 0; ++number) {
        const std::string suffix = fmt::format(" ({})", number);
        free = Shortened(name, LongestSheetName - suffix.size()) + suffix;
    }
    return free;
}

bool WorkbookXml::CountsFrom1904() const {
    return m_Document.document_element().child("workbookPr").attribute("date1904").as_bool();
}

void WorkbookXml::SetCalculation(Calculation calculation) {
    pugi::xml_node entry = ChildInOrder(m_Document.document_element(), "calcPr", BehindCalculation);
    SetAttribute(entry, "fullCalcOnLoad", 1);
    entry.remove_attribute("calcMode");
    if (calculation == Calculation::Manual)
        SetAttribute(entry, "calcMode", "manual");
}

std::string WorkbookXml::Xml() const {
    return ToXml(m_Document);
}

} // namespace ombrix::xlsx

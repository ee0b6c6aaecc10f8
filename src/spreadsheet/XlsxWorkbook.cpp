#include "spreadsheet/XlsxWorkbook.h"

#include "platform/ports/Folders.h"
#include "spreadsheet/XlsxApplication.h"
#include "spreadsheet/package/PartReferences.h"
#include "spreadsheet/package/TemplateKind.h"
#include "spreadsheet/package/WorkbookXml.h"
#include "spreadsheet/package/ZipArchive.h"
#include "spreadsheet/sheet/FormulaText.h"
#include "spreadsheet/sheet/SheetFeatures.h"
#include "spreadsheet/sheet/SheetWriter.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix::xlsx {

namespace {

/// Beyond this, files hardly get smaller but saving takes several times as long.
constexpr int CompressionLevel = 6;
constexpr const char* StylesType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";

Package OpenTemplate(std::string_view archive) {
    Package parts = Package::FromArchive(archive);
    MakeWorkbook(parts, FindWorkbookPart(parts));
    return parts;
}

} // namespace

XlsxWorkbook::XlsxWorkbook(XlsxApplication& application, std::string_view archive,
                           std::string templateName)
    : m_Application(application), m_Parts(OpenTemplate(archive)),
      m_WorkbookPart(FindWorkbookPart(m_Parts)),
      m_Workbook(m_Parts.Content(m_WorkbookPart), m_WorkbookPart),
      m_Styles(m_Parts.Content(StylesPart())), m_TemplateName(std::move(templateName)) {
    if (const std::string texts = RelatedPart("sharedStrings"); !texts.empty())
        m_Texts = SharedStrings(m_Parts.Content(texts));
    RequireReadable(m_Parts);
    OpenSheets();
    DropCalculationOrder();
}

/// The part with the formats, made when there is none.
std::string XlsxWorkbook::StylesPart() {
    if (std::string part = RelatedPart("styles"); !part.empty())
        return part;
    std::string part = m_Parts.FreshName("xl/styles", ".xml");
    m_Parts.SetContent(part, StyleSheet::Empty());
    m_Parts.SetContentType(part, StylesType);
    m_Parts.Relate(m_WorkbookPart, std::string(RelationshipTypes) + "styles", part);
    return part;
}

/// The part that the workbook part refers to by a relationship of that kind; empty for none.
std::string XlsxWorkbook::RelatedPart(std::string_view lastWord) const {
    for (const Relationship& relationship : m_Parts.Relationships(m_WorkbookPart))
        if (relationship.Is(lastWord))
            return m_Parts.TargetPart(m_WorkbookPart, relationship);
    return "";
}

void XlsxWorkbook::OpenSheets() {
    const std::vector<Relationship> relationships = m_Parts.Relationships(m_WorkbookPart);
    for (int sheet = 0; sheet < m_Workbook.SheetCount(); ++sheet) {
        const std::string id = m_Workbook.RelationshipId(sheet);
        const auto found =
            std::find_if(relationships.begin(), relationships.end(),
                         [&](const Relationship& candidate) { return candidate.Id == id; });
        if (found == relationships.end())
            throw SpreadsheetError(
                fmt::format("its sheet \"{}\" is missing", m_Workbook.SheetName(sheet)));
        m_Sheets.emplace_back();
        if (!found->Is("worksheet"))
            continue;
        const std::string part = m_Parts.TargetPart(m_WorkbookPart, *found);
        m_Sheets.back() = std::make_unique<XlsxWorksheet>(*this, part, m_Parts.Content(part));
    }
}

/// The order of calculation does not outlive a change.
void XlsxWorkbook::DropCalculationOrder() {
    std::vector<Relationship> relationships = m_Parts.Relationships(m_WorkbookPart);
    const auto dropped = std::erase_if(relationships, [&](const Relationship& relationship) {
        if (relationship.Is("calcChain"))
            m_Parts.Remove(m_Parts.TargetPart(m_WorkbookPart, relationship));
        return relationship.Is("calcChain");
    });
    if (dropped > 0)
        m_Parts.SetRelationships(m_WorkbookPart, relationships);
}

SpreadsheetApplication& XlsxWorkbook::Application() {
    return m_Application;
}

int XlsxWorkbook::WorksheetCount() const {
    return static_cast<int>(std::count_if(m_Sheets.begin(), m_Sheets.end(),
                                          [](const auto& sheet) { return sheet != nullptr; }));
}

Worksheet& XlsxWorkbook::Sheet(int position) {
    int number = 0;
    for (const auto& sheet : m_Sheets)
        if (sheet && ++number == position)
            return *sheet;
    throw SpreadsheetError(fmt::format("the workbook has no sheet number {}", position), 9);
}

Worksheet& XlsxWorkbook::Sheet(std::string_view name) {
    const int index = m_Workbook.FindSheet(name);
    if (index < 0 || !m_Sheets[static_cast<std::size_t>(index)])
        throw SpreadsheetError(fmt::format("the workbook has no sheet \"{}\"", name), 9);
    return *m_Sheets[static_cast<std::size_t>(index)];
}

int XlsxWorkbook::IndexOf(const Worksheet& sheet) const {
    const auto found = std::find_if(m_Sheets.begin(), m_Sheets.end(),
                                    [&](const auto& own) { return own.get() == &sheet; });
    if (found == m_Sheets.end())
        throw SpreadsheetError("the sheet belongs to another workbook");
    return static_cast<int>(found - m_Sheets.begin());
}

std::string XlsxWorkbook::NameOf(const XlsxWorksheet& sheet) const {
    return m_Workbook.SheetName(IndexOf(sheet));
}

void XlsxWorkbook::Rename(const XlsxWorksheet& sheet, std::string_view name) {
    const std::string old = NameOf(sheet);
    m_Workbook.Rename(IndexOf(sheet), name);
    for (const auto& other : m_Sheets)
        if (other)
            other->RenameReferences(old, name);
    ChangePartReferences(m_Parts, m_Parts.PartNames(), [&](std::string_view reference) {
        return RenameSheet(reference, old, name);
    });
}

void XlsxWorkbook::SetVisibility(const XlsxWorksheet& sheet, SheetVisibility visibility) {
    m_Workbook.SetVisibility(IndexOf(sheet), visibility);
}

void XlsxWorkbook::Select(const XlsxWorksheet& sheet) {
    m_Workbook.SetActive(IndexOf(sheet));
}

void XlsxWorkbook::ExtendPrintArea(const XlsxWorksheet& sheet, const CellArea& area) {
    m_Workbook.ExtendPrintArea(IndexOf(sheet), area);
}

std::string XlsxWorkbook::FreeName(std::string_view name) const {
    return m_Workbook.FreeName(name);
}

TemplateContents XlsxWorkbook::Contents() const {
    TemplateContents contents{{}, WorkbookFeatures(m_Parts, m_WorkbookPart)};
    for (std::size_t i = 0; i < m_Sheets.size(); ++i) {
        TemplateSheet& entry = contents.Sheets.emplace_back();
        entry.Name = m_Workbook.SheetName(static_cast<int>(i));
        entry.IsWorksheet = m_Sheets[i] != nullptr;
        if (entry.IsWorksheet)
            entry.Features = m_Sheets[i]->Features();
    }
    return contents;
}

void XlsxWorkbook::RequireCopyable(const XlsxWorksheet& sheet) const {
    for (const TemplateFeature& feature : RelatedFeatures(m_Parts, sheet.PartName()))
        if (!feature.Remedy.empty())
            throw SpreadsheetError(fmt::format("\"{}\" cannot be copied: it holds {}. {}",
                                               sheet.Name(), feature.Name, feature.Remedy));
}

void XlsxWorkbook::CopyAfter(const XlsxWorksheet& sheet, const Worksheet& other) {
    const int source = IndexOf(sheet);
    const int position = IndexOf(other) + 1;
    RequireCopyable(sheet);
    const std::string original = sheet.Name();
    const std::string name = m_Workbook.FreeName(original);
    const auto copies = m_Parts.CopyTree(sheet.PartName());
    const std::string& part = copies.at(sheet.PartName());

    auto copy = sheet.Copy(part, copies);
    copy->RenameReferences(original, name);
    const std::string id =
        m_Parts.Relate(m_WorkbookPart, std::string(RelationshipTypes) + "worksheet", part);
    const std::vector<std::string> names = m_Workbook.InsertCopy(source, position, name, id);
    std::vector<std::string> copiedParts;
    for (const auto& [from, to] : copies)
        copiedParts.push_back(to);
    ChangePartReferences(m_Parts, copiedParts, [&](std::string_view reference) {
        return BindNames(RenameSheet(reference, original, name), names, name);
    });
    GiveCommentsOwnIds(m_Parts, copies);
    m_Sheets.insert(m_Sheets.begin() + position, std::move(copy));
}

std::vector<ZipFile> XlsxWorkbook::Files(const Package& parts) const {
    std::vector<ZipFile> files;
    // First, so that programs which look at the beginning know the kind of file.
    files.push_back({ContentTypesPart, [&parts] { return parts.ContentTypesXml(); }, 0});
    for (const std::string& name : parts.PartNames()) {
        const auto sheet = std::find_if(m_Sheets.begin(), m_Sheets.end(), [&](const auto& own) {
            return own && own->PartName() == name;
        });
        if (sheet == m_Sheets.end())
            files.push_back({name, [&parts, name] { return parts.Content(name); }, 0});
        else
            files.push_back(
                {name, [own = sheet->get()] { return own->Xml(); }, CellCount((*sheet)->Cells())});
    }
    return files;
}

std::string XlsxWorkbook::Xlsx() {
    m_Workbook.SetCalculation(m_Application.CalculationMode());
    for (std::size_t i = 0; i < m_Sheets.size(); ++i)
        if (m_Sheets[i])
            m_Sheets[i]->SetTabSelected(static_cast<int>(i) == m_Workbook.Active());
    Package parts = m_Parts;
    parts.SetContent(m_WorkbookPart, m_Workbook.Xml());
    parts.SetContent(RelatedPart("styles"), m_Styles.Xml());
    for (const auto& sheet : m_Sheets)
        if (sheet)
            for (const auto& chart : sheet->Charts())
                parts.SetContent(chart->PartName(), chart->Xml(m_Styles));
    return WriteZip(Files(parts), CompressionLevel);
}

void XlsxWorkbook::Store(const std::string& path, FileFormat format) {
    const bool binary = IsBinary(path, format);
    std::string content = Xlsx();
    if (binary)
        content = m_Application.Converter().Convert(content, "xlsx", "xls");
    Drive& files = m_Application.Files();
    if (path == m_FullName)
        files.ReplaceFile(path, content); // a file of its own
    else
        m_FullName = StoreUnderFreeName(files, path, content);
    m_FailedPath.reset();
}

void XlsxWorkbook::SaveAs(std::string_view path, FileFormat format) {
    m_FailedPath = std::string(path);
    try {
        Store(FullPath(path, m_Application.CurrentFolder()), format);
    } catch (const std::runtime_error& error) {
        throw SpreadsheetError(
            fmt::format("The workbook has not been saved as \"{}\": {}", path, error.what()));
    }
}

void XlsxWorkbook::KeepUnsaved() {
    if (!m_FailedPath)
        return;
    const std::string& folder = m_Application.CurrentFolder();
    std::string reason;
    for (const std::string& path :
         {PathBeside(*m_FailedPath, folder, m_TemplateName),
          PathBeside(FileNameOf(*m_FailedPath), folder, m_TemplateName)}) {
        try {
            Store(path, FileFormat::ByExtension);
            return;
        } catch (const std::runtime_error& error) {
            reason = error.what();
        }
    }
    throw SpreadsheetError(fmt::format("The workbook is not stored anywhere: {}", reason));
}

void XlsxWorkbook::Close() {
    m_Application.Forget(*this);
}

} // namespace ombrix::xlsx

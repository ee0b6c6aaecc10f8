#include "spreadsheet/XlsxWorkbook.h"

#include "platform/ports/Folders.h"
#include "spreadsheet/XlsxApplication.h"
#include "spreadsheet/package/WorkbookXml.h"
#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/package/ZipArchive.h"
#include "spreadsheet/sheet/FormulaText.h"
#include "spreadsheet/sheet/SheetWriter.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix::xlsx {

namespace {

/// Beyond this, files hardly get smaller but saving takes several times as long.
constexpr int CompressionLevel = 6;
constexpr std::string_view WorkbookType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
constexpr std::string_view TemplateType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml";

Package OpenTemplate(std::string_view archive) {
    Package parts = Package::FromArchive(archive);
    for (const Relationship& relationship : parts.Relationships(""))
        if (relationship.Is("officeDocument"))
            return parts;
    throw SpreadsheetError("it is no workbook");
}

std::string FindWorkbookPart(const Package& parts) {
    for (const Relationship& relationship : parts.Relationships(""))
        if (relationship.Is("officeDocument"))
            return Package::TargetPart("", relationship);
    return "";
}

/// Turns a template into a workbook; one that is a workbook already is welcome too.
void MakeWorkbook(Package& parts, const std::string& workbookPart) {
    const std::string type = parts.ContentType(workbookPart);
    if (type != TemplateType && type != WorkbookType)
        throw SpreadsheetError(fmt::format("it is of another kind ({})", type));
    parts.SetContentType(workbookPart, std::string(WorkbookType));
}

} // namespace

XlsxWorkbook::XlsxWorkbook(XlsxApplication& application, std::string_view archive,
                           std::string templateName)
    : m_Application(application), m_Parts(OpenTemplate(archive)),
      m_WorkbookPart(FindWorkbookPart(m_Parts)),
      m_Workbook(m_Parts.Content(m_WorkbookPart), m_WorkbookPart),
      m_Styles(m_Parts.Content(RelatedPart("styles"))), m_TemplateName(std::move(templateName)) {
    MakeWorkbook(m_Parts, m_WorkbookPart);
    if (const std::string texts = RelatedPart("sharedStrings"); !texts.empty())
        m_Texts = SharedStrings(m_Parts.Content(texts));
    OpenSheets();
    DropOwnedOnce(m_WorkbookPart);
}

/// The part that the workbook part refers to by a relationship of that kind; empty for none.
std::string XlsxWorkbook::RelatedPart(std::string_view lastWord) const {
    for (const Relationship& relationship : m_Parts.Relationships(m_WorkbookPart))
        if (relationship.Is(lastWord))
            return Package::TargetPart(m_WorkbookPart, relationship);
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
        const std::string part = Package::TargetPart(m_WorkbookPart, *found);
        m_Sheets.back() = std::make_unique<XlsxWorksheet>(*this, part, m_Parts.Content(part));
    }
}

/// Takes away what does not outlive a change: the order of calculation of a workbook, the
/// tables of a copied sheet.
void XlsxWorkbook::DropOwnedOnce(const std::string& part) {
    std::vector<Relationship> relationships = m_Parts.Relationships(part);
    const auto dropped = std::erase_if(relationships, [&](const Relationship& relationship) {
        const bool drop = relationship.Is("calcChain") || relationship.Is("table") ||
                          relationship.Is("pivotTable");
        if (drop)
            m_Parts.Remove(Package::TargetPart(part, relationship));
        return drop;
    });
    if (dropped > 0)
        m_Parts.SetRelationships(part, relationships);
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
    RenameInCharts(m_Parts.PartNames(), old, name);
}

void XlsxWorkbook::RenameInCharts(const std::vector<std::string>& parts, std::string_view from,
                                  std::string_view to) {
    for (const std::string& part : parts) {
        // A chart of ours has no words yet.
        if (!m_Parts.ContentType(part).ends_with("drawingml.chart+xml") ||
            m_Parts.Content(part).empty())
            continue;
        const pugi::xml_document chart = ParseXml(m_Parts.Content(part), part, "c:chartSpace");
        for (const pugi::xpath_node& found : chart.select_nodes("//c:f")) {
            pugi::xml_text text = found.node().text();
            text.set(RenameSheet(text.get(), from, to).c_str());
        }
        m_Parts.SetContent(part, ToXml(chart));
    }
}

void XlsxWorkbook::SetVisibility(const XlsxWorksheet& sheet, SheetVisibility visibility) {
    m_Workbook.SetVisibility(IndexOf(sheet), visibility);
}

void XlsxWorkbook::Select(const XlsxWorksheet& sheet) {
    m_Workbook.SetActive(IndexOf(sheet));
}

void XlsxWorkbook::SetPrintArea(const XlsxWorksheet& sheet, const CellArea& area) {
    m_Workbook.SetPrintArea(IndexOf(sheet), area);
}

void XlsxWorkbook::CopyAfter(const XlsxWorksheet& sheet, const Worksheet& other) {
    const int source = IndexOf(sheet);
    const int position = IndexOf(other) + 1;
    const std::string name = m_Workbook.NameForCopy(source);
    const auto copies = m_Parts.CopyTree(sheet.PartName());
    const std::string& part = copies.at(sheet.PartName());

    auto copy = sheet.Copy(part, copies);
    DropOwnedOnce(part);
    copy->RenameReferences(sheet.Name(), name);
    std::vector<std::string> copiedParts;
    for (const auto& [original, copied] : copies)
        if (m_Parts.Has(copied))
            copiedParts.push_back(copied);
    RenameInCharts(copiedParts, sheet.Name(), name);

    const std::string id = m_Parts.Relate(
        m_WorkbookPart,
        "http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet", part);
    m_Workbook.InsertCopy(source, position, name, id);
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

#include "TemplateBuilder.h"

#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/package/ZipArchive.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

constexpr std::string_view Declaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
constexpr std::string_view MainNamespace =
    "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view OfficeRelationships =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr std::string_view PackageRelationships =
    "http://schemas.openxmlformats.org/package/2006/relationships";
constexpr std::string_view SpreadsheetTypes =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.";
constexpr int CompressionLevel = 6;

std::string Escaped(std::string_view text) {
    std::string out;
    xlsx::AppendEscaped(out, text);
    return out;
}

std::string Relationship(std::string_view id, std::string_view type, std::string_view target) {
    return fmt::format("<Relationship Id=\"{}\" Type=\"{}\" Target=\"{}\"/>", id, type, target);
}

std::string PackageRelationshipsXml() {
    return fmt::format(
        "{}<Relationships xmlns=\"{}\">{}{}</Relationships>", Declaration, PackageRelationships,
        Relationship("rId1", fmt::format("{}/officeDocument", OfficeRelationships),
                     "xl/workbook.xml"),
        Relationship("rId2", fmt::format("{}/metadata/core-properties", PackageRelationships),
                     "docProps/core.xml"));
}

} // namespace

SheetBuilder& TemplateBuilder::AddSheet(const std::string& name) {
    return m_Sheets.emplace_back(name, m_Styles, m_Texts);
}

std::string TemplateBuilder::ContentTypesXml() const {
    std::string xml = fmt::format(
        "{}<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"rels\" "
        "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>",
        Declaration);
    const auto append = [&xml](std::string_view part, std::string_view type) {
        xml += fmt::format("<Override PartName=\"/{}\" ContentType=\"{}\"/>", part, type);
    };
    const auto spreadsheet = [](std::string_view kind) {
        return fmt::format("{}{}+xml", SpreadsheetTypes, kind);
    };
    append("xl/workbook.xml", spreadsheet("template.main"));
    append("xl/styles.xml", spreadsheet("styles"));
    append("xl/sharedStrings.xml", spreadsheet("sharedStrings"));
    append("docProps/core.xml", "application/vnd.openxmlformats-package.core-properties+xml");
    for (std::size_t i = 1; i <= m_Sheets.size(); ++i)
        append(fmt::format("xl/worksheets/sheet{}.xml", i), spreadsheet("worksheet"));
    return xml + "</Types>";
}

std::string TemplateBuilder::WorkbookXml() const {
    std::string sheets;
    std::string names;
    for (std::size_t i = 0; i < m_Sheets.size(); ++i) {
        sheets += fmt::format("<sheet name=\"{}\" sheetId=\"{}\" r:id=\"rId{}\"/>",
                              Escaped(m_Sheets[i].Name()), i + 1, i + 1);
        names += m_Sheets[i].DefinedNames(i);
    }
    if (!names.empty())
        names = "<definedNames>" + names + "</definedNames>";
    return fmt::format("{}<workbook xmlns=\"{}\" xmlns:r=\"{}\"><bookViews><workbookView "
                       "activeTab=\"0\"/></bookViews><sheets>{}</sheets>{}"
                       "<calcPr fullCalcOnLoad=\"1\"/></workbook>",
                       Declaration, MainNamespace, OfficeRelationships, sheets, names);
}

std::string TemplateBuilder::WorkbookRelationshipsXml() const {
    const auto type = [](std::string_view kind) {
        return fmt::format("{}/{}", OfficeRelationships, kind);
    };
    std::string xml =
        fmt::format("{}<Relationships xmlns=\"{}\">", Declaration, PackageRelationships);
    for (std::size_t i = 1; i <= m_Sheets.size(); ++i)
        xml += Relationship(fmt::format("rId{}", i), type("worksheet"),
                            fmt::format("worksheets/sheet{}.xml", i));
    xml += Relationship(fmt::format("rId{}", m_Sheets.size() + 1), type("styles"), "styles.xml");
    xml += Relationship(fmt::format("rId{}", m_Sheets.size() + 2), type("sharedStrings"),
                        "sharedStrings.xml");
    return xml + "</Relationships>";
}

std::string TemplateBuilder::PropertiesXml() const {
    return fmt::format("{}<cp:coreProperties xmlns:cp=\"http://schemas.openxmlformats.org/package/"
                       "2006/metadata/core-properties\" "
                       "xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><dc:title>{}</dc:title>"
                       "<dc:creator>Ombrix</dc:creator></cp:coreProperties>",
                       Declaration, Escaped(m_Title));
}

std::string TemplateBuilder::Build() const {
    std::vector<xlsx::ZipFile> files;
    const auto add = [&files](std::string name, std::string content) {
        files.push_back({std::move(name), [content = std::move(content)] { return content; }, 0});
    };
    add("[Content_Types].xml", ContentTypesXml());
    add("_rels/.rels", PackageRelationshipsXml());
    add("docProps/core.xml", PropertiesXml());
    add("xl/workbook.xml", WorkbookXml());
    add("xl/_rels/workbook.xml.rels", WorkbookRelationshipsXml());
    add("xl/styles.xml", m_Styles.Xml());
    add("xl/sharedStrings.xml", m_Texts.Xml());
    for (std::size_t i = 0; i < m_Sheets.size(); ++i)
        add(fmt::format("xl/worksheets/sheet{}.xml", i + 1), m_Sheets[i].Xml(i == 0));
    return xlsx::WriteZip(files, CompressionLevel);
}

} // namespace ombrix::templates

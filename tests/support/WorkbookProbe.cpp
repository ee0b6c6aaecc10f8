#include "support/WorkbookProbe.h"

#include "platform/os/FolderDrive.h"
#include "platform/text/Text.h"
#include "spreadsheet/package/ZipArchive.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace ombrix {

namespace {

constexpr int FastCompression = 1;

/// Relationship targets stand relative to their part or from the root.
std::string Resolved(const std::string& part, const std::string& target) {
    const std::filesystem::path folder = std::filesystem::path("/" + part).parent_path();
    return (folder / target).lexically_normal().generic_string().substr(1);
}

std::string RelationshipsOf(const std::string& part) {
    const std::size_t slash = part.rfind('/') + 1; // npos + 1 is 0
    return part.substr(0, slash) + "_rels/" + part.substr(slash) + ".rels";
}

} // namespace

WorkbookProbe::WorkbookProbe(std::string_view archive) : m_Parts(xlsx::ReadZip(archive)) {}

const pugi::xml_document& WorkbookProbe::Xml(const std::string& part) {
    pugi::xml_document& document = m_Documents[part];
    if (!document.first_child()) {
        EXPECT_TRUE(Has(part)) << part;
        const auto result = document.load_string(
            m_Parts[part].c_str(), pugi::parse_default | pugi::parse_ws_pcdata_single);
        EXPECT_TRUE(result) << part << ": " << result.description();
    }
    return document;
}

std::vector<std::string> WorkbookProbe::SheetNames() {
    std::vector<std::string> names;
    for (const auto& found : Xml(WorkbookPart()).select_nodes("/workbook/sheets/sheet/@name"))
        names.emplace_back(found.attribute().value());
    return names;
}

std::string WorkbookProbe::WorkbookPart() {
    const auto parts = Related("", "/officeDocument");
    return parts.empty() ? "" : parts.front();
}

std::string WorkbookProbe::SheetPart(const std::string& sheet) {
    const auto entry = Xml(WorkbookPart())
                           .document_element()
                           .child("sheets")
                           .find_child_by_attribute("name", sheet.c_str());
    const auto relationship = Xml(RelationshipsOf(WorkbookPart()))
                                  .document_element()
                                  .find_child_by_attribute("Id", entry.attribute("r:id").value());
    return Resolved(WorkbookPart(), relationship.attribute("Target").value());
}

pugi::xml_node WorkbookProbe::Sheet(const std::string& sheet) {
    return Xml(SheetPart(sheet)).document_element();
}

pugi::xml_node WorkbookProbe::Cell(const std::string& sheet, const std::string& address) {
    return Sheet(sheet)
        .select_node(fmt::format("sheetData/row/c[@r='{}']", address).c_str())
        .node();
}

std::string WorkbookProbe::Value(const std::string& sheet, const std::string& address) {
    const pugi::xml_node cell = Cell(sheet, address);
    if (cell.child("f"))
        return "=" + Formula(sheet, address);
    if (cell.attribute("t").value() == std::string_view("inlineStr"))
        return cell.child("is").child("t").text().get();
    if (cell.attribute("t").value() != std::string_view("s"))
        return cell.child("v").text().get();
    const auto texts = Xml("xl/sharedStrings.xml").document_element().children("si");
    return std::next(texts.begin(), cell.child("v").text().as_int())->child("t").text().get();
}

std::string WorkbookProbe::Formula(const std::string& sheet, const std::string& address) {
    return Cell(sheet, address).child("f").text().get();
}

pugi::xml_node WorkbookProbe::Format(const std::string& sheet, const std::string& address) {
    const auto formats = Xml("xl/styles.xml").document_element().child("cellXfs").children("xf");
    return *std::next(formats.begin(), Cell(sheet, address).attribute("s").as_int());
}

pugi::xml_node WorkbookProbe::Border(const std::string& sheet, const std::string& address) {
    const auto borders =
        Xml("xl/styles.xml").document_element().child("borders").children("border");
    return *std::next(borders.begin(), Format(sheet, address).attribute("borderId").as_int());
}

std::string WorkbookProbe::NumberFormat(const std::string& sheet, const std::string& address) {
    const std::string id = Format(sheet, address).attribute("numFmtId").value();
    const auto custom = Xml("xl/styles.xml")
                            .document_element()
                            .child("numFmts")
                            .find_child_by_attribute("numFmtId", id.c_str());
    return custom ? custom.attribute("formatCode").value() : id;
}

std::vector<std::string> WorkbookProbe::Related(const std::string& part, std::string_view kind) {
    const std::string relationships = RelationshipsOf(part);
    std::vector<std::string> targets;
    if (!Has(relationships))
        return targets;
    for (const auto entry : Xml(relationships).document_element().children("Relationship"))
        if (std::string_view(entry.attribute("Type").value()).ends_with(kind))
            targets.push_back(Resolved(part, entry.attribute("Target").value()));
    return targets;
}

std::vector<std::string> WorkbookProbe::Charts(const std::string& sheet) {
    std::vector<std::string> charts;
    for (const std::string& drawing : Related(SheetPart(sheet), "/drawing"))
        for (const std::string& chart : Related(drawing, "/chart"))
            charts.push_back(chart);
    return charts;
}

namespace {

/// Dates of the bench's day to a tenth of a second: a report that is made again rounds otherwise.
void CutTimes(std::string& part) {
    constexpr std::string_view day = "<v>45366.";
    constexpr std::size_t decimals = 6;
    for (std::size_t at = part.find(day); at != std::string::npos; at = part.find(day, at)) {
        at += day.size();
        const std::size_t end = std::min(part.find('<', at), part.size());
        if (end > at + decimals)
            part.erase(at + decimals, end - at - decimals);
    }
}

} // namespace

std::map<std::string, std::string> PartsOf(const std::filesystem::path& file) {
    std::map<std::string, std::string> parts = WorkbookProbe(ReadWholeFile(file)).Parts();
    for (auto& [name, part] : parts)
        CutTimes(part);
    return parts;
}

std::string WithParts(std::string_view archive, const std::map<std::string, std::string>& changes) {
    std::map<std::string, std::string> parts = xlsx::ReadZip(archive);
    for (const auto& [name, content] : changes)
        parts[name] = content;
    std::vector<xlsx::ZipFile> files;
    for (const auto& [name, content] : parts)
        if (!content.empty())
            files.push_back({name, [text = content] { return text; }, 0});
    return xlsx::WriteZip(files, FastCompression);
}

std::string WithReplaced(std::string_view archive, const std::string& part, std::string_view what,
                         std::string_view by) {
    const std::string content = xlsx::ReadZip(archive).at(part);
    EXPECT_NE(content.find(what), std::string::npos) << part << " lacks " << what;
    return WithParts(archive, {{part, ReplaceAll(content, what, by)}});
}

} // namespace ombrix

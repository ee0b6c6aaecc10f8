#include "spreadsheet/package/TemplateKind.h"

#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace ombrix::xlsx {

namespace {

constexpr const char* WorkbookType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
constexpr std::array<std::string_view, 4> WorkbookTypes = {
    WorkbookType, "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml",
    "application/vnd.ms-excel.sheet.macroEnabled.main+xml",
    "application/vnd.ms-excel.template.macroEnabled.main+xml"};
constexpr std::string_view BinaryType = "application/vnd.ms-excel.sheet.binary.macroEnabled.main";
constexpr const char* Macros = "it holds macros, which a report does not keep. Save it as a "
                               "template without macros (.xltx).";

struct Refusal {
    /// Last word of the relationship that shows it.
    std::string_view Relationship;
    const char* Reason;
};
constexpr std::array<Refusal, 5> RefusedForAll = {
    {{"vbaProject", Macros},
     {"xlMacrosheet", Macros},
     {"xlIntlMacrosheet", Macros},
     {"origin", "it is digitally signed, and a report would break the signature. Remove the "
                "signature and save it."},
     {"revisionHeaders", "it is shared with a list of changes, which would not fit a report. "
                         "Unshare it and save it."}}};

void CheckRelationships(const std::vector<Relationship>& relationships) {
    for (const Relationship& relationship : relationships)
        for (const Refusal& refusal : RefusedForAll)
            if (relationship.Is(refusal.Relationship))
                throw UnsupportedTemplate(refusal.Reason);
}

/// Names inside a compound file have two bytes a character.
bool Names(std::string_view content, std::string_view name) {
    std::string wide;
    for (const char c : name) {
        wide += c;
        wide += '\0';
    }
    return content.find(wide) != std::string_view::npos;
}

} // namespace

void CheckCompoundFile(std::string_view content) {
    if (Names(content, "EncryptedPackage"))
        throw UnsupportedTemplate("it is encrypted with a password. Save it without one.");
    if (Names(content, "_VBA_PROJECT"))
        throw UnsupportedTemplate(Macros);
}

std::string FindWorkbookPart(const Package& parts) {
    for (const Relationship& relationship : parts.Relationships(""))
        if (relationship.Is("officeDocument"))
            return parts.TargetPart("", relationship);
    throw SpreadsheetError("it is no workbook");
}

void MakeWorkbook(Package& parts, const std::string& workbookPart) {
    const std::string type = parts.ContentType(workbookPart);
    if (type == BinaryType)
        throw UnsupportedTemplate(
            "it is a binary workbook (.xlsb). Save it as a template (.xltx).");
    if (std::find(WorkbookTypes.begin(), WorkbookTypes.end(), type) == WorkbookTypes.end())
        throw SpreadsheetError(fmt::format("it is of another kind ({})", type));
    CheckRelationships(parts.Relationships(""));
    CheckRelationships(parts.Relationships(workbookPart));
    parts.SetContentType(workbookPart, WorkbookType);
}

} // namespace ombrix::xlsx

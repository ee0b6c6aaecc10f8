#include "reports/TemplateCheck.h"

#include "platform/text/Text.h"
#include "reports/layout/AuditSheetLayout.h"
#include "reports/layout/HealthCheckLayout.h"
#include "reports/layout/InformationLayout.h"
#include "reports/layout/VelocityReportLayout.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace ombrix {

namespace {

constexpr std::array<const ReportTemplate*, 5> Templates = {
    &HealthCheckLayout::Template, &VelocityReportLayout::Template,
    &AuditSheetLayout::PV16::Template, &AuditSheetLayout::PV17::Template,
    &InformationLayout::Template};

std::string_view Stem(std::string_view path) {
    path.remove_prefix(path.find_last_of("\\/") + 1); // npos + 1 is 0
    return path.substr(0, path.find_last_of('.'));
}

const TemplateSheet* Find(const TemplateContents& contents, std::string_view name) {
    const auto found =
        std::find_if(contents.Sheets.begin(), contents.Sheets.end(),
                     [name](const auto& sheet) { return SameIgnoringCase(sheet.Name, name); });
    return found == contents.Sheets.end() ? nullptr : &*found;
}

auto SheetsFound(const TemplateContents& contents, const ReportTemplate& report) {
    return std::count_if(report.Sheets.begin(), report.Sheets.end(),
                         [&](const char* name) { return Find(contents, name) != nullptr; });
}

TemplateFinding Refusal(std::string sheet, std::string reason) {
    return {std::move(sheet), {}, true, std::move(reason)};
}

void CheckSheets(const TemplateContents& contents, const ReportTemplate& report,
                 std::vector<TemplateFinding>& findings) {
    for (const char* name : report.Sheets) {
        const TemplateSheet* sheet = Find(contents, name);
        if (sheet == nullptr)
            findings.push_back(Refusal(
                name, fmt::format("it has no sheet \"{}\". Name one so, or install the program "
                                  "anew.",
                                  name)));
        else if (!sheet->IsWorksheet)
            findings.push_back(Refusal(name, fmt::format("its sheet \"{}\" has no cells. Put a "
                                                         "worksheet in its place.",
                                                         name)));
    }
    const auto worksheets = std::count_if(contents.Sheets.begin(), contents.Sheets.end(),
                                          [](const auto& sheet) { return sheet.IsWorksheet; });
    if (worksheets < report.SheetsByPlace)
        findings.push_back(
            Refusal("", fmt::format("it has {} worksheets, of which the report fills the first {}. "
                                    "Add what is missing, or install the program anew.",
                                    worksheets, report.SheetsByPlace)));
}

/// How many worksheets stand before a tab.
auto PlaceOf(const TemplateContents& contents, std::size_t sheet) {
    return std::count_if(contents.Sheets.begin(),
                         contents.Sheets.begin() + static_cast<std::ptrdiff_t>(sheet),
                         [](const TemplateSheet& other) { return other.IsWorksheet; });
}

} // namespace

SheetUse UseOf(const TemplateContents& contents, const ReportTemplate& report, std::size_t sheet) {
    const auto& [name, isWorksheet, features] = contents.Sheets.at(sheet);
    if (SameIgnoringCase(name, report.CopiedSheet))
        return SheetUse::Copied;
    const bool isNamed =
        std::any_of(report.Sheets.begin(), report.Sheets.end(),
                    [&](const char* needed) { return SameIgnoringCase(needed, name); });
    return isNamed || (isWorksheet && PlaceOf(contents, sheet) < report.SheetsByPlace)
               ? SheetUse::Filled
               : SheetUse::Kept;
}

std::vector<TemplateFinding> CheckTemplate(const TemplateContents& contents,
                                           const ReportTemplate& report) {
    std::vector<TemplateFinding> findings;
    CheckSheets(contents, report, findings);
    for (const TemplateFeature& feature : contents.Features)
        findings.push_back({"", feature.Name});
    for (std::size_t i = 0; i < contents.Sheets.size(); ++i) {
        const TemplateSheet& sheet = contents.Sheets[i];
        const bool copied = UseOf(contents, report, i) == SheetUse::Copied;
        for (const TemplateFeature& feature : sheet.Features) {
            TemplateFinding& finding = findings.emplace_back(sheet.Name, feature.Name);
            finding.Refused = copied && !feature.Remedy.empty();
            if (finding.Refused)
                finding.Reason = fmt::format("its sheet \"{}\" is copied, and holds {}. {}",
                                             sheet.Name, feature.Name, feature.Remedy);
        }
    }
    return findings;
}

std::string ReasonOf(const std::vector<TemplateFinding>& findings) {
    std::string reason;
    for (const TemplateFinding& finding : findings)
        if (finding.Refused)
            reason += (reason.empty() ? "" : "\r\n\r\n") + finding.Reason;
    return reason;
}

std::span<const ReportTemplate* const> ReportTemplates() {
    return Templates;
}

const ReportTemplate* FindReport(const TemplateContents& contents, std::string_view fileName) {
    const auto named = std::find_if(Templates.begin(), Templates.end(), [&](const auto* report) {
        return SameIgnoringCase(Stem(report->File), Stem(fileName));
    });
    if (named != Templates.end())
        return *named;
    const auto best =
        std::max_element(Templates.begin(), Templates.end(), [&](const auto* left, auto* right) {
            return SheetsFound(contents, *left) < SheetsFound(contents, *right);
        });
    return SheetsFound(contents, **best) > 0 ? *best : nullptr;
}

} // namespace ombrix

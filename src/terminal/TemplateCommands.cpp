#include "platform/os/FolderDrive.h"
#include "reports/TemplateCheck.h"
#include "terminal/Commands.h"

#include <fmt/format.h>

#include <optional>
#include <vector>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

/// What is asked of a template that no report is known for: it has a sheet to be filled.
constexpr ReportTemplate AnyReport{.File = "", .Report = "a report", .SheetsByPlace = 1};

const char* TextOf(SheetUse use) {
    switch (use) {
    case SheetUse::Copied: return "copied";
    case SheetUse::Filled: return "filled";
    case SheetUse::Kept: break;
    }
    return "kept";
}

void AddReport(CommandResult& result, const TemplateContents& contents,
               const ReportTemplate* report) {
    result.Json["report"] = report != nullptr ? Json(report->File) : Json();
    result.Json["storedAs"] = report != nullptr ? Json(report->StoredAs) : Json();
    result.Json["fits"] = Json::array();
    std::vector<std::string> fitting;
    for (const ReportTemplate* candidate : ReportTemplates()) {
        if (!ReasonOf(CheckTemplate(contents, *candidate)).empty())
            continue;
        result.Json["fits"].push_back(candidate->File);
        fitting.emplace_back(candidate->Report);
    }
    if (report != nullptr)
        result.Text += fmt::format("The template of {}, which is stored as {}.\n", report->Report,
                                   report->StoredAs);
    else
        result.Text += fmt::format("Neither its name nor its sheets tell whose template it is; by "
                                   "its sheets it could serve {}.\n",
                                   fitting.empty() ? "no report"
                                                   : fmt::format("{}", fmt::join(fitting, ", ")));
}

/// "; pictures, links kept" of a sheet, or of the workbook.
std::string KeptText(const std::vector<TemplateFinding>& findings, const std::string& sheet) {
    std::string text;
    for (const TemplateFinding& finding : findings)
        if (finding.Sheet == sheet && !finding.Refused)
            text += (text.empty() ? "; " : ", ") + finding.Feature;
    return text + (text.empty() ? "" : " kept");
}

void AddSheets(CommandResult& result, const TemplateContents& contents,
               const ReportTemplate& report, const std::vector<TemplateFinding>& findings) {
    result.Json["sheets"] = Json::array();
    for (std::size_t i = 0; i < contents.Sheets.size(); ++i) {
        const TemplateSheet& sheet = contents.Sheets[i];
        const char* use = TextOf(UseOf(contents, report, i));
        result.Json["sheets"].push_back(
            {{"name", sheet.Name}, {"worksheet", sheet.IsWorksheet}, {"use", use}});
        result.Text += fmt::format("{}: {}{}\n", sheet.Name, use, KeptText(findings, sheet.Name));
    }
    if (const std::string kept = KeptText(findings, ""); !kept.empty())
        result.Text += fmt::format("the workbook{}\n", kept);
}

void AddFindings(CommandResult& result, const std::vector<TemplateFinding>& findings) {
    const auto orNull = [](const std::string& text) { return text.empty() ? Json() : Json(text); };
    result.Json["missing"] = Json::array();
    result.Json["findings"] = Json::array();
    for (const TemplateFinding& finding : findings) {
        if (finding.Feature.empty() && !finding.Sheet.empty())
            result.Json["missing"].push_back(finding.Sheet);
        result.Json["findings"].push_back({{"sheet", orNull(finding.Sheet)},
                                           {"feature", orNull(finding.Feature)},
                                           {"result", finding.Refused ? "refused" : "kept"},
                                           {"text", orNull(finding.Reason)}});
    }
}

/// Opens the template as a report does. Nothing, and noted as a finding, when that cannot be.
std::optional<TemplateContents> Open(SpreadsheetApplication& application,
                                     const std::filesystem::path& file,
                                     std::vector<TemplateFinding>& findings) {
    try {
        return application.Open(ReadWholeFile(file), file.string()).Contents();
    } catch (const UnsupportedTemplate& error) {
        findings.push_back({{}, {}, true, error.what()});
    } catch (const SpreadsheetError& error) {
        findings.push_back(
            {{},
             {},
             true,
             fmt::format("{}. Take a sound copy of it, or save it anew where it was made.",
                         error.what())});
    }
    return std::nullopt;
}

} // namespace

CommandResult RunTemplateCheck(CommandContext& context, const std::filesystem::path& file) {
    CommandResult result;
    result.Json["usable"] = false;
    std::vector<TemplateFinding> findings;
    const auto application = context.Reports.Launcher();
    if (const auto contents = Open(*application, file, findings)) {
        const ReportTemplate* report = FindReport(*contents, file.string());
        const ReportTemplate& asked = report != nullptr ? *report : AnyReport;
        findings = CheckTemplate(*contents, asked);
        AddReport(result, *contents, report);
        AddSheets(result, *contents, asked, findings);
    }
    AddFindings(result, findings);
    const std::string reason = WithPlainLineEnds(ReasonOf(findings));
    result.Json["usable"] = reason.empty();
    result.Text += reason.empty() ? "It can be used.\n" : "It cannot be used.\n";
    if (!reason.empty()) {
        result.Status = ExitStatus::NotPassed;
        result.Error = fmt::format("The template \"{}\" cannot be used: {}", file.string(), reason);
    }
    return result;
}

} // namespace ombrix

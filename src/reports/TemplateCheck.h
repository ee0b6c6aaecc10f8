#pragma once

#include "reports/layout/ReportTemplate.h"
#include "spreadsheet/Spreadsheet.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// What a report would meet in a template.
struct TemplateFinding {
    /// The sheet's name; empty for the workbook as a whole.
    std::string Sheet;
    /// "a pivot table"; empty for the sheet itself.
    std::string Feature;
    /// The report cannot be made of it; what is not refused is kept.
    bool Refused = false;
    /// What a refused template lacks or holds and what to do, for behind "cannot be used: ".
    std::string Reason{};
};

/// Whether a report finds all its sheets in a template, and can copy what it copies.
std::vector<TemplateFinding> CheckTemplate(const TemplateContents& contents,
                                           const ReportTemplate& report);

/// What a report does with a tab of its template.
enum class SheetUse { Kept, Filled, Copied };
SheetUse UseOf(const TemplateContents& contents, const ReportTemplate& report, std::size_t sheet);

/// Why the template cannot be used; empty when it can.
std::string ReasonOf(const std::vector<TemplateFinding>& findings);

/// The templates of all reports.
std::span<const ReportTemplate* const> ReportTemplates();

/// The report that a template is made for, by its file's name or else by the names of its sheets;
/// nullptr when neither tells.
const ReportTemplate* FindReport(const TemplateContents& contents, std::string_view fileName);

} // namespace ombrix

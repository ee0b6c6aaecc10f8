#pragma once

#include <span>

namespace ombrix {

/// What a report asks of its template.
struct ReportTemplate {
    /// The file as it is asked for; "….xlt" also stands for "….xltx" beside it.
    const char* File;
    /// What it is the template of, for a sentence.
    const char* Report;
    /// Sheets that are found by their names.
    std::span<const char* const> Sheets{};
    /// The one of them that is copied.
    const char* CopiedSheet = "";
    /// Where sheets are found by their places: how many, from the first.
    int SheetsByPlace = 0;
    /// The format of the report; what ".xls" lacks is not in it.
    const char* StoredAs = ".xls";
};

} // namespace ombrix

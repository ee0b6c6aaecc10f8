#pragma once

#include "ReportLook.h"

namespace ombrix::templates {

/// What the audit sheets have in common.

/// Cells of the fields above the tables: label in C, value in D and E, explanation from F on.
/// The first field is the date.
void LayOutFields(SheetBuilder& sheet, int fields);

/// Shows "Pass" and "Fail" in their colours.
void HighlightResults(SheetBuilder& sheet, const char* area);

} // namespace ombrix::templates

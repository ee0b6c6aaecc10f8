#include "AuditSheetParts.h"

#include <fmt/format.h>

namespace ombrix::templates {

void LayOutFields(SheetBuilder& sheet, int fields) {
    const Look explanation{.Italic = true, .Colour = Grey, .Horizontal = Align::Left};
    for (int row = FirstFieldRow; row < FirstFieldRow + fields; ++row) {
        const Look value = FieldValue(row == FirstFieldRow ? DateAndTime : "");
        sheet.Format(fmt::format("C{}", row), Label)
            .Merge(fmt::format("D{0}:E{0}", row), value)
            .Format(fmt::format("F{}", row), explanation);
    }
}

void HighlightResults(SheetBuilder& sheet, const char* area) {
    sheet.HighlightText(area, "Pass", Good).HighlightText(area, "Fail", Bad);
}

} // namespace ombrix::templates

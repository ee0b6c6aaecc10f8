#include "AuditSheetParts.h"

#include "reports/layout/AuditSheetLayout.h"

#include <fmt/format.h>

namespace ombrix::templates {

void LayOutFields(SheetBuilder& sheet, int fields) {
    const Look explanation{.Italic = true, .Colour = Grey, .Horizontal = Align::Left};
    constexpr int first = AuditSheetLayout::Head::FirstRow;
    for (int row = first; row < first + fields; ++row) {
        const Look value = FieldValue(row == first ? DateAndTime : "");
        sheet.Format(fmt::format("C{}", row), Label)
            .Merge(fmt::format("D{0}:E{0}", row), value)
            .Format(fmt::format("F{}", row), explanation);
    }
}

void HighlightResults(SheetBuilder& sheet, const char* area) {
    sheet.HighlightText(area, "Pass", Good).HighlightText(area, "Fail", Bad);
}

} // namespace ombrix::templates

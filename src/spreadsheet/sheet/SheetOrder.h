#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace ombrix::xlsx {

/// The elements of a sheet in the order that the schema asks for.
inline constexpr std::array<std::string_view, 38> SheetElements = {"sheetPr",
                                                                   "dimension",
                                                                   "sheetViews",
                                                                   "sheetFormatPr",
                                                                   "cols",
                                                                   "sheetData",
                                                                   "sheetCalcPr",
                                                                   "sheetProtection",
                                                                   "protectedRanges",
                                                                   "scenarios",
                                                                   "autoFilter",
                                                                   "sortState",
                                                                   "dataConsolidate",
                                                                   "customSheetViews",
                                                                   "mergeCells",
                                                                   "phoneticPr",
                                                                   "conditionalFormatting",
                                                                   "dataValidations",
                                                                   "hyperlinks",
                                                                   "printOptions",
                                                                   "pageMargins",
                                                                   "pageSetup",
                                                                   "headerFooter",
                                                                   "rowBreaks",
                                                                   "colBreaks",
                                                                   "customProperties",
                                                                   "cellWatches",
                                                                   "ignoredErrors",
                                                                   "smartTags",
                                                                   "drawing",
                                                                   "legacyDrawing",
                                                                   "legacyDrawingHF",
                                                                   "picture",
                                                                   "oleObjects",
                                                                   "controls",
                                                                   "webPublishItems",
                                                                   "tableParts",
                                                                   "extLst"};

/// The elements that come after one of them.
inline std::span<const std::string_view> SheetElementsBehind(std::string_view name) {
    const auto found = std::find(SheetElements.begin(), SheetElements.end(), name);
    return {found == SheetElements.end() ? found : found + 1, SheetElements.end()};
}

} // namespace ombrix::xlsx

#pragma once

#include <string>
#include <string_view>

namespace ombrix {

/// Turns a workbook of one file format into another.
class DocumentConverter {
  public:
    virtual ~DocumentConverter() = default;

    /// Formats go by their file name extension: "xlsx", "xls".
    /// @throws SpreadsheetError saying why and what to do about it
    virtual std::string Convert(std::string_view content, std::string_view from,
                                std::string_view to) = 0;
};

} // namespace ombrix

#pragma once

#include "spreadsheet/LibreOfficeConverter.h"
#include "spreadsheet/Spreadsheet.h"

#include <string>
#include <string_view>

namespace ombrix {

/// For reports that need no other format than the engine's own.
class NoConverter final : public DocumentConverter {
  public:
    std::string Convert(std::string_view /*content*/, std::string_view /*from*/,
                        std::string_view /*to*/) override {
        throw SpreadsheetError("no conversion is expected");
    }
};

/// Keeps the content as it is, so that a ".xls" can be looked into.
class SameContent final : public DocumentConverter {
  public:
    std::string Convert(std::string_view content, std::string_view /*from*/,
                        std::string_view /*to*/) override {
        return std::string(content);
    }
};

} // namespace ombrix

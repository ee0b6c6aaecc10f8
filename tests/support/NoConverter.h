#pragma once

#include "spreadsheet/LibreOfficeConverter.h"
#include "spreadsheet/Spreadsheet.h"

namespace ombrix {

/// For reports that need no other format than the engine's own.
class NoConverter final : public DocumentConverter {
  public:
    std::string Convert(std::string_view /*content*/, std::string_view /*from*/,
                        std::string_view /*to*/) override {
        throw SpreadsheetError("no conversion is expected");
    }
};

} // namespace ombrix

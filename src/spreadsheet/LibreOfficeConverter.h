#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
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

/// Which LibreOffice converts, where, and how long it may take.
struct LibreOfficeSettings {
    /// A name to be found on the search path, or a path.
    std::string Program = "soffice";
    /// Each conversion gets a folder of its own in it, gone afterwards.
    std::filesystem::path ScratchFolder = std::filesystem::temp_directory_path();
    /// The first start makes a user profile and takes several seconds on a slow machine.
    std::chrono::milliseconds Timeout = std::chrono::minutes(2);
    /// Called every few milliseconds while LibreOffice works, so that windows stay alive.
    std::function<void()> WhileWaiting = {};
};

/// Converts workbooks with LibreOffice, started without a window.
class LibreOfficeConverter final : public DocumentConverter {
  public:
    explicit LibreOfficeConverter(LibreOfficeSettings settings = {});

    std::string Convert(std::string_view content, std::string_view from,
                        std::string_view to) override;

  private:
    LibreOfficeSettings m_Settings;
};

} // namespace ombrix

#include "spreadsheet/LibreOfficeConverter.h"

#include "platform/os/ChildProcess.h"
#include "platform/os/Files.h"
#include "platform/os/FolderDrive.h"
#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <system_error>
#include <vector>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

/// A folder that is gone with its content when it is no longer needed.
class ScratchFolder {
  public:
    explicit ScratchFolder(const fs::path& parent) {
        std::error_code error;
        m_Path = MakeScratchFolder(parent, error);
        if (error)
            throw SpreadsheetError(
                fmt::format("no folder can be made in {}: {}", parent.string(), error.message()));
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        fs::remove_all(m_Path, ignored);
    }

    const fs::path& Path() const { return m_Path; }

  private:
    fs::path m_Path;
};

/// A path as a URL; every byte that means something in one is written as a number.
std::string FileUrl(const fs::path& path) {
    constexpr std::string_view Plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~/";
    std::string url = "file://";
    for (const char c : path.string()) {
        if (Plain.find(c) != std::string_view::npos)
            url += c;
        else
            url += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return url;
}

std::string FilterFor(std::string_view extension) {
    if (extension == "xls")
        return "xls:MS Excel 97";
    if (extension == "xlsx")
        return "xlsx:Calc MS Excel 2007 XML";
    throw SpreadsheetError(fmt::format("files of kind .{} cannot be made", extension));
}

/// A profile of its own keeps the conversion apart from a LibreOffice that the operator has
/// open.
std::vector<std::string> Arguments(const std::string& program, const fs::path& folder,
                                   const fs::path& source, std::string_view to) {
    return {program,
            "-env:UserInstallation=" + FileUrl(folder / "profile"),
            "--headless",
            "--norestore",
            "--nolockcheck",
            "--convert-to",
            FilterFor(to),
            "--outdir",
            (folder / "out").string(),
            source.string()};
}

void Run(const LibreOfficeSettings& settings, const std::vector<std::string>& arguments) {
    const ChildOutcome outcome = RunChild(arguments, settings.Timeout, settings.WhileWaiting);
    if (outcome.Kind == ChildOutcome::NotStarted)
        throw SpreadsheetError(
            fmt::format("this needs LibreOffice, and its program \"{}\" cannot be started ({}). "
                        "Install LibreOffice Calc, or use the .xlsx format",
                        settings.Program, std::generic_category().message(outcome.Code)));
    if (outcome.Kind == ChildOutcome::TimedOut)
        throw SpreadsheetError(
            fmt::format("LibreOffice did not finish within {} s",
                        std::chrono::duration<double>(settings.Timeout).count()));
    if (outcome.Kind != ChildOutcome::Exited || outcome.Code != 0)
        throw SpreadsheetError(fmt::format("LibreOffice failed (code {})", outcome.Code));
}

} // namespace

LibreOfficeConverter::LibreOfficeConverter(LibreOfficeSettings settings)
    : m_Settings(std::move(settings)) {}

std::string LibreOfficeConverter::Convert(std::string_view content, std::string_view from,
                                          std::string_view to) {
    try {
        const ScratchFolder folder(m_Settings.ScratchFolder);
        const fs::path source = folder.Path() / fmt::format("workbook.{}", from);
        ReplaceWholeFile(source, content);
        Run(m_Settings, Arguments(m_Settings.Program, folder.Path(), source, to));
        // LibreOffice may end without an error and without a file.
        return ReadWholeFile(folder.Path() / "out" / fmt::format("workbook.{}", to));
    } catch (const DriveError& error) {
        throw SpreadsheetError(fmt::format("LibreOffice could not convert it: {}", error.what()));
    }
}

} // namespace ombrix

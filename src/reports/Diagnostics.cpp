#include "reports/Diagnostics.h"

#include "board/eprom/EpromFields.h"
#include "platform/os/Computer.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"
#include "spreadsheet/package/ZipArchive.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <pugixml.hpp>
#include <zip.h>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <vector>

namespace ombrix {

namespace fs = std::filesystem;

namespace {

struct Entry {
    std::string Path;
    std::string Line;
};

Entry EntryOf(const fs::directory_entry& file, const fs::path& folder) {
    std::error_code error;
    const auto changed = std::chrono::file_clock::to_sys(file.last_write_time(error));
    const std::time_t changed_s = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(changed));
    const std::uintmax_t bytes = file.file_size(error);
    std::string path = file.path().lexically_relative(folder).string();
    std::string line = fmt::format("{:>12}  {:%Y-%m-%d %H:%M:%S}  {}\n", error ? 0 : bytes,
                                   fmt::gmtime(changed_s), path);
    return {std::move(path), std::move(line)};
}

} // namespace

std::string FileList(const fs::path& folder) {
    std::vector<Entry> entries;
    std::error_code error;
    fs::recursive_directory_iterator file(folder, fs::directory_options::skip_permission_denied,
                                          error);
    std::string end;
    for (; !error && file != fs::recursive_directory_iterator(); file.increment(error)) {
        std::error_code gone;
        if (!file->is_regular_file(gone))
            continue;
        if (entries.size() == LongestFileList) {
            end = fmt::format("There are more than {} files.\n", LongestFileList);
            break;
        }
        entries.push_back(EntryOf(*file, folder));
    }
    if (error)
        end += error.message() + "\n";
    std::sort(entries.begin(), entries.end(),
              [](const Entry& left, const Entry& right) { return left.Path < right.Path; });
    std::string text;
    for (const Entry& entry : entries)
        text += entry.Line;
    return text + end;
}

namespace {

constexpr std::size_t LogLines = 2000;
constexpr double CrashReportDays = 30.0;
constexpr int CompressionLevel = 6;

std::string VersionsText(const ProgramIdentity& program, const DiagnosticsSource& source) {
    std::string text = fmt::format("{} {}\nComputer {}\nSystem {}\n", program.Name, program.Version,
                                   program.Computer, SystemText());
    text += fmt::format("fmt {}.{}.{}\n", FMT_VERSION / 10000, FMT_VERSION / 100 % 100,
                        FMT_VERSION % 100);
    text += fmt::format("pugixml {}.{}\nlibzip {}\n", PUGIXML_VERSION / 1000,
                        PUGIXML_VERSION % 1000 / 10, zip_libzip_version());
    for (const std::string& library : source.Libraries)
        text += library + "\n";
    return text;
}

std::string IdentityText(const AIB& board) {
    return fmt::format(
        "Board {}: {}, serial number {}, hardware version {}, device type {}\n"
        "  {}, {}, build {}, configuration bits {:#x}, {} setup, MFCs {}\n",
        board.BoardIndex(), board.BusTypeText(), board.DevSerialNum(), board.HWVersion(),
        board.DevType(), Trimmed(board.Vendor()), Trimmed(board.Module()),
        Trimmed(board.BuildDate()), static_cast<std::uint32_t>(board.ConfigBits()),
        board.IsDigitalSetup() ? "digital" : "analog", board.MFCReady() ? "ready" : "not ready");
}

std::string EpromText(const EpromImage& image) {
    std::string text = "Address  Hex of the first word  Value  Field\n";
    for (const EpromField& field : EpromFields())
        text +=
            fmt::format("{:7} {:>8}  {:<24} {}\n", field.Address,
                        HexText(image.Word(field.Address)), ShowField(field, image), field.Name);
    return text;
}

class Archive {
  public:
    void Add(const std::string& name, std::string content) {
        m_Files.push_back({name, [content = std::move(content)] { return content; }});
    }
    void AddBoards(AIBList& boards) {
        const std::int32_t count = boards.AIBCount();
        std::string identities = count == 0 ? "No boards detected\n" : "";
        for (std::int32_t index = 0; index < count; ++index) {
            AIB& board = *boards.AIB(index);
            identities += IdentityText(board);
            const std::string name = fmt::format("board{}_{}", index, board.DevSerialNum());
            try {
                const EpromImage image = EpromImage::Read(board);
                Add(name + ".bin", image.Bytes());
                Add(name + ".txt", EpromText(image));
            } catch (const std::exception& error) {
                Add(name + ".txt", std::string(error.what()) + "\n");
            }
        }
        Add("boards.txt", identities);
    }
    void AddCrashReports(const Platform& world) {
        const std::string oldest =
            "crash_" + DateText(OleDate(world.Time.Now().Days() - CrashReportDays), "yyyymmdd");
        for (const std::string& name : world.Files.FilesIn(Paths::Diagnostics)) {
            if (!name.starts_with("crash_") || name < oldest)
                continue;
            try {
                Add("crashes/" + name, world.Files.ReadFile(Paths::Diagnostics + name));
            } catch (const DriveError& error) {
                Add("crashes/" + name, std::string(error.what()) + "\n");
            }
        }
    }
    std::string Bytes() const { return xlsx::WriteZip(m_Files, CompressionLevel); }

  private:
    std::vector<xlsx::ZipFile> m_Files;
};

} // namespace

std::string MakeDiagnostics(Station& station, const DiagnosticsSource& source) {
    const Platform& world = station.World;
    Archive archive;
    archive.Add("versions.txt", VersionsText(world.Program, source));
    archive.Add("options.txt", source.Options);
    archive.AddBoards(station.AIBList);
    archive.Add("log.txt", LastLogLines(world.Files, LogLines));
    archive.AddCrashReports(world);
    archive.Add("files.txt", FileList(world.Files.RealPath(Paths::DriveC)));
    return archive.Bytes();
}

std::string DiagnosticsPath(Platform& world) {
    world.Files.CreateFolder(Paths::Diagnostics);
    return std::string(Paths::Diagnostics) + "diagnostics_" +
           DateText(world.Time.Now(), "yyyymmdd_hhnnss") + "_" + world.Program.Name + ".zip";
}

} // namespace ombrix

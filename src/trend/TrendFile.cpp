#include "trend/TrendFile.h"

#include "trend/TrendReaders.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace ombrix {

namespace {

constexpr std::string_view ZippedWorkbook = "PK\x03\x04";
constexpr std::string_view BinaryWorkbook = "\xD0\xCF\x11\xE0";

/// As much of a file as tells its kind.
std::string BeginningOf(const std::filesystem::path& path) {
    std::error_code error;
    std::ifstream file(path, std::ios::binary);
    if (!file || std::filesystem::is_directory(path, error))
        throw TrendFileError(
            fmt::format("{} cannot be opened: {}. Please choose another file.", path.string(),
                        std::generic_category().message(error ? error.value() : errno)));
    std::array<char, 4096> beginning{};
    file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    return {beginning.data(), static_cast<std::size_t>(file.gcount())};
}

TrendData ReadByKind(const std::filesystem::path& path, DocumentConverter& converter,
                     TrendProgress& progress) {
    const std::string beginning = BeginningOf(path);
    if (beginning.starts_with(ZippedWorkbook) || beginning.starts_with(BinaryWorkbook))
        return ReadTrendWorkbook(path, converter, progress);
    if (beginning.starts_with('{'))
        return ReadTrendJournal(path, progress);
    std::string_view line = std::string_view(beginning).substr(0, beginning.find('\n'));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return ReadTrendCsv(path, line, progress);
}

} // namespace

std::string DamagedLines::Text() const {
    if (m_Count == 0)
        return {};
    return m_Count == 1 ? fmt::format("Line {} is damaged and passed over.", m_First)
                        : fmt::format("{} damaged lines are passed over, the first is line {}.",
                                      m_Count, m_First);
}

TrendFileError NothingToShow(const std::filesystem::path& path, const DamagedLines& damaged) {
    if (damaged.Count() == 0)
        return TrendFileError(fmt::format(
            "{} holds no samples: nothing had been measured. Please choose another file.",
            path.string()));
    return TrendFileError(fmt::format("{} cannot be read: none of its lines is whole, beginning "
                                      "with line {}. Please choose a sound copy of it.",
                                      path.string(), damaged.First()));
}

TrendData ReadTrendFile(const std::filesystem::path& path, const TrendScales& current,
                        DocumentConverter& converter, TrendProgress& progress) {
    TrendData data = ReadByKind(path, converter, progress);
    data.Title = path.filename().string();
    if (!data.Scales.Any())
        data.Scales = current;
    progress.Share = 1.0F;
    return data;
}

} // namespace ombrix

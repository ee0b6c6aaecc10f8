#pragma once

#include "trend/TrendFile.h"

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>

namespace ombrix {

/// What a trace has where its file has no value: a gap.
inline constexpr float Missing = std::numeric_limits<float>::quiet_NaN();

// The readers of the kinds of files, behind ReadTrendFile. All throw TrendFileError.

/// @param firstLine without its end; tells which of the tables it is
TrendData ReadTrendCsv(const std::filesystem::path& path, std::string_view firstLine,
                       TrendProgress& progress);
TrendData ReadTrendJournal(const std::filesystem::path& path, TrendProgress& progress);
TrendData ReadTrendWorkbook(const std::filesystem::path& path, DocumentConverter& converter,
                            TrendProgress& progress);

/// Lines that could not be read.
class DamagedLines {
  public:
    void Note(std::int64_t line) {
        if (m_Count++ == 0)
            m_First = line;
    }
    std::int64_t Count() const { return m_Count; }
    std::int64_t First() const { return m_First; }
    /// "3 damaged lines are passed over, the first is line 17."; empty when there are none.
    std::string Text() const;

  private:
    std::int64_t m_Count = 0;
    std::int64_t m_First = 0;
};

/// The error of a file in which not a line could be read, or in which there is none.
TrendFileError NothingToShow(const std::filesystem::path& path, const DamagedLines& damaged);

} // namespace ombrix

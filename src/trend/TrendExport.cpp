#include "trend/TrendExport.h"

#include "platform/ports/Drive.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <limits>
#include <optional>
#include <system_error>

namespace ombrix {

namespace {

/// A file that takes its name when it is whole, and is gone otherwise.
class FileInTheMaking {
  public:
    explicit FileInTheMaking(std::filesystem::path path)
        : m_Path(std::move(path)), m_Temporary(m_Path.string() + ".part"),
          m_File(m_Temporary, std::ios::binary) {
        Check();
    }
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;
    ~FileInTheMaking() {
        std::error_code ignored;
        m_File.close();
        std::filesystem::remove(m_Temporary, ignored);
    }

    void Write(const std::string& text) {
        m_File << text;
        Check();
    }
    void Finish() {
        m_File.close();
        Check();
        std::error_code error;
        std::filesystem::rename(m_Temporary, m_Path, error);
        if (error)
            Fail(error);
    }

  private:
    void Check() const {
        if (!m_File)
            Fail(std::error_code(errno, std::generic_category()));
    }
    [[noreturn]] void Fail(const std::error_code& error) const {
        throw DriveError(
            fmt::format("{} cannot be written: {}. Please choose another place, or make room "
                        "there.",
                        m_Path.string(), error.message()));
    }

    std::filesystem::path m_Path;
    std::filesystem::path m_Temporary;
    std::ofstream m_File;
};

/// A trace on its way through its samples.
struct Column {
    const TrendGroup& Group;
    const TrendTrace& Trace;
    TrendConversion Convert;
    std::size_t Next;
    std::size_t End;

    double Time_s() const {
        return Next < End ? Group.Times[Next] : std::numeric_limits<double>::infinity();
    }
    std::string Field(double time_s) {
        if (Time_s() != time_s)
            return ",";
        const float value = Trace.Values[Next++];
        return std::isnan(value)
                   ? ","
                   : "," + GeneralText(static_cast<float>(Convert(static_cast<double>(value))));
    }
};

std::vector<Column> ColumnsOf(const TrendData& data, const TrendSelection& selection,
                              std::string& heading) {
    std::vector<Column> columns;
    heading = data.CountsSteps ? "Step" : "Time (s)";
    for (const ShownTrace& shown : selection.Traces) {
        const TrendGroup& group = data.Groups.at(shown.Group);
        const TrendTrace& trace = group.Traces.at(shown.Trace);
        const auto conversion = trace.In(shown.Unit, data.Scales);
        if (!conversion)
            continue;
        columns.push_back({group, trace, *conversion, group.Times.IndexFrom(selection.From_s),
                           group.Times.IndexFrom(selection.To_s)});
        if (Column& last = columns.back(); last.End < group.Times.Size())
            ++last.End; // the one that the line on the screen goes to
        heading += fmt::format(",{} ({})", trace.Name, NameOf(shown.Unit));
    }
    heading += "\r\n";
    return columns;
}

} // namespace

void ExportTrendCsv(const std::filesystem::path& path, const TrendData& data,
                    const TrendSelection& selection, TrendProgress& progress) {
    constexpr std::size_t blockSize = std::size_t{1} << 18U;
    std::string text;
    std::vector<Column> columns = ColumnsOf(data, selection, text);
    FileInTheMaking file(path);
    const double duration_s = std::max(selection.To_s - selection.From_s, 1e-9);
    while (!progress.Cancelled) {
        double time_s = std::numeric_limits<double>::infinity();
        for (const Column& column : columns)
            time_s = std::min(time_s, column.Time_s());
        if (std::isinf(time_s)) {
            file.Write(text);
            file.Finish();
            return;
        }
        text += GeneralText(time_s);
        for (Column& column : columns)
            text += column.Field(time_s);
        text += "\r\n";
        if (text.size() > blockSize) {
            file.Write(text);
            text.clear();
            progress.Share = static_cast<float>((time_s - selection.From_s) / duration_s);
        }
    }
}

} // namespace ombrix

#include "platform/text/Text.h"
#include "trend/TrendReaders.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <span>

namespace ombrix {

namespace {

struct CsvTrace {
    std::size_t Field;
    const char* Name;
    TrendSubject Subject = TrendSubject::Other;
};

/// Fields of a line that belong to one time; a table without times counts its lines.
struct CsvGroup {
    std::optional<std::size_t> TimeField;
    std::vector<CsvTrace> Traces;
};

struct CsvFormat {
    const char* Header;
    /// Fields that are numbers; what stands behind them is something else.
    std::size_t Fields;
    /// There may be others behind those.
    bool MayBeLonger;
    /// What stands behind those is a mark: a text at that time, without readings.
    bool HasMarks;
    std::vector<CsvGroup> Groups;
    /// Full scale that the test itself reckons with.
    TrendScales Scales{};
};

constexpr std::size_t MostFields = 17;
using Subject = TrendSubject;

std::vector<CsvFormat> Formats() {
    const auto rig = [] {
        CsvGroup group{0, {}};
        // The order of the columns, which the heading does not tell.
        static constexpr std::array names = {
            "Output 0 driven", "Output 1 driven", "Output 2 driven", "Output 3 driven",
            "Output 0 other",  "Output 1 other",  "Output 2 other",  "Output 3 other",
            "Input 0 driven",  "Input 1 driven",  "Input 2 driven",  "Input 3 driven",
            "Input 0 other",   "Input 1 other",   "Input 2 other",   "Input 3 other"};
        for (std::size_t field = 0; field < names.size(); ++field)
            group.Traces.push_back({field + 1, names.at(field)});
        return group;
    };
    // What 65534 bits are in the second half of a line of the air flow test.
    constexpr std::array<std::optional<float>, 2> flowTestCapacity = {5000.0F, 200.0F};
    return {
        {"Timer,CH1 Flow,Ch2 Flow,3v3,Floating",
         6,
         false,
         true,
         {{0,
           {{1, "CH1 flow", Subject::Channel1},
            {2, "CH2 flow", Subject::Channel2},
            {3, "Input 2 (3v3)", Subject::Pressure},
            {4, "Input 3 (floating)"},
            {5, "Pressure register", Subject::PressureRegister}}}}},
        {"Input,Output1,Output2,Output3,Output4",
         5,
         false,
         false,
         {{std::nullopt,
           {{0, "Level set"},
            {1, "Input 0", Subject::Channel1},
            {2, "Input 1", Subject::Channel2},
            {3, "Input 2", Subject::Pressure},
            {4, "Input 3"}}}}},
        {"Timer,Switch,DemandCh0,DemandCh1,FlowCh0,FlowCh1,MeasureCh0,,"
         "Timer,Switch,FlowCh0,FlowCh1,MeasureCh0",
         7,
         true,
         false,
         {{0,
           {{1, "Valve"},
            {2, "Demand CH1", Subject::Channel1},
            {3, "Demand CH2", Subject::Channel2},
            {4, "Flow CH1", Subject::Channel1},
            {5, "Flow CH2", Subject::Channel2},
            {6, "Measure board"}}}},
         {flowTestCapacity, {}, "the air flow test"}},
        {"Timer0,Demand0,Value0,Pressure0,,Timer1,Demand1,Value1,Pressure1,,"
         "Data0,EndPointUp,EndPointDn",
         9,
         true,
         false,
         {{0,
           {{1, "Demand CH1", Subject::Channel1},
            {2, "Flow CH1", Subject::Channel1},
            {3, "Pressure at CH1", Subject::Pressure}}},
          {5,
           {{6, "Demand CH2", Subject::Channel2},
            {7, "Flow CH2", Subject::Channel2},
            {8, "Pressure at CH2", Subject::Pressure}}}}},
        {"Timer,OutA0,OutA1,OutA2,OutA3,InA0,InA1,InA2,InA3,"
         "OutB0,OutB1,OutB2,OutB3,InB0,InB1,InB2,InB3",
         17,
         false,
         false,
         {rig()}},
    };
}

/// Reads one number and stops behind it. An empty field gives no number.
/// @return nullptr when it is damaged
const char* ReadNumber(const char* at, const char* end, double& value) {
    static constexpr std::array powers = {1.0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (at != end && *at == ' ')
        ++at;
    if (at == end || *at == ',') {
        value = std::nan("");
        return at;
    }
    // Nearly all are a few digits with a point at most: whole numbers and powers of ten of that
    // size are exact, so their quotient is what a thorough reading gives, in a fifth of its time.
    const char* const begin = at;
    std::int64_t digits = 0;
    const char* point = nullptr;
    for (; at != end; ++at) {
        const auto digit = static_cast<unsigned>(*at - '0');
        if (digit < 10)
            digits = digits * 10 + digit;
        else if (*at == '.' && point == nullptr)
            point = at;
        else
            break;
        if (at - begin > static_cast<std::ptrdiff_t>(powers.size()) - 1)
            break;
    }
    const bool isWhole = at == end || *at == ',';
    if (isWhole && at - begin > (point == nullptr ? 0 : 1)) {
        const auto decimals = point == nullptr ? 0 : at - point - 1;
        value = static_cast<double>(digits) / powers.at(static_cast<std::size_t>(decimals));
        return at;
    }
    const auto [behind, error] = std::from_chars(begin, end, value);
    return error == std::errc() && std::isfinite(value) && (behind == end || *behind == ',')
               ? behind
               : nullptr;
}

class CsvReader {
  public:
    explicit CsvReader(const CsvFormat& format) : m_Format(format) {
        for (const CsvGroup& group : format.Groups) {
            TrendGroup& made = m_Data.Groups.emplace_back();
            for (const CsvTrace& trace : group.Traces)
                made.Traces.push_back({trace.Name, trace.Subject});
        }
        m_Shifts_s.resize(m_Data.Groups.size());
        m_Data.CountsSteps = !format.Groups.front().TimeField;
        m_Data.Scales = format.Scales;
    }

    void TakeLine(const char* begin, const char* end) {
        ++m_Line;
        if (end != begin && end[-1] == '\r')
            --end;
        const std::string_view line(begin, static_cast<std::size_t>(end - begin));
        if (line.empty() || line == m_Format.Header)
            return; // a sweep has a header for each way
        const char* behind = ReadFields(begin, end);
        const bool isWhole = behind == end || (behind != nullptr && m_Format.MayBeLonger);
        if (isWhole)
            Store();
        else if (behind != nullptr && IsMark())
            NoteMark({behind + 1, end});
        else
            m_Damaged.Note(m_Line);
    }
    void LastLineIsCutOff() { m_CutOff = true; }

    TrendData Finish(const std::filesystem::path& path) {
        if (m_Data.Empty())
            throw NothingToShow(path, m_Damaged);
        if (m_Marks > MarksTold)
            m_Data.Remarks.push_back(fmt::format("There are {} marks.", m_Marks));
        if (m_Damaged.Count() > 0)
            m_Data.Remarks.push_back(m_Damaged.Text());
        if (m_SetBack > 0)
            m_Data.Remarks.push_back(fmt::format(
                "The clock was set back in line {}; the times behind it go on from there.",
                m_SetBack));
        if (m_CutOff)
            m_Data.Remarks.emplace_back("The last line has no end and is passed over.");
        return std::move(m_Data);
    }

  private:
    /// Where the numbers of a line end; nullptr when it is damaged.
    const char* ReadFields(const char* at, const char* end) {
        std::size_t field = 0;
        while (true) {
            at = ReadNumber(at, end, m_Fields[field]);
            if (at == nullptr || ++field == m_Format.Fields)
                return at;
            if (at == end)
                return nullptr;
            ++at; // the comma
        }
    }

    bool IsMark() const {
        return m_Format.HasMarks && !std::isnan(m_Fields[0]) &&
               std::all_of(m_Fields.begin() + 1,
                           m_Fields.begin() + static_cast<std::ptrdiff_t>(m_Format.Fields),
                           [](double field) { return std::isnan(field); });
    }

    void NoteMark(std::string_view text) {
        if (++m_Marks <= MarksTold)
            m_Data.Remarks.push_back(
                fmt::format("Mark at {} s: {}.",
                            GeneralText(static_cast<float>(m_Fields[0] + m_Shifts_s[0])), text));
    }

    void Store() {
        for (std::size_t index = 0; index < m_Format.Groups.size(); ++index) {
            const CsvGroup& fields = m_Format.Groups[index];
            TrendGroup& group = m_Data.Groups[index];
            double time_s = static_cast<double>(++m_Step);
            if (fields.TimeField) {
                time_s = m_Fields[*fields.TimeField];
                if (std::isnan(time_s)) {
                    m_Damaged.Note(m_Line);
                    return;
                }
                // Where one table is shorter than its neighbour, its rows are filled with zeros.
                if (m_Format.Groups.size() > 1 && time_s == 0.0 && !group.Times.Empty())
                    continue;
                time_s = Onwards(group, m_Shifts_s[index], time_s);
            }
            group.Times.Append(time_s);
            for (std::size_t trace = 0; trace < fields.Traces.size(); ++trace)
                group.Traces[trace].Append(
                    static_cast<float>(m_Fields[fields.Traces[trace].Field]));
        }
    }

    /// Times count from midnight to midnight; a day's end is no step back.
    double Onwards(const TrendGroup& group, double& wholeShift_s, double time_s) {
        constexpr double day_s = 86400.0;
        time_s += wholeShift_s;
        if (group.Times.Empty() || time_s >= group.Times.Last())
            return time_s;
        const double back_s = group.Times.Last() - time_s;
        // Kept as Singles, times may lie a hair before the ones that they follow.
        constexpr double hair_s = 1e-3;
        if (back_s < hair_s)
            return group.Times.Last();
        const bool isMidnight = back_s > day_s / 2;
        if (!isMidnight && m_SetBack == 0)
            m_SetBack = m_Line;
        const double shift_s = isMidnight ? day_s : back_s;
        wholeShift_s += shift_s;
        return std::max(time_s + shift_s, group.Times.Last());
    }

    const CsvFormat& m_Format;
    TrendData m_Data;
    std::array<double, MostFields> m_Fields{};
    DamagedLines m_Damaged;
    /// More of them would fill the window.
    static constexpr int MarksTold = 8;
    int m_Marks = 0;
    std::int64_t m_Line = 0;
    std::int64_t m_Step = 0;
    std::int64_t m_SetBack = 0;
    /// What the groups' times have been put forward by.
    std::vector<double> m_Shifts_s;
    bool m_CutOff = false;
};

/// A line longer than this is none of a table's.
constexpr std::size_t BlockSize = std::size_t{1} << 20U;

void ReadLines(const std::filesystem::path& path, CsvReader& reader, TrendProgress& progress) {
    std::ifstream file(path, std::ios::binary);
    std::error_code error;
    const auto size = static_cast<float>(std::max<std::uintmax_t>(file_size(path, error), 1));
    std::vector<char> buffer(2 * BlockSize);
    std::size_t held = 0;
    float read = 0.0F;
    while (!progress.Cancelled) {
        file.read(buffer.data() + held, BlockSize);
        const auto got = static_cast<std::size_t>(file.gcount());
        if (got == 0)
            break;
        const char* at = buffer.data();
        const char* const end = at + held + got;
        while (const auto* newLine = static_cast<const char*>(
                   std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) {
            reader.TakeLine(at, newLine);
            at = newLine + 1;
        }
        held = static_cast<std::size_t>(end - at);
        if (held > BlockSize) {
            reader.TakeLine(at, end);
            held = 0;
        }
        std::memmove(buffer.data(), at, held);
        read += static_cast<float>(got);
        progress.Share = read / size;
    }
    if (file.bad())
        throw TrendFileError(fmt::format(
            "{} cannot be read to its end. Please check its disk and copy it to another one.",
            path.string()));
    // It is being written, or was cut off: its last number may lack digits.
    if (held > 0)
        reader.LastLineIsCutOff();
}

} // namespace

TrendData ReadTrendCsv(const std::filesystem::path& path, std::string_view firstLine,
                       TrendProgress& progress) {
    const std::vector<CsvFormat> formats = Formats();
    const auto format =
        std::find_if(formats.begin(), formats.end(), [firstLine](const CsvFormat& candidate) {
            return firstLine == candidate.Header;
        });
    if (format == formats.end())
        throw TrendFileError(fmt::format(
            "{} is of no kind that can be shown: line 1 is not the heading of a recording, sweep "
            "or test. Please choose one of those, a journal of a run, or the report of a health "
            "check or a velocity calibration.",
            path.string()));
    CsvReader reader(*format);
    ReadLines(path, reader, progress);
    return progress.Cancelled ? TrendData{} : reader.Finish(path);
}

} // namespace ombrix

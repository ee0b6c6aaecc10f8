#include "journal/RunJournal.h"
#include "platform/os/FolderDrive.h"
#include "trend/TrendReaders.h"

#include <fmt/format.h>

#include <cmath>
#include <initializer_list>

namespace ombrix {

namespace {

struct TraceName {
    const char* Name;
    TrendSubject Subject;
};
using Subject = TrendSubject;

/// What the samples of a journal are made into. Their times count from the beginning of their
/// sequence or reading; these are put one behind another, with a gap between them.
class JournalTraces {
  public:
    explicit JournalTraces(const JournalHeader& header)
        : m_IsHealthCheck(header.Kind == "health-check"),
          m_IsPressure(header.Kind.starts_with("pressure")),
          m_SensorIsAnalog(header.Unit.Record.DigitalPressureConfig == 0) {
        m_Data.Scales = TrendScales::Of(
            header.Unit, fmt::format("{}, as its journal has it", header.Unit.SerialNumberStr()));
        if (m_IsHealthCheck)
            MakeGroup({{"Demand CH1", Subject::Channel1},
                       {"Flow CH1", Subject::Channel1},
                       {"Demand CH2", Subject::Channel2},
                       {"Flow CH2", Subject::Channel2},
                       {"Pressure", PressureSubject()}});
        else if (m_IsPressure)
            MakeGroup({{"Demand", Subject::Channel1},
                       {"Pressure", PressureSubject()},
                       {"Pressure audited", Subject::Pressure_mBar}});
        else
            MakeGroup({{"Demand CH1", Subject::Channel1},
                       {"Flow CH1", Subject::Channel1},
                       {"Demand CH2", Subject::Channel2},
                       {"Flow CH2", Subject::Channel2}});
    }

    /// @throws SingleJson::exception, std::exception for a line that is damaged
    void Take(const SingleJson& line) {
        if (line.contains("samples"))
            TakeSamples(line.at("samples"));
        else if (line.contains("sequence"))
            BeginPart();
        else if (line.contains("channel"))
            m_Channel = line.at("channel").get<std::size_t>();
        else if (line.contains("reading"))
            TakeReading(line);
    }

    TrendData Finish() { return std::move(m_Data); }

  private:
    void MakeGroup(std::initializer_list<TraceName> names) {
        TrendGroup& group = m_Data.Groups.emplace_back();
        for (const TraceName& trace : names)
            group.Traces.push_back({trace.Name, trace.Subject});
        m_Row.assign(names.size(), Missing);
    }
    Subject PressureSubject() const {
        return m_SensorIsAnalog ? Subject::Pressure : Subject::PressureRegister;
    }

    TrendGroup& Group() { return m_Data.Groups.front(); }

    void Append(double time_s) {
        const TrendTimes& times = Group().Times;
        Group().Times.Append(times.Empty() ? time_s : std::max(time_s, times.Last()));
        for (std::size_t trace = 0; trace < m_Row.size(); ++trace)
            Group().Traces[trace].Append(m_Row[trace]);
    }

    void BeginPart() {
        std::fill(m_Row.begin(), m_Row.end(), Missing);
        if (Group().Times.Empty())
            return;
        m_Begin_s = Group().Times.Last();
        Append(m_Begin_s);
    }

    void TakeReading(const SingleJson& line) {
        const auto demand_bits = static_cast<float>(line.at("demand").at(0).get<std::int32_t>());
        BeginPart();
        m_Row.at(m_IsPressure ? 0 : 2 * m_Channel) = demand_bits;
    }

    void TakeSamples(const SingleJson& samples) {
        for (const SingleJson& sample : samples) {
            constexpr double msPerSecond = 1000.0;
            const double time_s = static_cast<double>(SingleOf(sample.at(0)));
            const std::size_t first = m_IsHealthCheck ? 0 : m_IsPressure ? 1 : 2 * m_Channel + 1;
            for (std::size_t field = 1; field < sample.size(); ++field)
                m_Row.at(first + field - 1) = SingleOf(sample.at(field));
            Append(m_Begin_s + (m_IsHealthCheck ? time_s / msPerSecond : time_s));
        }
    }

    TrendData m_Data;
    bool m_IsHealthCheck;
    bool m_IsPressure;
    bool m_SensorIsAnalog;
    std::size_t m_Channel = 0;
    double m_Begin_s = 0.0;
    std::vector<float> m_Row;
};

JournalTraces OpenTraces(const std::filesystem::path& path, std::string_view line) {
    try {
        return JournalTraces(HeaderOf(SingleJson::parse(line)));
    } catch (const std::exception& error) {
        throw TrendFileError(fmt::format("{} cannot be read as the journal of a run, line 1: {}. "
                                         "Please choose a sound copy of it.",
                                         path.string(), error.what()));
    }
}

std::string ReadText(const std::filesystem::path& path) {
    try {
        return ReadWholeFile(path);
    } catch (const DriveError& error) {
        throw TrendFileError(std::string(error.what()) + ". Please choose another file.");
    }
}

} // namespace

TrendData ReadTrendJournal(const std::filesystem::path& path, TrendProgress& progress) {
    const std::string text = ReadText(path);
    std::string_view rest = text;
    const auto nextLine = [&rest] {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        return line;
    };
    JournalTraces traces = OpenTraces(path, nextLine());
    DamagedLines damaged;
    for (std::int64_t number = 2; rest.find('\n') != std::string_view::npos; ++number) {
        if (progress.Cancelled)
            return {};
        try {
            traces.Take(SingleJson::parse(nextLine()));
        } catch (const std::exception&) {
            damaged.Note(number);
        }
        progress.Share = 1.0F - static_cast<float>(rest.size()) / static_cast<float>(text.size());
    }
    TrendData data = traces.Finish();
    if (data.Empty())
        throw NothingToShow(path, damaged);
    if (damaged.Count() > 0)
        data.Remarks.push_back(damaged.Text());
    if (!rest.empty())
        data.Remarks.emplace_back("The last line was cut off and is passed over.");
    return data;
}

} // namespace ombrix

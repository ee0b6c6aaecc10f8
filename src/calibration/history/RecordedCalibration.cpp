#include "calibration/history/RecordedCalibration.h"

#include "calibration/report/RemadeReport.h"
#include "platform/text/DateText.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

std::size_t ReadingsOf(const VelocityMeasurement& measured) {
    std::size_t count = 0;
    for (const ChannelMeasurement& channel : measured.Channels) {
        for (const auto* sweep : {&channel.Rising, &channel.Falling})
            count += static_cast<std::size_t>(
                std::count_if(sweep->begin(), sweep->end(),
                              [](const PointReading& reading) { return reading.Valid; }));
    }
    return count;
}

} // namespace

std::string RecordedCalibration::Describe() const {
    const std::string points = IsVelocity(m_Run.Kind)
                                   ? fmt::format("{} readings", ReadingsOf(m_Run.Velocity))
                                   : fmt::format("{} points", m_Run.Pressure.size());
    return fmt::format("{} of ACU{:05}, {}: {}", TitleOf(m_Run.Kind), m_Run.Serial,
                       DateText(m_Run.Start, "dd/mm/yyyy hh:nn:ss"), points);
}

bool RecordedCalibration::HasReport() const {
    return MakesWorkbooks(m_Run.Kind);
}

RemadeReport RecordedCalibration::MakeReport(const CalibrationServices& services) const {
    return ombrix::MakeReport(services, m_Run);
}

bool RecordedCalibration::NoteInterruption(Platform& world,
                                           const std::vector<std::string>& files) const {
    HistoryEntry entry;
    entry.Kind = m_Run.Kind;
    entry.When = m_Run.Start;
    entry.Program = m_Run.Program;
    entry.Serial = m_Run.Serial;
    entry.Verdict = Verdicts::Interrupted;
    entry.Found = m_Run.Unit;
    entry.Left = m_Run.Left;
    entry.Velocity = m_Run.Velocity;
    entry.Pressure = m_Run.Pressure;
    entry.Files = files;
    // The program may have ended between a run's entry and the end of its journal.
    return IsInHistory(world.Files, entry) || AppendToHistory(world, entry);
}

} // namespace ombrix

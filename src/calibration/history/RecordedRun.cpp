#include "calibration/history/RecordedRun.h"

#include "calibration/report/AuditSheets.h"
#include "calibration/report/CalibrationReport.h"
#include "calibration/report/SaveFolder.h"
#include "platform/text/OleDate.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

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

/// Nobody has declined the sheet of an audit that was cut off when all had been measured.
bool WantsAuditSheet(const RecordedRun& run) {
    return CalibrationKindOf(run.Kind) == CalibrationKind::Audit &&
           run.AuditSheet.value_or(!run.Ended && run.Complete);
}

void MakeVelocityReport(const ReportTools& tools, const RecordedRun& run, RemadeReport& remade) {
    const CalibrationKind kind = run.Velocity.Measured.Kind;
    CalibrationReport report(tools);
    if (!report.Open(kind, run.Unit, run.Start)) {
        remade.AllStored = false;
        return;
    }
    report.Fill(run.Velocity, run.Passed);
    if (HasPartOfTable(run.Velocity) && !run.Left)
        // A program that ended at the last question or behind it has not told any more.
        report.SayNotStored(run.Ended || !run.Complete ? TableNotStored
                                                       : "Table not known to be in the EPROM");
    if (WantsAuditSheet(run))
        AddReport(remade, CreateAuditSheet_PV16(tools, run.Unit, run.MeasuredAt,
                                                run.Velocity.Measured, true));
    AddReport(remade, report.Save(kind));
}

void MakePressureSheet(const ReportTools& tools, const RecordedRun& run, RemadeReport& remade) {
    std::array<float, PressurePointCount> flows_ml_m{};
    for (std::size_t i = 0; i < std::min(run.Pressure.size(), flows_ml_m.size()); ++i)
        flows_ml_m.at(i) = run.Pressure.at(i).Flow_ml_m;
    AddReport(remade, CreateAuditSheet_PV17(tools, run.Unit, run.MeasuredAt, flows_ml_m, true));
}

/// A calibration as its journal tells it.
class RecordedCalibration final : public JournalledRun {
  public:
    RecordedCalibration(const ReportTools& tools, RecordedRun run)
        : m_Tools(tools), m_Run(std::move(run)) {}

    bool Ended() const override { return m_Run.Ended; }
    std::string Describe() const override;
    /// A pressure system calibration has its log alone.
    bool HasReport() const override { return m_Run.Kind != RunKind::PressureSystem; }
    RemadeReport MakeReport() const override;
    /// Adds it to the history of its unit.
    bool NoteInterruption(Platform& world, const std::vector<std::string>& files) const override;

  private:
    ReportTools m_Tools;
    RecordedRun m_Run;
};

std::string RecordedCalibration::Describe() const {
    const std::string points = IsVelocity(m_Run.Kind)
                                   ? fmt::format("{} readings", ReadingsOf(m_Run.Velocity.Measured))
                                   : fmt::format("{} points", m_Run.Pressure.size());
    return fmt::format("{} of {}, {}: {}", TitleOf(m_Run.Kind), m_Run.Unit.SerialNumberStr(),
                       IsoText(m_Run.Start), points);
}

RemadeReport RecordedCalibration::MakeReport() const {
    const OwnSaveFolder folder(m_Tools.TheStation, m_Run.Unit);
    RemadeReport remade;
    if (IsVelocity(m_Run.Kind))
        MakeVelocityReport(m_Tools, m_Run, remade);
    else if (WantsAuditSheet(m_Run) || (!m_Run.Ended && m_Run.Kind == RunKind::PressureAudit))
        MakePressureSheet(m_Tools, m_Run, remade);
    return remade;
}

bool RecordedCalibration::NoteInterruption(Platform& world,
                                           const std::vector<std::string>& files) const {
    HistoryEntry entry;
    entry.Kind = m_Run.Kind;
    entry.When = m_Run.Start;
    entry.Program = m_Run.Program;
    entry.Serial = m_Run.Unit.Serial;
    entry.Verdict = InterruptedVerdict;
    entry.Found = m_Run.Found;
    entry.Left = m_Run.Left;
    entry.Velocity = m_Run.Velocity.Measured;
    entry.Pressure = m_Run.Pressure;
    entry.Files = files;
    // The program may have ended between a run's entry and the end of its journal.
    return IsInHistory(world.Files, entry) || AppendToHistory(world, entry);
}

} // namespace

void AddCalibrationReaders(JournalReaders& readers, const ReportTools& tools) {
    for (const RunKind kind : RunKinds)
        readers.Add(NameOf(kind), [tools](std::string_view text) {
            return std::make_unique<RecordedCalibration>(tools, ReadJournal(text));
        });
}

} // namespace ombrix

#include "calibration/run/PressureRun.h"

#include "calibration/air/AirUnits.h"
#include "calibration/report/AuditSheets.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "reports/layout/AuditSheetLayout.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace ombrix {

namespace {

constexpr float LineSettles_s = 15.0F;
constexpr float RecordTime_s = MeanTime_s;
constexpr double DisplaySpacing_s = 0.05;
constexpr float SampleSpacing_s = 0.1F;

std::string FixedShown(float value, int decimals) {
    return FixedText(static_cast<double>(value), decimals);
}

} // namespace

PressureRun::PressureRun(const RunContext& context, CalibrationKind kind)
    : CalibrationRun(context, PressureRunKind(kind)), m_Cal{m_Unit.Record().BaseDiameter,
                                                            m_Unit.Record().PressureCoeff} {}

std::string PressureRun::Unready() const {
    const ACURecord& record = m_Unit.Record();
    if (!record.IsRead())
        return record.UnreadText();
    if (!record.ACUInitialised || record.VelocitySystemDate == OleDate())
        return "The pressure cannot be calibrated before the velocity.\r\n\r\nPlease run "
               "\"Initalise Velocity\" first.";
    if (!record.PressurePresent)
        return "The record of this ACU names no pressure sensor.\r\n\r\nIf there is one, declare "
               "it by \"Pressure Sensor…\" in the Tools menu, or by ombrixctl sensor 400 or 1000.";
    // Without a scale everything would read as 0 mBar and pass.
    if (IsAudit() && record.PressureScale == 0.0F)
        return "The pressure of this ACU has not been calibrated.\r\n\r\nPlease run the pressure "
               "system calibration first.";
    return {};
}

bool PressureRun::AskToBegin() {
    const std::string text = fmt::format(
        "{}\r\n\r\n{}\r\n\r\n{}\r\n\r\n  - The air supply is connected and turned on\r\n"
        "  - The power supply is connected and turned on\r\n\r\n"
        "Click OK to Start or Cancel to exit.",
        IsAudit() ? "Air Pressure Audit Calibration" : "Air Pressure System Calibration",
        IsAudit() ? "Note - this procedure will verify the calibration parameters"
                  : "Caution - this procedure will reset the calibration parameters",
        IsAudit() ? "To continue, please ensure:" : "If you wish to continue, please ensure:");
    return m_World.Messages.Ask({text, IsAudit() ? MessageIcon::Question : MessageIcon::Warning,
                                 MessageButtons::OkCancel}) == Answer::Ok;
}

void PressureRun::Measure() {
    if (IsAudit())
        TellIfUnusable(m_Context.Reports, AuditSheetLayout::PV17::Template);
    // What still flows from a hand-driven output would be taken for the zero.
    m_Air.AllChannelsOff();
    TakeZero();
    m_Log.OpenCalibrationLog("ACUCal_Pressure", m_Unit.Unit().SerialNumberStr());
    Log({"Calibrate Pressure - Calibration Started", "", ""});
    m_Recorder.Begin(m_Context.Unattended, m_Context.Found);
    CalibratePressureBase();
}

void PressureRun::CalibratePressureBase() {
    m_Cal.BaseDiameter_mm = PressureBase_mm;
    AskForHose();
    RecordPressurePoint(0.0F); // lets the line settle; the reading is of no use
    TakeZero();
    Log({"", "Calibration of Base Started " + GeneralText(PressureBase_mm) + " mm", Rule(68)});
    MeasurePoints();
    SetChannelAir_ml_m(0, 0.0F);
    SetChannelAir_ml_m(1, 0.0F);
    Log({Rule(47), GoesOn() ? "Calibration Complete" : "Calibration Terminated by User", Rule(47)});
    if (!GoesOn())
        return;
    const PressureVerdict verdict =
        IsAudit() ? CheckPressure(m_Points, PressureBase_mm) : FitPressure(m_Points);
    Log(verdict.Log);
    if (!IsAudit())
        m_Cal.Coefficients = verdict.Coefficients;
    m_NotFollowing = verdict.NotFollowing;
    m_Outcome.Passed = verdict.Passed;
    m_HasPolynomial = verdict.Passed || !m_NotFollowing.empty();
}

void PressureRun::AskForHose() {
    m_Stages.TakeInput(false);
    TellOperator(
        m_World,
        FormatArgs("Please connect the aeration hose to the [1]mm diameter aeration base and to "
                   "the port on the front of the Aeration Control Unit.",
                   {GeneralText(PressureBase_mm)}) +
            "\r\n\r\nNote - it is not necessary to attach a vessel\r\n\r\nClick OK to continue");
    m_Stages.TakeInput(true);
}

void PressureRun::MeasurePoints() {
    const CalibrationKind kind = IsAudit() ? CalibrationKind::Audit : CalibrationKind::System;
    const std::array<float, Points> flows_ml_m = FlowsOfPoints();
    m_Stages.BeginPoints(PressurePoints(flows_ml_m, kind));
    for (std::size_t i = 0; i < Points && GoesOn(); ++i) {
        PressureReading& point = m_Points.at(i);
        m_Stages.ShowLine(StageLine::Phase,
                          FormatArgs("Air Pressure Calibration - Phase [1] of [2]",
                                     {std::to_string(i + 1), std::to_string(Points)}));
        const auto pointsLeft = static_cast<double>(Points - i);
        m_Station.Procedures.Tell({fmt::format("point {} of {}", i + 1, Points),
                                   1.0 - pointsLeft / (Points + 1.0),
                                   pointsLeft * static_cast<double>(LineSettles_s + RecordTime_s)});
        point.Flow_ml_m = flows_ml_m.at(i);
        m_Log.LogCalibration("Flow Rate: " + FixedShown(point.Flow_ml_m, 2) + " lm/min");
        m_Recorder.ReadingBegins(Sweeps::Pressure, i, {0, point.Flow_ml_m}, RecordTime_s);
        const auto reading = RecordPressurePoint(point.Flow_ml_m);
        m_Recorder.ReadingEnds({0, reading.value_or(0.0F), reading.has_value()});
        if (!reading)
            return; // cancelled: what was not measured is neither driven nor told
        point.Reading = *reading;
        ++m_PointsMeasured;
        m_Log.LogCalibration("   Result: " + (IsAudit() ? FixedShown(point.Reading, 2) + " mBar"
                                                        : FixedShown(point.Reading, 1) + " Bits"));
        m_Stages.ShowPoint(i, PressurePoint(point, kind, i));
    }
}

std::array<float, PressureRun::Points> PressureRun::FlowsOfPoints() const {
    const auto& capacity_ml_m = m_Unit.Record().ChannelCapacity;
    const float largest_ml_m = std::max(capacity_ml_m[0], capacity_ml_m[1]);
    std::array<float, Points> flows_ml_m{};
    for (std::size_t i = 0; i < Points; ++i)
        flows_ml_m.at(i) = largest_ml_m / static_cast<float>(Points) * static_cast<float>(i);
    return flows_ml_m;
}

bool PressureRun::Pass(HiResTimer& timer, double duration_s, const std::function<void()>& work) {
    double displayDue_s = 0.0;
    double elapsed_s = 0.0;
    while (GoesOn() && (elapsed_s = timer.ElapsedTime()) < duration_s) {
        if (elapsed_s >= displayDue_s) {
            displayDue_s = elapsed_s + DisplaySpacing_s;
            m_Stages.ShowProgress(static_cast<float>(elapsed_s));
            ShowPressure();
        }
        work();
        m_Wait.Pass(timer, duration_s);
    }
    return GoesOn();
}

void PressureRun::TakeZero() {
    HiResTimer timer(m_World.Time);
    BoardAnswer answer;
    while (!m_Air.PressureZero(&answer) && GoesOn()) {
        m_Watch.Note(answer, MonotonicSeconds(m_World.Time));
        m_Wait.Pass(timer, timer.ElapsedTime() + DisplaySpacing_s);
    }
}

void PressureRun::ShowPressure() {
    const auto pressure_mBar = m_Air.PressureGet_mBar();
    m_Stages.ShowLine(
        StageLine::Remaining,
        "Current pressure: " + (pressure_mBar ? FixedShown(*pressure_mBar, 1) : "--") + " mBar");
}

std::optional<PressureSample> PressureRun::Read() {
    BoardAnswer answer;
    const auto bits = m_Station.CurrentAIB->Reading(ACUWiring::PressureInput, &answer);
    auto pressure_mBar = bits && IsAudit() ? m_Air.PressureGet_mBar(&answer) : std::optional(0.0F);
    m_Watch.Note(answer, MonotonicSeconds(m_World.Time));
    if (!bits || !pressure_mBar)
        return std::nullopt;
    return PressureSample{0.0F, *bits, *pressure_mBar};
}

std::optional<float> PressureRun::RecordPressurePoint(float flow_ml_m) {
    SetChannelAir_ml_m(0, flow_ml_m);
    SetChannelAir_ml_m(1, 0.0F);
    m_Stages.BeginProgress(LineSettles_s);
    m_Stages.ShowLine(StageLine::Demand, "Initialising Calibration Point");
    m_Stages.ShowLine(StageLine::Reading, "Flow rate: " + FixedShown(flow_ml_m, 0) + " ml/min");
    m_Stages.ShowLine(StageLine::Remaining, "");
    HiResTimer timer(m_World.Time);
    std::vector<PressureSample> samples;
    bool complete = Pass(timer, LineSettles_s, [&] { Read(); });
    if (complete) {
        m_Stages.ShowLine(StageLine::Demand, "Recording Calibration Data");
        m_Air.SetChannelOutput(0);
        m_Stages.BeginProgress(RecordTime_s);
        timer.StartTimer(true);
        complete = Pass(timer, RecordTime_s, [&] { TakeSample(timer, samples); });
    }
    m_Stages.ShowLine(StageLine::Reading, "");
    m_Stages.ShowLine(StageLine::Remaining, "");
    m_Stages.EndProgress();
    if (!complete)
        return std::nullopt;
    const auto mean = MeanOf(samples, IsAudit() ? CalibrationKind::Audit : CalibrationKind::System);
    if (!mean)
        throw BoardError("The pressure could not be read.");
    return mean;
}

void PressureRun::TakeSample(HiResTimer& timer, std::vector<PressureSample>& samples) {
    auto sample = Read();
    const auto elapsed_s = static_cast<float>(timer.ElapsedTime());
    const float sampled_s = samples.empty() ? 0.0F : samples.back().Time_s;
    if (!sample || elapsed_s - sampled_s < SampleSpacing_s)
        return;
    sample->Time_s = elapsed_s;
    samples.push_back(*sample);
    m_Recorder.Sample(*sample);
}

void PressureRun::SetChannelAir_ml_m(std::int32_t channel, float flow_ml_m) {
    const ACURecord& record = m_Unit.Record();
    const auto index = static_cast<std::size_t>(channel);
    const float demand = DemandFromTable(flow_ml_m, record.ChannelCapacity.at(index),
                                         record.VelocityCal.at(index), record.CalibrationPoints);
    m_Air.SetChannelDAC(channel, RoundHalfEven(static_cast<double>(demand)));
}

void PressureRun::Store() {
    if (WasCancelled() || WasStopped())
        return;
    if (IsAudit())
        FinishAudit();
    else
        FinishSystem();
}

void PressureRun::FinishSystem() {
    // What has not passed can be stored all the same where there is a polynomial.
    const bool isWanted =
        m_Outcome.Passed ||
        (m_HasPolynomial &&
         AskAgainstReason(m_NotFollowing, "Would you like to save the calibration?"));
    if (!isWanted) {
        TellOperator(m_World, "ACU Pressure System Caibration Failed" +
                                  (m_NotFollowing.empty() ? "" : "\r\n\r\n" + m_NotFollowing));
        return;
    }
    m_Outcome.Saved = TryToStore(
        m_Outcome, [this] { m_Unit.SavePressureSystemCalibration(m_Context.Guard, m_Cal); });
    if (!m_Outcome.Saved)
        return;
    m_Recorder.NoteStored();
    m_Log.LogCalibration("Values Written to EPROM");
    TellOperator(m_World, m_Outcome.Passed
                              ? "ACU Pressure System Caibration Passed"
                              : "The calibration has been saved although it has not passed.");
}

void PressureRun::FinishAudit() {
    // No audit sheet for an audit that the unit does not know of.
    if (!TryToStore(m_Outcome,
                    [&] { m_Unit.SavePressureAudit(m_Context.Guard, m_Cal, m_Outcome.Passed); }))
        return;
    m_Recorder.NoteStored();
    std::array<float, Points> flows_ml_m{};
    std::transform(m_Points.begin(), m_Points.end(), flows_ml_m.begin(),
                   [](const PressureReading& point) { return point.Flow_ml_m; });
    m_Recorder.AuditSheet(true);
    AddReport(m_Outcome, CreateAuditSheet_PV17(m_Context.Reports, m_Unit.Unit(), m_World.Time.Now(),
                                               flows_ml_m, m_Context.Unattended));
    m_Log.LogCalibration("Values Written to EPROM");
    TellOperator(m_World, m_Outcome.Passed ? "ACU Pressure Audit Caibration Passed"
                                           : "ACU Pressure Audit Caibration Failed");
}

HistoryEntry PressureRun::Measured() const {
    HistoryEntry entry;
    entry.Pressure.assign(m_Points.begin(),
                          m_Points.begin() + static_cast<std::ptrdiff_t>(m_PointsMeasured));
    if (!m_NotFollowing.empty())
        entry.Reasons.push_back(m_NotFollowing);
    else if (!m_Outcome.Passed && !WasCancelled() && !WasStopped())
        entry.Reasons.emplace_back(IsAudit() ? "A point deviates by more than its limit"
                                             : "The points do not determine a polynomial");
    return entry;
}

} // namespace ombrix

#include "calibration/run/PressureRun.h"

#include "board/AIB.h"
#include "calibration/air/AirUnits.h"
#include "calibration/judge/AcceptanceChecks.h"
#include "calibration/judge/CurveFit.h"
#include "calibration/report/AuditSheets.h"
#include "calibration/run/GuardedOutcome.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace ombrix {

namespace {

constexpr float BaseDiameter_mm = 50.0F;
constexpr float LineSettles_s = 15.0F;
constexpr float RecordTime_s = 3.0F;
constexpr double DisplaySpacing_s = 0.05;
/// Of the readings that the journal keeps.
constexpr double SampleSpacing_s = 0.1;
constexpr std::int32_t Coefficients = 3;

std::string Rule(std::size_t length) {
    return std::string(length, '-');
}

std::string Fixed(float value, int decimals) {
    return FixedText(static_cast<double>(value), decimals);
}

} // namespace

PressureRun::PressureRun(clsACUCalibration& record, const CalibrationServices& services,
                         EpromGuard& guard, CalibrationKind kind, bool autoSave)
    : m_Record(record), m_Services(services), m_Guard(guard), m_Kind(kind), m_AutoSave(autoSave),
      m_World(services.TheStation.World), m_Wait(m_World.Time, m_World.Events, m_Cancel),
      m_Log(m_World), m_Measured(record.Pressure()),
      m_Recorder(services.TheStation, record, PressureRunKind(kind)) {}

CalibrationOutcome PressureRun::CalibrateACUPressure() {
    m_Services.Stages.Stage_RunNext();
    const std::string unready = Unready();
    if (!unready.empty()) {
        m_Outcome.NothingDriven = true;
        m_Outcome.Error = unready;
        TellOperator(m_World, unready, MessageIcon::Warning);
    } else if (!Confirmed()) {
        m_Outcome.NothingDriven = m_Outcome.Aborted = true;
    } else if (Admits(m_Guard, m_Outcome)) {
        const clsACUCalibration::RunningCalibration running(m_Record, m_Cancel);
        try {
            Run();
        } catch (const std::exception& error) {
            Stop(error.what());
        }
        m_Log.CloseCalibrationLog();
        m_Outcome.Files.insert(m_Outcome.Files.begin(), m_Log.Files().begin(), m_Log.Files().end());
        m_Outcome.AllStored = m_Outcome.AllStored && m_Log.AllStored();
        AddToHistory();
    }
    m_Services.Stages.Stage_Complete(m_Outcome.Aborted, m_Outcome.Passed);
    if (!m_Outcome.Error.empty() && unready.empty())
        TellOperator(m_World, "The calibration has been stopped.\r\n\r\n" + m_Outcome.Error,
                     MessageIcon::Critical);
    return m_Outcome;
}

std::string PressureRun::Unready() const {
    const ACURecord& record = m_Record.Record();
    if (!record.m_ACUInitialised || record.m_VelocitySystemDate == OleDate())
        return "The pressure cannot be calibrated before the velocity.\r\n\r\nPlease run "
               "\"Initalise Velocity\" first.";
    if (!record.m_PressurePresent)
        return "The record of this ACU names no pressure sensor.\r\n\r\nIf there is one, write 16 "
               "to EPROM address 600 and its full scale to address 604, then detect the boards "
               "again.";
    // Without a scale everything would read as 0 mBar and pass.
    if (IsAudit() && record.m_PressureScale == 0.0F)
        return "The pressure of this ACU has not been calibrated.\r\n\r\nPlease run the pressure "
               "system calibration first.";
    return {};
}

bool PressureRun::Confirmed() {
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

void PressureRun::Run() {
    AirChannelControl air = m_Record.Air(m_Services.Sliders);
    m_Record.PressureZero(air);
    m_Log.OpenCalibrationLog("ACUCal_Pressure", m_Record.SerialNumberStr());
    Log({"Calibrate Pressure - Calibration Started", "", ""});
    m_Recorder.Begin(m_AutoSave);
    const bool passed = CalibratePressureBase();
    // A cancel that comes later, while the run is stored, does not undo it.
    m_Outcome.Aborted = !Running();
    m_Recorder.Measured(passed, !m_Outcome.Aborted);
    if (m_Outcome.Aborted)
        return;
    if (IsAudit())
        FinishAudit(passed);
    else
        FinishSystem(passed);
}

bool PressureRun::CalibratePressureBase() {
    m_Measured.BaseDiameter_mm = BaseDiameter_mm;
    AskForHose();
    RecordPressurePoint(0.0F); // lets the line settle; the reading is of no use
    AirChannelControl air = m_Record.Air(m_Services.Sliders);
    m_Record.PressureZero(air);
    Log({"", "Calibration of Base Started " + GeneralText(BaseDiameter_mm) + " mm", Rule(68)});
    MeasurePoints();
    SetChannelAir_ml_m(0, 0.0F);
    SetChannelAir_ml_m(1, 0.0F);
    Log({Rule(47), Running() ? "Calibration Complete" : "Calibration Terminated by User",
         Rule(47)});
    if (!Running())
        return false;
    return IsAudit() ? CheckAudit() : FitPolynomial();
}

void PressureRun::AskForHose() {
    m_Services.Stages.TakeInput(false);
    TellOperator(
        m_World,
        FormatArgs("Please connect the aeration hose to the [1]mm diameter aeration base and to "
                   "the port on the front of the Aeration Control Unit.",
                   {GeneralText(BaseDiameter_mm)}) +
            "\r\n\r\nNote - it is not necessary to attach a vessel\r\n\r\nClick OK to continue");
    m_Services.Stages.TakeInput(true);
}

void PressureRun::MeasurePoints() {
    const float largest_ml_m = std::max(m_Record.ChannelCapacity(0), m_Record.ChannelCapacity(1));
    for (std::size_t i = 0; i < Points; ++i) {
        PressureReading& point = m_Points.at(i);
        m_Services.Stages.ShowLine(StageLine::Phase,
                                   FormatArgs("Air Pressure Calibration - Phase [1] of [2]",
                                              {std::to_string(i + 1), std::to_string(Points)}));
        point.Flow_ml_m = largest_ml_m / static_cast<float>(Points) * static_cast<float>(i);
        m_Log.LogCalibration("Flow Rate: " + Fixed(point.Flow_ml_m, 2) + " lm/min");
        m_Recorder.ReadingBegins(Sweeps::Pressure, i, {0, point.Flow_ml_m});
        point.Reading = RecordPressurePoint(point.Flow_ml_m);
        m_Recorder.ReadingEnds({0, point.Reading, Running()});
        m_PointsMeasured += Running() ? 1U : 0U;
        m_Log.LogCalibration("   Result: " + (IsAudit() ? Fixed(point.Reading, 2) + " mBar"
                                                        : Fixed(point.Reading, 1) + " Bits"));
    }
}

bool PressureRun::Pass(clsHiResTimer& timer, double duration_s, const std::function<void()>& work) {
    double displayDue_s = 0.0;
    double elapsed_s = 0.0;
    while (Running() && (elapsed_s = timer.ElapsedTime()) < duration_s) {
        if (elapsed_s >= displayDue_s) {
            displayDue_s = elapsed_s + DisplaySpacing_s;
            m_Services.Stages.ShowProgress(static_cast<float>(elapsed_s));
            ShowPressure();
        }
        work();
        m_Wait.Pass(timer, duration_s);
    }
    return Running();
}

void PressureRun::ShowPressure() {
    AirChannelControl air = m_Record.Air(m_Services.Sliders);
    m_Services.Stages.ShowLine(StageLine::Remaining,
                               "Current pressure: " + Fixed(m_Record.PressureGet_mBar(air), 1) +
                                   " mBar");
}

float PressureRun::RecordPressurePoint(float flow_ml_m) {
    CalibrationView& stages = m_Services.Stages;
    clsAIB& board = *m_Services.TheStation.g_CurrentAIB;
    AirChannelControl air = m_Record.Air(m_Services.Sliders);
    SetChannelAir_ml_m(0, flow_ml_m);
    SetChannelAir_ml_m(1, 0.0F);
    stages.BeginProgress(LineSettles_s);
    stages.ShowLine(StageLine::Demand, "Initialising Calibration Point");
    stages.ShowLine(StageLine::Reading, "Flow rate: " + Fixed(flow_ml_m, 0) + " ml/min");
    stages.ShowLine(StageLine::Remaining, "");
    clsHiResTimer timer(m_World.Time);
    const auto readInput = [&] {
        std::int32_t bits = 0;
        const AIBStatus status = board.GetADC(ACUWiring::PressureInput, bits);
        m_Watch.Note(status, MonotonicSeconds(m_World.Time));
        return status == Status::NoError ? std::optional(bits) : std::nullopt;
    };
    double sum = 0.0;
    double sampleDue_s = 0.0;
    std::int32_t count = 0;
    if (Pass(timer, LineSettles_s, [&] { readInput(); })) {
        stages.ShowLine(StageLine::Demand, "Recording Calibration Data");
        air.SetChannelOutput(0);
        stages.BeginProgress(RecordTime_s);
        timer.StartTimer(true);
        Pass(timer, RecordTime_s, [&] {
            const auto bits = readInput();
            if (!bits)
                return;
            if (const double elapsed_s = timer.ElapsedTime(); elapsed_s >= sampleDue_s) {
                sampleDue_s = elapsed_s + SampleSpacing_s;
                m_Recorder.Sample({static_cast<float>(elapsed_s), *bits});
            }
            sum += IsAudit() ? static_cast<double>(m_Record.PressureGet_mBar(air)) : *bits;
            ++count;
        });
    }
    stages.ShowLine(StageLine::Reading, "");
    stages.ShowLine(StageLine::Remaining, "");
    stages.EndProgress();
    return count > 0 ? static_cast<float>(sum / count) : 0.0F;
}

void PressureRun::SetChannelAir_ml_m(std::int32_t channel, float flow_ml_m) {
    const ACURecord& record = m_Record.Record();
    const auto index = static_cast<std::size_t>(channel);
    const float demand =
        DemandFromTable(flow_ml_m, record.m_ChannelCapacity.at(index),
                        record.m_VelocityCal.at(index), record.m_CalibrationPoints);
    m_Record.Air(m_Services.Sliders)
        .SetChannelDAC(channel, RoundHalfEven(static_cast<double>(demand)));
}

bool PressureRun::FitPolynomial() {
    std::vector<std::array<float, 2>> data;
    for (const PressureReading& point : m_Points)
        data.push_back({point.Flow_ml_m, point.Reading});
    std::vector<float> coefficients;
    if (!CalculateMCPoly(data, coefficients, Coefficients)) {
        m_Log.LogCalibration("Calibration Failed Audit");
        return false;
    }
    m_Measured.Coefficients = {};
    std::copy(coefficients.begin(), coefficients.end(), m_Measured.Coefficients.begin());
    LogFit(coefficients);
    return true;
}

void PressureRun::LogFit(const std::vector<float>& coefficients) {
    Log({"Data Point,Air Velocity,Bits", Rule(53)});
    for (std::size_t i = 0; i < Points; ++i)
        m_Log.LogCalibration(fmt::format("{},{},{}", i, Fixed(m_Points.at(i).Flow_ml_m, 2),
                                         Fixed(m_Points.at(i).Reading, 2)));
    Log({Rule(53), "", "Coeffs Number,Coeff Value", Rule(53)});
    for (std::size_t k = 0; k < coefficients.size(); ++k)
        m_Log.LogCalibration(fmt::format("{},{}", k, GeneralText(coefficients.at(k))));
    Log({Rule(53), ""});
}

bool PressureRun::CheckAudit() {
    Log({"", "Check Audit Data", Rule(16)});
    bool allPass = true;
    for (std::size_t i = 0; i < Points; ++i) {
        const PressureReading& point = m_Points.at(i);
        const bool passes = std::abs(point.Reading) <= AcceptanceLimits::Pressure_mBar;
        allPass = allPass && passes;
        m_Log.LogCalibration(fmt::format("Calibration Point {}: {}:  {}:  {}:    ({})",
                                         passes ? "Passed" : "Failed", i, Fixed(point.Flow_ml_m, 2),
                                         Fixed(point.Reading, 2),
                                         Fixed(AcceptanceLimits::Pressure_mBar, 1)));
    }
    Log({Rule(16), fmt::format("Audit Calibration {}:  Base Index: 0  ({} mm)",
                               allPass ? "Passed" : "Failed", GeneralText(BaseDiameter_mm))});
    return allPass;
}

void PressureRun::FinishSystem(bool passed) {
    m_Outcome.Passed = passed;
    if (!passed) {
        TellOperator(m_World, "ACU Pressure System Caibration Failed");
        return;
    }
    m_Outcome.Saved =
        Stored(m_Outcome, [this] { m_Record.SavePressureSystemCalibration(m_Guard, m_Measured); });
    if (!m_Outcome.Saved)
        return;
    m_Recorder.Stored();
    m_Log.LogCalibration("Values Written to EPROM");
    TellOperator(m_World, "ACU Pressure System Caibration Passed");
}

void PressureRun::FinishAudit(bool passed) {
    m_Outcome.Passed = passed;
    // No audit sheet for an audit that the unit does not know of.
    if (!Stored(m_Outcome, [&] { m_Record.SavePressureAudit(m_Guard, m_Measured, passed); }))
        return;
    m_Recorder.Stored();
    std::array<float, Points> flows_ml_m{};
    std::transform(m_Points.begin(), m_Points.end(), flows_ml_m.begin(),
                   [](const PressureReading& point) { return point.Flow_ml_m; });
    m_Recorder.AuditSheet(true);
    AddWorkbook(m_Outcome, CreateAuditSheet_PV17(m_Services, m_Record, flows_ml_m, m_AutoSave));
    m_Log.LogCalibration("Values Written to EPROM");
    TellOperator(m_World, passed ? "ACU Pressure Audit Caibration Passed"
                                 : "ACU Pressure Audit Caibration Failed");
}

void PressureRun::Stop(const std::string& reason) {
    m_Services.AirOff();
    m_Outcome.Passed = false;
    m_Outcome.Error = reason;
    m_Log.LogCalibration("Calibration stopped: " + reason.substr(0, reason.find("\r\n")));
}

void PressureRun::AddToHistory() {
    HistoryEntry entry;
    entry.Pressure.assign(m_Points.begin(),
                          m_Points.begin() + static_cast<std::ptrdiff_t>(m_PointsMeasured));
    if (!m_Outcome.Passed && !m_Outcome.Aborted && m_Outcome.Error.empty())
        entry.Reasons.emplace_back(IsAudit() ? "A point deviates by more than its limit"
                                             : "The points do not determine a polynomial");
    const bool stored = m_Recorder.End(m_Outcome, std::move(entry));
    m_Outcome.AllStored = m_Outcome.AllStored && stored;
}

void PressureRun::Log(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines)
        m_Log.LogCalibration(line);
}

} // namespace ombrix

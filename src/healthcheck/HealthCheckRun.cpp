#include "healthcheck/HealthCheckRun.h"

#include "board/DrivingProcedure.h"
#include "calibration/clsACUCalibration.h"
#include "healthcheck/SaveFolder.h"
#include "healthcheck/clsMFCSequence.h"
#include "platform/TellOperator.h"
#include "support/KeptWorkbook.h"
#include "support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

std::string EndOf(const HealthCheckResult& result) {
    switch (result.End) {
    case HealthCheckResult::Outcome::Cancelled: return "cancelled";
    case HealthCheckResult::Outcome::Failed: return "failed: " + result.Error;
    case HealthCheckResult::Outcome::NotSaved: return "not saved: " + result.Error;
    case HealthCheckResult::Outcome::Completed: break;
    }
    return "completed";
}

} // namespace

HealthCheckRun::HealthCheckRun(Station& station, DACSliders& sliders, SpreadsheetLauncher launcher,
                               OpenExcelView& wait, std::string templates)
    : m_Station(station), m_Sliders(sliders), m_Launcher(std::move(launcher)), m_Wait(wait),
      m_Templates(std::move(templates)) {}

HealthCheckResult HealthCheckRun::Run(std::span<const HealthCheckOption> options,
                                      const HealthCheckView& view) {
    HealthCheckResult result;
    ProcedureLog log(m_Station.World, "Health check");
    DrivingProcedure running(m_Station, "health check",
                             {{m_Station.g_CurrentAIB}, [this] { m_Sliders.ShowAllOff(); }});
    try {
        running.Begin();
        m_Sliders.SetValue(0, 0);
        m_Sliders.SetValue(1, 0);
        if (OpenReport(result))
            RunAll(PlanHealthCheck(options), view, result);
    } catch (const std::exception& error) {
        running.SwitchOffNow();
        Fail(result, HealthCheckResult::Outcome::Failed, "The health check has been stopped.",
             error.what());
    }
    if (!result.Sequences.empty())
        Finish(result);
    log.Ended(EndOf(result));
    return result;
}

bool HealthCheckRun::OpenReport(HealthCheckResult& result) {
    m_Report = OpenExcel(m_Wait, m_Station.World, m_Launcher, "Initialising Excel Report",
                         m_Templates + "ACUHealthCheck.xltx");
    m_Wait.Close();
    if (m_Report)
        return true;
    if (m_Report.Error.empty()) {
        result.End = HealthCheckResult::Outcome::NotSaved;
        result.Error = "The template of the report has not been found.";
        return false;
    }
    Fail(result, HealthCheckResult::Outcome::NotSaved, "The report could not be opened.",
         m_Report.Error);
    return false;
}

void HealthCheckRun::RunAll(const std::vector<SequencePlan>& plan, const HealthCheckView& view,
                            HealthCheckResult& result) {
    const double total_s = TotalTime_s(plan);
    double done_s = 0.0;
    for (const SequencePlan& sequence : plan) {
        const Answer answer = AskPrompt(sequence);
        if (answer == Answer::Cancel)
            m_Cancel.Request();
        if (m_Cancel.Requested()) {
            result.End = HealthCheckResult::Outcome::Cancelled;
            return;
        }
        if (answer == Answer::Yes)
            RunOne(sequence, view, done_s, total_s, result);
        if (result.End == HealthCheckResult::Outcome::Cancelled)
            return;
        done_s += TotalTime_s({&sequence, 1});
    }
}

Answer HealthCheckRun::AskPrompt(const SequencePlan& plan) {
    if (plan.Prompt.empty())
        return Answer::Yes;
    return m_Station.World.Messages.Ask(
        {plan.Prompt, MessageIcon::Information, MessageButtons::YesNoCancel});
}

void HealthCheckRun::RunOne(const SequencePlan& plan, const HealthCheckView& view, double done_s,
                            double total_s, HealthCheckResult& result) {
    clsMFCSequence sequence;
    for (const StepPlan& step : plan.Steps)
        sequence.AddStep(step.Ch1Demand, step.Ch2Demand, step.Duration_s);
    SequenceView sequenceView{view.Graphs, view.Labels, view.Steps};
    if (view.Progress)
        sequenceView.Progress = [&](double elapsed_s) {
            view.Progress((done_s + elapsed_s) / total_s);
        };
    ProcedureWait wait(m_Station.World.Time, m_Station.World.Events, m_Cancel);
    const std::string sheet = DistinctSheetName(plan.SheetName, result.Sequences);
    const auto note = [&] {
        result.Sequences.push_back({sheet, sequence.StepCount(), sequence.TotalTime_s(),
                                    sequence.SampleCount(), sequence.RecordFull()});
    };
    try {
        if (!sequence.RunSequence({m_Station, m_Sliders, wait}, sequenceView, m_Report.Book, sheet,
                                  m_OverviewRow))
            result.End = HealthCheckResult::Outcome::Cancelled;
    } catch (const BoardError&) {
        note(); // its record is in the report up to where the board was lost
        throw;
    }
    note();
}

std::string HealthCheckRun::DistinctSheetName(const std::string& name,
                                              const std::vector<SequenceResult>& taken) const {
    const auto isTaken = [&taken](const std::string& sheet) {
        return std::any_of(taken.begin(), taken.end(), [&sheet](const SequenceResult& sequence) {
            return sequence.Sheet == sheet;
        });
    };
    std::string distinct = name;
    for (int number = 2; isTaken(distinct); ++number)
        distinct = fmt::format("{} ({})", name, number);
    return distinct;
}

void HealthCheckRun::Fail(HealthCheckResult& result, HealthCheckResult::Outcome outcome,
                          const std::string& heading, const std::string& reason) {
    result.End = outcome;
    result.Error = reason;
    Tell(heading + "\r\n\r\n" + reason, MessageIcon::Critical);
}

void HealthCheckRun::Finish(HealthCheckResult& result) {
    try {
        m_Report.Book->Sheet("DataTemplate").SetVisible(SheetVisibility::Hidden);
        m_Report.Book->Sheet("Overview").Select();
        m_Report.Application->SetVisible(true);
        Save(result);
    } catch (const std::exception& error) {
        Fail(result, HealthCheckResult::Outcome::NotSaved, "The report could not be saved.",
             error.what());
        Keep(FileName(), result);
    }
}

std::string HealthCheckRun::FileName() const {
    clsAIB& board = *m_Station.g_CurrentAIB;
    return fmt::format("{}_ACU{}_{}.xlsx", board.Calibration().MFCSerialNumber_Clean(),
                       board.SerialNumber(),
                       DateText(m_Station.World.Time.Now(), "yyyymmdd_hhnnss"));
}

void HealthCheckRun::Save(HealthCheckResult& result) {
    std::string folder;
    if (GetACUFolder(m_Station, folder)) {
        const std::string file = folder + FileName();
        m_Report.Book->SaveAs(file, FileFormat::ByExtension);
        result.Files.push_back(m_Station.World.Files.RealPath(file));
        Tell("The file has been saved:\r\n\r\n   " + file, MessageIcon::Information);
        return;
    }
    clsAIB& board = *m_Station.g_CurrentAIB;
    const std::string unit = fmt::format("{:05}_{}\\'", board.SerialNumber(),
                                         board.Calibration().MFCSerialNumber_Clean());
    const std::string warning = "Unable to Save Excel File in following locations:\r\n\r\n"
                                "   'S:\\Production\\ACUs\\_Initial Tests\\" +
                                unit + "\r\n\r\n'C:\\ACUs\\" + unit +
                                ".\r\n\r\nYou will need to do this manually.";
    result.End = HealthCheckResult::Outcome::NotSaved;
    result.Error = warning;
    Tell(warning, MessageIcon::Warning);
    Keep(FileName(), result);
}

void HealthCheckRun::Keep(const std::string& fileName, HealthCheckResult& result) {
    if (const auto path = KeepWorkbook(m_Station.World, *m_Report.Book, fileName))
        result.Files.push_back(*path);
}

void HealthCheckRun::Tell(const std::string& text, MessageIcon icon) const {
    TellOperator(m_Station.World, text, icon);
}

} // namespace ombrix

#pragma once

#include "board/procedure/Listeners.h"
#include "board/procedure/Outcome.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace ombrix {

/// What a procedure that runs tells of itself.
struct ProcedureProgress {
    /// What it does now ("Channel 1, rising, point 3 of 10").
    std::string Step{};
    /// How much of the whole is done, 0 to 1.
    double Share = 0.0;
    /// Seconds of the bench that the whole will take from here on, without what operators take to
    /// answer; nothing where nobody knows.
    std::optional<double> Left_s{};

    bool operator==(const ProcedureProgress&) const = default;
};

/// How the last procedure ended that has an outcome.
struct ProcedureEnd {
    std::string Name;
    Outcome Result;
    /// In words, as the procedure has it ("passed", "Complete").
    std::string Verdict;
};

/// Lets one long procedure run at a time, tells every window when one starts and ends, so that
/// commands which would start another are disabled meanwhile, and cancels the one that runs.
class ProcedureGate {
  public:
    bool Running() const noexcept { return m_Running; }
    /// Name of the procedure that runs, for people ("Air flow test").
    const std::string& Name() const { return m_Name; }
    const ProcedureProgress& Progress() const { return m_Progress; }
    void Tell(ProcedureProgress progress) { m_Progress = std::move(progress); }
    /// The end of the last procedure; nothing while one runs, and after one without an outcome.
    const std::optional<ProcedureEnd>& LastEnd() const { return m_LastEnd; }
    void TellEnd(Outcome outcome, std::string verdict) {
        m_LastEnd = ProcedureEnd{m_Name, std::move(outcome), std::move(verdict)};
    }
    [[nodiscard]] Subscription Listen(std::function<void(bool running)> listener) {
        return m_Listeners.Listen(std::move(listener));
    }

    /// Has the procedure that runs end at its next pass.
    void Cancel() noexcept { m_CancelRequested = m_Running; }
    bool CancelRequested() const noexcept { return m_CancelRequested; }

  private:
    friend class RunningProcedure;
    void SetRunning(bool running);

    bool m_Running = false;
    bool m_CancelRequested = false;
    std::string m_Name;
    ProcedureProgress m_Progress;
    std::optional<ProcedureEnd> m_LastEnd;
    Listeners<bool> m_Listeners;
};

/// Stands for a procedure that is running. Whatever way the procedure is left (end, cancel,
/// error, program closed), the destructor makes the bench safe and gives the commands back.
class RunningProcedure {
  public:
    /// @param name as people are told of it ("air flow test")
    /// @param makeSafe brings the outputs to their safe state; must not throw
    /// @throws std::logic_error while another procedure runs
    RunningProcedure(
        ProcedureGate& gate, std::string name, std::function<void()> makeSafe = [] {});
    RunningProcedure(const RunningProcedure&) = delete;
    RunningProcedure& operator=(const RunningProcedure&) = delete;
    ~RunningProcedure();

  private:
    ProcedureGate& m_Gate;
    std::function<void()> m_MakeSafe;
};

} // namespace ombrix

#pragma once

#include "board/procedure/Listeners.h"

#include <functional>

namespace ombrix {

/// Lets one long procedure run at a time, tells every window when one starts and ends, so that
/// commands which would start another are disabled meanwhile, and cancels the one that runs.
class ProcedureGate {
  public:
    bool Running() const noexcept { return m_Running; }
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
    Listeners<bool> m_Listeners;
};

/// Stands for a procedure that is running. Whatever way the procedure is left (end, cancel,
/// error, program closed), the destructor makes the bench safe and gives the commands back.
class RunningProcedure {
  public:
    /// @param makeSafe brings the outputs to their safe state; must not throw
    /// @throws std::logic_error while another procedure runs
    explicit RunningProcedure(
        ProcedureGate& gate, std::function<void()> makeSafe = [] {});
    RunningProcedure(const RunningProcedure&) = delete;
    RunningProcedure& operator=(const RunningProcedure&) = delete;
    ~RunningProcedure();

  private:
    ProcedureGate& m_Gate;
    std::function<void()> m_MakeSafe;
};

} // namespace ombrix

#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace ombrix {

/// A flag that a Cancel button raises and that the wait loops of a procedure look at.
class Cancellation {
  public:
    void Request() noexcept { m_Requested = true; }
    bool Requested() const noexcept { return m_Requested; }

  private:
    bool m_Requested = false;
};

/// Lets one long procedure run at a time and tells every window when one starts and ends, so
/// that commands which would start another are disabled meanwhile.
class ProcedureGate {
  public:
    using Listener = std::function<void(bool running)>;

    /// Keeps a listener told for as long as it lives.
    class Subscription {
      public:
        Subscription() = default;

      private:
        friend class ProcedureGate;
        explicit Subscription(std::shared_ptr<Listener> listener)
            : m_Listener(std::move(listener)) {}
        std::shared_ptr<Listener> m_Listener;
    };

    bool Running() const noexcept { return m_Running; }
    [[nodiscard]] Subscription Listen(Listener listener);

  private:
    friend class RunningProcedure;
    void SetRunning(bool running);

    bool m_Running = false;
    std::vector<std::weak_ptr<Listener>> m_Listeners;
};

/// Stands for a procedure that is running. Whatever way the procedure is left (end, cancel,
/// error, program closed), the destructor makes the bench safe and gives the commands back.
class RunningProcedure {
  public:
    /// @param makeSafe brings the outputs to their safe state; must not throw
    /// @throws std::logic_error while another procedure runs
    RunningProcedure(ProcedureGate& gate, std::function<void()> makeSafe);
    RunningProcedure(const RunningProcedure&) = delete;
    RunningProcedure& operator=(const RunningProcedure&) = delete;
    ~RunningProcedure();

  private:
    ProcedureGate& m_Gate;
    std::function<void()> m_MakeSafe;
};

} // namespace ombrix

#pragma once

#include "board/AIB.h"
#include "board/procedure/HiResTimer.h"
#include "board/procedure/ProcedureGate.h"
#include "platform/ports/Platform.h"

#include <optional>
#include <stdexcept>

namespace ombrix {

/// A board has stopped answering.
class BoardError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Tells a passing disturbance from a board that is gone. A failed reading is simply not
/// taken; a board that has not answered for a second ends the procedure.
class AnswerWatch {
  public:
    static constexpr double Patience_s = 1.0;

    /// Notes how a reading went. @param now_s time of the procedure's timer @throws BoardError
    void Note(AIBStatus status, double now_s) {
        if (status == Status::NoError) {
            m_FailingSince_s.reset();
            return;
        }
        if (!m_FailingSince_s)
            m_FailingSince_s = now_s;
        if (now_s - *m_FailingSince_s >= Patience_s)
            throw BoardError("The board does not answer: " + AIB::AIBErrorStr(status) +
                             ".\r\n\r\nPlease check its cable and its power, then detect the "
                             "boards again.");
    }

  private:
    std::optional<double> m_FailingSince_s;
};

/// The one way in which a procedure lets time pass: events are handled, the processor rests,
/// and a cancel or the end of the program is seen within a pass.
class ProcedureWait {
  public:
    ProcedureWait(Platform& world, const ProcedureGate& gate)
        : m_Clock(world.Time), m_Pump(world.Events), m_Gate(gate) {}

    /// One pass of a loop whose next work is due at a time of the timer. Rests at most a
    /// millisecond. False once the procedure is to end.
    bool Pass(HiResTimer& timer, double due_s) {
        m_Pump.ProcessPendingEvents();
        if (Ended())
            return false;
        const double remaining_s = due_s - timer.ElapsedTime();
        if (remaining_s > 0.0)
            m_Clock.Rest(remaining_s);
        return true;
    }

    /// True once the operator has cancelled or is closing the program.
    bool Ended() const { return m_Gate.CancelRequested() || m_Pump.ProgramEnding(); }

  private:
    Clock& m_Clock;
    EventPump& m_Pump;
    const ProcedureGate& m_Gate;
};

} // namespace ombrix

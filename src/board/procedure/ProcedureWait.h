#pragma once

#include "board/procedure/HiResTimer.h"
#include "board/procedure/ProcedureGate.h"
#include "platform/ports/EventPump.h"

namespace ombrix {

/// The one way in which a procedure lets time pass: events are handled, the processor rests,
/// and a cancel or the end of the program is seen within a pass.
class ProcedureWait {
  public:
    ProcedureWait(Clock& clock, EventPump& pump, const Cancellation& cancel)
        : m_Clock(clock), m_Pump(pump), m_Cancel(cancel) {}

    /// One pass of a loop whose next work is due at a time of the timer. Rests at most a
    /// millisecond. False once the procedure is to end.
    bool Pass(clsHiResTimer& timer, double due_s) {
        m_Pump.ProcessPendingEvents();
        if (Ended())
            return false;
        const double remaining_s = due_s - timer.ElapsedTime();
        if (remaining_s > 0.0)
            m_Clock.Rest(remaining_s);
        return true;
    }

    /// True once the operator has cancelled or is closing the program.
    bool Ended() const { return m_Cancel.Requested() || m_Pump.ProgramEnding(); }

  private:
    Clock& m_Clock;
    EventPump& m_Pump;
    const Cancellation& m_Cancel;
};

} // namespace ombrix

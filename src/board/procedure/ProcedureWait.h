#pragma once

#include "board/Station.h"
#include "board/procedure/AnswerWatch.h"
#include "board/procedure/HiResTimer.h"

namespace ombrix {

/// The one way in which a procedure lets time pass: events are handled, what a board has refused
/// is told to it again, the processor rests, and a cancel or the end of the program is seen within
/// a pass.
class ProcedureWait {
  public:
    explicit ProcedureWait(Station& station)
        : m_Clock(station.World.Time), m_Pump(station.World.Events), m_Gate(station.Procedures),
          m_Outputs(station.Outputs) {}

    /// One pass of a loop whose next work is due at a time of the timer. Rests at most a
    /// millisecond. False once the procedure is to end.
    /// @throws BoardError when a board has not taken for a second what it was told
    bool Pass(HiResTimer& timer, double due_s) {
        m_Pump.ProcessPendingEvents();
        if (Ended())
            return false;
        m_Outputs.TellAgain();
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
    Outputs& m_Outputs;
};

} // namespace ombrix

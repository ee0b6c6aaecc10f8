#pragma once

namespace ombrix {

/// What a long procedure asks of the world around it while it waits.
class EventPump {
  public:
    virtual ~EventPump() = default;

    /// Lets pending events be handled: clicks, repaints, an interrupt from the terminal.
    virtual void ProcessPendingEvents() = 0;
    /// True once the operator has closed the program; a running procedure then ends safely.
    virtual bool ProgramEnding() const = 0;
};

} // namespace ombrix

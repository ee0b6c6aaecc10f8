#pragma once

#include "platform/ports/EventPump.h"

namespace ombrix {

/// The desktop's events. The main window ends the program through it, so that a running
/// procedure sees the end in its next pass.
class QtEventPump final : public EventPump {
  public:
    void ProcessPendingEvents() override;
    bool ProgramEnding() const override { return m_Ending; }

    void EndProgram() { m_Ending = true; }

  private:
    bool m_Ending = false;
};

} // namespace ombrix

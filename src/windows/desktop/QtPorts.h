#pragma once

#include "platform/ports/Platform.h"

#include <functional>

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

/// Documents open in the program that the desktop has for them.
class QtDocumentOpener final : public DocumentOpener {
  public:
    bool OpenDocument(const std::filesystem::path& path) override;
};

/// The process ends as it stands, but for the outputs: windows are not asked, objects not
/// destroyed.
class QtProgramEnd final : public ProgramEnd {
  public:
    /// Makes the bench safe before the process is gone.
    std::function<void()> BeforeEnd = [] {};

    [[noreturn]] void EndProgram(ExitStatus status) override;
};

} // namespace ombrix

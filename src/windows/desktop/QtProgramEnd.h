#pragma once

#include "platform/ports/ProgramEnd.h"

#include <functional>

namespace ombrix {

/// The process ends as it stands, but for the outputs: windows are not asked, objects not
/// destroyed.
class QtProgramEnd final : public ProgramEnd {
  public:
    /// Makes the bench safe before the process is gone.
    std::function<void()> BeforeEnd = [] {};

    [[noreturn]] void EndProgram(ExitStatus status) override;
};

} // namespace ombrix

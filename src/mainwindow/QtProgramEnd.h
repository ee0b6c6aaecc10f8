#pragma once

#include "platform/ProgramEnd.h"

namespace ombrix {

/// The process ends as it stands: windows are not asked, objects not destroyed.
class QtProgramEnd final : public ProgramEnd {
  public:
    [[noreturn]] void EndProgram(ExitStatus status) override;
};

} // namespace ombrix

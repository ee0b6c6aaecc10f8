#include "windows/desktop/QtProgramEnd.h"

#include <cstdlib>

namespace ombrix {

void QtProgramEnd::EndProgram(ExitStatus status) {
    BeforeEnd();
    std::_Exit(static_cast<int>(status));
}

} // namespace ombrix

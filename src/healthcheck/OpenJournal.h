#pragma once

#include "journal/UnfinishedRuns.h"

#include <memory>
#include <string_view>

namespace ombrix {

/// Reads the journal of a run of any kind. @throws JournalError
std::unique_ptr<JournalledRun> OpenJournal(Platform& world, std::string_view text);

} // namespace ombrix

#include "healthcheck/OpenJournal.h"

#include "calibration/history/RecordedRun.h"
#include "healthcheck/HealthCheckJournal.h"
#include "journal/JournalLines.h"

namespace ombrix {

std::unique_ptr<JournalledRun> OpenJournal(Platform& world, std::string_view text) {
    if (KindOfJournal(text) == HealthCheckKind)
        return std::make_unique<RecordedHealthCheck>(text);
    return std::make_unique<RecordedCalibration>(ReadJournal(world, text));
}

} // namespace ombrix

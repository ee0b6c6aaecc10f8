#pragma once

#include "healthcheck/HealthCheckProgramme.h"
#include "healthcheck/MFCStep.h"
#include "journal/RunJournal.h"

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace ombrix {

struct Station;

/// Name of a health check in its journal.
inline constexpr const char* HealthCheckKind = "health-check";

/// Streams a health check to its journal while it runs. One object serves one run.
class HealthCheckRecorder {
  public:
    explicit HealthCheckRecorder(Station& station);

    /// The run begins on the current board; before that, and without a disk that takes the
    /// journal, nothing is written down.
    void Begin(std::span<const HealthCheckOption> options);
    void SequenceBegins(const std::string& sheet, std::span<const StepPlan> steps);
    void StepBegins(std::int32_t index);
    void Sample(const clsMFCStep::Sample& sample);
    /// All has been measured that will be. @param now the date that the sequence is exported with
    void SequenceEnds(OleDate now);
    /// The run has ended. @param files of its report
    void End(const std::string& verdict, const std::vector<std::filesystem::path>& files);

  private:
    Station& m_Station;
    RunJournal m_Journal;
};

} // namespace ombrix

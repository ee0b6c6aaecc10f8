#pragma once

#include "calibration/history/RecordedRun.h"
#include "journal/JournalledRun.h"

#include <utility>

namespace ombrix {

/// A calibration as its journal tells it.
class RecordedCalibration final : public JournalledRun {
  public:
    explicit RecordedCalibration(RecordedRun run) : m_Run(std::move(run)) {}

    bool Ended() const override { return m_Run.Ended; }
    std::string Describe() const override;
    bool HasReport() const override;
    RemadeReport MakeReport(const CalibrationServices& services) const override;
    /// Adds it to the history of its unit.
    bool NoteInterruption(Platform& world, const std::vector<std::string>& files) const override;

  private:
    RecordedRun m_Run;
};

} // namespace ombrix

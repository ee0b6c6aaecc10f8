#pragma once

#include "board/procedure/Outcome.h"
#include "calibration/judge/PointTable.h"

#include <cstddef>
#include <string>

namespace ombrix {

/// The status lines of the stage window, from top to bottom.
enum class StageLine {
    /// Kind and phase of the running calibration (`lblAccessoryCal1`).
    Phase,
    /// What the unit has been told (`lblAccessoryCal2`).
    Demand,
    /// What is being read (`lblAccessoryCal4`).
    Reading,
    /// How long it still takes, or what is wrong (`lblAccessoryCal5`).
    Remaining,
};

/// Where calibrations show: the stages of a sequence, the points of what is being measured, four
/// status lines and a progress bar.
class CalibrationView {
  public:
    virtual ~CalibrationView() = default;

    /// Lists a further stage as "Pending"; the first one makes the view appear.
    virtual void Stage_Add(const std::string& name) = 0;
    /// Marks the next stage as running.
    virtual void Stage_RunNext() = 0;
    /// Marks the running stage as finished.
    virtual void Stage_Complete(End ended) = 0;
    /// Points are about to be measured in the running stage; those before them stay.
    virtual void BeginPoints(const PointTable& table) = 0;
    /// One of them, from 0, has been read, or read again.
    virtual void ShowPoint(std::size_t point, const PointLine& line) = 0;
    virtual void ShowLine(StageLine line, const std::string& text) = 0;
    /// Shows what the operator should look into; it stays until the view goes.
    virtual void ShowWarning(const std::string& text) = 0;
    /// Has the progress bar stand for a span of time, from its beginning.
    virtual void BeginProgress(float span_s) = 0;
    /// @param elapsed_s time since the beginning; held within the span
    virtual void ShowProgress(float elapsed_s) = 0;
    /// Nothing is being measured that a bar could stand for.
    virtual void EndProgress() = 0;
    /// A prompt stands before the view: meanwhile the view takes no input.
    virtual void TakeInput(bool take) = 0;
    /// The sequence is over: the view goes, and with it its stages.
    virtual void Close() = 0;
};

} // namespace ombrix

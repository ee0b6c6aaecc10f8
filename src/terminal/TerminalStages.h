#pragma once

#include "calibration/run/CalibrationView.h"
#include "reports/ReportFile.h"

#include <memory>
#include <string>
#include <vector>

namespace ombrix {

/// A progress bar on standard error; shows nothing where that is no terminal.
class TerminalProgress {
  public:
    TerminalProgress();
    TerminalProgress(const TerminalProgress&) = delete;
    TerminalProgress& operator=(const TerminalProgress&) = delete;
    /// Ends the line, so that what follows does not overwrite the bar.
    ~TerminalProgress();

    /// @param share what is done, 0 to 1
    void Show(double share);

  private:
    bool m_IsTerminal;
    int m_ShownPercent = -1;
};

/// The stage window of a terminal: a line for each stage's result, the phase as a heading, and
/// a progress bar, all on standard error.
class TerminalStages final : public CalibrationView {
  public:
    struct Stage {
        std::string Name;
        /// As the stage window shows it.
        std::string Result;
    };

    const std::vector<Stage>& Stages() const { return m_Stages; }

    void Stage_Add(const std::string& name) override;
    void Stage_RunNext() override;
    void Stage_Complete(End ended) override;
    void BeginPoints(const PointTable& table) override;
    void ShowPoint(std::size_t point, const PointLine& line) override;
    void ShowLine(StageLine line, const std::string& text) override;
    void ShowWarning(const std::string& text) override;
    void BeginProgress(float span_s) override;
    void ShowProgress(float elapsed_s) override;
    void EndProgress() override;
    void TakeInput(bool /*take*/) override {}
    void Close() override;

  private:
    void Show(const std::string& text);

    std::vector<Stage> m_Stages;
    /// How many stages have been begun; the last of them is the running one.
    std::size_t m_Begun = 0;
    std::string m_Phase;
    /// Of the points that are measured.
    std::string m_Points;
    float m_Span_s = 0.0F;
    std::unique_ptr<TerminalProgress> m_Bar;
};

/// Opening a report takes no time worth a word on a terminal.
class NoWaitWindow final : public OpenExcelView {
  public:
    void Show(const std::string& /*message*/) override {}
    void Close() override {}
};

} // namespace ombrix

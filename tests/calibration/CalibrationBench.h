#pragma once

#include "calibration/run/ACUSetUp.h"
#include "support/ReportBench.h"

#include <array>
#include <string>
#include <vector>

namespace ombrix {

/// A stage window that remembers what it showed.
class RecordedStages final : public CalibrationView {
  public:
    std::vector<std::string> Names;
    std::vector<std::string> Results;
    std::vector<std::string> Warnings;
    std::vector<PointTable> Tables;
    std::array<std::string, 4> Lines;
    float Span_s = 0.0F;
    float Progress_s = 0.0F;
    bool Closed = false;

    void Stage_Add(const std::string& name) override { Names.push_back(name); }
    void Stage_RunNext() override { Results.emplace_back("Running..."); }
    void Stage_Complete(End ended) override { Results.back() = StageResult(ended); }
    void BeginPoints(const PointTable& table) override { Tables.push_back(table); }
    void ShowPoint(std::size_t point, const PointLine& line) override {
        Tables.back().Lines.at(point) = line;
    }
    void ShowLine(StageLine line, const std::string& text) override {
        Lines.at(static_cast<std::size_t>(line)) = text;
    }
    void ShowWarning(const std::string& text) override { Warnings.push_back(text); }
    void BeginProgress(float span_s) override { Span_s = span_s; }
    void ShowProgress(float elapsed_s) override { Progress_s = elapsed_s; }
    void EndProgress() override { Span_s = 0.0F; }
    void TakeInput(bool /*take*/) override {}
    void Close() override { Closed = true; }
};

/// A bench with everything that calibrations work with.
class CalibrationBench : public ReportBench {
  public:
    using ReportBench::ReportBench;

    RecordedStages Stages;
    ACUSetUp SetUp{Reports, Stages};
};

} // namespace ombrix

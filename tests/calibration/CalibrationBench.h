#pragma once

#include "calibration/run/ACUSetUp.h"
#include "journal/RunJournal.h"
#include "spreadsheet/LibreOfficeConverter.h"
#include "spreadsheet/XlsxApplication.h"
#include "support/TestBench.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace ombrix {

/// A stage window that remembers what it showed.
class RecordedStages final : public CalibrationView {
  public:
    std::vector<std::string> Names;
    std::vector<std::string> Results;
    std::vector<std::string> Warnings;
    std::array<std::string, 4> Lines;
    float Span_s = 0.0F;
    float Progress_s = 0.0F;
    bool Closed = false;

    void Stage_Add(const std::string& name) override { Names.push_back(name); }
    void Stage_RunNext() override { Results.emplace_back("Running..."); }
    void Stage_Complete(bool aborted, bool passed) override {
        Results.back() = aborted ? "Aborted" : passed ? "Run: Passed" : "Run: Failed";
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

class RecordedWait final : public OpenExcelView {
  public:
    std::vector<std::string> Story;
    void Show(const std::string& message) override { Story.push_back(message); }
    void Close() override { Story.emplace_back("closed"); }
};

/// Keeps the content as it is, so that a ".xls" can be looked into.
class SameContent final : public DocumentConverter {
  public:
    std::string Convert(std::string_view content, std::string_view /*from*/,
                        std::string_view /*to*/) override {
        return std::string(content);
    }
};

/// A bench with everything that calibrations work with; its current board's record is read.
class CalibrationBench {
  public:
    explicit CalibrationBench(const std::string& bench, const std::vector<std::string>& faults = {},
                              std::int32_t board = 0)
        : Bench(bench, faults), Board(Bench.Detect(board)) {
        Bench.Files.Mount(Templates, TEMPLATES_FOLDER);
        Board.Calibration().ReadEPROMValues(Board);
        Bench.Messages.Shown.clear();
    }

    TestBench Bench;
    clsAIB& Board;
    RecordedStages Stages;
    RecordedWait Wait;
    SameContent Converter;
    /// Where workbooks and templates are looked for; the bench's own files unless replaced.
    Drive* WorkbookFiles = &Bench.Files;
    BoardDACSliders Sliders{Bench.TheStation};
    CalibrationServices Services{
        Bench.TheStation,
        Sliders,
        Stages,
        Wait,
        [this] { return std::make_unique<XlsxApplication>(*WorkbookFiles, Converter); },
        std::string(Templates) + "\\"};
    ACUSetUp SetUp{Services};

    clsACUCalibration& Record() { return Board.Calibration(); }
    std::vector<std::int32_t> Eprom() {
        std::vector<std::int32_t> words;
        for (std::int32_t address = 0; address < clsAIB::EPROMBytes; address += 4) {
            words.push_back(0);
            Board.ReadEPROM(address, words.back());
        }
        return words;
    }
    std::string JournalText() const {
        const std::string folder = JournalFolder;
        return Bench.Files.ReadFile(folder + Bench.Files.FilesIn(folder).front());
    }
    /// The texts of the messages shown.
    std::vector<std::string> Told() const {
        std::vector<std::string> texts;
        for (const Message& message : Bench.Messages.Shown)
            texts.push_back(message.Text);
        return texts;
    }

  private:
    static constexpr std::string_view Templates = R"(C:\Program Files\Ombrix\Templates)";
};

} // namespace ombrix

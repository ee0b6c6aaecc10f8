#pragma once

#include "board/eprom/EpromStorage.h"
#include "platform/text/Paths.h"
#include "reports/ReportFile.h"
#include "spreadsheet/XlsxApplication.h"
#include "support/NoConverter.h"
#include "support/TestBench.h"

#include <memory>
#include <string>
#include <vector>

namespace ombrix {

class RecordedWait final : public OpenExcelView {
  public:
    std::vector<std::string> Story;
    void Show(const std::string& message) override { Story.push_back(message); }
    void Close() override { Story.emplace_back("closed"); }
};

/// A bench with everything that report files are made with; its current board's record is read.
class ReportBench {
  public:
    explicit ReportBench(const std::string& bench, const std::vector<std::string>& faults = {},
                         std::int32_t board = 0)
        : Bench(bench, faults), Board(Bench.Detect(board)) {
        Bench.Files.Mount(Templates, TEMPLATES_FOLDER);
        Record().ReadEPROMValues();
        Bench.Messages.Shown.clear();
    }

    TestBench Bench;
    AIB& Board;
    RecordedWait Wait;
    SameContent Converter;
    /// Where workbooks and templates are looked for; the bench's own files unless replaced.
    Drive* WorkbookFiles = &Bench.Files;
    ReportTools Reports{
        Bench.TheStation,
        [this] { return std::make_unique<XlsxApplication>(*WorkbookFiles, Converter); }, Wait,
        std::string(Templates) + "\\"};

    ACUCalibration& Record() { return Bench.TheStation.Calibration(); }
    /// The record as the EPROM holds it, read by one that knows nothing of the runs.
    ACURecord Stored() {
        ACUCalibration stored(Bench.World, Bench.TheStation.Claims, Board);
        stored.ReadEPROMValues();
        return stored.Record();
    }
    /// Cancels what runs.
    void Cancel() { Bench.TheStation.Procedures.Cancel(); }
    std::vector<std::int32_t> Eprom() {
        std::vector<std::int32_t> words;
        for (std::int32_t address = 0; address < EpromBytes; address += 4) {
            words.push_back(0);
            Board.ReadEPROM(address, words.back());
        }
        return words;
    }
    std::string JournalText() const {
        const std::string folder = Paths::Journals;
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

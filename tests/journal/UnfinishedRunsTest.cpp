#include "journal/UnfinishedRuns.h"

#include "calibration/CalibrationBench.h"
#include "calibration/history/RecordedRun.h"
#include "support/FullDisk.h"
#include "support/WorkbookProbe.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

constexpr const char* Journal = R"(C:\Journals\ACU00301_dead.jsonl)";
constexpr const char* Mark = R"(C:\Journals\ACU00301_dead.running)";

/// A bench whose data folder holds what a program left that died in the middle of a run.
class UnfinishedRunsTest : public ::testing::Test {
  protected:
    void DieAt(double at_s, CalibrationKind kind) {
        std::string text;
        m_Bench.Bench.Events.At(at_s, [&] {
            text = m_Bench.JournalText();
            EXPECT_TRUE(Unfinished().empty()) << "a run that is going on";
            m_Bench.Cancel();
        });
        m_Bench.SetUp.RunVelocity(kind);
        EXPECT_TRUE(Unfinished().empty()) << "a run that has been cancelled has ended";
        std::filesystem::remove_all(m_Bench.Bench.Folder.Path() / "History");
        Files().ReplaceFile(Journal, text.substr(0, text.size() - 7));
        Files().ReplaceFile(Mark, "ombrix");
        m_Bench.Bench.Messages.Shown.clear();
    }
    std::vector<UnfinishedRun> Unfinished() { return FindUnfinishedRuns(m_Bench.Bench.World); }
    void Offer(Answer answer) {
        m_Bench.Bench.Messages.Answers = {answer};
        OfferUnfinishedRuns(m_Bench.Bench.World, Readers());
    }
    JournalReaders Readers() {
        JournalReaders readers;
        AddCalibrationReaders(readers, m_Bench.Reports);
        return readers;
    }
    Drive& Files() { return m_Bench.Bench.Files; }

    CalibrationBench m_Bench{"acu"};
};

TEST_F(UnfinishedRunsTest, YesWritesTheReportOfWhatThereIs) {
    DieAt(200.0, CalibrationKind::Audit);
    Offer(Answer::Yes);
    const std::vector<Message>& shown = m_Bench.Bench.Messages.Shown;
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_NE(shown[0].Text.find("13 readings"), std::string::npos) << shown[0].Text;
    EXPECT_EQ(shown[0].Buttons, MessageButtons::YesNoCancel);
    EXPECT_TRUE(Unfinished().empty());
    const CalibrationHistory history = ReadHistory(Files(), 301);
    EXPECT_EQ(history.Runs.at(0).Verdict, InterruptedVerdict);
    ASSERT_EQ(history.Runs[0].Files.size(), 1U) << "no sheet of an audit that has no result";
    WorkbookProbe report(ReadWholeFile(history.Runs[0].Files[0]));
    EXPECT_EQ(report.Value("Report", "M3"), "NOT COMPLETE");
    EXPECT_NE(report.Value("Report", "F13"), "");
    EXPECT_TRUE(Readers().Read(Files().ReadFile(Journal))->Ended());
}

TEST_F(UnfinishedRunsTest, NoRemovesTheJournalAndCancelLeavesItForTheNextStart) {
    DieAt(20.0, CalibrationKind::System);
    Offer(Answer::Cancel);
    EXPECT_EQ(Unfinished().size(), 1U);
    {
        const std::vector<UnfinishedRun> held = Unfinished();
        EXPECT_TRUE(Unfinished().empty()) << "another program is dealing with it";
    }
    Offer(Answer::No);
    EXPECT_FALSE(Files().FileExists(Journal) || Files().FileExists(Mark));
    EXPECT_EQ(ReadHistory(Files(), 301).Runs.at(0).Verdict, InterruptedVerdict);
}

TEST_F(UnfinishedRunsTest, ARunThatCannotBeSettledAtOnceIsWrittenDownOnce) {
    DieAt(20.0, CalibrationKind::System);
    FullDisk disk(Files());
    TestBench& bench = m_Bench.Bench;
    Platform full{bench.Time, bench.Events, bench.Messages, disk, bench.Documents, bench.End};
    const auto run = Readers().Read(Files().ReadFile(Journal));
    EXPECT_THROW(SettleUnfinishedRun(full, Journal, *run, {}), DriveError);
    EXPECT_EQ(Unfinished().size(), 1U) << "asked about again";
    EXPECT_TRUE(SettleUnfinishedRun(bench.World, Journal, *run, {}));
    EXPECT_EQ(ReadHistory(Files(), 301).Runs.size(), 1U);
}

} // namespace
} // namespace ombrix

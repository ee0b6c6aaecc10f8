#include "healthcheck/HealthCheckJournal.h"

#include "healthcheck/HealthCheckRun.h"
#include "journal/UnfinishedRuns.h"
#include "support/ReportBench.h"
#include "support/WorkbookProbe.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

using Option = HealthCheckOption;

HealthCheckResult RunOn(ReportBench& bench, Option option, double cancelAt_s = 0.0) {
    if (cancelAt_s > 0.0)
        bench.Bench.Events.At(cancelAt_s, [&bench] { bench.Cancel(); });
    return HealthCheckRun(bench.Reports).Run(std::array{option}, {});
}

struct JournalCase {
    const char* Name;
    Option What = Option::Short;
    std::vector<std::string> Faults{};
    double CancelAt_s = 0.0;
    std::int32_t PressureConfig = 0;
    std::deque<Answer> Answers{};
};

class HealthCheckJournalTest : public ::testing::TestWithParam<JournalCase> {};

TEST_P(HealthCheckJournalTest, MakesTheRunsOwnReportPartByPart) {
    const JournalCase& c = GetParam();
    ReportBench bench("acu", c.Faults);
    PutWord(bench.Board, ACUMemoryMap::DigitalPressureConfig, c.PressureConfig);
    bench.Record().ReadEPROMValues();
    bench.Bench.Messages.Answers = c.Answers;
    const HealthCheckResult outcome = RunOn(bench, c.What, c.CancelAt_s);
    bench.Bench.Time.Advance(1000.0);
    const RecordedHealthCheck run(bench.Reports, bench.JournalText());
    EXPECT_TRUE(run.Ended());
    const RemadeReport remade = run.MakeReport();
    EXPECT_TRUE(remade.AllStored);
    ASSERT_EQ(outcome.Files.size(), 1U);
    ASSERT_EQ(remade.Files.size(), 1U);
    EXPECT_NE(remade.Files[0], outcome.Files[0]);
    EXPECT_TRUE(PartsOf(remade.Files[0]) == PartsOf(outcome.Files[0]));
}

INSTANTIATE_TEST_SUITE_P(
    Runs, HealthCheckJournalTest,
    ::testing::Values(JournalCase{"Whole"}, JournalCase{"Cancelled", Option::LowCh2, {}, 23.4},
                      JournalCase{"BoardLost", Option::Short, {"unplug@8"}},
                      JournalCase{"TooSlow", Option::Short, {"latency:200"}},
                      JournalCase{"DigitalSensor", Option::Short, {}, 0.0, 1},
                      JournalCase{
                          "OnlyTheLargeGauge", Option::PressureCheck, {}, 0.0, 0, {Answer::No}}),
    [](const auto& info) { return info.param.Name; });

std::size_t SamplesOf(const ReportBench& bench, const std::string& text) {
    return RecordedHealthCheck(bench.Reports, text).SampleCount();
}

TEST(HealthCheckJournalCutTest, LosesWhatStandsBehindTheCutOnly) {
    ReportBench bench("acu");
    const HealthCheckResult outcome = RunOn(bench, Option::Short, 9.0);
    const std::string text = bench.JournalText();
    const std::size_t header = text.find('\n') + 1;
    std::size_t before = 0;
    constexpr std::size_t step = 97; // prime, to fall on every part of a line
    for (std::size_t cut = header; cut <= text.size(); cut += step) {
        const std::size_t samples = SamplesOf(bench, text.substr(0, cut));
        EXPECT_GE(samples, before) << cut;
        before = samples;
    }
    const int measured = outcome.Sequences.at(0).Samples + outcome.Sequences.at(1).Samples;
    EXPECT_EQ(before, static_cast<std::size_t>(measured));
    EXPECT_THROW(SamplesOf(bench, text.substr(0, header) + "?" + text.substr(header)),
                 JournalError);
}

/// What a text editor may do to the first line that begins so.
struct Tampering {
    const char* Name;
    std::string Line;
    /// Nothing takes the line out, the line's own beginning doubles it.
    std::string With;
};

class HealthCheckTamperTest : public ::testing::TestWithParam<Tampering> {};

TEST_P(HealthCheckTamperTest, IsRefusedWithItsLine) {
    const auto& [name, what, with] = GetParam();
    ReportBench bench("acu");
    RunOn(bench, Option::Short);
    std::string text = bench.JournalText();
    const std::size_t place = text.find("\n" + what) + 1;
    ASSERT_NE(place, 0U);
    const std::size_t length = text.find('\n', place) + 1 - place;
    if (with.empty())
        text.erase(place, length);
    else if (with == what)
        text.insert(place, text.substr(place, length));
    else
        text.replace(place, what.size(), with);
    try {
        SamplesOf(bench, text);
        ADD_FAILURE() << "was taken";
    } catch (const JournalError& error) {
        EXPECT_NE(std::string(error.what()).find("damaged in line "), std::string::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, HealthCheckTamperTest,
    ::testing::Values(Tampering{"NoSequence", R"({"sequence":)", ""},
                      Tampering{"SequenceTwice", R"({"sequence":)", R"({"sequence":)"},
                      Tampering{"NoStep", R"({"step":1,)", ""},
                      Tampering{"StepTwice", R"({"step":1,)", R"({"step":1,)"},
                      Tampering{"StepBeyondAll", R"({"step":1,)", R"({"step":1e30,)"},
                      Tampering{"NoSamples", R"({"samples":[[)", ""},
                      Tampering{"SamplesTwice", R"({"samples":[[)", R"({"samples":[[)"},
                      Tampering{"SampleLater", R"({"samples":[[)", R"({"samples":[[9)"},
                      Tampering{"Fraction", R"({"samples":[[)", R"({"samples":[[0.)"},
                      Tampering{"NoSequenceEnd", R"({"sequenceEnd":)", ""},
                      Tampering{"NoDate", R"({"sequenceEnd":"20)", R"({"sequenceEnd":"20-)"},
                      Tampering{"NoMeasured", R"({"measured":)", ""},
                      Tampering{"MeasuredTwice", R"({"measured":)", R"({"measured":)"},
                      Tampering{"EndTwice", R"({"end":)", R"({"end":)"}),
    [](const auto& info) { return info.param.Name; });

TEST(HealthCheckJournalCutTest, ARunWhoseProgramDiedIsOfferedWithAllButItsLastSecond) {
    ReportBench bench("acu");
    Drive& files = bench.Bench.Files;
    bench.Bench.Events.At(9.6, [&] {
        files.ReplaceFile(R"(C:\Journals\dead.jsonl)", bench.JournalText() + R"({"samp)");
        files.ReplaceFile(R"(C:\Journals\dead.running)", "ombrix");
    });
    RunOn(bench, Option::Short, 10.0);
    EXPECT_GE(SamplesOf(bench, files.ReadFile(R"(C:\Journals\dead.jsonl)")), 425U);
    bench.Bench.Messages.Shown.clear();
    files.ReplaceFile(R"(C:\History\ACU00301.jsonl)", ""); // as a program that died leaves it
    JournalReaders readers;
    AddHealthCheckReader(readers, bench.Reports);
    OfferUnfinishedRuns(bench.Bench.World, readers);
    const std::vector<std::string> told = bench.Told();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_NE(told[0].find(": 2 sequences, "), std::string::npos) << told[0];
    const std::string file = told[1].substr(told[1].find('/'));
    WorkbookProbe report(ReadWholeFile(file));
    EXPECT_EQ(report.Value("Overview", "L48"), "To Zero from 20.0");
    EXPECT_EQ(report.Value("Overview", "N48") + report.Value("Overview", "J48"), "--");
    EXPECT_TRUE(report.Value("Overview", "C6").starts_with("Interrupted"));
    EXPECT_NE(report.Value("Zero - Ch2", "A60"), "");
    EXPECT_TRUE(FindUnfinishedRuns(bench.Bench.World).empty());
    const HistoryEntry run = ReadHistory(files, 301).Runs.at(0);
    EXPECT_EQ(run.Verdict + " " + run.Check.Outcome.substr(0, 11), "INCOMPLETE Interrupted");
    EXPECT_EQ(run.Check.NotEvaluated(), 6) << "three of either sequence";
    EXPECT_EQ(run.Files.at(0), file);
}

} // namespace
} // namespace ombrix

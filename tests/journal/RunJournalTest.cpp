#include "journal/RunJournal.h"

#include "calibration/CalibrationBench.h"
#include "calibration/history/RecordedRun.h"
#include "platform/text/SingleJson.h"
#include "support/WorkbookProbe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <sstream>

namespace ombrix {
namespace {

using Kind = CalibrationKind;

/// How many valid readings and how many samples.
std::pair<std::size_t, std::size_t> ContentOf(const RecordedRun& run) {
    std::size_t readings = 0;
    std::size_t samples = 0;
    const auto count = [&](const PointReading& reading) {
        readings += reading.Valid ? 1U : 0U;
        samples += reading.Trace.size();
    };
    for (const ChannelMeasurement& channel : run.Velocity.Measured.Channels) {
        std::for_each(channel.Rising.begin(), channel.Rising.end(), count);
        std::for_each(channel.Falling.begin(), channel.Falling.end(), count);
        for (const StepMeasurement& step : channel.Steps)
            count(step.Reading);
    }
    return {readings, samples};
}

struct ReportCase {
    const char* Name;
    const char* Bench;
    std::vector<std::string> Faults;
    bool Velocity;
    Kind What;
    double CancelAt_s = 0.0;
    std::size_t Workbooks = 1;
};

class JournalReportTest : public ::testing::TestWithParam<ReportCase> {};

TEST_P(JournalReportTest, IsTheRunsOwnPartByPart) {
    const ReportCase& c = GetParam();
    CalibrationBench bench(c.Bench, c.Faults);
    if (c.CancelAt_s > 0.0)
        bench.Bench.Events.At(c.CancelAt_s, [&] { bench.Cancel(); });
    const CalibrationOutcome outcome =
        c.Velocity ? bench.SetUp.RunVelocity(c.What) : bench.SetUp.RunPressure(c.What);
    bench.Bench.Time.Advance(1000.0);
    JournalReaders readers;
    AddCalibrationReaders(readers, bench.Reports);
    const auto run = readers.Read(bench.JournalText());
    EXPECT_TRUE(run->Ended());
    const RemadeReport remade = run->MakeReport();
    EXPECT_TRUE(remade.AllStored);
    EXPECT_NE(run->MakeReport().Files, remade.Files) << "in the same second";
    ASSERT_EQ(remade.Files.size(), c.Workbooks);
    ASSERT_EQ(outcome.Files.size(), 1 + c.Workbooks) << "log and workbooks";
    for (std::size_t i = 0; i < c.Workbooks; ++i) {
        EXPECT_NE(remade.Files[i], outcome.Files[i + 1]);
        EXPECT_TRUE(PartsOf(remade.Files[i]) == PartsOf(outcome.Files[i + 1])) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Runs, JournalReportTest,
    ::testing::Values(ReportCase{"System", "acu", {}, true, Kind::System},
                      ReportCase{"AuditWithSheet", "acu", {}, true, Kind::Audit, 0.0, 2},
                      ReportCase{"WithoutValves", "plain", {"gain:1,3"}, true, Kind::Audit, 0.0, 2},
                      ReportCase{"Failed", "acu", {"hysteresis:0,150"}, true, Kind::System},
                      ReportCase{"NotStored", "acu", {"eprom-readonly"}, true, Kind::System},
                      ReportCase{"CancelledInASweep", "acu", {}, true, Kind::System, 212.3},
                      ReportCase{"CancelledBeforeAStep", "acu", {}, true, Kind::System, 305.0},
                      ReportCase{"CancelledInAStep", "acu", {}, true, Kind::System, 345.0},
                      ReportCase{"BoardLost", "acu", {"unplug@97"}, true, Kind::Audit},
                      ReportCase{"PressureAudit", "plain", {}, false, Kind::Audit}),
    [](const auto& info) { return info.param.Name; });

class JournalledMeansTest : public ::testing::TestWithParam<RunKind> {
  protected:
    static std::string After(const std::string& whole, const std::string& kept,
                             const std::string& line) {
        return whole.substr(kept.size() + line.size() + 1);
    }
};

TEST_P(JournalledMeansTest, EveryResultIsTheMeanOfItsLastSamplesAndNoOtherIsAccepted) {
    CalibrationBench bench("plain");
    const Kind kind = CalibrationKindOf(GetParam());
    if (IsVelocity(GetParam()))
        bench.SetUp.RunVelocity(kind);
    else
        bench.SetUp.RunPressure(kind);
    const std::string whole = bench.JournalText();
    std::istringstream lines(whole);
    const std::size_t column = GetParam() == RunKind::PressureAudit ? 2 : 1;
    const std::size_t result = IsVelocity(GetParam()) ? 0 : 1;
    const double rounding = IsVelocity(GetParam()) ? 0.5 : 1e-3;
    std::string kept;
    std::vector<SingleJson> samples;
    double seconds = 0.0;
    std::size_t checked = 0;
    for (std::string text; std::getline(lines, text); kept += text + "\n") {
        const SingleJson line = SingleJson::parse(text);
        if (line.contains("reading")) {
            seconds = line.at("seconds").get<double>();
            samples.clear();
        } else if (line.contains("samples")) {
            samples.insert(samples.end(), line.at("samples").begin(), line.at("samples").end());
        } else if (line.contains("result")) {
            double sum = 0.0;
            int count = 0;
            for (const SingleJson& sample : samples) {
                if (seconds - sample.at(0).get<double>() >= 3.0)
                    continue;
                sum += sample.at(column).get<double>();
                ++count;
            }
            ASSERT_GE(count, 28);
            EXPECT_NEAR(line.at("result").at(result).get<double>(), sum / count, rounding);
            SingleJson other = line;
            other["result"][result] = line.at("result").at(result).get<double>() + 1.0;
            EXPECT_THROW(ReadJournal(kept + LineOf(other) + "\n"), JournalError);
            other = line;
            other["valid"] = false;
            EXPECT_THROW(ReadJournal(kept + LineOf(other) + "\n" + After(whole, kept, text)),
                         JournalError);
            ++checked;
        }
        if (line.contains("reading") || (line.contains("samples") && checked % 5 != 0))
            continue; // a reading may begin anew
        EXPECT_THROW(ReadJournal(kept + text + "\n" + whole.substr(kept.size())), JournalError)
            << "twice: " << text.substr(0, 40);
        for (const char* needed : {"result", "judged", "channel", "measured"}) {
            if (line.contains(needed)) {
                EXPECT_THROW(ReadJournal(kept + After(whole, kept, text)), JournalError) << needed;
            }
        }
        if (line.contains("measured")) {
            SingleJson other = line;
            other["passed"] = !line.at("passed").get<bool>();
            EXPECT_THROW(ReadJournal(kept + LineOf(other) + "\n"), JournalError);
        }
    }
    EXPECT_GE(checked, 5U);
}

INSTANTIATE_TEST_SUITE_P(Kinds, JournalledMeansTest, ::testing::ValuesIn(RunKinds),
                         [](const auto& info) { return std::to_string(info.index); });

TEST(RunJournalTest, ACutAtAnyByteLosesWhatStandsBehindItOnly) {
    CalibrationBench bench("acu");
    bench.Bench.Events.At(100.0, [&] { bench.Cancel(); });
    bench.SetUp.RunVelocity(Kind::System);
    const std::string text = bench.JournalText();
    const std::size_t header = text.find('\n') + 1;
    std::pair<std::size_t, std::size_t> before;
    constexpr std::size_t step = 61; // prime, to fall on every part of a line
    for (std::size_t cut = header; cut <= text.size(); cut += step) {
        const auto content = ContentOf(ReadJournal(text.substr(0, cut)));
        EXPECT_GE(content, before) << cut;
        before = content;
    }
    EXPECT_EQ(before.first, 6U) << "readings of 15 s";
    const std::string damaged = text.substr(0, header) + "?" + text.substr(header);
    EXPECT_THROW(ReadJournal(damaged), JournalError);
}

TEST(RunJournalTest, AProgramThatDiesLosesASecondAtMost) {
    CalibrationBench bench("acu");
    constexpr double samplesASecond = 10.0; // of the first point, which takes 15 s
    for (const double at_s : {3.0, 3.4, 7.9, 14.9})
        bench.Bench.Events.At(at_s, [&, at_s] {
            const RecordedRun run = ReadJournal(bench.JournalText());
            EXPECT_FALSE(run.Ended);
            EXPECT_GE(static_cast<double>(ContentOf(run).second), (at_s - 1.0) * samplesASecond - 1)
                << at_s;
        });
    bench.Bench.Events.At(15.0, [&] { bench.Cancel(); });
    EXPECT_EQ(bench.SetUp.RunVelocity(Kind::System).Ended, End::Cancelled);
}

TEST(RunJournalTest, SinglesComeBackBitForBit) {
    for (const std::uint32_t bits : {0x3F800001U, 0x00000001U, 0x80000000U, 0x7F7FFFFFU,
                                     0x7F800000U, 0xFF800000U, 0x7FC00000U, 0x42C80147U}) {
        const std::string line = LineOf(ToJson(std::bit_cast<float>(bits)));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(SingleOf(SingleJson::parse(line))), bits) << line;
    }
}

TEST(RunJournalTest, ADiskThatTakesNeitherJournalNorHistoryDoesNotStopTheRun) {
    CalibrationBench bench("acu");
    for (const char* folder : {"Journals", "History"})
        ReplaceWholeFile(bench.Bench.Folder.Path() / folder, "a file in the way");
    const CalibrationOutcome outcome = bench.SetUp.RunVelocity(Kind::System);
    EXPECT_TRUE(outcome.Saved);
    EXPECT_FALSE(outcome.AllStored) << "the history is a result";
    const std::vector<std::string> told = bench.Told();
    ASSERT_EQ(told.size(), 5U) << "each of them once, between the prompts";
    EXPECT_TRUE(told[3].starts_with("The run could not be added to the calibration history:"));
    EXPECT_TRUE(told[4].starts_with("The journal of the calibration could not be written:"));
}

} // namespace
} // namespace ombrix

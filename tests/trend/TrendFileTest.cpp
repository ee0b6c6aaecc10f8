#include "trend/TrendFile.h"

#include "benchtests/DataRecorder.h"
#include "benchtests/DigitalMFCTest.h"
#include "calibration/MeasuredChannels.h"
#include "calibration/report/CalibrationReport.h"
#include "healthcheck/HealthCheckRun.h"
#include "journal/UnitJson.h"
#include "platform/os/FolderDrive.h"
#include "support/NoConverter.h"
#include "support/ReportBench.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

TrendData Read(const std::filesystem::path& path) {
    NoConverter converter;
    TrendProgress progress;
    return ReadTrendFile(path, {{}, {}, "the current board"}, converter, progress);
}

/// A line for each trace: "name time:value …".
std::string Dump(const TrendData& data) {
    std::string text;
    for (const TrendGroup& group : data.Groups) {
        for (const TrendTrace& trace : group.Traces) {
            text += trace.Name;
            for (std::size_t index = 0; index < group.Times.Size(); ++index)
                text += fmt::format(" {:.6g}:{}", group.Times[index], trace.Values[index]);
            text += "\n";
        }
    }
    return text;
}

struct FileCase {
    const char* Name;
    std::string Content;
    /// What the dump, or the error, must hold.
    std::vector<const char*> Told;
    const char* Remarks = "";
};

const std::string Recording = "Timer,CH1 Flow,Ch2 Flow,3v3,Floating\r\n";
std::string JournalOf(const char* kind) {
    ACURecord record;
    record.ChannelCapacity = {5000.0F, 200.0F};
    return LineOf({{"journal", 1},
                   {"kind", kind},
                   {"start", "2026-03-15T10:20:30"},
                   {"program", "ombrix"},
                   {"version", "1"},
                   {"station", "bench"},
                   {"process", 1},
                   {"board", {{"serial", 301}}},
                   {"unit", UnitJson(record)}});
}

class TrendTableTest : public ::testing::TestWithParam<FileCase> {};

TEST_P(TrendTableTest, IsReadLineByLine) {
    const FileCase& c = GetParam();
    const TemporaryFolder folder;
    ReplaceWholeFile(folder.Path() / "file", c.Content);
    std::string told;
    try {
        const TrendData data = Read(folder.Path() / "file");
        told = Dump(data);
        EXPECT_EQ(fmt::format("{}", fmt::join(data.Remarks, " ")), c.Remarks);
    } catch (const TrendFileError& error) {
        told = error.what();
        EXPECT_TRUE(told.find((folder.Path() / "file").string()) != std::string::npos) << told;
        EXPECT_TRUE(told.find("Please choose") != std::string::npos) << told;
    }
    for (const char* part : c.Told)
        EXPECT_TRUE(told.find(part) != std::string::npos) << part << "\nin\n" << told;
}

INSTANTIATE_TEST_SUITE_P(
    Files, TrendTableTest,
    ::testing::Values(
        FileCase{"Recording",
                 Recording + "0,1,2,3,4,5\r\n0.015625,65535,2,3,,5\r\n1E-2,0,0,0,0,0\r\n",
                 {"CH1 flow 0:1 0.015625:65535", "Input 3 (floating) 0:4 0.015625:nan",
                  "Pressure register 0:5"},
                 "The clock was set back in line 4; the times behind it go on from there."},
        FileCase{"PastMidnight",
                 Recording + "9.5,1,2,3,4,5\r\n-86389.5,6,2,3,4,5\r\n-86380,7,2,3,4,5\r\n",
                 {"CH1 flow 9.5:1 10.5:6 20:7"}},
        FileCase{"Marks",
                 Recording + "0,1,2,3,4,5\r\n0.5,,,,,,hose, left one, moved\r\n1,6,2,3,4,5\r\n",
                 {"CH1 flow 0:1 1:6\n"},
                 "Mark at 0.5 s: hose, left one, moved."},
        FileCase{"DamagedLines",
                 Recording + "0,1,2,3,4,5\n1,1,2,3\n2,x,2,3,4,5\n3,1,2,3,4,56,1,2\n,1,2,3,4,5\n"
                             "4,12345678901234567,2,3,4,5\n5,1.25,2,3,4,5\n6,1,2,3,4,5",
                 {"CH1 flow 0:1 4:1.2345678e+16 5:1.25\n"},
                 "4 damaged lines are passed over, the first is line 3. The last line has no end "
                 "and is passed over."},
        FileCase{"SweepBothWays",
                 "Input,Output1,Output2,Output3,Output4\r\n0,1,2,3,4\r\n1000,5,6,7,8\r\n\r\n"
                 "Input,Output1,Output2,Output3,Output4\r\n1000,9,6,7,8\r\n",
                 {"Level set 1:0 2:1000 3:1000", "Input 0 1:1 2:5 3:9"}},
        FileCase{"AirFlowTest",
                 "Timer,Switch,DemandCh0,DemandCh1,FlowCh0,FlowCh1,MeasureCh0,,"
                 "Timer,Switch,FlowCh0,FlowCh1,MeasureCh0\r\n"
                 "0.5,35000, 10,20,30,40,,,0.6,100, 1,2,\r\n",
                 {"Valve 0.5:35000", "Demand CH1 0.5:10", "Measure board 0.5:nan"}},
        FileCase{"DigitalMFCTest",
                 "Timer0,Demand0,Value0,Pressure0,,Timer1,Demand1,Value1,Pressure1,,"
                 "Data0,EndPointUp,EndPointDn\r\n"
                 "0.1,1,2,3,,0,5,6,7,,2,0.5,0.4,0.1\r\n0.2,8,9,9,,0,0,0,0,,Data1,EndPointUp\r\n",
                 {"Flow CH1 0.1:2 0.2:9\n", "Demand CH2 0:5\n"}},
        FileCase{
            "Journal",
            JournalOf("velocity-audit") +
                R"({"channel":1,"capacity_ml_m":200,"demands":[]})"
                "\n{\"reading\":\"rising\",\"point\":0,\"demand\":[70,1.5]}\n"
                "{\"samples\":[[0.1,60],[0.2,6\n"
                "{\"samples\":[[0.1,61],[0.2,62]]}\n"
                "{\"reading\":\"rising\",\"point\":1,\"demand\":[80,1.5]}\n"
                "{\"samples\":[[0.1,63]]}\n{\"samples\":[[0.2,",
            {"Demand CH2 0.1:70 0.2:70 0.2:nan 0.3:80", "Flow CH2 0.1:61 0.2:62 0.2:nan 0.3:63"},
            "Line 4 is damaged and passed over. The last line was cut off and is passed "
            "over."},
        FileCase{"Empty", "", {"line 1 is not the heading"}},
        FileCase{"ForeignTable", "a,b\r\n1,2\r\n", {"line 1 is not the heading"}},
        FileCase{"HeadingAlone", Recording, {"holds no samples"}},
        FileCase{"NoWholeLine", Recording + std::string(3'000'000, '7') + "\n", {"with line 2"}},
        FileCase{"ForeignJournal", "{\"journal\":9}\n", {"line 1", "version 9"}},
        FileCase{"CutOffWorkbook", "PK\x03\x04 and nothing", {"or the journal of the run"}},
        FileCase{"BinaryWorkbookWithoutConverter", "\xD0\xCF\x11\xE0", {"or the journal"}}),
    [](const auto& info) { return info.param.Name; });

TEST(TrendFile, TheReportOfAHealthCheckShowsWhatItsJournalDoes) {
    ReportBench bench("acu");
    const auto result = HealthCheckRun(bench.Reports).Run(std::array{HealthCheckOption::Short}, {});
    const std::string journals = Paths::Journals;
    const TrendData journal =
        Read(bench.Bench.Files.RealPath(journals + bench.Bench.Files.FilesIn(journals).at(0)));
    const TrendData report = Read(result.Files.at(0));
    // The report leaves out samples that repeat what stands before and behind them.
    const TrendGroup& told = report.Groups.at(0);
    ASSERT_GT(told.Times.Size(), 500U);
    constexpr double hair_s = 1e-3;
    for (std::size_t index = 0; index + 1 < told.Times.Size(); ++index) {
        if (told.Times[index + 1] - told.Times[index] < hair_s)
            continue; // one sequence ends and the next one begins
        for (std::size_t trace = 0; trace < told.Traces.size(); ++trace)
            ASSERT_EQ(journal.Groups.at(0).ValueAt(trace, told.Times[index] + hair_s),
                      told.Traces[trace].Values[index])
                << told.Traces[trace].Name << " at " << told.Times[index];
    }
    EXPECT_NEAR(report.End_s(), journal.End_s(), 1e-2);
    EXPECT_EQ(journal.Scales.Capacity_ml_m[1], bench.Record().Record().ChannelCapacity[1]);
    const TrendTrace& pressure = journal.Groups[0].Traces.at(4);
    const auto mBar = pressure.In(TrendUnit::Pressure_mBar, journal.Scales);
    ASSERT_TRUE(mBar);
    EXPECT_NEAR((*mBar)(6553.4), 0.0, 1e-3) << "the sensor's zero";
    EXPECT_FALSE(pressure.In(TrendUnit::Pressure_mBar, report.Scales)) << "no report tells it";
}

TEST(TrendFile, TheTracesOfACalibrationReportHaveItsFullScales) {
    ReportBench bench("acu");
    CalibrationReport report(bench.Reports);
    ASSERT_TRUE(
        report.Open(CalibrationKind::System, bench.Record().Unit(), bench.Bench.Time.Now()));
    report.Fill(GoodRun(CalibrationKind::System), true);
    const auto path = report.Save(CalibrationKind::System).File.value();
    const TrendData data = Read(path);
    ASSERT_EQ(data.Groups.size(), 2U);
    EXPECT_EQ(data.Groups[1].Traces[0].Name, "Flow CH2");
    EXPECT_EQ(data.Scales.Capacity_ml_m, (std::array<std::optional<float>, 2>{5000.0F, 200.0F}));
    EXPECT_EQ(data.Scales.Source, "the report itself");
}

TEST(TrendFile, ReadsWhatTheRecorderAndTheMFCTestWrite) {
    TestBench bench;
    bench.Detect();
    const RecordingResult recorded = TimedRecording(bench.TheStation).Run(2.0, [](double) {});
    const TrendData recording = Read(recorded.Files.at(0));
    EXPECT_EQ(recording.Groups.at(0).Times.Size(), static_cast<std::size_t>(recorded.Lines));
    EXPECT_FALSE(recording.Scales.Any()) << "flows are not guessed";
    const auto tested = DigitalMFCTest(bench.TheStation).Run({});
    const TrendData test = Read(tested.Files.at(0));
    EXPECT_TRUE(test.Remarks.empty());
    EXPECT_NEAR(test.Groups.at(1).Times.Last(), 166.0, 0.1);
}

} // namespace
} // namespace ombrix

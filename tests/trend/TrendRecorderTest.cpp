#include "trend/TrendRecorder.h"

#include "support/TestBench.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>

namespace ombrix {
namespace {

std::string TimesOf(const TrendData& data) {
    std::string text;
    for (const TrendGroup& group : data.Groups) {
        text += text.empty() ? group.Traces[0].Name : " | " + group.Traces[0].Name;
        for (std::size_t index = 0; index < group.Times.Size(); ++index)
            text += fmt::format(" {:.2f}{}", group.Times[index],
                                std::isnan(group.Traces[0].Values[index]) ? "-" : "");
    }
    return text;
}

TEST(TrendRecorder, KeepsReadingsApartDemandsAllAndSilenceAsAGap) {
    TestBench bench;
    AIB& board = bench.Detect();
    TrendRecorder recorder(bench.TheStation);
    const auto read = [&](std::initializer_list<double> pauses_s) {
        for (const double pause_s : pauses_s) {
            bench.Time.Advance(pause_s);
            board.MyGetADC(3);
        }
    };
    read({0.0, 0.005, 0.02, 0.05, 3.0});
    board.SetDAC(3, 100);
    board.SetDAC(3, 200);
    bench.Time.Advance(2.0);
    EXPECT_EQ(TimesOf(recorder.Recorded()),
              "Input 3 of 301 0.00 0.03 0.08 0.08- 3.08 | Output 3 of 301 3.08 3.08");
    const TrendGroup& output = recorder.Recorded().Groups[1];
    EXPECT_EQ(output.ValueAt(0, recorder.Now_s()), 200.0F) << "an output stands until told else";
    const TrendGroup& input = recorder.Recorded().Groups[0];
    EXPECT_FALSE(input.ValueAt(0, recorder.Now_s())) << "nobody has read it since";
    EXPECT_FALSE(input.ValueAt(0, 1.0)) << "in the gap";
    bench.TheStation.Calibration().ReadEPROMValues();
    board.SetDAC(0, 100);
    TrendTrace flow = recorder.Recorded().Groups.at(2).Traces[0];
    EXPECT_TRUE(flow.In(TrendUnit::Flow_ml_m, recorder.Recorded().Scales));
    flow.Serial = 302;
    EXPECT_FALSE(flow.In(TrendUnit::Flow_ml_m, recorder.Recorded().Scales)) << "another unit";
}

TEST(TrendRecorder, ForgetsWhatIsOlderThanADayAndShowsRefusals) {
    TestBench bench("acu", {"status:32@GetADC"});
    AIB& board = bench.Detect();
    TrendRecorder recorder(bench.TheStation);
    constexpr int readings = 200'000;
    for (int reading = 0; reading < readings; ++reading) {
        bench.Time.Advance(1.0);
        board.MyGetADC(3);
    }
    const TrendGroup& group = recorder.Recorded().Groups.at(0);
    EXPECT_NEAR(group.Times.Last(), readings, 1.0);
    EXPECT_NEAR(group.Times[group.Times.First()], readings - 86400.0, 17000.0);
    const TrendTrace& trace = group.Traces[0];
    EXPECT_FALSE(trace.Pyramid.Of(trace.Values, trace.Values.First(), readings).Any());
}

} // namespace
} // namespace ombrix

#include "platform/os/FolderDrive.h"
#include "support/TemporaryFolder.h"
#include "trend/TrendCurve.h"
#include "trend/TrendExport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace ombrix {
namespace {

constexpr float Missing = std::numeric_limits<float>::quiet_NaN();

/// A trace with noise, peaks and gaps at irregular times.
TrendGroup RandomGroup(std::size_t samples, std::mt19937& random) {
    TrendGroup group;
    group.Traces.push_back({"Input 0", TrendSubject::Channel1});
    double time_s = 0.0;
    for (std::size_t index = 0; index < samples; ++index) {
        time_s += random() % 50 == 0 ? 3.0 : 0.01;
        group.Times.Append(time_s);
        group.Traces[0].Append(random() % 40 < 3 ? Missing : static_cast<float>(random() % 65536));
    }
    return group;
}

TrendRange Reckoned(const TrendColumn<float>& values, std::size_t from, std::size_t to) {
    TrendRange range;
    for (std::size_t index = from; index < to; ++index)
        range.Add(values[index]);
    return range;
}

TEST(TrendPyramid, HasTheRangeOfAnyStretchAlsoWhenTheOldestAreDropped) {
    std::mt19937 random(1);
    TrendGroup group = RandomGroup(70'003, random);
    TrendTrace& trace = group.Traces[0];
    for (const std::size_t dropped : {std::size_t{0}, std::size_t{40'000}}) {
        trace.Values.DropBefore(dropped);
        trace.Pyramid.DropBefore(dropped);
        for (int round = 0; round < 300; ++round) {
            const std::size_t first = trace.Values.First();
            const std::size_t from = first + random() % (trace.Values.Size() - first);
            const std::size_t length = round % 2 == 0 ? 40 : trace.Values.Size();
            const std::size_t to = from + random() % std::min(length, trace.Values.Size() - from);
            const TrendRange wanted = Reckoned(trace.Values, from, to);
            const TrendRange range = trace.Pyramid.Of(trace.Values, from, to);
            ASSERT_EQ(range.Least, wanted.Least) << from << " to " << to;
            ASSERT_EQ(range.Largest, wanted.Largest) << from << " to " << to;
        }
    }
    EXPECT_GT(trace.Values.First(), 30'000U);
    EXPECT_LT(trace.Pyramid.Bytes(), trace.Values.Bytes() * 5U);
}

TEST(TrendCurve, ShowsEveryPeakInFewPointsAColumnAndNoLineOverAGap) {
    std::mt19937 random(2);
    const TrendGroup group = RandomGroup(20'000, random);
    const TrendTrace& trace = group.Traces[0];
    const double end_s = group.Times.Last();
    for (const double share : {1.0, 0.1, 0.004}) {
        const CurveWindow window{end_s * 0.3, end_s * (0.3 + 0.7 * share), 500};
        const auto bounds = ColumnBounds(group.Times, window);
        const auto curve = CurveOf(group, trace, bounds, end_s);
        EXPECT_LE(curve.size(), 500U * 5U + 2U);
        for (std::size_t column = 0; column < 500; ++column) {
            const TrendRange wanted = Reckoned(trace.Values, bounds[column], bounds[column + 1]);
            TrendRange drawn;
            for (const CurvePoint& point : curve) {
                const auto index = group.Times.IndexFrom(point.Time_s);
                if (index >= bounds[column] && index < bounds[column + 1])
                    drawn.Add(point.Value);
            }
            ASSERT_EQ(drawn.Least, wanted.Least) << "column " << column;
            ASSERT_EQ(drawn.Largest, wanted.Largest) << "column " << column;
        }
    }
    TrendGroup gap;
    gap.Traces.push_back({"Output 0", TrendSubject::Channel1, true});
    for (const auto& [time_s, value] :
         {std::pair(0.0, 1.0F), {2.0, Missing}, {4.0, 5.0F}, {6.0, 7.0F}}) {
        gap.Times.Append(time_s);
        gap.Traces[0].Append(value);
    }
    std::string corners;
    for (const CurvePoint& point :
         CurveOf(gap, gap.Traces[0], ColumnBounds(gap.Times, {0.0, 10.0, 100}), 9.0))
        corners += fmt::format(" {}:{}", point.Time_s, point.Value);
    EXPECT_EQ(corners, " 0:1 2:1 2:nan 4:nan 4:5 6:5 6:7 9:7") << "held values go in steps";
}

TEST(TrendExport, WritesWhatIsShownInItsUnitsWithEmptyFieldsForWhatIsMissing) {
    TrendData data;
    data.Scales.Capacity_ml_m[0] = 6553.4F;
    data.Groups.resize(2);
    data.Groups[0].Traces.push_back({"Flow", TrendSubject::Channel1});
    data.Groups[1].Traces.push_back({"Register", TrendSubject::PressureRegister});
    for (const auto& [time_s, value] : {std::pair(0.5, 10.0F), {1.0, Missing}, {1.5, 35.0F}}) {
        data.Groups[0].Times.Append(time_s);
        data.Groups[0].Traces[0].Append(value);
    }
    data.Groups[1].Times.Append(1.25);
    data.Groups[1].Traces[0].Append(7.0F);
    const TemporaryFolder folder;
    TrendProgress progress;
    TrendSelection selection{{{0, 0, TrendUnit::Flow_ml_m}, {1, 0, TrendUnit::Bits}}, 0.75, 1.5};
    ExportTrendCsv(folder.Path() / "a.csv", data, selection, progress);
    EXPECT_EQ(ReadWholeFile(folder.Path() / "a.csv"),
              "Time (s),Flow (ml/min),Register (bits)\r\n1,,\r\n1.25,,7\r\n1.5,3.5,\r\n");
    progress.Cancelled = true;
    ExportTrendCsv(folder.Path() / "b.csv", data, selection, progress);
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "b.csv"));
    progress.Cancelled = false;
    EXPECT_THROW(ExportTrendCsv(folder.Path() / "no/c.csv", data, selection, progress), DriveError);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

} // namespace
} // namespace ombrix

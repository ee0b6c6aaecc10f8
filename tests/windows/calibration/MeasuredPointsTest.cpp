// What the windows of a run show of what it measures, in every size.
#include "platform/text/Text.h"
#include "windows/EveryWindow.h"

#include <QTreeWidget>
#include <fmt/format.h>

namespace ombrix {
namespace {

struct RunCase {
    const char* Name;
    const char* Bench;
    const char* Fault;
    const char* Action;
    /// How a line of the log begins and ends, with the cells of a point for "{0}", "{1}" ….
    const char* LogLine;
    const char* LogEnd;
    int Failures;
    const char* Reason;
};

struct PointRow {
    std::vector<std::string> Cells;
    std::string Reason;
};

/// The points as they stand when the last question is asked.
std::vector<PointRow> PointsIn(QWidget& window) {
    std::vector<PointRow> rows;
    const auto& list = WindowBench::FindIn<QTreeWidget>(window, "lvwPoints");
    for (int group = 0; group < list.topLevelItemCount(); ++group) {
        for (int point = 0; point < list.topLevelItem(group)->childCount(); ++point) {
            const QTreeWidgetItem& item = *list.topLevelItem(group)->child(point);
            PointRow& row = rows.emplace_back();
            for (int column = 0; column < list.columnCount(); ++column)
                row.Cells.push_back(item.text(column).toStdString());
            if (item.childCount() > 0)
                row.Reason = item.child(0)->text(0).toStdString();
        }
    }
    return rows;
}

/// The figure alone, without its unit.
std::string FigureOf(const std::string& cell) {
    return cell.substr(0, cell.find(' '));
}

class MeasuredPointsTest : public ::testing::TestWithParam<RunCase> {};

TEST_P(MeasuredPointsTest, HaveTheFiguresOfTheLogAndTheJournal) {
    const RunCase& c = GetParam();
    WindowBench bench(c.Bench, {c.Fault});
    std::vector<PointRow> rows;
    QString time;
    bench.LookRarely([] {});
    bench.Bench.Messages.WhileAsked = [&](const Message& /*message*/) {
        QWidget* window = WindowBench::StageWindow();
        if (window == nullptr || PointsIn(*window).empty())
            return;
        rows = PointsIn(*window);
        time = WindowBench::FindIn<QLabel>(*window, "lblTime").text();
    };
    bench.Find<QAction>(c.Action).trigger();
    const HistoryEntry run =
        ReadHistory(bench.Bench.Files, bench.Bench.TheStation.CurrentAIB->SerialNumber())
            .Runs.at(0);
    const std::string log = ReadWholeFile(run.Files.at(0));
    int failures = 0;
    ASSERT_FALSE(rows.empty());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const auto& [cells, reason] = rows[index];
        const bool failed = cells.back() == "✗ Failed";
        EXPECT_TRUE(failed || cells.back() == "✓ Passed") << cells.back();
        EXPECT_EQ(reason.find(c.Reason) != std::string::npos, failed) << reason;
        failures += failed ? 1 : 0;
        const auto filled = [&cells = rows[index].Cells, failed, index](std::string text) {
            for (std::size_t column = 0; column < cells.size(); ++column)
                text = ReplaceAll(text, fmt::format("{{{}}}", column), FigureOf(cells[column]));
            text = ReplaceAll(text, "{verdict}", failed ? "Fail" : "Pass");
            return ReplaceAll(text, "{index}", std::to_string(index));
        };
        const std::size_t line = log.find(filled(c.LogLine));
        ASSERT_NE(line, std::string::npos) << filled(c.LogLine);
        const std::string whole = log.substr(line, log.find('\n', line) - line);
        EXPECT_NE(whole.find(filled(c.LogEnd)), std::string::npos) << whole;
        if (run.Kind == RunKind::VelocityAudit) { // what the journal has kept
            const ChannelMeasurement& measured = run.Velocity.Channels.at(index / 10);
            EXPECT_EQ(cells[3], GeneralText(measured.Rising.at(index % 10).Flow_ml_m));
        }
    }
    EXPECT_EQ(failures, c.Failures);
    EXPECT_TRUE(time.contains(" of ")) << time.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Runs, MeasuredPointsTest,
    ::testing::Values(RunCase{"VelocityAudit", "acu", "gain:1,2", "mnuVelocityAudit",
                              "Checking Point {0},{1},{3},{4},{5},<-- {verdict} (", "than {7}", 9,
                              "off its demand"},
                      RunCase{"VelocitySystem", "acu", "hysteresis:0,150", "mnuVelocitySystem",
                              "Checking Point {0},{3},{4},{6},<-- {verdict} (", ",{6} is", 8,
                              "off the rising one"},
                      RunCase{"PressureAudit", "acu", "pressure-frozen", "mnuPressureAudit",
                              "Calibration Point {verdict}ed: {index}:  {1}:  {2}: ", "({4})", 4,
                              "reads"}),
    [](const auto& info) { return info.param.Name; });

TEST(RunWindows, FitAScreenOf853By480WithTheirCancelInSight) {
    constexpr QSize small(853, 480);
    for (const auto& show : {ShowHealthCheck, ShowStages})
        show([&](QWidget& window) {
            EXPECT_LE(window.width(), small.width()) << "at first too: this screen has 800 pixels";
            window.resize(small);
            QCoreApplication::processEvents();
            EXPECT_EQ(window.size(), small) << window.objectName().toStdString();
            const auto& cancel = WindowBench::FindIn<QWidget>(window, "cmdCancel");
            const QRect place(cancel.mapTo(&window, QPoint()), cancel.size());
            EXPECT_TRUE(window.rect().contains(place)) << window.objectName().toStdString();
        });
}

} // namespace
} // namespace ombrix

#include "windows/trend/TrendWindow.h"

#include "board/unit/CalibrationSummary.h"
#include "platform/os/FolderDrive.h"
#include "windows/WindowBench.h"
#include "windows/trend/TrendPlotWidget.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QProgressBar>
#include <QTreeWidget>
#include <QWheelEvent>
#include <fmt/format.h>

namespace ombrix {
namespace {

class TrendWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ReadCalibrationSummary(m_Bench.Bench.TheStation.Calibration());
        Trigger();
        m_Window = dynamic_cast<TrendWindow*>(WindowBench::TopLevel("frmTrend"));
        ASSERT_NE(m_Window, nullptr);
        m_Window->AskFileToWrite = [this](const QString& proposed, const auto& chosen) {
            chosen(File(proposed));
        };
    }
    void Trigger() { m_Bench.Find<QAction>("mnuTrend").trigger(); }
    QString File(const QString& name) {
        return QString::fromStdString((m_Bench.Bench.Folder.Path() / name.toStdString()).string());
    }
    template <class Control>
    Control& Find(const char* name) {
        return WindowBench::FindIn<Control>(*m_Window, name);
    }
    TrendPlotWidget& Plot() { return Find<TrendPlotWidget>("picTrend"); }
    double Span_s() { return Plot().Scene().To_s - Plot().Scene().From_s; }
    QString Cell(int row, int column) {
        return Find<QTreeWidget>("lvwTraces").topLevelItem(row)->text(column);
    }
    void Click(const char* button) {
        QTest::mouseClick(&Find<QAbstractButton>(button), Qt::LeftButton);
        AwaitJob();
    }
    void AwaitJob() {
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return !Find<QProgressBar>("prgTrend").isVisible(); }));
    }
    void Open(const std::string& content) {
        ReplaceWholeFile(File("Data_1.csv").toStdString(), content);
        m_Window->ShowFile(File("Data_1.csv"));
        AwaitJob();
        m_Window->grab(); // laid out
    }
    /// 100 s, a line a second; flow 1 rises by 655.34 bits (1 %) a second.
    static std::string Ramp() {
        std::string text = "Timer,CH1 Flow,Ch2 Flow,3v3,Floating\r\n";
        for (int second = 0; second <= 100; ++second)
            text += fmt::format("{},{:.2f},1,2,3,4\r\n", second, second * 655.34);
        return text;
    }

    WindowBench m_Bench{"acu"};
    TrendWindow* m_Window = nullptr;
};

TEST_F(TrendWindowTest, ARecordingIsZoomedAndPannedByWheelBoxDragAndKeys) {
    Open(Ramp());
    EXPECT_NEAR(Span_s(), 100.0, 1e-9);
    const QPointF middle = QRectF(Plot().rect()).center();
    QWheelEvent wheel(middle, Plot().mapToGlobal(middle), {}, {0, 120}, {}, {}, {}, false);
    QApplication::sendEvent(&Plot(), &wheel);
    EXPECT_NEAR(Span_s(), 80.0, 1e-9);
    m_Window->grab();
    const double before_s = Plot().Scene().From_s;
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, {300, 200});
    QTest::mouseMove(&Plot(), {200, 200});
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, {200, 200});
    EXPECT_GT(Plot().Scene().From_s, before_s + 5.0) << "the picture follows the hand";
    EXPECT_NEAR(Span_s(), 80.0, 1e-9);
    QTest::mousePress(&Plot(), Qt::RightButton, {}, {200, 100});
    QTest::mouseMove(&Plot(), {300, 200});
    QTest::mouseRelease(&Plot(), Qt::RightButton, {}, {300, 200});
    EXPECT_LT(Span_s(), 30.0);
    ASSERT_TRUE(Plot().Scene().Spans[0]);
    EXPECT_LT(Plot().Scene().Spans[0]->Largest - Plot().Scene().Spans[0]->Least, 40000.0);
    QTest::keyClick(&Plot(), Qt::Key_Home);
    EXPECT_NEAR(Span_s(), 100.0, 1e-9);
    EXPECT_FALSE(Plot().Scene().Spans[0]);
    QTest::keyClick(&Plot(), Qt::Key_Plus);
    EXPECT_NEAR(Span_s(), 80.0, 1e-9);
}

TEST_F(TrendWindowTest, CursorsTellTheirDifferenceInTheUnitThatIsChosen) {
    Open(Ramp());
    Find<QCheckBox>("chkCursors").click();
    EXPECT_EQ(Find<QLabel>("lblTrendCursors").text().toStdString(),
              "A 33.333 s   B 66.667 s   B − A 33.333 s");
    auto& units = Find<QComboBox>("cboAirUnit");
    EXPECT_EQ(units.count(), 3) << "the current board's unit is known";
    units.setCurrentIndex(1);
    EXPECT_EQ(Cell(0, 5), "33.00");
    units.setCurrentIndex(2);
    EXPECT_EQ(Cell(0, 5), "1650.00");
    EXPECT_EQ(Cell(3, 1), "--") << "what floats is no flow";
    QTest::keyClick(&Plot(), Qt::Key_Right, Qt::ControlModifier);
    EXPECT_FALSE(Find<QLabel>("lblTrendCursors").text().startsWith("A 33.333 s"));
    EXPECT_EQ(Find<QLabel>("lblTrendState").text().toStdString(),
              "ml/min and mBar are those of ACU00301, the current board.");
}

TEST_F(TrendWindowTest, WhatIsShownIsExported) {
    Open(Ramp());
    Find<QComboBox>("cboAirUnit").setCurrentIndex(1);
    auto& traces = Find<QTreeWidget>("lvwTraces");
    for (int row = 1; row < traces.topLevelItemCount(); ++row)
        traces.topLevelItem(row)->setCheckState(0, Qt::Unchecked);
    Plot().ShowTimes(9.5, 11.0);
    Click("cmdExportCSV");
    EXPECT_EQ(ReadWholeFile(File("trend.csv").toStdString()),
              "Time (s),CH1 flow (% of full scale)\r\n10,10\r\n11,11\r\n");
    Click("cmdExportPNG");
    EXPECT_EQ(QImage(File("trend.png")).size(), QSize(1600, 900));
}

TEST_F(TrendWindowTest, WhatIsWrongWithAFileIsToldAndTheEarlierOneStays) {
    Open(Ramp());
    Open("Nonsense\r\n");
    const QString state = Find<QLabel>("lblTrendState").text();
    EXPECT_TRUE(state.contains("Data_1.csv is of no kind")) << state.toStdString();
    EXPECT_EQ(Cell(0, 0), "CH1 flow");
    Click("cmdLive");
    EXPECT_TRUE(m_Window->windowTitle().startsWith("Trend - Live since 2024-03-15 "));
}

TEST_F(TrendWindowTest, LiveFollowsWhateverReadsTheBoardsUntilPaused) {
    m_Bench.Find<QAction>("mnuTrend").trigger();
    m_Bench.Update();
    m_Bench.Bench.Time.Advance(1.0);
    m_Bench.Bench.TheStation.Outputs.Set(*m_Bench.Bench.TheStation.CurrentAIB, 3, 5000);
    Trigger();
    EXPECT_NEAR(Plot().Scene().To_s, 1.0, 1e-6);
    QStringList names;
    for (int row = 0; row < Find<QTreeWidget>("lvwTraces").topLevelItemCount(); ++row)
        names << Cell(row, 0) + "=" + Cell(row, 2);
    EXPECT_TRUE(names.contains("Output 3 of 301=5000")) << names.join(' ').toStdString();
    ASSERT_EQ(names.filter("Pressure register of 301").size(), 1);
    EXPECT_FALSE(names.filter("Pressure register of 301")[0].endsWith("--")) << "read a second ago";
    QTest::keyClick(&Plot(), Qt::Key_Space);
    m_Bench.Bench.Time.Advance(30.0);
    Trigger();
    EXPECT_NEAR(Plot().Scene().To_s, 1.0, 1e-6) << "paused";
    QTest::keyClick(&Plot(), Qt::Key_Space);
    Trigger();
    EXPECT_NEAR(Plot().Scene().To_s, 31.0, 1e-6);
}

} // namespace
} // namespace ombrix

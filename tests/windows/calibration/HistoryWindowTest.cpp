#include "calibration/MeasuredChannels.h"
#include "calibration/history/CalibrationHistory.h"
#include "journal/RunJournal.h"
#include "platform/text/Paths.h"
#include "windows/WindowBench.h"
#include "windows/calibration/CalibrationHistoryWindow.h"
#include "windows/calibration/DriftPlotWidget.h"
#include "windows/calibration/UnitsWindow.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace ombrix {
namespace {

class HistoryWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const std::int32_t serial : {301, 301, 12}) {
            HistoryEntry run;
            run.Kind = RunKind::VelocitySystem;
            run.Serial = serial;
            run.When = OleDate(45000.0 + static_cast<double>(++m_Days));
            run.Verdict = VerdictOf(End::Failed);
            run.Reasons = {"Channel 2"};
            run.Velocity = GoodRun(CalibrationKind::System).Measured;
            AppendToHistory(m_Bench.Bench.World, run);
        }
        m_Bench.Bench.Files.OpenForAppending(R"(C:\History\ACU00301.jsonl)")->Write("damaged\n");
        m_Bench.Find<QAction>("mnuCalibrationHistory").trigger();
        m_Window =
            dynamic_cast<CalibrationHistoryWindow*>(WindowBench::TopLevel("frmCalibrationHistory"));
        ASSERT_NE(m_Window, nullptr);
    }
    template <class Control>
    Control& Find(const char* name) {
        return WindowBench::FindIn<Control>(*m_Window, name);
    }
    const Drift& Plotted() { return Find<DriftPlotWidget>("picDrift").Shown(); }
    QString State() { return Find<QLabel>("lblHistoryState").text(); }
    /// Takes the name that is proposed.
    std::string Export(const char* button) {
        QString file;
        m_Window->AskFileToWrite = [&file](const QString& proposed, const auto& chosen) {
            file = proposed;
            chosen(proposed);
        };
        QTest::mouseClick(&Find<QPushButton>(button), Qt::LeftButton);
        EXPECT_EQ(State(), "Written: " + file);
        EXPECT_EQ(std::filesystem::path(file.toStdString()).parent_path(),
                  m_Bench.Bench.Files.RealPath(Paths::DriveC));
        return ReadWholeFile(file.toStdString());
    }

    WindowBench m_Bench{"none"};
    CalibrationHistoryWindow* m_Window = nullptr;
    int m_Days = 0;
};

TEST_F(HistoryWindowTest, ShowsTheRunsOfTheChosenUnitAndTheirDrift) {
    auto& units = Find<QComboBox>("cboUnit");
    EXPECT_EQ(units.itemText(0), "ACU00012");
    units.setCurrentIndex(1);
    const auto& runs = Find<QTreeWidget>("lvwRuns");
    ASSERT_EQ(runs.topLevelItemCount(), 2);
    EXPECT_EQ(runs.topLevelItem(1)->text(2), "failed");
    EXPECT_TRUE(Find<QPlainTextEdit>("txtDetails").toPlainText().contains("Channel 2\n"));
    EXPECT_EQ(State().left(9), "1 damaged");
    EXPECT_EQ(Plotted().Series.size(), 10U);
    EXPECT_EQ(Plotted().Runs.size(), 2U);
    auto& plot = Find<DriftPlotWidget>("picDrift");
    EXPECT_EQ(plot.MarkedRun(), 1U);
    const QImage marked = plot.Picture({400, 300});
    Find<QTreeWidget>("lvwRuns").setCurrentItem(runs.topLevelItem(0));
    EXPECT_EQ(plot.MarkedRun(), 0U);
    EXPECT_NE(plot.Picture({400, 300}), marked);
    Find<QComboBox>("cboKind").setCurrentIndex(2);
    EXPECT_TRUE(Plotted().Series.empty());
    EXPECT_FALSE(plot.MarkedRun());
    Find<QTreeWidget>("lvwRuns").setCurrentItem(runs.topLevelItem(1));
    EXPECT_EQ(plot.MarkedRun(), 1U) << "the plot is that of the run which is looked at";
}

TEST_F(HistoryWindowTest, ExportsThePlotAsAPictureAndTheRunsAsATable) {
    const QImage plot = QImage::fromData(QByteArray::fromStdString(Export("cmdExportPNG")), "PNG");
    EXPECT_EQ(plot.size(), QSize(1200, 675));
    EXPECT_TRUE(Export("cmdExportCSV").starts_with("when,unit,station,"));
    EXPECT_TRUE(Export("cmdExportCSV").starts_with("when,unit,station,"));
    EXPECT_TRUE(State().endsWith("ACU00012_history (2).csv")) << State().toStdString();
}

TEST_F(HistoryWindowTest, AnUnfinishedRunIsOfferedAtTheStart) {
    Drive& files = m_Bench.Bench.Files;
    files.CreateFolder(Paths::Journals);
    for (const char* file : {R"(C:\Journals\dead.jsonl)", R"(C:\Journals\dead.running)"})
        files.ReplaceFile(file, "");
    m_Bench.Window.OfferUnfinishedRuns();
    EXPECT_TRUE(files.FilesIn(Paths::Journals).empty())
        << "nothing to report: discarded, as agreed";
}

TEST_F(HistoryWindowTest, AUnitOfTheListOpensItsHistory) {
    m_Window->close();
    m_Bench.Find<QAction>("mnuUnits").trigger();
    auto& window = dynamic_cast<UnitsWindow&>(*WindowBench::TopLevel("frmUnits"));
    auto& list = WindowBench::FindIn<QTreeWidget>(window, "lvwUnits");
    ASSERT_EQ(list.topLevelItemCount(), 2);
    auto& filter = WindowBench::FindIn<QLineEdit>(window, "txtFilter");
    QTest::keyClicks(&filter, "acu00301");
    EXPECT_TRUE(list.topLevelItem(0)->isHidden());
    QTreeWidgetItem* unit = list.topLevelItem(1);
    EXPECT_FALSE(unit->isHidden());
    EXPECT_EQ(unit->text(5), "2023-03-17, due") << "it has failed";
    window.AskFileToWrite = [](const QString& proposed, const auto& chosen) { chosen(proposed); };
    QTest::mouseClick(&WindowBench::FindIn<QPushButton>(window, "cmdExportCSV"), Qt::LeftButton);
    const std::string csv = m_Bench.Bench.Files.ReadFile(R"(C:\units.csv)");
    EXPECT_EQ(csv.find("\r\n12,"), std::string::npos) << "filtered out: " << csv;
    EXPECT_NE(csv.find("\r\n301,"), std::string::npos) << csv;
    list.setCurrentItem(unit);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_TRUE(m_Window->isVisible());
    EXPECT_EQ(Find<QComboBox>("cboUnit").currentText(), "ACU00301");
}

} // namespace
} // namespace ombrix

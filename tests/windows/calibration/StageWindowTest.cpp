#include "board/unit/CalibrationSummary.h"
#include "support/TestBench.h"
#include "windows/calibration/ACUCalibrationWindow.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/ProgressBar.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

class StageWindowTest : public ::testing::Test {
  protected:
    StageWindowTest() {
        m_Bench.Detect();
        ReadCalibrationSummary(m_Bench.TheStation.Calibration());
    }

    template <class Control>
    Control& Find(const char* name) {
        return *m_Window.findChild<Control*>(QLatin1String(name));
    }
    QTreeWidget& List() { return Find<QTreeWidget>("lvwStage"); }
    QString Cell(int line, int column) { return List().topLevelItem(line)->text(column); }
    QString Result(int line) { return Cell(line, 2); }
    QString Text(const char* label) { return Find<QLabel>(label).text(); }
    QString Progress() { return Find<ProgressBar>("ctrlProgressBar").accessibleDescription(); }
    void Add(int stages) {
        for (int stage = 1; stage <= stages; ++stage)
            m_Window.Stage_Add("Velocity System Calibration (" + std::to_string(stage) + " of 8)");
        QCoreApplication::processEvents();
    }
    QMessageBox* Question() { return m_Window.findChild<QMessageBox*>("boxWhileRunning"); }
    ProcedureGate& Procedures() { return m_Bench.TheStation.Procedures; }

    TestBench m_Bench;
    ACUCalibrationWindow m_Window{m_Bench.TheStation};
};

TEST_F(StageWindowTest, ComesAsDesignedWithTheFirstStageOfEverySequence) {
    EXPECT_EQ(Text("lblCalMsg"), "Calibrating Aeration Control Unit");
    for (const int stages : {2, 1}) {
        EXPECT_FALSE(m_Window.isVisible());
        Add(stages);
        EXPECT_TRUE(m_Window.isVisible());
        EXPECT_EQ(List().topLevelItemCount(), stages);
        EXPECT_EQ(Text("lblUnit"), "ACU00301   MFC number M9200301A");
        EXPECT_EQ(Text("lblAccessoryCal1"), "Calibration Initialising");
        EXPECT_EQ(Text("lblAccessoryCal5"), "-");
        EXPECT_EQ(Progress(), "");
        m_Window.Stage_RunNext();
        m_Window.ShowLine(StageLine::Phase, "phase");
        m_Window.ShowLine(StageLine::Remaining, "remaining");
        m_Window.BeginProgress(35.0F);
        m_Window.ShowProgress(36.0F);
        EXPECT_EQ(Progress(), "100%");
        m_Window.BeginProgress(20.0F);
        m_Window.ShowProgress(5.0F);
        EXPECT_EQ(Progress(), "25%");
        m_Window.Close();
    }
    Add(1);
    EXPECT_TRUE(m_Window.close()); // nothing runs
}

TEST_F(StageWindowTest, SequenceMovesDownTheStagesAndColoursTheirResultsWhateverIsClicked) {
    Add(3);
    EXPECT_EQ(Cell(1, 1), "Velocity System Calibration (2 of 8)");
    EXPECT_TRUE(List().selectedItems().isEmpty());
    int line = 0;
    for (const auto& [ended, text, colour] :
         {std::tuple(End::Passed, "Run: Passed", QColor(0, 255, 0)),
          {End::NotStored, "Run: Failed", QColor(255, 128, 128)},
          {End::Cancelled, "Aborted", QColor(255, 0, 0)}}) {
        const QTreeWidgetItem* item = List().topLevelItem(line);
        EXPECT_EQ(Cell(line, 0), QString::number(line + 1));
        EXPECT_EQ(Result(line), "Pending");
        m_Window.Stage_RunNext();
        EXPECT_EQ(Result(line), "Running...");
        EXPECT_EQ(item->foreground(2).color(), QColor(0, 0, 255));
        EXPECT_EQ(List().selectedItems().value(0), item);
        const QRect last = List().visualItemRect(List().topLevelItem(2));
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, last.center());
        m_Window.Stage_Complete(ended);
        EXPECT_EQ(Result(line), text);
        EXPECT_EQ(item->foreground(2).color(), colour);
        ++line;
    }
    m_Window.Stage_RunNext(); // none is left to run
    EXPECT_EQ(Result(2), "Aborted");
}

/// The ground of a picture, which most of it has, against what is printed most boldly on it.
double ContrastOf(const QImage& picture) {
    const QColor ground = picture.pixelColor(picture.width() - 2, picture.height() / 2);
    double best = 1.0;
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y)
            best = std::max(best, Contrast(picture.pixelColor(x, y), ground));
    }
    return best;
}

TEST_F(StageWindowTest, ResultsAreReadableOnLightAndDarkPalettes) {
    constexpr double readable = 3.0; // after the softened edges of small letters
    const QPalette light = QApplication::palette();
    const QPalette dark(Qt::white, QColor(42, 45, 50));
    Add(5);
    for (const End ended : {End::Passed, End::Failed, End::Cancelled}) {
        m_Window.Stage_RunNext();
        m_Window.Stage_Complete(ended);
    }
    m_Window.Stage_RunNext();
    for (const QPalette& palette : {light, dark}) {
        m_Window.setPalette(palette);
        for (int line = 0; line < 5; ++line) {
            const QModelIndex cell = List().model()->index(line, 2);
            const QPixmap shown = List().viewport()->grab(List().visualRect(cell));
            EXPECT_GE(ContrastOf(shown.toImage()), readable) << Result(line).toStdString();
        }
    }
}

TEST_F(StageWindowTest, LinesHaveTheirLabelsAndLongOnesDoNotMoveTheWindow) {
    Add(8);
    const QSize before = m_Window.size();
    for (const auto& [line, label] : {std::pair(StageLine::Phase, "lblAccessoryCal1"),
                                      {StageLine::Demand, "lblAccessoryCal2"},
                                      {StageLine::Reading, "lblAccessoryCal4"},
                                      {StageLine::Remaining, "lblAccessoryCal5"}}) {
        m_Window.ShowLine(line, label);
        EXPECT_EQ(Text(label), label);
        m_Window.ShowLine(line, std::string(300, 'W'));
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(m_Window.size(), before);
    EXPECT_LE(m_Window.minimumSizeHint().width(), before.width());
    EXPECT_FALSE(List().verticalScrollBar()->isVisible());
    EXPECT_FALSE(List().horizontalScrollBar()->isVisible());
}

TEST_F(StageWindowTest, CancelButtonAndEscapeReachTheRunningCalibrationOnce) {
    for (const bool byKey : {false, true}) {
        Add(1);
        const RunningProcedure procedure(Procedures(), "test");
        auto& button = Find<QPushButton>("cmdCancel");
        EXPECT_EQ(button.text(), "Cancel");
        if (byKey)
            QTest::keyClick(&m_Window, Qt::Key_Escape);
        else
            QTest::mouseClick(&button, Qt::LeftButton);
        EXPECT_TRUE(Procedures().CancelRequested());
        EXPECT_FALSE(button.isEnabled());
        m_Window.Close();
        EXPECT_TRUE(button.isEnabled());
    }
}

TEST_F(StageWindowTest, ClosingInMidRunAsksAndCancelsOnYes) {
    for (const bool answered : {false, true}) {
        Add(1);
        {
            const RunningProcedure procedure(Procedures(), "test");
            EXPECT_FALSE(m_Window.close());
            ASSERT_TRUE(Question() != nullptr && Question()->isVisible());
            EXPECT_EQ(Question()->text(),
                      "The calibration is running.\n\nCancel it and close the window?");
            if (answered)
                QTest::mouseClick(Question()->button(QMessageBox::Yes), Qt::LeftButton);
            EXPECT_EQ(Procedures().CancelRequested(), answered);
            EXPECT_TRUE(m_Window.isVisible()); // until the sequence has ended
        }
        m_Window.Close();
        // A question that stands at the end is withdrawn.
        EXPECT_TRUE(Question() == nullptr || !Question()->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace
} // namespace ombrix

#include "calibration/frmACUCalibration.h"
#include "calibration/modACUCalibration.h"
#include "support/ReadableColour.h"
#include "support/TestBench.h"
#include "support/ctrlProgressBar.h"

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
    StageWindowTest() { ReadCalibrationSummary(m_Bench.Detect()); }

    template <class Control>
    Control& Find(const char* name) {
        return *m_Window.findChild<Control*>(QLatin1String(name));
    }
    QTreeWidget& List() { return Find<QTreeWidget>("lvwStage"); }
    QString Cell(int line, int column) { return List().topLevelItem(line)->text(column); }
    QString Result(int line) { return Cell(line, 2); }
    QString Text(const char* label) { return Find<QLabel>(label).text(); }
    void Add(int stages) {
        for (int stage = 1; stage <= stages; ++stage)
            m_Window.Stage_Add("Velocity System Calibration (" + std::to_string(stage) + " of 8)");
        QCoreApplication::processEvents();
    }
    QMessageBox* Question() { return m_Window.findChild<QMessageBox*>("boxWhileRunning"); }
    clsACUCalibration& Record() { return m_Bench.TheStation.g_CurrentAIB->Calibration(); }

    TestBench m_Bench;
    frmACUCalibration m_Window{m_Bench.TheStation};
};

TEST_F(StageWindowTest, ComesWithTheFirstStageAndNamesTheUnit) {
    EXPECT_FALSE(m_Window.isVisible());
    m_Window.Stage_Add("One");
    EXPECT_TRUE(m_Window.isVisible());
    EXPECT_EQ(m_Window.windowTitle(), "Calibration");
    EXPECT_EQ(Text("lblCalMsg"), "Calibrating Aeration Control Unit");
    EXPECT_EQ(Text("lblUnit"), "ACU00301   MFC number M9200301A");
    EXPECT_EQ(Text("lblAccessoryCal1"), "Calibration Initialising");
    EXPECT_EQ(Text("lblAccessoryCal5"), "-");
}

TEST_F(StageWindowTest, StagesAreNumberedAndPending) {
    Add(3);
    ASSERT_EQ(List().topLevelItemCount(), 3);
    for (const char* heading : {"No.", "Stage", "Result"})
        EXPECT_EQ(List().headerItem()->text(heading[0] == 'N'   ? 0
                                            : heading[0] == 'S' ? 1
                                                                : 2),
                  heading);
    for (int line = 0; line < 3; ++line) {
        EXPECT_EQ(Cell(line, 0), QString::number(line + 1));
        EXPECT_EQ(Result(line), "Pending");
    }
    EXPECT_EQ(Cell(1, 1), "Velocity System Calibration (2 of 8)");
    EXPECT_TRUE(List().selectedItems().isEmpty());
}

TEST_F(StageWindowTest, SequenceMovesOneLineWithEachRun) {
    Add(2);
    m_Window.Stage_RunNext();
    EXPECT_EQ(Result(0), "Running...");
    EXPECT_EQ(List().topLevelItem(0)->foreground(2).color(), QColor(0, 0, 255));
    EXPECT_EQ(List().selectedItems().value(0), List().topLevelItem(0));
    m_Window.Stage_Complete(false, true);
    m_Window.Stage_RunNext();
    EXPECT_EQ(Result(0), "Run: Passed");
    EXPECT_EQ(Result(1), "Running...");
    m_Window.Stage_Complete(false, true);
    m_Window.Stage_RunNext(); // none is left to run
    EXPECT_EQ(Result(1), "Run: Passed");
}

TEST_F(StageWindowTest, ResultsShowInTheirColoursAndLaterStagesStayPending) {
    struct Case {
        bool Aborted;
        bool Passed;
        QString Text;
        QColor Shown;
    };
    const std::vector<Case> cases = {{false, true, "Run: Passed", QColor(0, 255, 0)},
                                     {false, false, "Run: Failed", QColor(255, 128, 128)},
                                     {true, false, "Aborted", QColor(255, 0, 0)},
                                     {true, true, "Aborted", QColor(255, 0, 0)}};
    for (const Case& c : cases) {
        Add(2);
        m_Window.Stage_RunNext();
        m_Window.Stage_Complete(c.Aborted, c.Passed);
        EXPECT_EQ(Result(0), c.Text);
        EXPECT_EQ(List().topLevelItem(0)->foreground(2).color(), c.Shown);
        EXPECT_EQ(Result(1), "Pending");
        m_Window.Close();
    }
}

TEST_F(StageWindowTest, ClickOnALineDoesNotMoveTheSequence) {
    Add(3);
    m_Window.Stage_RunNext();
    const QRect third = List().visualItemRect(List().topLevelItem(2));
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, third.center());
    QTest::keyClick(&List(), Qt::Key_End);
    m_Window.Stage_Complete(false, true);
    m_Window.Stage_RunNext();
    EXPECT_EQ(Result(0), "Run: Passed");
    EXPECT_EQ(Result(1), "Running...");
    EXPECT_EQ(Result(2), "Pending");
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
    QPalette dark(Qt::white, QColor(42, 45, 50));
    dark.setColor(QPalette::Base, QColor(30, 32, 36));
    dark.setColor(QPalette::Text, Qt::white);
    Add(5);
    for (const auto& [aborted, passed] : {std::pair(false, true), {false, false}, {true, false}}) {
        m_Window.Stage_RunNext();
        m_Window.Stage_Complete(aborted, passed);
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

TEST_F(StageWindowTest, EachLineHasItsLabel) {
    m_Window.ShowLine(StageLine::Phase, "phase");
    m_Window.ShowLine(StageLine::Demand, "demand");
    m_Window.ShowLine(StageLine::Reading, "reading");
    m_Window.ShowLine(StageLine::Remaining, "remaining");
    EXPECT_EQ(Text("lblAccessoryCal1"), "phase");
    EXPECT_EQ(Text("lblAccessoryCal2"), "demand");
    EXPECT_EQ(Text("lblAccessoryCal4"), "reading");
    EXPECT_EQ(Text("lblAccessoryCal5"), "remaining");
}

TEST_F(StageWindowTest, LongLinesDoNotMoveTheWindowAndEightStagesNeedNoScrolling) {
    Add(8);
    const QSize before = m_Window.size();
    for (const StageLine line :
         {StageLine::Phase, StageLine::Demand, StageLine::Reading, StageLine::Remaining})
        m_Window.ShowLine(line, std::string(300, 'W'));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_Window.size(), before);
    EXPECT_LE(m_Window.minimumSizeHint().width(), before.width());
    EXPECT_FALSE(List().verticalScrollBar()->isVisible());
    EXPECT_FALSE(List().horizontalScrollBar()->isVisible());
}

TEST_F(StageWindowTest, EveryControlHasANameAndTheTabKeyReachesCancel) {
    Add(2);
    for (const char* name :
         {"lblCalMsg", "lblUnit", "lvwStage", "lblAccessoryCal1", "lblAccessoryCal2",
          "lblAccessoryCal4", "lblAccessoryCal5", "ctrlProgressBar", "cmdCancel"})
        EXPECT_FALSE(Find<QWidget>(name).accessibleName().isEmpty()) << name;
    List().setFocus();
    QTest::keyClick(&List(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &Find<QPushButton>("cmdCancel"));
}

TEST_F(StageWindowTest, ProgressIsAPercentageOfTheSpan) {
    auto& bar = Find<ctrlProgressBar>("ctrlProgressBar");
    m_Window.BeginProgress(35.0F);
    EXPECT_EQ(bar.accessibleDescription(), "0%");
    m_Window.ShowProgress(17.5F);
    EXPECT_EQ(bar.accessibleDescription(), "50%");
    m_Window.ShowProgress(36.0F);
    EXPECT_EQ(bar.accessibleDescription(), "100%");
    m_Window.BeginProgress(20.0F);
    EXPECT_EQ(bar.accessibleDescription(), "0%");
    m_Window.ShowProgress(10.0F);
    EXPECT_EQ(bar.accessibleDescription(), "50%");
}

TEST_F(StageWindowTest, CancelButtonAndEscapeReachTheRunningCalibrationOnce) {
    for (const bool byKey : {false, true}) {
        Add(1);
        Cancellation cancel;
        const clsACUCalibration::RunningCalibration running(Record(), cancel);
        auto& button = Find<QPushButton>("cmdCancel");
        EXPECT_EQ(button.text(), "Cancel");
        if (byKey)
            QTest::keyClick(&m_Window, Qt::Key_Escape);
        else
            QTest::mouseClick(&button, Qt::LeftButton);
        EXPECT_TRUE(cancel.Requested());
        EXPECT_FALSE(button.isEnabled());
        m_Window.Close();
        EXPECT_TRUE(button.isEnabled());
    }
}

TEST_F(StageWindowTest, ClosingInMidRunAsksAndCancelsOnYes) {
    Add(1);
    const RunningProcedure procedure(m_Bench.TheStation.Procedures, [] {});
    Cancellation cancel;
    const clsACUCalibration::RunningCalibration running(Record(), cancel);
    EXPECT_FALSE(m_Window.close());
    ASSERT_NE(Question(), nullptr);
    EXPECT_EQ(Question()->text(), "The calibration is running.\n\nCancel it and close the window?");
    EXPECT_FALSE(cancel.Requested());
    QTest::mouseClick(Question()->button(QMessageBox::Yes), Qt::LeftButton);
    EXPECT_TRUE(cancel.Requested());
    EXPECT_TRUE(m_Window.isVisible()); // until the sequence has ended
    EXPECT_FALSE(Find<QPushButton>("cmdCancel").isEnabled());
}

TEST_F(StageWindowTest, QuestionThatStandsAtTheEndIsWithdrawn) {
    Add(1);
    {
        const RunningProcedure procedure(m_Bench.TheStation.Procedures, [] {});
        m_Window.close();
        ASSERT_TRUE(Question()->isVisible());
    }
    m_Window.Close();
    EXPECT_TRUE(Question() == nullptr || !Question()->isVisible());
    EXPECT_TRUE(Find<QPushButton>("cmdCancel").isEnabled());
}

TEST_F(StageWindowTest, NextSequenceFindsTheWindowAsDesigned) {
    Add(2);
    m_Window.Stage_RunNext();
    m_Window.ShowLine(StageLine::Phase, "phase");
    m_Window.ShowLine(StageLine::Remaining, "remaining");
    m_Window.BeginProgress(35.0F);
    m_Window.Close();
    EXPECT_FALSE(m_Window.isVisible());
    EXPECT_EQ(Find<ctrlProgressBar>("ctrlProgressBar").accessibleDescription(), "");
    Add(1);
    EXPECT_TRUE(m_Window.isVisible());
    ASSERT_EQ(List().topLevelItemCount(), 1);
    EXPECT_EQ(Cell(0, 0), "1");
    EXPECT_EQ(Result(0), "Pending");
    EXPECT_EQ(Text("lblAccessoryCal1"), "Calibration Initialising");
    EXPECT_EQ(Text("lblAccessoryCal5"), "-");
    m_Window.BeginProgress(20.0F);
    EXPECT_EQ(Find<ctrlProgressBar>("ctrlProgressBar").accessibleDescription(), "0%");
    EXPECT_TRUE(m_Window.close()); // nothing runs
}

} // namespace
} // namespace ombrix

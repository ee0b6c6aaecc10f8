#include "windows/WindowBench.h"

#include <QCheckBox>
#include <QLineEdit>

#include <algorithm>

namespace ombrix {
namespace {

constexpr int Moment_ms = 200;

std::ptrdiff_t LineCount(const std::filesystem::path& file) {
    const std::string content = ReadWholeFile(file);
    return std::count(content.begin(), content.end(), '\n');
}

class RecordingPanelTest : public ::testing::Test {
  protected:
    void Click() { m_Bench.Tick("chkRecordADCs"); }
    bool Ticked() { return m_Bench.Find<QCheckBox>("chkRecordADCs").isChecked(); }

    WindowBench m_Bench;
    const std::filesystem::path m_File = m_Bench.Bench.Folder.Path() / "Data_20241503_140509.csv";
};

TEST_F(RecordingPanelTest, RecordsWhileItIsTicked) {
    Click();
    EXPECT_TRUE(Ticked());
    QTest::qWait(Moment_ms);
    const std::ptrdiff_t recorded = LineCount(m_File);
    EXPECT_GT(recorded, 5);
    Click();
    const std::ptrdiff_t stopped = LineCount(m_File);
    QTest::qWait(Moment_ms);
    EXPECT_EQ(LineCount(m_File), stopped);
    Click();
    const std::filesystem::path root = m_Bench.Bench.Folder.Path();
    EXPECT_TRUE(std::filesystem::exists(root / "Data_20241503_140509 (2).csv"))
        << "of the same second";
    EXPECT_EQ(LineCount(m_File), stopped);
    m_Bench.Bench.Time.Advance(1.0);
    Click();
    Click();
    EXPECT_TRUE(std::filesystem::exists(root / "Data_20241503_140510.csv"));
}

TEST_F(RecordingPanelTest, GoesOnDuringAProcedureAndCountsWhatFailed) {
    Click();
    const RunningProcedure procedure(m_Bench.Bench.TheStation.Procedures, "test");
    const std::ptrdiff_t before = LineCount(m_File);
    m_Bench.Bench.Bench.SetFaults(Faults::Parse(std::vector<std::string>{"status:32@ReadReg"}));
    QTest::qWait(Moment_ms);
    EXPECT_GT(LineCount(m_File), before + 5);
    EXPECT_TRUE(m_Bench.LabelText("lblRecorded").contains("failed"));
}

TEST_F(RecordingPanelTest, TellsOfItsFileAndTakesMarksAlsoWhileAProcedureRuns) {
    auto& mark = m_Bench.Find<QLineEdit>("txtMark");
    EXPECT_FALSE(mark.isEnabled());
    Click();
    const RunningProcedure procedure(m_Bench.Bench.TheStation.Procedures, "test");
    QTest::qWait(Moment_ms);
    m_Bench.Bench.Time.Advance(75.5);
    QTest::keyClicks(&mark, "hose, left one, moved");
    QTest::keyClick(&mark, Qt::Key_Return);
    EXPECT_EQ(mark.text(), "");
    QTest::qWait(Moment_ms);
    EXPECT_EQ(m_Bench.LabelText("lblRecordedFile"), "Data_20241503_140509.csv");
    EXPECT_TRUE(m_Bench.LabelText("lblRecorded").contains(" lines, 0:01:15"));
    EXPECT_TRUE(
        m_Bench.LabelText("lblRecordedSize").contains(QRegularExpression("^\\d.+, .+B free")));
    EXPECT_NE(ReadWholeFile(m_File).find("\r\n75.5,,,,,,hose, left one, moved\r\n"),
              std::string::npos);
}

TEST_F(RecordingPanelTest, EndsWithTheWindow) {
    Click();
    m_Bench.Window.close();
    EXPECT_FALSE(Ticked());
    const std::ptrdiff_t stopped = LineCount(m_File);
    QTest::qWait(Moment_ms);
    EXPECT_EQ(LineCount(m_File), stopped);
}

TEST_F(RecordingPanelTest, AFileThatCannotBeMadeUnticksTheBox) {
    std::filesystem::create_directory(m_File);
    Click();
    EXPECT_FALSE(Ticked());
    ASSERT_EQ(m_Bench.Bench.Messages.Shown.size(), 1U);
    EXPECT_NE(m_Bench.Bench.Messages.Shown[0].Text.find("Data_20241503_140509.csv"),
              std::string::npos);
}

} // namespace
} // namespace ombrix

#include "board/procedure/BoardClaims.h"
#include "windows/WindowBench.h"
#include "windows/eprom/EPROMFieldsTable.h"
#include "windows/eprom/EPROMFieldsWindow.h"

#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabBar>
#include <fmt/format.h>

namespace ombrix {
namespace {

constexpr int Value = 3;
constexpr int Words = 4;

class EPROMFieldsTest : public ::testing::Test {
  protected:
    void Use(const std::string& name, const std::vector<std::string>& faults = {}) {
        m_Bench.reset();
        m_Bench = std::make_unique<WindowBench>(name, faults);
        m_Bench->Click("cmdFields");
        m_Window = WindowBench::TopLevel("frmEPROMFields");
        ASSERT_NE(m_Window, nullptr);
    }
    void SetUp() override { Use("acu"); }

    EPROMFieldsTable& Table() { return Find<EPROMFieldsTable>("tblFields"); }
    template <class Control>
    Control& Find(const char* name) {
        return WindowBench::FindIn<Control>(*m_Window, name);
    }
    bool Can(const char* button) { return Find<QAbstractButton>(button).isEnabled(); }
    std::string State() { return Find<QLabel>("lblFieldsState").text().toStdString(); }
    std::string Image() { return m_Bench->Bench.Bench.Board(0).Eprom().Image(); }
    int Row(const std::string& field) {
        return Table().row(
            Table().findItems(QString::fromStdString(field), Qt::MatchExactly).at(0));
    }
    std::string Cell(const std::string& field, int column) {
        return Table().item(Row(field), column)->text().toStdString();
    }
    /// Types into a cell as an operator does.
    void Type(const std::string& field, int column, const char* text) {
        Table().setCurrentCell(Row(field), column);
        QTest::keyClick(&Table(), Qt::Key_F2);
        auto& line = Find<QLineEdit>("txtField");
        QInputMethodEvent typed;
        typed.setCommitString(QString::fromUtf8(text));
        QApplication::sendEvent(&line, &typed); // in place of what is selected: all
        QTest::keyClick(&line, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// Presses a button and answers the list of differences. @return question and lines of the list
    std::string Press(const char* button, const char* answer) {
        std::string shown;
        WindowBench::OnceShown("frmConfirmChanges", [&](QWidget& form) {
            EXPECT_TRUE(WindowBench::FindIn<QPushButton>(form, "cmdNo").isDefault());
            shown = WindowBench::FindIn<QLabel>(form, "lblQuestion").text().toStdString();
            const auto& list = WindowBench::FindIn<QTreeWidget>(form, "lvwDifferences");
            for (int line = 0; line < list.topLevelItemCount(); ++line)
                for (const int column : {1, 2, 3})
                    shown += (column == 1 ? "\n" : "|") +
                             list.topLevelItem(line)->text(column).toStdString();
            WindowBench::FindIn<QAbstractButton>(form, answer).click();
        });
        QTest::mouseClick(&Find<QAbstractButton>(button), Qt::LeftButton);
        QCoreApplication::processEvents();
        return shown;
    }

    std::unique_ptr<WindowBench> m_Bench;
    QWidget* m_Window = nullptr;
};

struct RightEntry {
    const char* Field;
    int Column;
    const char* Typed;
    std::int32_t Address;
    std::vector<std::uint32_t> Expected;
};

TEST_F(EPROMFieldsTest, EntriesOfEveryTypeAreWrittenAsTheirWords) {
    const RightEntry entries[] = {
        {"Channel 1 capacity", Value, "1.5", 16, {0x3FC00000}},
        {"Channel 2 capacity", Value, "0x3fc00001", 20, {0x3FC00001}},
        {"Channel 3 capacity", Words, "0xC0490FDB", 24, {0xC0490FDB}},
        {"Calibration points", Value, "-7", 32, {0xFFFFFFF9}},
        {"Digital MFC config", Value, " 0xFFFFFFFE ", 40, {0xFFFFFFFE}},
        {"Velocity system date", Value, "01/01/2000", 496, {0, 0x40E1D5C0}},
        {"Velocity audit date", Value, "2000-01-01T12:00:00", 504, {0, 0x40E1D5D0}},
        {"Pressure audit date", Value, "never", 652, {0, 0}},
        {"Pressure system date", Words, "1 0x40E1D5C0", 644, {1, 0x40E1D5C0}},
        {"MFC number", Value, "0xA€", 1024, {0x80417830, 0x20202020, 0x20202020}}};
    std::string expected = Image();
    for (const RightEntry& entry : entries) {
        Type(entry.Field, entry.Column, entry.Typed);
        EXPECT_EQ(Find<EPROMFieldsTable>("tblFields").WrongEntry(), "") << entry.Typed;
        for (std::size_t word = 0; word < entry.Expected.size(); ++word)
            for (std::size_t byte = 0; byte < 4; ++byte)
                expected.at(static_cast<std::size_t>(entry.Address) + 4 * word + byte) =
                    static_cast<char>(entry.Expected[word] >> (8 * byte));
    }
    EXPECT_EQ(Cell("Channel 1 capacity", Value), "5000 → 1.5");
    Type("Max pressure", Value, "1000"); // as it is
    const std::string shown = Press("cmdWriteFields", "cmdYes");
    EXPECT_TRUE(shown.starts_with("Write these changes to the EPROM of ACU00301?\n"
                                  "Channel 1 capacity|5000|1.5\n"
                                  "Channel 2 capacity|200|1.5000001\n"))
        << shown;
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 10);
    EXPECT_EQ(Image(), expected);
    EXPECT_EQ(Cell("Velocity audit date", Value), "01/01/2000 12:00:00");
    EXPECT_EQ(Cell("Velocity audit date", Words), "0x00000000 0x40E1D5D0");
    EXPECT_EQ(State(), "Written and read back at 14:05:09.");
    EXPECT_EQ(m_Bench->Bench.TheStation.Calibration().Record().ChannelCapacity[0], 1.5F);
}

struct WrongEntry {
    const char* Field;
    int Column;
    const char* Typed;
    const char* Reason;
};

TEST_F(EPROMFieldsTest, WrongEntriesTurnRedSayWhyAndAreNotWritten) {
    const std::string before = Image();
    for (const WrongEntry& entry :
         {WrongEntry{"Calibration points", Value, "2147483648", "Out of range"},
          {"Calibration points", Value, "2.5", "Not a whole number"},
          {"Calibration points", Value, "0x123456789", "No word"},
          {"Calibration points", Words, "C0490FDB", "No word"},
          {"Calibration points", Words, "1 2", "Enter one word"},
          {"Max pressure", Value, "1e39", "Out of range"},
          {"Max pressure", Value, "1e-60", "Out of range"},
          {"Max pressure", Value, "1,5", "Not a number"},
          {"Velocity system date", Value, "29/02/2023", "Not a date"},
          {"Velocity system date", Value, "01/01/24", "Not a date"},
          {"Velocity system date", Value, "01/01/2024 24:00", "Not a date"},
          {"Velocity system date", Value, "soon", "Not a date"},
          {"Velocity system date", Words, "0x40E1D5C0", "Enter 2 words"},
          {"MFC number", Value, "M9200301A-new", "Too long: 13 characters, 12 fit."},
          {"MFC number", Value, "M92003Ω", "no place"}}) {
        Type(entry.Field, entry.Column, entry.Typed);
        const std::string cell = Cell(entry.Field, entry.Column);
        EXPECT_TRUE(cell.starts_with(entry.Typed + std::string("\n"))) << cell;
        EXPECT_NE(cell.find(entry.Reason), std::string::npos) << cell;
        EXPECT_NE(State().find(entry.Reason), std::string::npos) << State();
        EXPECT_EQ(Table().item(Row(entry.Field), entry.Column)->foreground().color(),
                  QColor(176, 0, 32));
        Type("Channel 1 capacity", Value, "4000"); // a right one does not help it
        EXPECT_FALSE(Can("cmdWriteFields"));
        QTest::mouseClick(&Find<QAbstractButton>("cmdDiscardFields"), Qt::LeftButton);
        EXPECT_FALSE(Table().HasEntries());
    }
    EXPECT_EQ(Image(), before);
}

TEST_F(EPROMFieldsTest, NoWritesNothingAndUndoBringsBackWhatAWriteHasReplaced) {
    const std::string before = Image();
    QTest::mouseClick(&Find<QAbstractButton>("cmdUndoWrite"), Qt::LeftButton);
    EXPECT_TRUE(m_Bench->Bench.Messages.Shown.back().Text.starts_with("There is no write to undo"));
    Type("MFC number", Value, "M9200301B");
    Press("cmdWriteFields", "cmdNo");
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(State(), "Not written: 1024 MFC number: \"M9200301A\" → \"M9200301B\"");
    Press("cmdWriteFields", "cmdYes");
    const std::string written = Image();
    EXPECT_NE(written, before);
    EpromGuard(m_Bench->Bench.TheStation, "cancelled").MakeReady(); // a backup, and no write
    m_Bench->Bench.Time.Advance(1.0);
    const std::string shown = Press("cmdUndoWrite", "cmdNo");
    EXPECT_EQ(shown, "Undo the last write to the EPROM of ACU00301, \"EPROM Fields\"? This brings "
                     "back what was saved before it, on 2024-03-15 14:05:09.\n"
                     "MFC number|\"M9200301B\"|\"M9200301A\"");
    EXPECT_EQ(Image(), written);
    Press("cmdUndoWrite", "cmdYes");
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(Cell("MFC number", Value), "\"M9200301A\"");
}

TEST_F(EPROMFieldsTest, ARefusedWriteIsToldAndTheTableShowsWhatTheBoardHas) {
    Use("acu", {"status:32@WriteEEPROM"});
    Type("Max pressure", Value, "400");
    Press("cmdWriteFields", "cmdYes");
    EXPECT_EQ(m_Bench->Bench.Messages.Shown.back().Icon, MessageIcon::Critical);
    EXPECT_EQ(Cell("Max pressure", Value), "1000 → 400") << "what was entered is not lost";
    EXPECT_EQ(Cell("Max pressure", Words), "0x447A0000 → 0x43C80000");
    EXPECT_EQ(State(), "Not written: 604 Max pressure: 1000 → 400");
    Use("acu", {"status:32@ReadEEPROM"});
    EXPECT_EQ(Cell("Max pressure", Value), "--");
    EXPECT_TRUE(State().starts_with("The EPROM cannot be read: ")) << State();
    EXPECT_FALSE(Can("cmdUndoWrite"));
}

TEST_F(EPROMFieldsTest, CommandsWaitForProceduresForTheBoardAndForOtherPrograms) {
    Type("Max pressure", Value, "400");
    {
        const RunningProcedure running(m_Bench->Bench.TheStation.Procedures, "sweep");
        for (const char* button : {"cmdWriteFields", "cmdDiscardFields", "cmdUndoWrite"})
            EXPECT_FALSE(Can(button)) << button;
        EXPECT_EQ(Table().editTriggers(), QAbstractItemView::NoEditTriggers);
    }
    EXPECT_TRUE(Can("cmdWriteFields"));
    m_Bench->Plug("none");
    m_Bench->Update();
    m_Bench->Bench.Time.Advance(1.0);
    m_Bench->Update();
    EXPECT_TRUE(State().starts_with("The board does not answer.")) << State();
    EXPECT_FALSE(Can("cmdWriteFields"));
    Use("acu");
    m_Bench->Bench.TheStation.Claims.ReleaseAll();
    BoardClaims others(m_Bench->Bench.World);
    others.Require(301);
    QTest::mouseClick(&Find<QAbstractButton>("cmdReadFields"), Qt::LeftButton);
    EXPECT_TRUE(State().starts_with("The board is in use by ")) << State();
    EXPECT_FALSE(Can("cmdUndoWrite"));
}

TEST_F(EPROMFieldsTest, WhatIsNotWrittenWaitsForItsUnitAndIsNotGivenUpUnasked) {
    Use("pair");
    const std::string before = Image();
    Type("MFC number", Value, "M9200123C");
    m_Bench->Window.ShowTab(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(State(), "Select the tab of ACU00123 to write its changes, or discard them.");
    EXPECT_FALSE(Can("cmdWriteFields"));
    m_Window->close();
    EXPECT_TRUE(m_Window->isVisible());
    const auto answer = [](QWidget& window, QMessageBox::StandardButton button) {
        WindowBench::FindIn<QMessageBox>(window, "boxWhileRunning").button(button)->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    answer(*m_Window, QMessageBox::No);
    EXPECT_TRUE(Table().HasEntries());
    m_Bench->Window.close();
    EXPECT_TRUE(m_Bench->Window.isVisible());
    answer(m_Bench->Window, QMessageBox::No);
    m_Bench->Window.DetectAndProgramAIBs();
    QCoreApplication::processEvents();
    EXPECT_TRUE(Can("cmdWriteFields")) << "its tab is selected again";
    Type("MFC number", Value, "M9200123D");
    m_Window->close();
    answer(*m_Window, QMessageBox::Yes);
    EXPECT_FALSE(m_Window->isVisible());
    EXPECT_EQ(Image(), before);
}

} // namespace
} // namespace ombrix

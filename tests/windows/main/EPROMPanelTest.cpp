#include "windows/WindowBench.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

namespace ombrix {
namespace {

/// Acts on a window as soon as it stands.
void OnceShown(const QString& name, const std::function<void(QWidget&)>& act) {
    QTimer::singleShot(5, [name, act] {
        if (QWidget* window = WindowBench::TopLevel(name))
            act(*window);
        else
            OnceShown(name, act);
    });
}

class EPROMPanelTest : public ::testing::Test {
  protected:
    void Scroll(int word) { m_Bench.Find<QScrollBar>("scrAddressLocation").setValue(word); }
    void Type(const QString& text) {
        auto& field = m_Bench.Find<QLineEdit>("txtNewValue");
        field.clear();
        QTest::keyClicks(&field, text);
    }
    bool CanWrite() { return m_Bench.Find<QPushButton>("cmdWriteValue").isEnabled(); }
    std::int32_t Word(std::int32_t address) {
        std::int32_t word = 0;
        m_Bench.Bench.TheStation.CurrentAIB->ReadEPROM(address, word);
        return word;
    }

    std::string Image() { return m_Bench.Bench.Bench.Board(0).Eprom().Image(); }

    WindowBench m_Bench;
};

TEST_F(EPROMPanelTest, EveryWordCanBeLookedAt) {
    Scroll(511);
    EXPECT_EQ(m_Bench.LabelText("lblCurrentAddress"), "2044");
    EXPECT_EQ(m_Bench.LabelText("lblCurrentValue"), "FFFFFFFF");
    EXPECT_EQ(m_Bench.LabelText("lblCurrentValueDec"), "-1");
    QTest::mouseClick(m_Bench.Window.findChild<QWidget*>("lblCurrentValueDec"), Qt::LeftButton);
    EXPECT_EQ(m_Bench.Bench.Messages.Shown.back().Text, "-1");
    Scroll(2);
    EXPECT_EQ(m_Bench.LabelText("lblCurrentAddress"), "8");
    EXPECT_EQ(m_Bench.LabelText("lblCurrentValueDec"), "2") << "the data version";
}

TEST_F(EPROMPanelTest, AWordIsWrittenAndReadBack) {
    Scroll(400);
    Type("4660");
    EXPECT_EQ(m_Bench.LabelText("lblNewValueHex"), "1234");
    m_Bench.Click("cmdWriteValue");
    EXPECT_EQ(Word(1600), 4660);
    EXPECT_EQ(m_Bench.LabelText("lblCurrentValue"), "1234");
    EXPECT_EQ(Word(1604), -1);
}

TEST_F(EPROMPanelTest, OnlyWhatFitsCanBeWritten) {
    struct Case {
        const char* Typed;
        const char* Error;
        const char* Hex;
    };
    for (const Case& c : {Case{"2147483647", "", "7FFFFFFF"}, Case{"-5", "Out of Range", "0"},
                          Case{"3000000000", "Out of Range", "0"}, Case{"12x", "Not a Number", "0"},
                          Case{"", "Not a Number", "0"}, Case{"2.5", "", "2"},
                          Case{"-0.4", "", "0"}, Case{"2147483647.6", "Out of Range", "0"}}) {
        Type(c.Typed);
        EXPECT_EQ(m_Bench.LabelText("lblValueError"), c.Error) << c.Typed;
        EXPECT_EQ(m_Bench.LabelText("lblNewValueHex"), c.Hex) << c.Typed;
        EXPECT_EQ(CanWrite(), *c.Error == '\0') << c.Typed;
    }
}

TEST_F(EPROMPanelTest, ToAllAsksAndThenWritesEveryWord) {
    Type("0");
    m_Bench.Bench.Messages.Answers = {Answer::No};
    m_Bench.Click("cmdWriteValueAll");
    EXPECT_EQ(
        m_Bench.Bench.Messages.Shown.back().Text,
        "Are you sure you want to overwrite all memory locations with: 0\r\n\r\nUnit: ACU00301");
    EXPECT_EQ(Word(8), 2);
    m_Bench.Bench.Messages.WhileAsked = [this](const Message& message) {
        if (message.Text == "All locations written") {
            EXPECT_EQ(m_Bench.LabelText("lblCurrentValueDec"), "0") << "read again before";
            EXPECT_EQ(m_Bench.LabelText("lblACUVel_System"), "ACU Data Not Initialised");
        }
    };
    m_Bench.Click("cmdWriteValueAll");
    for (std::int32_t address = 0; address < EpromBytes; address += 4)
        ASSERT_EQ(Word(address), 0) << address;
    EXPECT_EQ(m_Bench.Bench.Messages.Shown.back().Text, "All locations written");
    EXPECT_EQ(m_Bench.LabelText("lblValueError"), "");
    EXPECT_EQ(m_Bench.LabelText("lblCurrentValueDec"), "0");
}

TEST_F(EPROMPanelTest, ASavedContentIsShownAndBroughtBack) {
    const std::string before = Image();
    Scroll(256);
    m_Bench.Click("cmdWriteValue"); // 0 for the first characters of the MFC number
    for (const char* button : {"cmdCancelRestore", "cmdRestoreNow"}) {
        EXPECT_NE(Image(), before);
        OnceShown("dlgChooseImage", [](QWidget& window) {
            auto& dialog = dynamic_cast<QFileDialog&>(window);
            dialog.selectFile(dialog.directory().filePath(
                dialog.directory().entryList({"*EPROM Word 1024.bin"}).at(0)));
            OnceShown("dlgChooseImage",
                      [](QWidget& chosen) { QTest::keyClick(&chosen, Qt::Key_Return); });
        });
        OnceShown("frmRestoreEPROM", [button](QWidget& form) {
            auto& list = WindowBench::FindIn<QTreeWidget>(form, "lvwDifferences");
            EXPECT_EQ(list.topLevelItemCount(), 1);
            EXPECT_EQ(list.topLevelItem(0)->text(3), "\"M9200301A\"");
            WindowBench::FindIn<QAbstractButton>(form, button).click();
        });
        m_Bench.Click("cmdRestore");
    }
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(m_Bench.LabelText("lblCurrentValue"), "3032394D");
    EXPECT_EQ(m_Bench.Bench.Messages.Shown.back().Text, "The EPROM holds what the file holds.");
}

TEST_F(EPROMPanelTest, ThePressureRegisterIsPolledWhileTheButtonSaysSo) {
    auto& button = m_Bench.Find<QPushButton>("Command1");
    const auto* timer = m_Bench.Window.findChild<QTimer*>("Timer1");
    EXPECT_EQ(button.text(), "Not Recording");
    m_Bench.Click("Command1");
    EXPECT_EQ(button.text(), "Recording...");
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 100);
    m_Bench.Click("Command1");
    EXPECT_EQ(button.text(), "Not Recording");
    EXPECT_FALSE(timer->isActive());
}

TEST(EPROMPanelFaults, AWordThatDoesNotHoldIsToldAndShownAsItIs) {
    WindowBench bench("acu", {"eprom-flip"});
    bench.Click("cmdWriteValue");
    EXPECT_EQ(bench.Bench.Messages.Shown.back().Icon, MessageIcon::Critical);
    EXPECT_EQ(bench.LabelText("lblCurrentValue"), "1");
}

TEST(EPROMPanelFaults, AWordThatCannotBeReadShowsNoValue) {
    WindowBench bench("acu", {"status:32@ReadEEPROM"});
    bench.Find<QScrollBar>("scrAddressLocation").setValue(3);
    EXPECT_EQ(bench.LabelText("lblCurrentValue"), "--");
}

} // namespace
} // namespace ombrix

#include "windows/WindowBench.h"
#include "windows/eprom/RestoreEPROMWindow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QTreeWidget>

namespace ombrix {
namespace {

class EPROMPanelTest : public ::testing::Test {
  protected:
    void Scroll(int word) { m_Bench.Find<QScrollBar>("scrAddressLocation").setValue(word); }
    void Type(const QString& text) {
        auto& field = m_Bench.Find<QLineEdit>("txtNewValue");
        field.clear();
        QTest::keyClicks(&field, text);
    }
    bool CanWrite() { return m_Bench.Find<QPushButton>("cmdWriteValue").isEnabled(); }
    /// Not marked as wrong.
    bool IsPlain(const char* field) {
        return m_Bench.Find<QLineEdit>(field).palette().color(QPalette::Base) ==
               QApplication::palette().color(QPalette::Base);
    }
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
        EXPECT_EQ(IsPlain("txtNewValue"), *c.Error == '\0') << c.Typed;
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

TEST_F(EPROMPanelTest, AnAddressCanBeTyped) {
    struct Case {
        const char* Typed;
        const char* Shown;
        bool CanWrite;
    };
    for (const Case& c :
         {Case{"1024", "1024", true}, Case{"0x7fc", "2044", true}, Case{"0", "0", true},
          Case{"2048", "204", false}, Case{"0x7FD", "0", false}, Case{"MFC", "0", false}}) {
        auto& field = m_Bench.Find<QLineEdit>("txtAddress");
        Scroll(0);
        field.clear();
        QTest::keyClicks(&field, c.Typed);
        EXPECT_EQ(m_Bench.LabelText("lblCurrentAddress"), c.Shown) << c.Typed;
        EXPECT_EQ(CanWrite(), c.CanWrite) << c.Typed << ": no word that is not meant";
        EXPECT_EQ(IsPlain("txtAddress"), c.CanWrite) << c.Typed;
        EXPECT_EQ(m_Bench.LabelText("lblAddressError").isEmpty(), c.CanWrite) << c.Typed;
    }
    Scroll(2);
    EXPECT_EQ(m_Bench.LabelText("lblCurrentAddress"), "8");
    EXPECT_TRUE(CanWrite());
}

TEST_F(EPROMPanelTest, SavedContentsAreListedWithWhatCameAfterAndBroughtBack) {
    const std::string before = Image();
    Scroll(256);
    m_Bench.Click("cmdWriteValue"); // 0 for the first characters of the MFC number
    m_Bench.Bench.Time.Advance(60.0);
    Scroll(400);
    m_Bench.Click("cmdWriteValue");
    m_Bench.Bench.Files.ReplaceFile(R"(C:\Backups\ACU00007_20240101_010101_Damaged.bin)",
                                    "cut off");
    const std::string written = Image();
    for (const char* button : {"cmdCancelRestore", "cmdRestoreNow"}) {
        EXPECT_EQ(Image(), written);
        WindowBench::OnceShown("frmRestoreEPROM", [button](QWidget& form) {
            auto& list = WindowBench::FindIn<QTreeWidget>(form, "lvwBackups");
            ASSERT_EQ(list.topLevelItemCount(), 3);
            const auto row = [&list](int line) {
                QStringList texts;
                for (int column = 0; column < 4; ++column)
                    texts << list.topLevelItem(line)->text(column);
                return texts.join('|').toStdString();
            };
            EXPECT_EQ(row(0), "ACU00301|2024-03-15 14:06:09|EPROM Word 1600|word 1600");
            EXPECT_EQ(row(1), "ACU00301|2024-03-15 14:05:09|EPROM Word 1024|MFC number");
            EXPECT_EQ(row(2), "ACU00007|2024-01-01 01:01:01|Damaged|--");
            list.setCurrentItem(list.topLevelItem(2));
            auto& restore = WindowBench::FindIn<QAbstractButton>(form, button);
            EXPECT_EQ(restore.isEnabled(), restore.objectName() == "cmdCancelRestore");
            EXPECT_TRUE(WindowBench::FindIn<QLabel>(form, "lblOrigin").isVisible());
            list.setCurrentItem(list.topLevelItem(1));
            const auto& differences = WindowBench::FindIn<QTreeWidget>(form, "lvwDifferences");
            EXPECT_EQ(differences.topLevelItemCount(), 2);
            EXPECT_EQ(differences.topLevelItem(0)->text(3), "\"M9200301A\"");
            restore.click();
        });
        m_Bench.Click("cmdRestore");
    }
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(m_Bench.Bench.Messages.Shown.back().Text, "The EPROM holds what the file holds.");
}

TEST_F(EPROMPanelTest, AnImageThatLiesElsewhereIsBroughtBack) {
    const auto file = m_Bench.Bench.Folder.Path() / "elsewhere.bin";
    const std::string before = Image();
    ReplaceWholeFile(file, before);
    m_Bench.Click("cmdWriteValue");
    WindowBench::OnceShown("frmRestoreEPROM", [file](QWidget& form) {
        dynamic_cast<RestoreEPROMWindow&>(form).AskFile = [file](const QString& /*proposed*/,
                                                                 const auto& chosen) {
            chosen(QString::fromStdString(file.string()));
        };
        for (const char* button : {"cmdOtherFile", "cmdRestoreNow"})
            WindowBench::FindIn<QAbstractButton>(form, button).click();
    });
    m_Bench.Click("cmdRestore");
    EXPECT_EQ(Image(), before);
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

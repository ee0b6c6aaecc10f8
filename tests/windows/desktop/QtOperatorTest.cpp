#include "windows/desktop/QtOperator.h"

#include "support/TemporaryFolder.h"

#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <functional>

namespace ombrix {
namespace {

/// Acts on the modal box as soon as it stands.
template <class Box>
void OnceShown(std::function<void(Box&)> act) {
    QTimer::singleShot(0, [act = std::move(act)] {
        auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        act(*box);
    });
}

class QtOperatorTest : public ::testing::Test {
  protected:
    QtOperatorTest() { QCoreApplication::setApplicationName("AIB Test Form"); }

    Answer AskAndClick(const Message& message, QMessageBox::StandardButton button) {
        OnceShown<QMessageBox>(
            [button](QMessageBox& box) { QTest::mouseClick(box.button(button), Qt::LeftButton); });
        return m_Operator.Ask(message);
    }
    Answer AskAndEscape(MessageButtons buttons) {
        OnceShown<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        return m_Operator.Ask({"?", MessageIcon::Question, buttons});
    }

    QtOperator m_Operator;
};

TEST_F(QtOperatorTest, BoxCarriesTextIconAndTheProgramsTitle) {
    OnceShown<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.objectName(), "messageBox");
        EXPECT_EQ(box.text(), "Saved:\n\n   <b>.xlsx");
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.windowTitle(), "AIB Test Form");
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(m_Operator.Ask({"Saved:\r\n\r\n   <b>.xlsx", MessageIcon::Warning}), Answer::Ok);
}

TEST_F(QtOperatorTest, APlaceIsShownInItsFolderWhileTheQuestionStands) {
    const TemporaryFolder folder;
    std::vector<std::filesystem::path> shown;
    m_Operator.ShowFolder = [&shown](const auto& opened) { shown.push_back(opened); };
    OnceShown<QMessageBox>([](QMessageBox& box) {
        QTest::mouseClick(box.findChild<QPushButton*>("cmdShowInFolder"), Qt::LeftButton);
        ASSERT_TRUE(box.isVisible());
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    Message message{"Not saved"};
    message.Place = folder.Path() / "gone" / "report.xlsx";
    EXPECT_EQ(m_Operator.Ask(message), Answer::Ok);
    EXPECT_EQ(shown, std::vector{folder.Path()});
}

TEST_F(QtOperatorTest, EachButtonGivesItsAnswer) {
    const Message question{"?", MessageIcon::Question, MessageButtons::YesNoCancel};
    EXPECT_EQ(AskAndClick(question, QMessageBox::Yes), Answer::Yes);
    EXPECT_EQ(AskAndClick(question, QMessageBox::No), Answer::No);
    EXPECT_EQ(AskAndClick(question, QMessageBox::Cancel), Answer::Cancel);
    const Message again{"?", MessageIcon::Question, MessageButtons::RetryCancel};
    EXPECT_EQ(AskAndClick(again, QMessageBox::Retry), Answer::Retry);
    EXPECT_EQ(AskAndClick({.Text = "Saved", .OffersToOpen = true}, QMessageBox::Open),
              Answer::Open);
}

TEST_F(QtOperatorTest, EscapeDeclines) {
    EXPECT_EQ(AskAndEscape(MessageButtons::YesNo), Answer::No);
    EXPECT_EQ(AskAndEscape(MessageButtons::YesNoCancel), Answer::Cancel);
    EXPECT_EQ(AskAndEscape(MessageButtons::OkCancel), Answer::Cancel);
    EXPECT_EQ(AskAndEscape(MessageButtons::RetryCancel), Answer::Cancel);
    EXPECT_EQ(AskAndEscape(MessageButtons::Ok), Answer::Ok);
}

TEST_F(QtOperatorTest, InputBoxProposesAndReturnsWhatWasTyped) {
    OnceShown<QInputDialog>([](QInputDialog& box) {
        EXPECT_EQ(box.textValue(), "301");
        EXPECT_EQ(box.windowTitle(), "Serial");
        auto* field = box.findChild<QLineEdit*>();
        QTest::keyClicks(field, "12"); // replaces the proposal, which is selected
        QTest::keyClick(field, Qt::Key_Return);
    });
    EXPECT_EQ(m_Operator.AskText("Number:", "301", "Serial"), "12");
}

TEST_F(QtOperatorTest, CancelledInputBoxGivesNothing) {
    OnceShown<QInputDialog>([](QInputDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(m_Operator.AskText("Number:", "301", ""), std::nullopt);
}

} // namespace
} // namespace ombrix

// The first steps of the operator's guide, taken as they are written there.
#include "board/LoadedAIBControl.h"
#include "windows/WindowBench.h"
#include "windows/desktop/QtOperator.h"

#include <QAbstractItemView>
#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTabBar>

#include <filesystem>

namespace ombrix {
namespace {

/// What the guide says next: **pressed**, "read" or `typed`.
struct GuideWord {
    QChar Mark;
    QString Text;
};

std::vector<GuideWord> WordsOfTheGuide() {
    QFile file(QStringLiteral(OPERATORS_GUIDE));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(OPERATORS_GUIDE);
    QString steps =
        QString::fromUtf8(file.readAll()).section("step by step", 1).section("\n## ", 0, 0);
    steps = steps.section("\n1. ", 1).remove(QRegularExpression(R"(!\[.*\]\(.*\))")).simplified();
    static const QRegularExpression marked(R"((\*\*|"|`)(.+?)\1)");
    std::vector<GuideWord> words;
    for (const auto& match : marked.globalMatch(steps))
        words.push_back({match.captured(1).front(), match.captured(2)});
    return words;
}

/// Of the window that has a question, else of every one.
template <class Control>
QList<Control*> InSight() {
    QList<Control*> found;
    const QWidget* modal = QApplication::activeModalWidget();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && (modal == nullptr || window == modal))
            found += window->findChildren<Control*>();
    }
    return found;
}

QString WithoutMark(QString caption) {
    return caption.remove('&');
}

bool ListReads(const QAbstractItemView& list, const QString& text) {
    const QAbstractItemModel& lines = *list.model();
    for (int column = 0; column < lines.columnCount(); ++column) {
        if (!lines.match(lines.index(0, column), Qt::DisplayRole, text, 1, Qt::MatchContains)
                 .empty())
            return true;
    }
    return false;
}

bool CanBeRead(const QString& text) {
    for (const QWidget* widget : InSight<QWidget>()) {
        const auto* tabs = qobject_cast<const QTabBar*>(widget);
        const auto* list = qobject_cast<const QAbstractItemView*>(widget);
        if (widget->isVisible() &&
            (widget->property("text").toString().contains(text) ||
             (tabs != nullptr && tabs->tabText(tabs->currentIndex()) == text) ||
             (list != nullptr && ListReads(*list, text))))
            return true;
    }
    return false;
}

/// Somebody who does what the guide says, a word at a time, whatever the program is doing.
class NewOperator {
  public:
    void Walk() {
        for (Act(); m_Next < m_Words.size(); QTest::qWait(1)) {
            Begin();
            ASSERT_FALSE(IsLost()) << m_Words.at(m_Next).Text.toStdString();
        }
    }
    WindowBench& Bench() { return *m_Bench; }

  private:
    bool IsLost() const {
        constexpr int patience_ms = 20'000;
        return m_SinceWord.hasExpired(patience_ms);
    }
    void GoOn() {
        ++m_Next;
        m_SinceWord.start();
    }

    /// A program that was closed to begin anew, or that is to be started by its command.
    void Begin() {
        static const QRegularExpression command("^ombrix( --simulate=(\\w+).*)?$");
        const auto typed = command.match(m_Words.at(m_Next).Text);
        QString bench = typed.captured(2);
        if (m_Bench && !m_Bench->StartedAnew.empty())
            bench = m_Bench->StartedAnew.front().empty() ? "acu" : "";
        else if (typed.hasMatch())
            GoOn();
        else
            return;
        m_Bench.reset();
        m_Bench =
            bench.isEmpty()
                ? std::make_unique<WindowBench>("none", std::vector<std::string>(), &m_NoLibrary)
                : std::make_unique<WindowBench>(bench.toStdString());
        ScriptedOperator& messages = m_Bench->Bench.Messages;
        messages.WhileAsked = [&messages](const Message& message) {
            messages.Answers.push_front(QtOperator().Ask(message));
        };
        m_Bench->LookRarely([] {});
        m_Bench->Window.DetectAndProgramAIBs();
    }

    void Act() {
        QTimer::singleShot(1, &m_Life, [this] { Act(); }); // also while a press lasts
        if (m_Next == m_Words.size())
            return;
        if (QWidget* question = QApplication::activeModalWidget(); question != nullptr && IsLost())
            question->close(); // or the test would wait for ever
        const auto& [mark, text] = m_Words.at(m_Next);
        auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        if (mark == '*')
            Press(text);
        else if (mark == '"' && CanBeRead(text))
            GoOn();
        else if (mark == '`' && field != nullptr) {
            GoOn();
            field->selectAll();
            QTest::keyClicks(field, text);
        }
    }

    void Press(const QString& caption) {
        for (QWidget* widget : InSight<QWidget>()) {
            const QString name = qobject_cast<QLineEdit*>(widget) != nullptr
                                     ? widget->accessibleName()
                                     : WithoutMark(widget->property("text").toString());
            if (name == caption && widget->isVisible() && widget->isEnabled()) {
                GoOn();
                QTest::mouseClick(widget, Qt::LeftButton);
                return;
            }
        }
        for (QAction* action : InSight<QAction>()) {
            if (WithoutMark(action->text()) == caption && action->isEnabled()) {
                GoOn();
                action->trigger();
                return;
            }
        }
    }

    LoadedAIBControl m_NoLibrary{"libAIBControl.so"};
    std::unique_ptr<WindowBench> m_Bench;
    std::vector<GuideWord> m_Words = WordsOfTheGuide();
    std::size_t m_Next = 0;
    QElapsedTimer m_SinceWord;
    QObject m_Life;
};

TEST(OperatorsGuide, LeadsFromTheFirstStartToACalibratedUnitAndItsReport) {
    NewOperator somebody;
    somebody.Walk();
    if (HasFatalFailure())
        return;
    const auto& opened = somebody.Bench().Bench.Documents.Opened;
    ASSERT_EQ(opened.size(), 2U);
    EXPECT_NE(opened[0].filename().string().find("_System"), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(opened[0]));
    EXPECT_EQ(opened[1], opened[0].parent_path());
    for (const char* done : {"lblACUVel_System", "lblACUVel_Audit"})
        EXPECT_TRUE(somebody.Bench().LabelText(done).endsWith(" - QUILLON")) << done;
}

} // namespace
} // namespace ombrix

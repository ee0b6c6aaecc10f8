#include "windows/desktop/QtOperator.h"

#include "platform/text/Text.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/widgets/QtText.h"

#include <QApplication>
#include <QGridLayout>
#include <QGuiApplication>
#include <QInputDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QSpacerItem>

#include <algorithm>
#include <cstdio>
#include <system_error>
#include <utility>

namespace ombrix {

namespace {

QMessageBox::Icon IconOf(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Question: return QMessageBox::Question;
    case MessageIcon::Warning: return QMessageBox::Warning;
    case MessageIcon::Critical: return QMessageBox::Critical;
    case MessageIcon::Information: break;
    }
    return QMessageBox::Information;
}

QMessageBox::StandardButtons ButtonsOf(MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::OkCancel: return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::YesNo: return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::RetryCancel: return QMessageBox::Retry | QMessageBox::Cancel;
    case MessageButtons::Ok: break;
    }
    return QMessageBox::Ok;
}

Answer AnswerOf(int button) {
    switch (button) {
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    case QMessageBox::Cancel: return Answer::Cancel;
    case QMessageBox::Retry: return Answer::Retry;
    case QMessageBox::Open: return Answer::Open;
    default: return Answer::Ok;
    }
}

Answer RefusalOf(MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::YesNo: return Answer::No;
    case MessageButtons::Ok: return Answer::Ok;
    default: return Answer::Cancel;
    }
}

QString TitleOf(const std::string& title) {
    return title.empty() ? QGuiApplication::applicationDisplayName() : ToQt(title);
}

/// What a question belongs to. Without one it could lie behind the windows that wait for it.
QWidget* Asker() {
    if (QWidget* active = QApplication::activeWindow())
        return active;
    if (QWidget* procedure = ProcedureWindow())
        return procedure;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto isMain = [](const QWidget* window) {
        return window->isVisible() && qobject_cast<const QMainWindow*>(window) != nullptr;
    };
    const auto main = std::find_if(windows.begin(), windows.end(), isMain);
    return main == windows.end() ? nullptr : *main;
}

/// The question has taken the front; the procedure goes on where it can be seen.
void RaiseProcedure() {
    if (QWidget* procedure = ProcedureWindow()) {
        procedure->raise();
        procedure->activateWindow();
    }
}

/// Widens a box to its longest line, so that a path is not broken behind its drive letter.
void FitToLines(QMessageBox& box) {
    constexpr int widest = 900;
    constexpr int iconAndMargins = 80;
    int width = 0;
    for (const QString& line : box.text().split(QLatin1Char('\n')))
        width = std::max(width, box.fontMetrics().horizontalAdvance(line));
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (grid == nullptr)
        return;
    grid->addItem(new QSpacerItem(std::min(width + iconAndMargins, widest), 0), grid->rowCount(), 0,
                  1, grid->columnCount());
}

/// The folder that shows a place: what of it is there.
std::filesystem::path FolderOf(std::filesystem::path place) {
    std::error_code error;
    while (place.has_relative_path() && !std::filesystem::is_directory(place, error))
        place = place.parent_path();
    return place;
}

/// A button that leaves the question standing.
void AddShowInFolder(QMessageBox& box, const std::filesystem::path& place,
                     const std::function<void(const std::filesystem::path&)>& showFolder) {
    auto* show = box.addButton(QMessageBox::tr("Show in &Folder"), QMessageBox::ActionRole);
    show->setObjectName(QStringLiteral("cmdShowInFolder"));
    show->setToolTip(QString::fromStdString(place.string()));
    show->disconnect(); // the box would take it for an answer
    QObject::connect(show, &QAbstractButton::clicked, &box,
                     [place, showFolder] { showFolder(FolderOf(place)); });
}

} // namespace

Answer QtOperator::Ask(const Message& message) {
    if (m_NobodyIsThere) {
        std::fputs((ReplaceAll(message.Text, "\r\n", "\n") + "\n").c_str(), stderr);
        return RefusalOf(message.Buttons);
    }
    QMessageBox box(IconOf(message.Icon), TitleOf(message.Title), LinesToQt(message.Text),
                    ButtonsOf(message.Buttons), Asker());
    box.setObjectName(QStringLiteral("messageBox"));
    box.setTextFormat(Qt::PlainText);
    FitToLines(box);
    if ((message.OffersToOpen || !message.Place.empty()) && message.Buttons == MessageButtons::Ok)
        box.setEscapeButton(QMessageBox::Ok);
    if (message.OffersToOpen)
        box.addButton(QMessageBox::Open);
    if (!message.Place.empty())
        AddShowInFolder(box, message.Place, ShowFolder);
    if (message.DefaultsToRefusal)
        box.setDefaultButton(message.Buttons == MessageButtons::YesNo ? QMessageBox::No
                                                                      : QMessageBox::Cancel);
    const int button = box.exec();
    RaiseProcedure();
    // A box that was taken away has no button clicked.
    return m_NobodyIsThere ? RefusalOf(message.Buttons) : AnswerOf(button);
}

std::optional<std::string> QtOperator::AskText(const std::string& prompt,
                                               const std::string& proposed,
                                               const std::string& title) {
    if (m_NobodyIsThere)
        return std::nullopt;
    QInputDialog box(Asker());
    box.setObjectName(QStringLiteral("inputBox"));
    box.setWindowTitle(TitleOf(title));
    box.setLabelText(LinesToQt(prompt));
    box.setTextValue(ToQt(proposed));
    const bool accepted = box.exec() == QDialog::Accepted;
    RaiseProcedure();
    if (!accepted)
        return std::nullopt;
    return box.textValue().toStdString();
}

void QtOperator::StopAsking() {
    m_NobodyIsThere = true;
    while (QWidget* popup = QApplication::activePopupWidget()) {
        if (!popup->close())
            break;
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QDialog*>(window); dialog != nullptr && dialog->isVisible())
            dialog->reject();
    }
}

namespace {

constexpr auto BoxName = "boxWhileRunning";

QMessageBox* StandingBox(const QWidget& window) {
    return window.findChild<QMessageBox*>(QLatin1String(BoxName), Qt::FindDirectChildrenOnly);
}

} // namespace

void AskWhileRunning(QWidget& window, const QString& text, std::function<void()> onYes) {
    if (QMessageBox* standing = StandingBox(window)) {
        standing->raise();
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Question, QGuiApplication::applicationDisplayName(),
                                text, QMessageBox::Yes | QMessageBox::No, &window);
    box->setObjectName(QLatin1String(BoxName));
    box->setDefaultButton(QMessageBox::No);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QMessageBox::finished, &window, [onYes = std::move(onYes)](int chosen) {
        if (chosen == QMessageBox::Yes)
            onYes();
    });
    box->open();
}

void WithdrawQuestion(QWidget& window) {
    if (QMessageBox* standing = StandingBox(window))
        standing->reject();
}

} // namespace ombrix

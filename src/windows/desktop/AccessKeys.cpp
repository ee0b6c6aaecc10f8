#include "windows/desktop/AccessKeys.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>

namespace ombrix {

namespace {

constexpr QLatin1String Escape("Esc)");

/// The character that a caption marks with "&"; none without a mark.
QString MarkedIn(const QString& caption) {
    const QString key = QKeySequence::mnemonic(caption).toString(QKeySequence::PortableText);
    return key.right(key.startsWith(QLatin1String("Alt+")) ? 1 : 0);
}

/// What the keys of a window are taken for already.
QString TakenIn(const QWidget& window) {
    QString taken;
    for (const QMenuBar* bar : window.findChildren<QMenuBar*>()) {
        for (const QAction* menu : bar->actions())
            taken += MarkedIn(menu->text());
    }
    for (const QLabel* label : window.findChildren<QLabel*>())
        taken += label->buddy() != nullptr ? MarkedIn(label->text()) : QString();
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        taken += MarkedIn(button->text());
        if (const auto* key = button->findChild<QShortcut*>())
            taken += key->key().toString().right(1);
    }
    return taken;
}

/// The letters that begin the words of a caption, then its other ones, then the digits.
QString CandidatesOf(const QString& caption) {
    QString first;
    QString others;
    QChar before = QLatin1Char(' ');
    for (const QChar character : caption.toUpper()) {
        const bool isLatin = character >= QLatin1Char('A') && character <= QLatin1Char('Z');
        if (isLatin)
            (before.isLetterOrNumber() ? others : first) += character;
        before = character;
    }
    return first + others + QStringLiteral("123456789");
}

/// What Esc does needs no other key.
bool WantsKey(const QAbstractButton& button, const QWidget& window) {
    return button.window() == &window && !button.text().isEmpty() &&
           button.focusPolicy() != Qt::NoFocus && MarkedIn(button.text()).isEmpty() &&
           button.findChild<QShortcut*>() == nullptr && !button.toolTip().contains(Escape) &&
           qobject_cast<const QDialogButtonBox*>(button.parentWidget()) == nullptr;
}

void GiveKeys(QWidget& window) {
    QString taken = TakenIn(window);
    auto buttons = window.findChildren<QAbstractButton*>();
    // A large window has more of them than there are letters.
    std::stable_partition(buttons.begin(), buttons.end(), [](const QAbstractButton* button) {
        return qobject_cast<const QPushButton*>(button) != nullptr;
    });
    for (QAbstractButton* button : buttons) {
        if (!WantsKey(*button, window))
            continue;
        const QString candidates = CandidatesOf(button->text());
        const auto free =
            std::find_if(candidates.begin(), candidates.end(),
                         [&taken](QChar candidate) { return !taken.contains(candidate); });
        if (free == candidates.end())
            continue;
        taken += *free;
        const QString key = QStringLiteral("Alt+") + *free;
        QObject::connect(new QShortcut(QKeySequence(key), button), &QShortcut::activated, button,
                         &QAbstractButton::click);
        const QString tip = button->toolTip();
        button->setToolTip(tip.isEmpty() ? key : QStringLiteral("%1 (%2)").arg(tip, key));
    }
}

} // namespace

AccessKeys::AccessKeys() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool AccessKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        auto& widget = static_cast<QWidget&>(*watched);
        if (widget.isWindow() && widget.windowType() != Qt::ToolTip)
            GiveKeys(widget);
    }
    return false;
}

} // namespace ombrix

#include "windows/widgets/OpenQuestion.h"

#include <QGuiApplication>

#include <utility>

namespace ombrix {

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

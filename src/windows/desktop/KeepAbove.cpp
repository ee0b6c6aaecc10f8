#include "windows/desktop/KeepAbove.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace ombrix {

namespace {

constexpr auto ShowsProcedure = "showsProcedure";

/// The owner is told to the desktop and is not the widget's parent: its controls stay its own.
class Keeper final : public QObject {
  public:
    Keeper(QWidget& window, QWidget& owner) : QObject(&window), m_Window(window), m_Owner(owner) {
        // Desktops keep dialogs above their owner, and those alone.
        if (m_Window.windowType() != Qt::Dialog)
            m_Window.setWindowFlags(Qt::Dialog | Qt::WindowMinMaxButtonsHint |
                                    Qt::WindowCloseButtonHint);
        m_Window.winId(); // a window that the desktop knows can be given its owner
        m_Window.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Show && !event->spontaneous()) {
            m_Window.windowHandle()->setTransientParent(m_Owner.window()->windowHandle());
            Centre();
        }
        return false;
    }

  private:
    void Centre() {
        // One that was put somewhere, as where it was left, stays there.
        if (m_Placed || m_Window.testAttribute(Qt::WA_Moved) || !m_Owner.isVisible())
            return;
        m_Placed = true;
        const QRect screen = m_Owner.screen()->availableGeometry();
        QRect place(QPoint(), m_Window.size().boundedTo(screen.size()));
        place.moveCenter(m_Owner.window()->geometry().center());
        place.moveLeft(std::clamp(place.left(), screen.left(), screen.right() - place.width() + 1));
        place.moveTop(std::clamp(place.top(), screen.top(), screen.bottom() - place.height() + 1));
        m_Window.move(place.topLeft());
    }

    QWidget& m_Window;
    QWidget& m_Owner;
    bool m_Placed = false;
};

} // namespace

void KeepAbove(QWidget& window, QWidget& owner) {
    new Keeper(window, owner);
}

void BringUp(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

void MarkAsProcedureWindow(QWidget& window) {
    window.setProperty(ShowsProcedure, true);
}

QWidget* ProcedureWindow() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->property(ShowsProcedure).toBool())
            return window;
    }
    return nullptr;
}

} // namespace ombrix

#include "windows/desktop/WindowPlace.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QSettings>
#include <QWidget>

namespace ombrix {

namespace {

/// A window that has been put where it was left is not put there again: it may have been moved.
constexpr auto WasPlaced = "wasPlaced";

/// What desktops put around a window, about.
constexpr QSize Frame(4, 32);

QString GeometryKey(const QWidget& window) {
    return window.objectName() + QStringLiteral("/Geometry");
}

} // namespace

WindowPlaces::WindowPlaces(QSettings& settings) : m_Settings(settings) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool WindowPlaces::eventFilter(QObject* watched, QEvent* event) {
    const bool shows = event->type() == QEvent::Show;
    if (!(shows || event->type() == QEvent::Hide) || event->spontaneous() ||
        !watched->isWidgetType() || !watched->objectName().startsWith(QLatin1String("frm")))
        return false;
    auto& window = static_cast<QWidget&>(*watched);
    if (!window.isWindow())
        return false;
    if (!shows) {
        m_Settings.setValue(GeometryKey(window), window.saveGeometry());
    } else if (!window.property(WasPlaced).toBool()) {
        window.setProperty(WasPlaced, true);
        // What is no geometry, or lies on a screen that is gone, is put right by the toolkit.
        window.restoreGeometry(m_Settings.value(GeometryKey(window)).toByteArray());
        // What ends things stands at the foot of a window, and must not lie below the screen.
        window.resize(window.size().boundedTo(window.screen()->availableSize() - Frame));
    }
    return false;
}

} // namespace ombrix

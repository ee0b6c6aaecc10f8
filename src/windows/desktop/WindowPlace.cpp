#include "windows/desktop/WindowPlace.h"

#include <QSettings>
#include <QWidget>

namespace ombrix {

namespace {

QString GeometryKey(const QWidget& window) {
    return window.objectName() + QStringLiteral("/Geometry");
}

} // namespace

WindowPlace::WindowPlace(QWidget& window, QSettings& settings)
    : m_Window(window), m_Settings(settings) {
    // What is no geometry, or lies on a screen that is gone, is put right by the toolkit.
    m_Window.restoreGeometry(m_Settings.value(GeometryKey(m_Window)).toByteArray());
}

WindowPlace::~WindowPlace() {
    m_Settings.setValue(GeometryKey(m_Window), m_Window.saveGeometry());
}

} // namespace ombrix

#pragma once

class QSettings;
class QWidget;

namespace ombrix {

/// Opens a window where the operator left it: takes its place and size from the settings, and
/// gives them back at its own end.
class WindowPlace {
  public:
    /// Both outlive this; the window's object name is the name of the group in the settings.
    WindowPlace(QWidget& window, QSettings& settings);
    WindowPlace(const WindowPlace&) = delete;
    WindowPlace& operator=(const WindowPlace&) = delete;
    ~WindowPlace();

  private:
    QWidget& m_Window;
    QSettings& m_Settings;
};

} // namespace ombrix

#pragma once

#include <QObject>

class QSettings;

namespace ombrix {

/// Opens every window of the program, those whose names begin with "frm", where the operator left
/// it: takes its place and size from the settings when it is shown first, and gives them back when
/// it goes. None is larger than the screen.
class WindowPlaces final : public QObject {
    Q_OBJECT

  public:
    /// Listens to the application for as long as it lives.
    /// @param settings a window's object name is the name of its group there
    explicit WindowPlaces(QSettings& settings);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QSettings& m_Settings;
};

} // namespace ombrix

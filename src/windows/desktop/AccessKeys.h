#pragma once

#include <QObject>

namespace ombrix {

/// Gives the buttons of every window a key of their own: Alt and a letter of the caption, which the
/// tool tip names. Captions stay as they are; one that marks its letter itself keeps it.
class AccessKeys final : public QObject {
    Q_OBJECT

  public:
    /// Listens to the application for as long as it lives.
    AccessKeys();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace ombrix

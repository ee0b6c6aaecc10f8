#pragma once

#include "board/Station.h"

#include <QObject>

namespace ombrix {

/// The keys that end what runs, in every window of the program: Esc cancels the procedure,
/// Shift+Esc stops the air. A message that waits for its answer keeps its own Esc.
class StopKeys final : public QObject {
    Q_OBJECT

  public:
    /// Listens to the application for as long as it lives.
    explicit StopKeys(Station& station);

  signals:
    void StopAirWanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    Station& m_Station;
};

} // namespace ombrix

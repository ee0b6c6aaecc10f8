#pragma once

#include "benchtests/DataRecorder.h"

#include <QCheckBox>

class QTimer;

namespace ombrix {

/// The box "Record ADCs": while it is ticked, a line is recorded with every tick of its timer.
/// A procedure has the board to itself: meanwhile no line is made.
class RecordingBox final : public QCheckBox {
    Q_OBJECT

  public:
    RecordingBox(Station& station, QWidget* parent);

    /// Closes the file and unticks the box.
    void StopRecording();

  private:
    void Clicked(bool ticked);
    void Tick();
    void RunTimer();

    Station& m_Station;
    DataRecorder m_Recorder;
    QTimer* m_Timer;
    Subscription m_Procedures;
};

} // namespace ombrix

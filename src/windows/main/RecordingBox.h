#pragma once

#include "benchtests/DataRecorder.h"

#include <QCheckBox>

class QTimer;

namespace ombrix {

/// The box "Record ADCs": while it is ticked, a line is recorded with every tick of its timer.
/// It goes on while a procedure runs, with the board that it began with.
class RecordingBox final : public QCheckBox {
    Q_OBJECT

  public:
    RecordingBox(Station& station, QWidget* parent);

    /// Closes the file and unticks the box.
    void StopRecording();
    /// Makes no lines meanwhile.
    void Hold(bool hold);

  signals:
    /// How far the recording is, for the operator; empty when there is none.
    void Recorded(const QString& text);

  private:
    void Clicked(bool ticked);
    void Tick();
    void ShowRecorded();
    void EndRecording();
    void RunTimer();

    Station& m_Station;
    DataRecorder m_Recorder;
    QTimer* m_Timer;
    bool m_Held = false;
};

} // namespace ombrix

#pragma once

#include "benchtests/DataRecorder.h"

#include <QWidget>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QTimer;

namespace ombrix {

class ValueLabel;

/// The box "Record ADCs": while it is ticked, a line is recorded with every tick of its timer.
/// It goes on while a procedure runs, with the board that it began with. Beneath it stands how far
/// the recording is, and the field for marks.
class RecordingPanel final : public QWidget {
    Q_OBJECT

  public:
    RecordingPanel(Station& station, QWidget* parent);

    /// Closes the file and unticks the box.
    void StopRecording();
    /// Makes no lines meanwhile.
    void Hold(bool hold);
    /// A recording that goes on takes marks also while nothing else is taken.
    void TakeCommands(bool take);

  private:
    QLayout* MakeMarkRow();
    void Clicked(bool ticked);
    void Tick();
    void Mark();
    /// Writes to the file. What cannot be written ends the recording and is told.
    template <class Writing>
    void Write(const Writing& writing);
    void ShowRecorded();
    void ShowFile();
    void EndRecording();
    void ShowState();

    Station& m_Station;
    DataRecorder m_Recorder;
    QTimer* m_Timer;
    QTimer* m_Shown;
    QCheckBox* m_Record;
    ValueLabel* m_File;
    ValueLabel* m_Recorded;
    ValueLabel* m_Space;
    QLineEdit* m_MarkText;
    QPushButton* m_Mark;
    bool m_Held = false;
};

} // namespace ombrix

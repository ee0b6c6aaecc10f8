#include "windows/main/RecordingBox.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

#include <QTimer>

namespace ombrix {

namespace {

constexpr int DesignInterval_ms = 20;
/// A request: the real rate is what board and event loop allow.
constexpr int LineSpacing_ms = 10;

} // namespace

RecordingBox::RecordingBox(Station& station, QWidget* parent)
    : QCheckBox(tr("Record ADCs"), parent), m_Station(station), m_Recorder(station),
      m_Timer(new QTimer(this)) {
    Named(this, QStringLiteral("chkRecordADCs"), tr("Record ADCs"));
    setToolTip(tr("Records the four inputs and the pressure register into a file on drive C:."));
    m_Timer->setObjectName(QStringLiteral("timRecordData"));
    m_Timer->setTimerType(Qt::PreciseTimer);
    m_Timer->setInterval(DesignInterval_ms);
    connect(m_Timer, &QTimer::timeout, this, &RecordingBox::Tick);
    connect(this, &QCheckBox::clicked, this, &RecordingBox::Clicked);
}

void RecordingBox::Clicked(bool ticked) {
    m_Recorder.Stop();
    if (ticked && Guarded(m_Station.World.Messages, [this] { m_Recorder.Start(); }))
        ShowRecorded();
    setChecked(m_Recorder.Recording());
    RunTimer();
}

void RecordingBox::ShowRecorded() {
    emit Recorded(
        m_Recorder.FailedReadings() == 0
            ? tr("%1 lines").arg(m_Recorder.Lines())
            : tr("%1 lines, %2 failed").arg(m_Recorder.Lines()).arg(m_Recorder.FailedReadings()));
}

void RecordingBox::StopRecording() {
    m_Recorder.Stop();
    setChecked(false);
    RunTimer();
}

void RecordingBox::Hold(bool hold) {
    m_Held = hold;
    RunTimer();
}

void RecordingBox::RunTimer() {
    if (m_Recorder.Recording() && !m_Held)
        m_Timer->start(LineSpacing_ms);
    else
        m_Timer->stop();
}

void RecordingBox::Tick() {
    try {
        m_Recorder.RecordLine();
        ShowRecorded();
    } catch (const std::exception& error) {
        // The box and the timer first: the message below lets further ticks through.
        StopRecording();
        m_Station.World.Messages.Ask(
            {std::string("The recording has been stopped.\r\n\r\n") + error.what(),
             MessageIcon::Critical, MessageButtons::Ok});
    }
}

} // namespace ombrix

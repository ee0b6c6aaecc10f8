#include "windows/main/RecordingBox.h"

#include "platform/os/ProgramLog.h"
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
    EndRecording();
    if (ticked && Guarded(m_Station.World.Messages, [this] { m_Recorder.Start(); }))
        ShowRecorded();
    setChecked(m_Recorder.Recording());
    RunTimer();
}

void RecordingBox::ShowRecorded() {
    QString text = tr("%1 lines").arg(m_Recorder.Lines());
    if (m_Recorder.FailedReadings() > 0)
        text += tr(", %1 failed").arg(m_Recorder.FailedReadings());
    if (!m_Recorder.File().Trouble().empty())
        text = tr("Elsewhere: %1").arg(text);
    emit Recorded(text);
}

void RecordingBox::EndRecording() {
    if (!m_Recorder.Recording())
        return;
    m_Recorder.Stop();
    RunTimer(); // the message below lets further ticks through
    // Not while it goes on: a procedure may be driving air, and would wait for the answer.
    if (!m_Recorder.File().Trouble().empty())
        TellOperator(m_Station.World, m_Recorder.File().Trouble(), MessageIcon::Warning);
}

void RecordingBox::StopRecording() {
    EndRecording();
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
        const std::string& trouble = m_Recorder.File().Trouble();
        m_Station.World.Messages.Ask({std::string("The recording has been stopped.\r\n\r\n") +
                                          error.what() + (trouble.empty() ? "" : "\r\n\r\n") +
                                          trouble,
                                      MessageIcon::Critical, MessageButtons::Ok});
    }
}

} // namespace ombrix

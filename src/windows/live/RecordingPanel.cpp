#include "windows/live/RecordingPanel.h"

#include "platform/os/ProgramLog.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTimer>

#include <cmath>
#include <filesystem>
#include <system_error>

namespace ombrix {

namespace {

constexpr int DesignInterval_ms = 20;
/// A request: the real rate is what board and event loop allow.
constexpr int LineSpacing_ms = 10;
constexpr int ShownSpacing_ms = 100;

QString SizeText(std::uintmax_t bytes) {
    return QLocale::c().formattedDataSize(static_cast<qint64>(bytes));
}

QString ClockText(double seconds) {
    constexpr int minute = 60;
    const auto whole = static_cast<int>(seconds);
    return QStringLiteral("%1:%2:%3")
        .arg(whole / (minute * minute))
        .arg(whole / minute % minute, 2, 10, QLatin1Char('0'))
        .arg(whole % minute, 2, 10, QLatin1Char('0'));
}

ValueLabel* MakeRecordingLine(const char* objectName, const QString& meaning, QWidget* parent) {
    auto* line = new ValueLabel(QLatin1String(objectName), meaning, parent);
    line->CutToFit();
    line->setFixedHeight(line->fontMetrics().height());
    return line;
}

} // namespace

RecordingPanel::RecordingPanel(Station& station, QWidget* parent)
    : QWidget(parent), m_Station(station), m_Recorder(station), m_Timer(new QTimer(this)),
      m_Shown(new QTimer(this)),
      m_Record(MakeCheckBox(QStringLiteral("chkRecordADCs"), tr("Record ADCs"), this)),
      m_File(MakeRecordingLine("lblRecordedFile", tr("File of the recording"), this)),
      m_Recorded(MakeRecordingLine("lblRecorded", tr("Recording"), this)),
      m_Space(MakeRecordingLine("lblRecordedSize", tr("Size of the recording"), this)) {
    m_Record->setToolTip(
        tr("Records the four inputs and the pressure register into a file on drive C:."));
    m_Timer->setObjectName(QStringLiteral("timRecordData"));
    m_Timer->setTimerType(Qt::PreciseTimer);
    m_Timer->setInterval(DesignInterval_ms);
    m_Shown->setInterval(ShownSpacing_ms);
    connect(m_Timer, &QTimer::timeout, this, &RecordingPanel::Tick);
    connect(m_Shown, &QTimer::timeout, this, &RecordingPanel::ShowRecorded);
    connect(m_Record, &QCheckBox::clicked, this, &RecordingPanel::Clicked);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    constexpr int rowSpacing = 2;
    layout->setSpacing(rowSpacing);
    for (QWidget* row : std::initializer_list<QWidget*>{m_Record, m_File, m_Recorded, m_Space})
        layout->addWidget(row);
    layout->addLayout(MakeMarkRow());
    ShowState();
}

QLayout* RecordingPanel::MakeMarkRow() {
    m_MarkText = Named(new QLineEdit(this), QStringLiteral("txtMark"), tr("Text of a mark"));
    m_MarkText->setPlaceholderText(tr("Note"));
    m_MarkText->setToolTip(tr("What has just happened. Enter puts it into the recording."));
    m_Mark = MakeButton(QStringLiteral("cmdMark"), tr("Mark"), this);
    m_Mark->setToolTip(tr("Puts the text into the recording, with the time."));
    connect(m_MarkText, &QLineEdit::returnPressed, this, &RecordingPanel::Mark);
    connect(m_Mark, &QPushButton::clicked, this, &RecordingPanel::Mark);
    auto* row = new QHBoxLayout;
    row->addWidget(m_MarkText, 1);
    row->addWidget(m_Mark);
    return row;
}

void RecordingPanel::Clicked(bool ticked) {
    EndRecording();
    if (ticked && Guarded(m_Station.World.Messages, [this] { m_Recorder.Start(); }))
        ShowRecorded();
    ShowState();
}

void RecordingPanel::ShowRecorded() {
    QString text =
        tr("%1 lines, %2").arg(m_Recorder.Lines()).arg(ClockText(m_Recorder.Duration_s()));
    if (m_Recorder.FailedReadings() > 0)
        text += tr(", %1 failed").arg(m_Recorder.FailedReadings());
    if (!m_Recorder.File().Trouble().empty())
        text += tr(", kept elsewhere");
    m_Recorded->ShowValue(text);
    ShowFile();
}

void RecordingPanel::ShowFile() {
    const auto& files = m_Recorder.File().Files();
    if (files.empty())
        return;
    const std::filesystem::path& file = files.back();
    m_File->ShowValue(ToQt(file.filename().string()));
    m_File->setToolTip(ToQt(file.string()));
    std::error_code noSize;
    const std::uintmax_t size = std::filesystem::file_size(file, noSize);
    std::error_code noSpace;
    const auto space = std::filesystem::space(file.parent_path(), noSpace);
    m_Space->ShowValue(tr("%1, %2 free")
                           .arg(noSize ? QStringLiteral("--") : SizeText(size),
                                noSpace ? QStringLiteral("--") : SizeText(space.available)));
}

void RecordingPanel::EndRecording() {
    if (!m_Recorder.Recording())
        return;
    m_Recorder.Stop();
    ShowRecorded();
    ShowState(); // the message below lets further ticks through
    // Not while it goes on: a procedure may be driving air, and would wait for the answer.
    if (!m_Recorder.File().Trouble().empty())
        TellOperator(m_Station.World, m_Recorder.File().Trouble(), MessageIcon::Warning);
}

void RecordingPanel::StopRecording() {
    EndRecording();
    ShowState();
}

void RecordingPanel::Hold(bool hold) {
    m_Held = hold;
    ShowState();
}

void RecordingPanel::TakeCommands(bool take) {
    m_Record->setEnabled(take);
}

void RecordingPanel::ShowState() {
    const bool recording = m_Recorder.Recording();
    m_Record->setChecked(recording);
    for (QWidget* control : std::initializer_list<QWidget*>{m_MarkText, m_Mark})
        control->setEnabled(recording);
    if (recording)
        m_Shown->start();
    else
        m_Shown->stop();
    if (recording && !m_Held)
        m_Timer->start(LineSpacing_ms);
    else
        m_Timer->stop();
}

void RecordingPanel::Mark() {
    const std::string text = m_MarkText->text().trimmed().toStdString();
    if (text.empty() || !m_Recorder.Recording())
        return;
    Write([&] { m_Recorder.Mark(text); });
    if (m_Recorder.Recording())
        m_MarkText->clear();
}

void RecordingPanel::Tick() {
    Write([this] { m_Recorder.RecordLine(); });
}

template <class Writing>
void RecordingPanel::Write(const Writing& writing) {
    try {
        writing();
    } catch (const std::exception& error) {
        // The box and the timers first: the message below lets further ticks through.
        StopRecording();
        const std::string& trouble = m_Recorder.File().Trouble();
        m_Station.World.Messages.Ask({std::string("The recording has been stopped.\r\n\r\n") +
                                          error.what() + (trouble.empty() ? "" : "\r\n\r\n") +
                                          trouble,
                                      MessageIcon::Critical, MessageButtons::Ok});
    }
}

} // namespace ombrix

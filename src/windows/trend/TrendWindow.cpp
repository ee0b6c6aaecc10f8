#include "windows/trend/TrendWindow.h"

#include "platform/os/FolderDrive.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/trend/TrendPlotWidget.h"
#include "windows/trend/TrendTable.h"
#include "windows/trend/TrendUnitChoosers.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/PlotAxis.h"
#include "windows/widgets/QtText.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>

namespace ombrix {

namespace {

/// How often what is being read is drawn: often enough to follow, and seldom enough for a
/// measurement that goes on beside it.
constexpr int LiveSpacing_ms = 200;
/// What a window that follows the boards shows at first.
constexpr double LiveSpan_s = 60.0;
constexpr QSize ExportSize(1600, 900);

} // namespace

TrendWindow::TrendWindow(Station& station)
    : QWidget(nullptr, Qt::Window),
      AskFileToOpen(FileDialogOf(*this, QFileDialog::AcceptOpen, tr("Open recording"),
                                 tr("Recordings, journals, reports (*.csv *.jsonl *.xlsx *.xls);;"
                                    "All files (*)"))),
      AskFileToWrite(FileDialogOf(*this, QFileDialog::AcceptSave, tr("Export"))),
      m_Station(station), m_Recorder(station), m_Plot(new TrendPlotWidget(this)),
      m_Table(new TrendTable(this)), m_Title(MakeCaption({}, this)), m_State(MakeCaption({}, this)),
      m_CursorTimes(MakeCaption({}, this)), m_Job(new TrendJob(this)) {
    Named(this, QStringLiteral("frmTrend"), tr("Trend"));
    m_Title->setObjectName(QStringLiteral("lblTrendTitle"));
    m_State->setObjectName(QStringLiteral("lblTrendState"));
    m_State->setWordWrap(true);
    m_CursorTimes->setObjectName(QStringLiteral("lblTrendCursors"));
    // What they say is of any length, and changes; pointing at them shows all of it.
    for (QLabel* label : {m_Title, m_CursorTimes})
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* parts = new QSplitter(this);
    parts->addWidget(m_Plot);
    parts->addWidget(m_Table);
    parts->handle(1)->setAccessibleName(tr("Divider between plot and traces"));
    parts->setChildrenCollapsible(false);
    parts->setStretchFactor(0, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeSourceRow());
    layout->addWidget(parts, 1);
    layout->addLayout(MakeViewRow());
    layout->addWidget(m_State);
    layout->addLayout(MakeFileRow());
    constexpr QSize comfortable(1200, 640);
    resize(ScaledToFonts(*this, comfortable));
    m_Ticks.setInterval(LiveSpacing_ms);
    Connect();
    ShowLive();
    m_Plot->setFocus();
}

TrendWindow::~TrendWindow() = default;

QLayout* TrendWindow::MakeSourceRow() {
    m_OpenFile = MakeButton(QStringLiteral("cmdOpen"), tr("&Open…"), this);
    m_OpenFile->setToolTip(tr("Shows a recording, a journal or a report."));
    m_Live = MakeButton(QStringLiteral("cmdLive"), tr("&Live"), this);
    m_Live->setToolTip(tr("Shows what the boards are being asked and told."));
    auto* row = new QHBoxLayout;
    row->addWidget(m_OpenFile);
    row->addWidget(m_Live);
    row->addWidget(m_Title, 1);
    m_Units = new TrendUnitChoosers(*row, this);
    return row;
}

QLayout* TrendWindow::MakeViewRow() {
    m_Pause = MakeButton(QStringLiteral("cmdPause"), tr("&Pause"), this);
    m_Pause->setCheckable(true);
    m_Pause->setToolTip(tr("Holds the picture (Space). What is read is kept all the same."));
    m_All = MakeButton(QStringLiteral("cmdAll"), tr("S&how all"), this);
    m_All->setToolTip(tr("Wheel: zoom the time, with Ctrl the values. Drag: pan. Right drag: zoom "
                         "into a box. Keys on the plot: arrows, +, -, Home."));
    m_ShowCursors = MakeCheckBox(QStringLiteral("chkCursors"), tr("&Cursors"), this);
    m_ShowCursors->setToolTip(tr("Drag them, or move A with Ctrl and the arrows, B with Shift."));
    auto* row = new QHBoxLayout;
    for (QWidget* control : std::initializer_list<QWidget*>{m_Pause, m_All, m_ShowCursors})
        row->addWidget(control);
    row->addWidget(m_CursorTimes, 1);
    return row;
}

QLayout* TrendWindow::MakeFileRow() {
    m_Progress = Named(new QProgressBar(this), QStringLiteral("prgTrend"), tr("Progress"));
    m_Cancel = MakeButton(QStringLiteral("cmdCancel"), tr("Cancel"), this);
    for (QWidget* control : std::initializer_list<QWidget*>{m_Progress, m_Cancel})
        control->hide();
    m_ExportPicture = MakeButton(QStringLiteral("cmdExportPNG"), tr("Export P&NG…"), this);
    m_ExportTable = MakeButton(QStringLiteral("cmdExportCSV"), tr("&Export CSV…"), this);
    m_ExportPicture->setToolTip(tr("Writes the plot as a picture."));
    m_ExportTable->setToolTip(tr("Writes what the plot shows as a table."));
    auto* close = MakeButton(QStringLiteral("cmdClose"), tr("Close"), this);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    auto* row = new QHBoxLayout;
    row->addWidget(m_Progress, 1);
    row->addWidget(m_Cancel);
    row->addStretch(1);
    for (QPushButton* button : {m_ExportPicture, m_ExportTable, close})
        row->addWidget(button);
    return row;
}

void TrendWindow::Connect() {
    connect(m_OpenFile, &QPushButton::clicked, this, &TrendWindow::OpenRecording);
    connect(m_Live, &QPushButton::clicked, this, &TrendWindow::ShowLive);
    connect(m_Pause, &QPushButton::clicked, this, &TrendWindow::Pause);
    connect(m_Plot, &TrendPlotWidget::PauseWanted, m_Pause, &QPushButton::click);
    connect(m_All, &QPushButton::clicked, this, [this] {
        m_Plot->ShowAll();
        Pause(true);
    });
    connect(m_ShowCursors, &QCheckBox::toggled, m_Plot, &TrendPlotWidget::ShowCursors);
    connect(m_Plot, &TrendPlotWidget::CursorsMoved, this, &TrendWindow::ShowValues);
    connect(m_Plot, &TrendPlotWidget::ViewChanged, this, [this](bool inTime) {
        // Whoever looks at another time wants to stay there.
        if (inTime)
            Pause(true);
    });
    connect(m_Table, &TrendTable::ChoiceChanged, this, &TrendWindow::ShowLines);
    connect(m_Units, &TrendUnitChoosers::Chosen, this, &TrendWindow::ShowTraces);
    connect(m_ExportPicture, &QPushButton::clicked, this, &TrendWindow::ExportPicture);
    connect(m_ExportTable, &QPushButton::clicked, this, &TrendWindow::ExportTable);
    connect(m_Cancel, &QPushButton::clicked, m_Job, &TrendJob::Cancel);
    connect(m_Job, &TrendJob::Ended, this, &TrendWindow::JobEnded);
    connect(m_Job, &TrendJob::Progressed, this, [this](float share) {
        constexpr float hundredPercent = 100.0F;
        m_Progress->setValue(static_cast<int>(share * hundredPercent));
    });
    connect(&m_Ticks, &QTimer::timeout, this, &TrendWindow::Tick);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

void TrendWindow::Open() {
    Tick();
    BringUp(*this);
}

void TrendWindow::OpenRecording() {
    Open();
    AskFileToOpen(ToQt(m_Station.World.Files.RealPath(Paths::DriveC).string()),
                  [this](const QString& file) { ShowFile(file); });
}

void TrendWindow::ShowFile(const QString& path) {
    if (path.isEmpty() || m_Job->Running())
        return;
    auto data = std::make_shared<TrendData>();
    m_Job->Start(
        [data, path = path.toStdString(), current = m_Recorder.Recorded().Scales](auto& progress) {
            LibreOfficeConverter converter;
            *data = ReadTrendFile(path, current, converter, progress);
        },
        [this, data] {
            m_File = data;
            ShowData();
            m_Plot->ShowAll();
        });
    ShowState(tr("Opening %1").arg(path));
    ShowJob(true);
}

void TrendWindow::ShowJob(bool running) {
    m_Progress->setVisible(running);
    m_Cancel->setVisible(running);
    m_OpenFile->setEnabled(!running);
    m_ExportTable->setEnabled(!running);
}

void TrendWindow::JobEnded(const QString& error) {
    ShowJob(false);
    ShowState(error.isEmpty() ? ScalesText() : error);
}

void TrendWindow::ShowLive() {
    m_File.reset();
    ShowData();
    Pause(false);
    ShowState(m_ScalesShown);
    Tick();
}

const TrendData& TrendWindow::Data() {
    return IsLive() ? m_Recorder.Recorded() : *m_File;
}

void TrendWindow::ShowData() {
    const TrendData& data = Data();
    const QString title = ToQt(data.Title);
    m_Title->setText(title);
    m_Title->setToolTip(title);
    setWindowTitle(tr("Trend - %1").arg(title));
    m_Pause->setEnabled(IsLive());
    m_Live->setEnabled(!IsLive());
    m_Plot->Refresh(IsLive() ? m_Recorder.Now_s() : data.End_s());
    m_Units->Fill(data);
    m_ScalesShown = ScalesText();
    ShowTraces();
}

void TrendWindow::ShowTraces() {
    const TrendData& data = Data();
    m_Table->ShowTraces(data, m_Units->Units());
    m_TracesShown = data.TraceCount();
    ShowLines();
}

void TrendWindow::ShowLines() {
    m_Plot->ShowLines(&Data(), m_Table->Lines(), m_Units->Units());
    ShowValues();
}

void TrendWindow::ShowValues() {
    const TrendData& data = Data();
    const auto& cursors = m_Plot->Cursors();
    m_Table->ShowValues(data, m_Plot->Scene().End_s, cursors);
    QString text;
    if (cursors) {
        const auto [a, b] = *cursors;
        const auto shown = [&data](double time) {
            constexpr int decimals = 3;
            return data.CountsSteps ? ToQt(FixedText(time, 0))
                                    : ToQt(FixedText(time, decimals)) + QStringLiteral(" s");
        };
        text = tr("A %1   B %2   B − A %3").arg(shown(a), shown(b), shown(b - a));
    }
    m_CursorTimes->setText(text);
    m_CursorTimes->setToolTip(text);
    m_CursorTimes->setAccessibleName(tr("Times of the cursors: %1").arg(text));
}

void TrendWindow::ShowState(const QString& text) {
    m_State->setText(text);
    m_State->setAccessibleName(tr("State of the trend: %1").arg(text));
}

QString TrendWindow::ScalesText() {
    const TrendData& data = Data();
    QStringList texts;
    for (const std::string& remark : data.Remarks)
        texts << ToQt(remark);
    texts << (data.Scales.Any()
                  ? tr("ml/min and mBar are those of %1.").arg(ToQt(data.Scales.Source))
                  : tr("ml/min and mBar are not known: no unit's record has been read."));
    return texts.join(QLatin1Char(' '));
}

void TrendWindow::Pause(bool paused) {
    if (!IsLive())
        return;
    m_Paused = paused;
    m_Pause->setChecked(paused);
    m_Pause->setText(paused ? tr("Go &on") : tr("&Pause"));
    m_Pause->setAccessibleName(paused ? tr("Go on") : tr("Pause"));
}

void TrendWindow::Tick() {
    if (!IsLive())
        return;
    const double now_s = m_Recorder.Now_s();
    if (!m_Paused) {
        m_Plot->Refresh(now_s);
        m_Plot->ShowTimes(now_s - LiveSpan_s, now_s);
    }
    if (Data().TraceCount() != m_TracesShown || ScalesText() != m_ScalesShown) {
        ShowData();
        ShowState(m_ScalesShown);
    } else {
        ShowValues();
    }
}

void TrendWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_Ticks.start();
}

void TrendWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_Ticks.stop();
}

void TrendWindow::closeEvent(QCloseEvent* event) {
    m_Job->Cancel();
    QWidget::closeEvent(event);
}

void TrendWindow::Write(const QString& ending,
                        const std::function<void(const QString& file)>& write) {
    AskAndWrite(*this, AskFileToWrite, QStringLiteral("trend.%1").arg(ending), write,
                [this](const QString& error) { ShowState(error); });
}

void TrendWindow::ExportPicture() {
    Write(QStringLiteral("png"), [this](const QString& file) {
        ReplaceWholeFile(file.toStdString(), PngOf(m_Plot->Picture(ExportSize)));
        ShowState(tr("Written: %1").arg(file));
    });
}

void TrendWindow::ExportTable() {
    Write(QStringLiteral("csv"), [this](const QString& file) {
        if (m_Job->Running())
            return;
        TrendSelection selection{{}, m_Plot->Scene().From_s, m_Plot->Scene().To_s};
        for (const TrendLine& line : m_Plot->Scene().Lines)
            selection.Traces.push_back(line.What);
        // A copy, which does not grow while it is written.
        auto data = std::make_shared<TrendData>(Data());
        m_Job->Start([data, selection, path = file.toStdString()](
                         auto& progress) { ExportTrendCsv(path, *data, selection, progress); },
                     [] {});
        ShowJob(true);
        ShowState(tr("Writing %1").arg(file));
    });
}

} // namespace ombrix

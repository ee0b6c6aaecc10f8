#include "windows/calibration/CalibrationHistoryWindow.h"

#include "calibration/history/HistoryText.h"
#include "platform/os/FolderDrive.h"
#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"
#include "windows/calibration/DriftPlotWidget.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/PlotAxis.h"
#include "windows/widgets/QtText.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeWidget>

#include <algorithm>

namespace ombrix {

namespace {

constexpr QSize PictureSize(1200, 675);

} // namespace

CalibrationHistoryWindow::CalibrationHistoryWindow(Station& station)
    : AskFileToWrite(FileDialogOf(*this, QFileDialog::AcceptSave, tr("Export"))),
      m_Station(station),
      m_Runs(Named(new QTreeWidget(this), QStringLiteral("lvwRuns"), tr("Runs of the unit"))),
      m_Details(Named(new QPlainTextEdit(this), QStringLiteral("txtDetails"),
                      tr("Details of the selected run"))),
      m_Plot(new DriftPlotWidget(this)), m_State(MakeCaption({}, this)) {
    Named(this, QStringLiteral("frmCalibrationHistory"), tr("Calibration History"));
    setWindowTitle(tr("Calibration History"));
    m_State->setObjectName(QStringLiteral("lblHistoryState"));
    // A path is of any length; pointing at it shows all of it.
    m_State->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_Runs->setHeaderLabels({tr("Date"), tr("Kind"), tr("Verdict"), tr("Station")});
    m_Runs->setRootIsDecorated(false);
    m_Details->setReadOnly(true);
    m_Details->setTabChangesFocus(true);
    m_Details->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_Details->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* left = new QSplitter(Qt::Vertical, this);
    left->addWidget(m_Runs);
    left->addWidget(m_Details);
    left->handle(1)->setAccessibleName(tr("Divider between runs and details"));
    auto* parts = new QSplitter(this);
    parts->addWidget(left);
    parts->addWidget(m_Plot);
    parts->handle(1)->setAccessibleName(tr("Divider between runs and drift"));
    // The list and the tables of a run need their width; the plot takes what is more.
    constexpr int listWidth = 500;
    constexpr int plotWidth = 700;
    parts->setSizes({listWidth, plotWidth});
    parts->setStretchFactor(1, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeChoosers());
    layout->addWidget(parts, 1);
    layout->addLayout(MakeButtons());
    constexpr QSize comfortable(1200, 680);
    resize(ScaledToFonts(*this, comfortable));
    connect(m_Runs, &QTreeWidget::currentItemChanged, this, &CalibrationHistoryWindow::ShowRun);
    m_Procedures = station.Procedures.Listen([this](bool running) { ProcedureRunning(running); });
}

QLayout* CalibrationHistoryWindow::MakeChoosers() {
    auto* row = new QHBoxLayout;
    m_Units = MakeChooser("cboUnit", tr("&Unit"), *row, this);
    constexpr int space = 24;
    row->addSpacing(space);
    m_Kinds = MakeChooser("cboKind", tr("&Drift of"), *row, this);
    for (const RunKind kind : RunKinds)
        m_Kinds->addItem(tr(TitleOf(kind)));
    m_Channels = MakeChooser("cboChannel", tr("&Channel"), *row, this);
    m_Channels->addItems({tr("Channel 1"), tr("Channel 2")});
    m_Scales = MakeChooser("cboScale", tr("&Scale"), *row, this);
    m_Scales->addItems({tr("% of full scale"), tr("ml/min or mBar")});
    row->addStretch(1);
    connect(m_Units, &QComboBox::currentIndexChanged, this, &CalibrationHistoryWindow::ShowUnit);
    for (QComboBox* chooser : {m_Kinds, m_Channels, m_Scales})
        connect(chooser, &QComboBox::currentIndexChanged, this,
                &CalibrationHistoryWindow::ShowDrift);
    return row;
}

QLayout* CalibrationHistoryWindow::MakeButtons() {
    m_ExportPicture = MakeButton(QStringLiteral("cmdExportPNG"), tr("Export &PNG…"), this);
    m_ExportPicture->setToolTip(tr("Stores the plot as a picture."));
    m_ExportTable = MakeButton(QStringLiteral("cmdExportCSV"), tr("&Export CSV…"), this);
    m_ExportTable->setToolTip(tr("Stores every point of every run of the unit as a table."));
    auto* close = MakeButton(QStringLiteral("cmdClose"), tr("C&lose"), this);
    close->setToolTip(tr("Closes the window."));
    connect(m_ExportPicture, &QPushButton::clicked, this, [this] {
        Export(QStringLiteral("png"), [this] { return PngOf(m_Plot->Picture(PictureSize)); });
    });
    connect(m_ExportTable, &QPushButton::clicked, this,
            [this] { Export(QStringLiteral("csv"), [this] { return HistoryCsv(m_History); }); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    auto* row = new QHBoxLayout;
    row->addWidget(m_State, 1);
    for (QPushButton* button : {m_ExportPicture, m_ExportTable, close})
        row->addWidget(button);
    return row;
}

void CalibrationHistoryWindow::Open() {
    OpenUnit(isVisible() ? Serial() : m_Station.CurrentAIB->SerialNumber());
}

void CalibrationHistoryWindow::OpenUnit(std::int32_t serial) {
    FillUnits(serial);
    BringUp(*this);
}

void CalibrationHistoryWindow::ProcedureRunning(bool running) {
    if (!running && isVisible())
        FillUnits(Serial()); // a calibration may have ended
}

void CalibrationHistoryWindow::FillUnits(std::int32_t wanted) {
    {
        const QSignalBlocker quiet(m_Units);
        m_Units->clear();
        Guarded(m_Station.World.Messages, [this] {
            for (const std::int32_t serial : UnitsWithHistory(m_Station.World.Files))
                m_Units->addItem(QStringLiteral("ACU%1").arg(serial, 5, 10, QLatin1Char('0')),
                                 serial);
        });
        m_Units->setCurrentIndex(std::max(0, m_Units->findData(wanted)));
    }
    ShowUnit();
}

std::int32_t CalibrationHistoryWindow::Serial() const {
    return m_Units->currentData().toInt();
}

QString CalibrationHistoryWindow::UnitName() const {
    return m_Units->currentText();
}

void CalibrationHistoryWindow::ShowUnit() {
    m_History = {};
    Guarded(m_Station.World.Messages,
            [this] { m_History = ReadHistory(m_Station.World.Files, Serial()); });
    m_Runs->clear();
    for (const HistoryEntry& run : m_History.Runs)
        new QTreeWidgetItem(m_Runs, {ToQt(IsoText(run.When)), tr(TitleOf(run.Kind)),
                                     ToQt(ShownVerdict(run)), ToQt(run.Program.Computer)});
    AutoSizeColumns(*m_Runs);
    const bool any = !m_History.Runs.empty();
    if (any)
        m_Runs->setCurrentItem(m_Runs->topLevelItem(m_Runs->topLevelItemCount() - 1));
    m_ExportPicture->setEnabled(any);
    m_ExportTable->setEnabled(any);
    ShowState(!any ? tr("No calibration has been run yet.")
              : m_History.DamagedLines > 0
                  ? tr("%n damaged line(s) of the history are passed over.", nullptr,
                       m_History.DamagedLines)
                  : QString());
    ShowRun();
    ShowDrift();
}

const HistoryEntry* CalibrationHistoryWindow::SelectedRun() const {
    const int row = m_Runs->indexOfTopLevelItem(m_Runs->currentItem());
    return row < 0 ? nullptr : &m_History.Runs.at(static_cast<std::size_t>(row));
}

void CalibrationHistoryWindow::ShowRun() {
    const HistoryEntry* run = SelectedRun();
    m_Details->setPlainText(run == nullptr ? QString() : ToQt(DetailsOf(*run)));
    // The plot shows runs of one kind: that of the run that is looked at.
    if (run != nullptr)
        m_Kinds->setCurrentIndex(static_cast<int>(
            std::find(RunKinds.begin(), RunKinds.end(), run->Kind) - RunKinds.begin()));
    MarkRun();
}

void CalibrationHistoryWindow::MarkRun() {
    const HistoryEntry* run = SelectedRun();
    const bool isShown =
        run != nullptr &&
        RunKinds.at(static_cast<std::size_t>(m_Kinds->currentIndex())) == run->Kind;
    m_Plot->MarkRun(isShown ? std::optional(run->When) : std::nullopt);
}

void CalibrationHistoryWindow::ShowState(const QString& text) {
    m_State->setText(text);
    m_State->setToolTip(text);
    m_State->setAccessibleName(tr("State of the history: %1").arg(text));
}

void CalibrationHistoryWindow::ShowDrift() {
    const RunKind kind = RunKinds.at(static_cast<std::size_t>(m_Kinds->currentIndex()));
    m_Channels->setEnabled(IsVelocity(kind));
    const auto scale =
        m_Scales->currentIndex() == 0 ? DriftScale::PercentOfFullScale : DriftScale::Physical;
    QString title = tr("%1   %2").arg(UnitName(), tr(TitleOf(kind)));
    if (IsVelocity(kind))
        title += QStringLiteral(", ") + m_Channels->currentText();
    m_Plot->Show(
        DriftOf(m_History, kind, static_cast<std::size_t>(m_Channels->currentIndex()), scale),
        title);
    MarkRun();
}

void CalibrationHistoryWindow::Export(const QString& ending,
                                      const std::function<std::string()>& content) {
    const Drive& files = m_Station.World.Files;
    const std::string proposed = FreePath(files, Paths::DriveC + UnitName().toStdString() +
                                                     "_history." + ending.toStdString());
    AskAndWrite(
        *this, AskFileToWrite, ToQt(files.RealPath(proposed).string()),
        [this, content](const QString& file) {
            ReplaceWholeFile(file.toStdString(), content());
            ShowState(tr("Written: %1").arg(file));
        },
        [this](const QString& error) { ShowState(error); });
}

} // namespace ombrix

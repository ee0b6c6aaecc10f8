#include "windows/calibration/ACUCalibrationWindow.h"

#include "board/unit/ACUCalibration.h"
#include "windows/calibration/DeviationPlotWidget.h"
#include "windows/calibration/PointListWidget.h"
#include "windows/calibration/StageListWidget.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/desktop/QtOperator.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/ProgressBar.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

namespace ombrix {

namespace {

QFont LabelFont(int points) {
    return {QStringLiteral("Arial"), points};
}

/// A label whose text may be longer than the window is wide: it must not move the window.
ValueLabel* MakeLine(const char* objectName, const QString& meaning, QWidget* parent) {
    constexpr int points = 10;
    auto* label = new ValueLabel(QLatin1String(objectName), meaning, parent);
    label->setFont(LabelFont(points));
    label->CutToFit();
    return label;
}

} // namespace

ACUCalibrationWindow::ACUCalibrationWindow(Station& station)
    : m_Station(station), m_Unit(MakeLine("lblUnit", tr("Unit"), this)),
      m_Stages(new StageListWidget(this)), m_PointList(new PointListWidget(this)),
      m_Deviations(new DeviationPlotWidget(this)),
      m_Phase(MakeLine("lblAccessoryCal1", tr("Calibration"), this)),
      m_Demand(MakeLine("lblAccessoryCal2", tr("Demand"), this)),
      m_Reading(MakeLine("lblAccessoryCal4", tr("Reading"), this)),
      m_Remaining(MakeLine("lblAccessoryCal5", tr("State"), this)),
      m_Warning(MakeLine("lblWarning", tr("Warning"), this)),
      m_Time(new ValueLabel(QStringLiteral("lblTime"), tr("Time"), this)),
      m_Progress(Named(new ProgressBar(this), QStringLiteral("ctrlProgressBar"),
                       tr("Progress of the measurement"))),
      m_Cancel(MakeButton(QStringLiteral("cmdCancel"), tr("Cancel"), this)), m_Times(station) {
    Named(this, QStringLiteral("frmACUCalibration"), tr("Calibration"));
    setWindowTitle(tr("Calibration"));
    constexpr int fromTheLeft = 0;
    constexpr int percentage = 1;
    m_Progress->Orientation(fromTheLeft);
    m_Progress->DisplayType(percentage);
    LayOut();
    SetToDesign();
    connect(m_Cancel, &QPushButton::clicked, this, &ACUCalibrationWindow::Cancel);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, m_Cancel,
            &QPushButton::click);
}

void ACUCalibrationWindow::LayOut() {
    auto* content = new QScrollArea(this);
    content->setWidget(MakeContent());
    content->setWidgetResizable(true);
    content->setFrameShape(QFrame::NoFrame);
    content->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(content, 1);
    layout->addLayout(MakeFoot());
    constexpr QSize comfortable(1000, 680);
    resize(ScaledToScreen(*this, comfortable));
}

QWidget* ACUCalibrationWindow::MakeContent() {
    constexpr int headingPoints = 14;
    auto* heading = MakeCaption(tr("Calibrating Aeration Control Unit"), this);
    heading->setObjectName(QStringLiteral("lblCalMsg"));
    heading->setFont(LabelFont(headingPoints));
    auto* left = new QVBoxLayout;
    left->addWidget(m_Stages);
    left->addLayout(MakeStatusLines());
    auto* upper = new QHBoxLayout;
    upper->addLayout(left, 1);
    upper->addWidget(m_Deviations, 1);
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(heading);
    layout->addWidget(m_Unit);
    layout->addLayout(upper);
    layout->addWidget(m_PointList);
    return content;
}

/// What stays in sight however small the window is.
QLayout* ACUCalibrationWindow::MakeFoot() {
    constexpr int progressHeight = 28;
    constexpr int progressPoints = 10;
    m_Progress->setFont(LabelFont(progressPoints));
    m_Progress->setFixedHeight(progressHeight);
    auto* foot = new QHBoxLayout;
    foot->addWidget(m_Progress, 1);
    foot->addWidget(m_Time);
    foot->addWidget(m_Cancel);
    return foot;
}

QLayout* ACUCalibrationWindow::MakeStatusLines() {
    QFont bold = m_Phase->font();
    bold.setBold(true);
    m_Phase->setFont(bold);
    auto* lines = new QVBoxLayout;
    constexpr Colour red{255, 0, 0};
    m_Warning->setFont(bold);
    m_Warning->ShowInColour(red);
    for (ValueLabel* line : {m_Phase, m_Demand, m_Reading, m_Remaining, m_Warning})
        lines->addWidget(line);
    return lines;
}

void ACUCalibrationWindow::SetToDesign() {
    m_Stages->clear();
    m_PointList->clear();
    m_Points = {};
    m_Deviations->Show({}, {});
    m_Time->ShowValue({});
    m_Unit->ShowValue({});
    m_Warning->ShowValue({});
    ClearLines();
    m_Cancel->setEnabled(true);
    setEnabled(true);
}

void ACUCalibrationWindow::ClearLines() {
    m_Phase->ShowValue(tr("Calibration Initialising"));
    for (ValueLabel* line : {m_Demand, m_Reading, m_Remaining})
        line->ShowValue(QStringLiteral("-"));
    m_Progress->Clear();
}

void ACUCalibrationWindow::Appear() {
    const ACU unit = m_Station.Calibration().Unit();
    m_Unit->ShowValue(tr("%1   MFC number %2")
                          .arg(ToQt(unit.SerialNumberStr()), ToQt(unit.Record.ACUMFCNumber())));
    BringUp(*this);
}

void ACUCalibrationWindow::Stage_Add(const std::string& name) {
    if (m_Stages->topLevelItemCount() == 0)
        Appear();
    m_Stages->Add(ToQt(name));
}

void ACUCalibrationWindow::Stage_RunNext() {
    ClearLines(); // what the stage before showed last
    m_Stages->RunNext();
}

void ACUCalibrationWindow::Stage_Complete(End ended) {
    m_Stages->Complete(ended);
}

ValueLabel& ACUCalibrationWindow::LineOf(StageLine line) const {
    switch (line) {
    case StageLine::Demand: return *m_Demand;
    case StageLine::Reading: return *m_Reading;
    case StageLine::Remaining: return *m_Remaining;
    case StageLine::Phase: break;
    }
    return *m_Phase;
}

void ACUCalibrationWindow::BeginPoints(const PointTable& table) {
    m_Points = table;
    m_PointsTitle = QStringLiteral("%1, %2").arg(m_Stages->CurrentName(), ToQt(table.Title));
    m_PointList->Begin(m_PointsTitle, table);
    m_Deviations->Show(m_PointsTitle, m_Points.Lines);
}

void ACUCalibrationWindow::ShowPoint(std::size_t point, const PointLine& line) {
    m_Points.Lines.at(point) = line;
    m_PointList->Show(point, line);
    m_Deviations->Show(m_PointsTitle, m_Points.Lines);
}

void ACUCalibrationWindow::ShowLine(StageLine line, const std::string& text) {
    LineOf(line).ShowValue(ToQt(text));
}

void ACUCalibrationWindow::ShowWarning(const std::string& text) {
    m_Warning->ShowValue(ToQt(text));
}

void ACUCalibrationWindow::BeginProgress(float span_s) {
    m_Progress->MinVal(0.0F);
    m_Progress->MaxVal(span_s);
    m_Progress->Value(0.0F);
    m_Progress->Refresh();
}

void ACUCalibrationWindow::ShowProgress(float elapsed_s) {
    m_Progress->Value(elapsed_s);
    m_Times.Look();
    m_Time->ShowValue(m_Times.Text());
}

void ACUCalibrationWindow::EndProgress() {
    m_Progress->Clear();
}

void ACUCalibrationWindow::TakeInput(bool take) {
    setEnabled(take);
}

void ACUCalibrationWindow::Close() {
    WithdrawQuestion(*this);
    hide();
    SetToDesign();
}

void ACUCalibrationWindow::Cancel() {
    m_Station.Procedures.Cancel();
    m_Cancel->setEnabled(false);
}

void ACUCalibrationWindow::closeEvent(QCloseEvent* event) {
    if (!m_Station.Procedures.Running())
        return;
    event->ignore();
    AskWhileRunning(*this, tr("The calibration is running.\n\nCancel it and close the window?"),
                    [this] { Cancel(); });
}

} // namespace ombrix

#include "windows/main/TestPanels.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/ValueLabel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace ombrix {

TestsPanel::TestsPanel(QWidget* parent)
    : QGroupBox(tr("ACU Tests"), parent),
      m_HealthCheck(MakeButton(QStringLiteral("Command3"), tr("Run ACU Test"), this)),
      m_DigitalMFCs(
          MakeButton(QStringLiteral("cmdTestDigitalMFCs"), tr("Test Digital MFCs"), this)),
      m_Cancel(MakeButton(QStringLiteral("cmdCancelTest"), tr("Cancel"), this)),
      m_Stage(new ValueLabel(QStringLiteral("lblDMFCStage"), tr("Digital MFC test"), this)) {
    m_HealthCheck->setToolTip(tr("Opens the health check of the ACU."));
    m_DigitalMFCs->setToolTip(
        tr("Runs ten demand steps on each channel and compares the way up with the way down."));
    m_Cancel->setToolTip(tr("Ends the test with both channels at zero (Esc)."));
    m_Cancel->setEnabled(false);
    m_Stage->ShowValue(tr("[DMFC Stage]"));
    m_Stage->CutToFit();
    connect(m_HealthCheck, &QPushButton::clicked, this, &TestsPanel::HealthCheckWanted);
    connect(m_DigitalMFCs, &QPushButton::clicked, this, &TestsPanel::DigitalMFCTestWanted);
    connect(m_Cancel, &QPushButton::clicked, this, &TestsPanel::CancelWanted);
    auto* progress = new QHBoxLayout;
    progress->addWidget(m_Stage, 1);
    progress->addWidget(m_Cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_HealthCheck);
    layout->addWidget(m_DigitalMFCs);
    layout->addLayout(progress);
}

void TestsPanel::ShowCaption(const QString& text) {
    m_DigitalMFCs->setText(text);
    m_DigitalMFCs->setAccessibleName(text);
}

void TestsPanel::ShowStage(const QString& text) {
    m_Stage->ShowValue(text);
}

void TestsPanel::ShowRunning(bool running) {
    m_Cancel->setEnabled(running);
    if (!running)
        ShowCaption(tr("Test Digital MFCs"));
}

void TestsPanel::TakeCommands(bool take) {
    m_HealthCheck->setEnabled(take);
    m_DigitalMFCs->setEnabled(take);
}

AirTestPanel::AirTestPanel(QWidget* parent)
    : QGroupBox(tr("Air Flow Tests"), parent), m_Step(nullptr), m_Delay(nullptr),
      m_BothWays(MakeCheckBox(QStringLiteral("chkAirTestBothWays"), tr("Both Ways"), this)),
      m_All(MakeButton(QStringLiteral("cmdAirTestAll"), tr("Run Air Test All"), this)),
      m_Channel1(MakeButton(QStringLiteral("cmdAirTestHi"), tr("Run Air Test Hi"), this)),
      m_Cancel(MakeButton(QStringLiteral("cmdCancelAirTest"), tr("Cancel"), this)) {
    auto* grid = new QGridLayout(this);
    constexpr int bitByBit = 1;
    constexpr int delayStep_ms = 10;
    m_Step = AddScrollRow(*grid, {QT_TR_NOOP("Step Size (bits):"), "lblAirTestStepSize",
                                  "scrAirTestStepSize", 1, SweepPlan::LargestStep_bits,
                                  SweepPlan::UsualStep_bits, bitByBit});
    m_Delay =
        AddScrollRow(*grid, {QT_TR_NOOP("Delay (ms)"), "lblAirTestDelay", "scrAirTestDelay", 0,
                             SweepPlan::LongestDelay_ms, SweepPlan::UsualDelay_ms, delayStep_ms});
    m_All->setToolTip(tr("Steps the four outputs from 0 to 65000 and logs the inputs."));
    m_Channel1->setToolTip(tr("Steps the four outputs from 32000 to 65000 and logs the inputs."));
    m_BothWays->setToolTip(tr("Steps the outputs down again too."));
    m_Cancel->setToolTip(tr("Ends the test with all outputs at zero (Esc)."));
    m_Cancel->setEnabled(false);
    auto* lastRow = new QHBoxLayout;
    lastRow->addWidget(m_BothWays, 1);
    lastRow->addWidget(m_Cancel);
    grid->addLayout(MakeCommands(), grid->rowCount(), 0, 1, 3);
    grid->addLayout(lastRow, grid->rowCount(), 0, 1, 3);
    grid->setColumnStretch(2, 1);
    SetTabOrder({m_Step, m_Delay, m_All, m_Channel1, m_BothWays, m_Cancel});
    connect(m_Cancel, &QPushButton::clicked, this, &AirTestPanel::CancelWanted);
}

QScrollBar* AirTestPanel::AddScrollRow(QGridLayout& grid, const ScrollRow& row) {
    constexpr int pageStep = 1000;
    const QString caption = tr(row.Caption);
    auto* bar = Named(new QScrollBar(Qt::Horizontal, this), QLatin1String(row.ScrollBar), caption);
    bar->setRange(row.Smallest, row.Largest);
    bar->setSingleStep(row.SingleStep);
    bar->setPageStep(pageStep);
    bar->setValue(row.Value);
    bar->setFocusPolicy(Qt::StrongFocus);
    bar->setToolTip(tr("%1 from %2 to %3").arg(caption).arg(row.Smallest).arg(row.Largest));
    auto* value = new ValueLabel(QLatin1String(row.Label), caption, this);
    value->ReserveFor(QString::number(row.Largest));
    value->ShowValue(QString::number(row.Value));
    connect(bar, &QScrollBar::valueChanged, value,
            [value](int position) { value->ShowValue(QString::number(position)); });
    const int line = grid.rowCount();
    grid.addWidget(MakeCaption(caption, this), line, 0);
    grid.addWidget(value, line, 1);
    grid.addWidget(bar, line, 2);
    return bar;
}

QLayout* AirTestPanel::MakeCommands() {
    connect(m_All, &QPushButton::clicked, this, [this] { emit SweepWanted(Command::All); });
    connect(m_Channel1, &QPushButton::clicked, this,
            [this] { emit SweepWanted(Command::Channel1); });
    auto* commands = new QHBoxLayout;
    commands->addWidget(m_All);
    commands->addWidget(m_Channel1);
    return commands;
}

SweepPlan AirTestPanel::SteppedSweep() const {
    return SweepPlan::Stepped(m_Step->value(), m_Delay->value(), m_BothWays->isChecked());
}

void AirTestPanel::ShowCaption(Command command, const QString& text) {
    QPushButton* button = command == Command::All ? m_All : m_Channel1;
    button->setText(text);
    button->setAccessibleName(text);
}

void AirTestPanel::ShowRunning(Command command, bool running) {
    m_Cancel->setEnabled(running);
    if (!running)
        ShowCaption(command,
                    command == Command::All ? tr("Run Air Test All") : tr("Run Air Test CH1"));
}

void AirTestPanel::TakeCommands(bool take) {
    for (QWidget* control :
         std::initializer_list<QWidget*>{m_Step, m_Delay, m_BothWays, m_All, m_Channel1})
        control->setEnabled(take);
}

} // namespace ombrix

#include "windows/main/BoardPanel.h"

#include "windows/eprom/EPROMPanel.h"
#include "windows/live/DACPanel.h"
#include "windows/live/GIOPanel.h"
#include "windows/main/CalibrationPanel.h"
#include "windows/main/IdentityPanel.h"
#include "windows/main/TestPanels.h"
#include "windows/widgets/Controls.h"

#include <QHBoxLayout>

namespace ombrix {

BoardPanel::BoardPanel(Station& station, QWidget* parent)
    : QWidget(parent), m_Station(station), m_DeviceInfo(new DeviceInfoPanel(this)),
      m_Calibration(new CalibrationPanel(this)), m_DAC(new DACPanel(station, this)),
      m_GIO(new GIOPanel(station, this)), m_Tests(new TestsPanel(this)),
      m_Identity(new IdentityPanel(this)), m_EPROM(new EPROMPanel(station, this)),
      m_AirTests(new AirTestPanel(this)) {
    Named(this, QStringLiteral("picACU"), tr("Board"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(MakeIdentityColumn());
    layout->addLayout(MakeLiveColumn(), 1);
    layout->addLayout(MakeCommandColumn());
    connect(m_Tests, &TestsPanel::HealthCheckWanted, this, &BoardPanel::HealthCheckWanted);
    connect(m_EPROM, &EPROMPanel::Written, this, &BoardPanel::ShowSummary);
    connect(m_EPROM, &EPROMPanel::FieldsWanted, this, &BoardPanel::EPROMFieldsWanted);
    connect(m_GIO, &GIOPanel::UpdateWanted, this, &BoardPanel::UpdateWanted);
}

QLayout* BoardPanel::MakeIdentityColumn() {
    auto* column = new QVBoxLayout;
    column->addWidget(m_DeviceInfo);
    column->addWidget(m_Calibration, 1);
    return column;
}

QLayout* BoardPanel::MakeLiveColumn() {
    auto* column = new QVBoxLayout;
    column->addWidget(m_DAC, 1);
    column->addWidget(m_GIO);
    return column;
}

QLayout* BoardPanel::MakeCommandColumn() {
    auto* column = new QVBoxLayout;
    column->addWidget(m_Tests);
    column->addWidget(m_Identity);
    column->addWidget(m_EPROM);
    column->addWidget(m_AirTests);
    column->addStretch(1);
    return column;
}

void BoardPanel::ShowBoard() {
    AIB& board = *m_Station.CurrentAIB;
    m_DeviceInfo->ShowBoard(board);
    ShowSummary();
    m_Identity->ShowBoard(board.IsUsb());
    m_EPROM->ShowBoard();
    m_GIO->ShowBoard();
    m_DAC->ShowBoard();
}

void BoardPanel::ShowSummary() {
    m_Calibration->ShowSummary(ReadCalibrationSummary(m_Station.Calibration()));
    m_DAC->TakeScales(TrendScales::Of(m_Station.Calibration().Unit(), {}));
    emit RecordRead();
}

void BoardPanel::ShowEPROM() {
    ShowSummary();
    m_EPROM->ShowBoard();
}

void BoardPanel::Reset() {
    // The pins before the record is read: that of a FireWire board says which one its valves need.
    m_GIO->Reset();
    m_EPROM->ClearError();
    ShowBoard();
    m_DAC->Zero();
}

void BoardPanel::StopTimers() {
    m_DAC->StopRecording();
    m_EPROM->StopPolling();
}

bool BoardPanel::Refresh() {
    const bool answered = m_DAC->Refresh();
    m_GIO->Refresh();
    return answered;
}

void BoardPanel::ShowFed() {
    m_DAC->ShowFed();
    m_GIO->ShowTold();
}

void BoardPanel::ShowLost(bool lost) {
    m_Calibration->setEnabled(!lost);
}

void BoardPanel::TakeCommands(bool take) {
    for (QWidget* panel : std::initializer_list<QWidget*>{m_GIO, m_Identity, m_EPROM})
        panel->setEnabled(take);
    m_DAC->TakeCommands(take);
    m_Calibration->TakeCommands(take);
    m_Tests->TakeCommands(take);
    m_AirTests->TakeCommands(take);
}

} // namespace ombrix

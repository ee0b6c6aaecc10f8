#include "windows/main/TestsPanel.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/ValueLabel.h"

#include <QPushButton>
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
    m_Cancel->setToolTip(tr("Ends the test with both channels at zero."));
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

} // namespace ombrix

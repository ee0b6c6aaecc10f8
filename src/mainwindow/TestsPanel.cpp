#include "mainwindow/TestsPanel.h"

#include "support/Controls.h"
#include "support/ValueLabel.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace ombrix {

TestsPanel::TestsPanel(QWidget* parent) : QGroupBox(tr("ACU Tests"), parent) {
    auto* healthCheck = MakeButton(QStringLiteral("Command3"), tr("Run ACU Test"), this);
    healthCheck->setToolTip(tr("Opens the health check of the ACU."));
    connect(healthCheck, &QPushButton::clicked, this, &TestsPanel::HealthCheckWanted);
    auto* digital = ComesLater(
        MakeButton(QStringLiteral("cmdTestDigitalMFCs"), tr("Test Digital MFCs"), this),
        tr("runs ten demand steps on each channel and compares the way up with the way down."));
    auto* stage = new ValueLabel(QStringLiteral("lblDMFCStage"), tr("Digital MFC test"), this);
    stage->ShowValue(tr("[DMFC Stage]"));
    stage->CutToFit();
    stage->setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* row : std::initializer_list<QWidget*>{healthCheck, digital, stage})
        layout->addWidget(row);
}

} // namespace ombrix

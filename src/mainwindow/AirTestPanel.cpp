#include "mainwindow/AirTestPanel.h"

#include "support/Controls.h"
#include "support/ValueLabel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>
#include <QScrollBar>

namespace ombrix {

AirTestPanel::AirTestPanel(QWidget* parent) : QGroupBox(tr("Air Flow Tests"), parent) {
    auto* grid = new QGridLayout(this);
    constexpr int step_bits = 1000;
    constexpr int largestStep_bits = 32000;
    constexpr int delay_ms = 4000;
    constexpr int longestDelay_ms = 10000;
    AddScrollRow(*grid, {QT_TR_NOOP("Step Size (bits):"), "lblAirTestStepSize",
                         "scrAirTestStepSize", step_bits, largestStep_bits});
    AddScrollRow(*grid, {QT_TR_NOOP("Delay (ms)"), "lblAirTestDelay", "scrAirTestDelay", delay_ms,
                         longestDelay_ms});
    auto* commands = new QHBoxLayout;
    commands->addWidget(MakeButton(QStringLiteral("cmdAirTestAll"), tr("Run Air Test All"), this));
    commands->addWidget(MakeButton(QStringLiteral("cmdAirTestHi"), tr("Run Air Test Hi"), this));
    grid->addWidget(MakeCheckBox(QStringLiteral("chkAirTestBothWays"), tr("Both Ways"), this),
                    grid->rowCount(), 0, 1, 3);
    grid->addLayout(commands, grid->rowCount(), 0, 1, 3);
    grid->setColumnStretch(2, 1);
    ComesLater(this, tr("steps the four outputs through their range and logs the inputs."));
}

void AirTestPanel::AddScrollRow(QGridLayout& grid, const ScrollRow& texts) {
    const int row = grid.rowCount();
    const QString caption = tr(texts.Caption);
    auto* bar =
        Named(new QScrollBar(Qt::Horizontal, this), QLatin1String(texts.ScrollBar), caption);
    bar->setRange(0, texts.Largest);
    bar->setValue(texts.Value);
    bar->setFocusPolicy(Qt::StrongFocus);
    auto* value = new ValueLabel(QLatin1String(texts.Label), caption, this);
    value->ShowValue(QString::number(texts.Value));
    grid.addWidget(MakeCaption(caption, this), row, 0);
    grid.addWidget(value, row, 1);
    grid.addWidget(bar, row, 2);
}

} // namespace ombrix

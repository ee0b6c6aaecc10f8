#include "windows/main/InfoPanel.h"

#include "windows/widgets/Controls.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace ombrix {

namespace {

/// Of the air flow test's progress: with room for it nothing moves while the test runs.
QString LongestCaption() {
    return QStringLiteral("Measure: 13  -  30.00");
}

} // namespace

InfoPanel::InfoPanel(QWidget* parent)
    : QWidget(parent),
      m_First(new ValueLabel(QStringLiteral("lblProgramming_0"), tr("Programming"), this)),
      m_Second(new ValueLabel(QStringLiteral("lblProgramming_1"), tr("Boards"), this)),
      m_AirFlow(MakeButton(QStringLiteral("Command"), LongestCaption(), this)),
      m_Cancel(MakeButton(QStringLiteral("cmdCancelAirFlow"), tr("Cancel"), this)),
      m_TestRig(MakeButton(QStringLiteral("cmdRunTests"), tr("Run Test Rig Test"), this)) {
    Named(this, QStringLiteral("picInfo"), tr("Programming and bench tests"));
    QFont strong = font();
    strong.setBold(true);
    m_First->setFont(strong);
    m_AirFlow->setMinimumWidth(m_AirFlow->sizeHint().width());
    m_AirFlow->setToolTip(tr("Drives a flow board and records it against a measure board."));
    m_Cancel->setToolTip(tr("Ends the air flow test with the outputs at zero (Esc)."));
    ShowAirFlowTest(false);
    connect(m_AirFlow, &QPushButton::clicked, this, &InfoPanel::AirFlowTestWanted);
    connect(m_Cancel, &QPushButton::clicked, this, &InfoPanel::CancelWanted);
    m_TestRig->setToolTip(tr("Opens the jobs of the test rig."));
    connect(m_TestRig, &QPushButton::clicked, this, &InfoPanel::TestRigWanted);
    auto* layout = new QHBoxLayout(this);
    constexpr int sideMargin = 4;
    layout->setContentsMargins(sideMargin, 0, sideMargin, 0);
    constexpr int spacing = 12;
    layout->setSpacing(spacing);
    layout->addWidget(m_First);
    layout->addWidget(m_Second);
    layout->addStretch();
    layout->addWidget(m_AirFlow);
    layout->addWidget(m_Cancel);
    layout->addWidget(m_TestRig);
}

void InfoPanel::ShowProgramming(const QString& first, const QString& second) {
    m_First->ShowValue(first);
    m_Second->ShowValue(second);
}

void InfoPanel::ShowAirFlowCaption(const QString& text) {
    m_AirFlow->setText(text);
    m_AirFlow->setAccessibleName(text);
}

void InfoPanel::ShowAirFlowTest(bool running) {
    m_Cancel->setEnabled(running);
    if (!running)
        ShowAirFlowCaption(tr("Test Air Flow"));
}

void InfoPanel::TakeCommands(bool take) {
    m_AirFlow->setEnabled(take);
    m_TestRig->setEnabled(take);
}

} // namespace ombrix

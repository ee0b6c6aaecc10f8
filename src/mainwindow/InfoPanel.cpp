#include "mainwindow/InfoPanel.h"

#include "support/Controls.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace ombrix {

InfoPanel::InfoPanel(QWidget* parent)
    : QWidget(parent),
      m_First(new ValueLabel(QStringLiteral("lblProgramming_0"), tr("Programming"), this)),
      m_Second(new ValueLabel(QStringLiteral("lblProgramming_1"), tr("Boards"), this)) {
    Named(this, QStringLiteral("picInfo"), tr("Programming and bench tests"));
    QFont strong = font();
    strong.setBold(true);
    m_First->setFont(strong);
    auto* layout = new QHBoxLayout(this);
    constexpr int sideMargin = 4;
    layout->setContentsMargins(sideMargin, 0, sideMargin, 0);
    constexpr int spacing = 12;
    layout->setSpacing(spacing);
    layout->addWidget(m_First);
    layout->addWidget(m_Second);
    layout->addStretch();
    layout->addWidget(
        ComesLater(MakeButton(QStringLiteral("Command"), tr("Test Air Flow"), this),
                   tr("drives a flow board and records it against a measure board.")));
    layout->addWidget(
        ComesLater(MakeButton(QStringLiteral("cmdRunTests"), tr("Run Test Rig Test"), this),
                   tr("opens the jobs of the test rig.")));
}

void InfoPanel::ShowProgramming(const QString& first, const QString& second) {
    m_First->ShowValue(first);
    m_Second->ShowValue(second);
}

} // namespace ombrix

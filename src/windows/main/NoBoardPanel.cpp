#include "windows/main/NoBoardPanel.h"

#include "windows/widgets/Controls.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace ombrix {

NoBoardPanel::NoBoardPanel(QWidget* parent)
    : QWidget(parent),
      m_Detect(MakeButton(QStringLiteral("cmdDetectAIBs"), tr("Detect AIBs"), this)),
      m_InitState(new ValueLabel(QStringLiteral("lblAIBInitState"), tr("Initialisation"), this)),
      m_Outcome(new ValueLabel(QStringLiteral("lblNoAIBs"), tr("Detection"), this)) {
    Named(this, QStringLiteral("picNoAIBs"), tr("No board"));
    m_Outcome->ShowValue(tr("No AIBs have been detected..."));
    auto* layout = new QVBoxLayout(this);
    constexpr int spacing = 14;
    layout->setSpacing(spacing);
    layout->addStretch(2);
    for (QWidget* row : std::initializer_list<QWidget*>{m_Outcome, m_Detect, m_InitState})
        layout->addWidget(row, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    constexpr int leastWidth = 180;
    m_Detect->setMinimumWidth(leastWidth);
    connect(m_Detect, &QPushButton::clicked, this, &NoBoardPanel::DetectionWanted);
}

void NoBoardPanel::ShowDetecting(bool detecting) {
    m_Detect->setEnabled(!detecting);
    m_Detect->setText(detecting ? tr("Detecting AIBs") : tr("Detect AIBs"));
    m_Detect->setAccessibleName(m_Detect->text());
    if (!detecting)
        m_InitState->ShowValue({});
}

} // namespace ombrix

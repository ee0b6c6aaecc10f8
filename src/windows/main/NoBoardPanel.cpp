#include "windows/main/NoBoardPanel.h"

#include "windows/widgets/Controls.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace ombrix {

NoBoardPanel::NoBoardPanel(QWidget* parent)
    : QWidget(parent),
      m_Detect(MakeButton(QStringLiteral("cmdDetectAIBs"), tr("Detect AIBs"), this)),
      m_InitState(new ValueLabel(QStringLiteral("lblAIBInitState"), tr("Initialisation"), this)),
      m_Outcome(new ValueLabel(QStringLiteral("lblNoAIBs"), tr("Detection"), this)),
      m_Choices(new QWidget(this)) {
    Named(this, QStringLiteral("picNoAIBs"), tr("No board"));
    m_Outcome->ShowValue(tr("No AIBs have been detected..."));
    QFont large = m_Outcome->font();
    constexpr double enlarged = 1.4;
    large.setPointSizeF(large.pointSizeF() * enlarged);
    m_Outcome->setFont(large);
    auto* hint = MakeCaption(tr("Connect the board, switch on the Aeration Control Unit, then "
                                "detect again."),
                             this);
    auto* choices = new QHBoxLayout(m_Choices);
    choices->setContentsMargins(0, 0, 0, 0);
    connect(AddChoice("cmdUseSimulation", tr("&Use the simulated bench"),
                      tr("Starts anew with a bench that needs no hardware.")),
            &QPushButton::clicked, this, &NoBoardPanel::SimulationWanted);
    connect(AddChoice("cmdChooseLibrary", tr("&Choose a library…"),
                      tr("Starts anew with the library that reaches the boards, now and from the "
                         "next start on.")),
            &QPushButton::clicked, this, &NoBoardPanel::LibraryWanted);
    connect(AddChoice("cmdOperatorsGuide", tr("&Operator's guide"),
                      tr("From detection to the report (F1).")),
            &QPushButton::clicked, this, &NoBoardPanel::GuideWanted);
    auto* layout = new QVBoxLayout(this);
    constexpr int spacing = 14;
    layout->setSpacing(spacing);
    layout->addStretch(2);
    for (QWidget* row : std::initializer_list<QWidget*>{m_Outcome, hint, m_Detect, m_InitState})
        layout->addWidget(row, 0, Qt::AlignHCenter);
    layout->addStretch(1);
    layout->addWidget(MakeCaption(tr("No board at hand, or not the right library?"), this), 0,
                      Qt::AlignHCenter);
    layout->addWidget(m_Choices, 0, Qt::AlignHCenter);
    layout->addStretch(2);
    constexpr int leastWidth = 180;
    m_Detect->setMinimumWidth(leastWidth);
    m_Detect->setToolTip(tr("Looks for boards and programs them (F5)."));
    connect(m_Detect, &QPushButton::clicked, this, &NoBoardPanel::DetectionWanted);
}

QPushButton* NoBoardPanel::AddChoice(const char* objectName, const QString& caption,
                                     const QString& tip) {
    auto* button = MakeButton(QLatin1String(objectName), caption, m_Choices);
    button->setToolTip(tip);
    m_Choices->layout()->addWidget(button);
    return button;
}

void NoBoardPanel::ShowDetecting(bool detecting) {
    m_Detect->setEnabled(!detecting);
    m_Choices->setEnabled(!detecting);
    m_Detect->setText(detecting ? tr("Detecting AIBs") : tr("Detect AIBs"));
    m_Detect->setAccessibleName(m_Detect->text());
    if (!detecting)
        m_InitState->ShowValue({});
}

} // namespace ombrix

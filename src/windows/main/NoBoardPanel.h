#pragma once

#include "windows/widgets/ValueLabel.h"

#include <QWidget>

class QPushButton;

namespace ombrix {

/// What shows while no board is detected (`picNoAIBs`).
class NoBoardPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit NoBoardPanel(QWidget* parent);

    void ShowDetecting(bool detecting);
    void ShowOutcome(const QString& text) { m_Outcome->ShowValue(text); }
    void ShowInitState(const QString& text) { m_InitState->ShowValue(text); }

  signals:
    void DetectionWanted();

  private:
    QPushButton* m_Detect;
    ValueLabel* m_InitState;
    ValueLabel* m_Outcome;
};

} // namespace ombrix

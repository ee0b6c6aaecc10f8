#pragma once

#include "windows/widgets/ValueLabel.h"

#include <QWidget>

class QPushButton;

namespace ombrix {

/// What shows while no board is detected (`picNoAIBs`): another try, and ways to begin for those
/// who have no board or no library yet.
class NoBoardPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit NoBoardPanel(QWidget* parent);

    void ShowDetecting(bool detecting);
    void ShowOutcome(const QString& text) { m_Outcome->ShowValue(text); }
    void ShowInitState(const QString& text) { m_InitState->ShowValue(text); }

  signals:
    void DetectionWanted();
    void SimulationWanted();
    void LibraryWanted();
    void GuideWanted();

  private:
    QPushButton* AddChoice(const char* objectName, const QString& caption, const QString& tip);

    QPushButton* m_Detect;
    ValueLabel* m_InitState;
    ValueLabel* m_Outcome;
    QWidget* m_Choices;
};

} // namespace ombrix

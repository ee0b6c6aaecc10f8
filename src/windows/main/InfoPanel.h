#pragma once

#include "windows/widgets/ValueLabel.h"

#include <QWidget>

class QPushButton;

namespace ombrix {

/// The strip with the outcome of the programming and the bench tests (`picInfo`).
class InfoPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit InfoPanel(QWidget* parent);

    void ShowProgramming(const QString& first, const QString& second);
    /// While the air flow is tested, its command's caption is the progress line.
    void ShowAirFlowCaption(const QString& text);
    void ShowAirFlowTest(bool running);
    void TakeCommands(bool take);

  signals:
    void AirFlowTestWanted();
    void CancelWanted();
    void TestRigWanted();

  private:
    ValueLabel* m_First;
    ValueLabel* m_Second;
    QPushButton* m_AirFlow;
    QPushButton* m_Cancel;
    QPushButton* m_TestRig;
};

} // namespace ombrix

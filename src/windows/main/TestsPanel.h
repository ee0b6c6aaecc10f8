#pragma once

#include <QGroupBox>

class QPushButton;

namespace ombrix {

class ValueLabel;

/// The tests of the ACU on the current board.
class TestsPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit TestsPanel(QWidget* parent);

    /// While the digital MFCs are tested, their command's caption is the progress line.
    void ShowCaption(const QString& text);
    void ShowStage(const QString& text);
    /// A test that shows here has begun or is over: it can be cancelled meanwhile.
    void ShowRunning(bool running);
    void TakeCommands(bool take);

  signals:
    void HealthCheckWanted();
    void DigitalMFCTestWanted();
    void CancelWanted();

  private:
    QPushButton* m_HealthCheck;
    QPushButton* m_DigitalMFCs;
    QPushButton* m_Cancel;
    ValueLabel* m_Stage;
};

} // namespace ombrix

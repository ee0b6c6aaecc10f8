#pragma once

#include "benchtests/OutputSweep.h"

#include <QGroupBox>

class QPushButton;
class QCheckBox;
class QGridLayout;
class QScrollBar;

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

/// Frame "Air Flow Tests": the sweeps of the outputs.
class AirTestPanel final : public QGroupBox {
    Q_OBJECT

  public:
    enum class Command { All, Channel1 };

    explicit AirTestPanel(QWidget* parent);

    /// The sweep that the controls describe.
    SweepPlan SteppedSweep() const;
    /// While a sweep runs, its command's caption says where it is.
    void ShowCaption(Command command, const QString& text);
    void ShowRunning(Command command, bool running);
    void TakeCommands(bool take);

  signals:
    void SweepWanted(ombrix::AirTestPanel::Command command);
    void CancelWanted();

  private:
    struct ScrollRow {
        const char* Caption;
        const char* Label;
        const char* ScrollBar;
        int Smallest;
        int Largest;
        int Value;
        int SingleStep;
    };
    QScrollBar* AddScrollRow(QGridLayout& grid, const ScrollRow& row);
    QLayout* MakeCommands();

    QScrollBar* m_Step;
    QScrollBar* m_Delay;
    QCheckBox* m_BothWays;
    QPushButton* m_All;
    QPushButton* m_Channel1;
    QPushButton* m_Cancel;
};

} // namespace ombrix

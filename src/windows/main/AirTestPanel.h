#pragma once

#include "benchtests/OutputSweep.h"

#include <QGroupBox>

class QCheckBox;
class QGridLayout;
class QPushButton;
class QScrollBar;

namespace ombrix {

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

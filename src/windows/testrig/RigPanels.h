#pragma once

#include "benchtests/TestRigJobs.h"
#include "board/AIB.h"

#include <QWidget>

#include <array>
#include <memory>

class QGridLayout;

namespace ombrix {

/// How far the present ramp is, on a scale of seconds with a mark for each level
/// (`picCurrentJob`).
class RampProgress final : public QWidget {
    Q_OBJECT

  public:
    explicit RampProgress(QWidget* parent);

    /// Draws the scale of a ramp, with nothing of it done.
    void Begin(const RampStep& ramp);
    void Show(double elapsed_s);
    /// No scale and no bar.
    void Clear();

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRect BarOnScreen() const;
    int PlaceOf(double time_s) const;

    RampStep m_Ramp;
    double m_Elapsed_s = 0.0;
};

class ADCBar;
class ValueLabel;

/// The live inputs and outputs of one board on the test rig. The control arrays go through all
/// boards: board 1 has `lblIP_4` to `lblIP_7`.
class RigBoardPanel final : public QWidget {
    Q_OBJECT

  public:
    /// @param index of the board, from 0
    RigBoardPanel(int index, std::shared_ptr<AIB> board, QWidget* parent);

    /// Reads the inputs and shows them beside what the outputs were told.
    void Refresh();

  private:
    struct Channel {
        ADCBar* Bar = nullptr;
        ValueLabel* Input = nullptr;
        ValueLabel* Output = nullptr;
    };

    void AddChannel(QGridLayout& grid, int index, std::int32_t channel);
    void RefreshChannel(std::int32_t channel);

    std::shared_ptr<AIB> m_Board;
    std::array<Channel, AIB::DACChannels> m_Channels;
};

} // namespace ombrix

#pragma once

#include "board/Station.h"

#include <QGroupBox>

#include <array>
#include <functional>

class QCheckBox;
class QGridLayout;

namespace ombrix {

class ValueLabel;

/// Frame "General IO (GIO)": direction and level of the 20 pins, and the power of the MFCs.
class GIOPanel final : public QGroupBox {
    Q_OBJECT

  public:
    GIOPanel(Station& station, QWidget* parent);

    /// Makes pin 0 the only output of the current board, as after the start.
    void Reset();
    /// Shows which power outputs the current board has, and what it was told.
    void ShowBoard();
    /// Shows what pins and power outputs of the current board were told, whoever told them.
    void ShowTold();
    /// Reads the level of every input pin.
    void Refresh();

  signals:
    /// The operator wants the whole live panel read now.
    void UpdateWanted();

  private:
    static constexpr std::size_t Pins = AIB::GPIOPins;

    void AddPin(QGridLayout& grid, int pin);
    QWidget* MakeFooter();
    QCheckBox* MakePowerBox(int index, const QString& caption, QWidget* parent);
    /// Has the board told something, and shows what it has taken and why it refuses.
    void Tell(const QString& output, const std::function<BoardAnswer()>& tell);
    void ShowAnswer(const QString& output, const BoardAnswer& answer);
    std::int32_t TickedPins() const;
    void ChangeDirections();
    void ShowGIOColumns();
    void SetOutput(int pin, bool high);
    AIB& Board() const { return *m_Station.CurrentAIB; }

    Station& m_Station;
    std::array<QCheckBox*, Pins> m_IsOutput{};
    std::array<QCheckBox*, Pins> m_Output{};
    std::array<ValueLabel*, Pins> m_Input{};
    std::array<QCheckBox*, 2> m_Power{};
    ValueLabel* m_Mask;
    ValueLabel* m_Answer = nullptr;
    /// The board whose answer shows.
    const AIB* m_Answered = nullptr;
};

} // namespace ombrix

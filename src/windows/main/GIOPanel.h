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
    /// Shows which power outputs the current board has.
    void ShowBoard();
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
    void TickFirstPinOnly();
    /// Has the board told something, and shows what it refuses.
    bool Tell(const QString& output, const std::function<BoardAnswer()>& tell);
    void ShowAnswer(const QString& output, const BoardAnswer& answer);
    /// What was refused is not shown as done.
    static void PutBack(QCheckBox& box);
    std::int32_t TickedPins() const;
    void ChangeDirection(QCheckBox& clicked);
    void ShowDirections();
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
};

} // namespace ombrix

#pragma once

#include <QGroupBox>

#include <cstdint>
#include <optional>

class QCheckBox;
class QLayout;
class QSlider;

namespace ombrix {

class ADCBar;
class ValueLabel;

/// The controls of one digital MFC on the UART console.
class UARTChannel final : public QGroupBox {
    Q_OBJECT

  public:
    UARTChannel(int channel, QWidget* parent);

    void ShowSent(std::int32_t value);
    void ShowRead(std::int32_t value);
    bool OnTimer() const;
    /// As before anything was sent or read.
    void Reset();

  signals:
    void SetWanted(int channel, int value);
    void GetWanted(int channel);

  private:
    QLayout* MakeDemandColumn();
    QLayout* MakeReadingColumn();

    int m_Channel;
    QSlider* m_Demand;
    ADCBar* m_Bar;
    ValueLabel* m_Sent;
    ValueLabel* m_Read;
    QCheckBox* m_OnTimer;
    std::int32_t m_Sent_bits = 0;
    std::optional<std::int32_t> m_Read_bits;
};

} // namespace ombrix

#pragma once

#include "board/Station.h"

#include <QGroupBox>
#include <QWidget>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class QCheckBox;
class QLayout;
class QSlider;
class QListWidget;
class QTimer;

namespace ombrix {

class ADCBar;
class ValueLabel;

/// The controls of one digital MFC on the UART console.
class UARTChannel final : public QGroupBox {
    Q_OBJECT

  public:
    UARTChannel(int channel, QWidget* parent);

    void ShowSent(std::int32_t value);
    /// Nothing for a reading that has failed. @param reason why
    void ShowRead(std::optional<std::int32_t> value, const QString& reason);
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
    /// What the MFC has last taken.
    std::int32_t m_Sent_bits = 0;
    std::optional<std::int32_t> m_Read_bits;
};

class ValueLabel;

/// The UART console: the two digital MFCs of the first board are set and read by hand, and every
/// exchange that failed is listed. It keeps still while a procedure runs.
class UARTsWindow final : public QWidget {
    Q_OBJECT

  public:
    explicit UARTsWindow(Station& station);

    /// Finds the board and opens the window. False when there is none and the operator does not
    /// try again.
    bool Open();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    static constexpr int Channels = 2;

    QLayout* MakeErrorColumn();
    bool FindBoard();
    void Set(int channel, std::int32_t value);
    void Get(int channel);
    void ReadTickedChannels();
    void ReportUARTResult(const BoardAnswer& answer, const std::string& text);
    void GiveChannelsBack();
    void ProcedureRunning(bool running);

    Station& m_Station;
    ValueLabel* m_BoardName;
    std::array<UARTChannel*, Channels> m_Channels{};
    /// Channels that the console has set since it was opened.
    std::array<bool, Channels> m_Taken{};
    /// Closed while a procedure had the boards: the channels are still to be given back.
    bool m_ClosedMeanwhile = false;
    QListWidget* m_Errors;
    QTimer* m_Update;
    std::shared_ptr<AIB> m_Board;
    Subscription m_Procedures;
    bool m_Reading = false;
};

} // namespace ombrix

#pragma once

#include "board/AIB.h"

#include <QGroupBox>

#include <array>

class QPushButton;

namespace ombrix {

class ValueLabel;

/// Identity of the current board (`lblDeviceInfo_0` … `lblDeviceInfo_6`).
class DeviceInfoPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit DeviceInfoPanel(QWidget* parent);

    void ShowBoard(const AIB& board);

  private:
    std::array<ValueLabel*, 7> m_Info{};
    std::array<ValueLabel*, 4> m_Info2{};
};

/// The commands that write the board's identity (`cmdSetSerial_0` … `_2`).
class IdentityPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit IdentityPanel(QWidget* parent);

    /// Analog MFCs are for USB boards alone.
    void ShowBoard(bool isUsb);

  signals:
    /// Serial number and MFC configuration are to be written.
    void IdentityWanted(bool digital, bool analog);

  private:
    std::array<QPushButton*, 3> m_SetSerial{};
};

} // namespace ombrix

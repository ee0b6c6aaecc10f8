#pragma once

#include "board/AIB.h"

#include <QGroupBox>

#include <array>

namespace ombrix {

class ValueLabel;

/// Identity of the current board (`lblDeviceInfo_0` … `lblDeviceInfo_6`).
class DeviceInfoPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit DeviceInfoPanel(QWidget* parent);

    void ShowBoard(const clsAIB& board);

  private:
    std::array<ValueLabel*, 7> m_Info{};
    std::array<ValueLabel*, 4> m_Info2{};
};

} // namespace ombrix

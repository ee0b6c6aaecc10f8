#pragma once

#include <QGroupBox>

#include <array>

class QPushButton;

namespace ombrix {

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

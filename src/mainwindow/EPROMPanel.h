#pragma once

#include <QGroupBox>

class QGridLayout;

namespace ombrix {

/// Frame "EPROM Interface": the place of the EPROM editor.
class EPROMPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit EPROMPanel(QWidget* parent);

  private:
    void AddAddressRows(QGridLayout& grid);
    void AddValueRows(QGridLayout& grid);
    QWidget* MakeCommands();
};

} // namespace ombrix

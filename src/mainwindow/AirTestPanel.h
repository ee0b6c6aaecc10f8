#pragma once

#include <QGroupBox>

class QGridLayout;

namespace ombrix {

/// Frame "Air Flow Tests": the place of the output sweep.
class AirTestPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit AirTestPanel(QWidget* parent);

  private:
    struct ScrollRow {
        const char* Caption;
        const char* Label;
        const char* ScrollBar;
        int Value;
        int Largest;
    };
    void AddScrollRow(QGridLayout& grid, const ScrollRow& texts);
};

} // namespace ombrix

#pragma once

#include <QGroupBox>

class QPushButton;

namespace ombrix {

/// The tests of the ACU on the current board.
class TestsPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit TestsPanel(QWidget* parent);

  signals:
    void HealthCheckWanted();
};

} // namespace ombrix

#pragma once

#include <QDialog>

#include <cstdint>

class QButtonGroup;

namespace ombrix {

/// Lets the operator choose the pressure sensor that a unit has.
class PressureSensorWindow final : public QDialog {
    Q_OBJECT

  public:
    /// @param present_mBar the full scale that the unit's record names; 0 for no sensor
    PressureSensorWindow(std::int32_t present_mBar, QWidget* parent);

    /// Of the sensor that is chosen; 0 for none.
    std::int32_t FullScale_mBar() const;

  private:
    /// The full scales are the numbers of the buttons.
    QButtonGroup* m_Sensors;
};

} // namespace ombrix

#include "windows/calibration/PressureSensorWindow.h"

#include "board/unit/ACURecord.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QButtonGroup>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace ombrix {

PressureSensorWindow::PressureSensorWindow(std::int32_t present_mBar, QWidget* parent)
    : QDialog(parent), m_Sensors(new QButtonGroup(this)) {
    setWindowTitle(tr("Pressure Sensor"));
    Named(this, QStringLiteral("frmPressureSensor"), windowTitle());
    auto* layout = new QVBoxLayout(this);
    auto* present = MakeCaption(
        tr("Pressure sensor in the unit's record: %1").arg(ToQt(SensorText(present_mBar))), this);
    present->setObjectName(QStringLiteral("lblPresentSensor"));
    layout->addWidget(present);
    for (const std::int32_t sensor_mBar : PressureSensors) {
        const QString caption = sensor_mBar == 0 ? tr("No sensor") : ToQt(SensorText(sensor_mBar));
        auto* choice =
            Named(new QRadioButton(caption, this), ElementName("optSensor", sensor_mBar), caption);
        choice->setChecked(sensor_mBar == present_mBar);
        if (choice->isChecked())
            choice->setFocus();
        m_Sensors->addButton(choice, sensor_mBar);
        layout->addWidget(choice);
    }
    auto* declare = MakeButton(QStringLiteral("cmdDeclareSensor"), tr("Write to EPROM"), this);
    auto* cancel = MakeButton(QStringLiteral("cmdCancelSensor"), tr("Cancel"), this);
    connect(declare, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(declare);
    buttons->addWidget(cancel);
    layout->addStretch(1);
    layout->addLayout(buttons);
    constexpr QSize comfortable(340, 150);
    resize(ScaledToFonts(*this, comfortable));
}

std::int32_t PressureSensorWindow::FullScale_mBar() const {
    return m_Sensors->checkedId();
}

} // namespace ombrix

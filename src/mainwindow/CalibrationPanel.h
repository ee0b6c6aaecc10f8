#pragma once

#include "calibration/modACUCalibration.h"

#include <QGroupBox>

class QLayout;
class QLineEdit;

namespace ombrix {

class ValueLabel;

/// Frame "Initialisation and Calibration": the state of the ACU's record.
class CalibrationPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit CalibrationPanel(QWidget* parent);

    void ShowSummary(const CalibrationSummary& summary);

  private:
    void HoldHintLines();
    QLayout* MakeNumberRow();
    QLayout* MakeCommands();
    QGroupBox* MakeStateFrame(const QString& title, ValueLabel* system, ValueLabel* audit);
    QLayout* MakeRecordCommands();

    QLineEdit* m_MFCNumber;
    ValueLabel* m_VelocitySystem;
    ValueLabel* m_VelocityAudit;
    ValueLabel* m_PressureSystem;
    ValueLabel* m_PressureAudit;
    ValueLabel* m_Hint;
};

} // namespace ombrix

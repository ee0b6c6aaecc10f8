#pragma once

#include "board/unit/CalibrationSummary.h"

#include <QGroupBox>

#include <vector>

class QLayout;
class QLineEdit;
class QPushButton;

namespace ombrix {

class ValueLabel;

/// Frame "Initialisation and Calibration": the state of the ACU's record and the commands that
/// prepare the unit.
class CalibrationPanel final : public QGroupBox {
    Q_OBJECT

  public:
    explicit CalibrationPanel(QWidget* parent);

    void ShowSummary(const CalibrationSummary& summary);
    /// The address that is being cleared.
    void ShowClearProgress(std::int32_t address);
    void HideClearProgress();
    void TakeCommands(bool take);

  signals:
    /// @param mfcNumber as it stands in the field
    void InitialisationWanted(const QString& mfcNumber, bool velocity, bool pressure);
    void ClearPressureWanted();
    void InfoWorkbookWanted();

  private:
    void HoldHintLines();
    QLayout* MakeNumberRow();
    /// Marks what is typed and not in the record, or does not fit into it.
    void JudgeNumber(const QString& typed);
    QLayout* MakeCommands();
    QPushButton* MakeCommand(const char* objectName, const QString& caption,
                             const QString& whatItDoes);
    QGroupBox* MakeStateFrame(const QString& title, ValueLabel* system, ValueLabel* audit);
    QLayout* MakeRecordCommands();

    QLineEdit* m_MFCNumber;
    QString m_NumberInRecord;
    ValueLabel* m_NumberNote = nullptr;
    ValueLabel* m_VelocitySystem;
    ValueLabel* m_VelocityAudit;
    ValueLabel* m_PressureSystem;
    ValueLabel* m_PressureAudit;
    ValueLabel* m_Hint;
    ValueLabel* m_ClearProgress;
    /// What is disabled while a procedure runs.
    std::vector<QWidget*> m_Commands;
};

} // namespace ombrix

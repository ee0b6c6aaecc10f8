#pragma once

#include "healthcheck/HealthCheckProgramme.h"
#include "healthcheck/HealthCheckRun.h"
#include "healthcheck/HealthCheckViews.h"
#include "windows/desktop/OpenExcelWindow.h"
#include "windows/procedure/ProcedureTimes.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QPushButton;
class QLayout;
class QProgressBar;

namespace ombrix {

/// The options of a health check and its commands (`picOptions`).
class HealthCheckOptionsPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit HealthCheckOptionsPanel(QWidget* parent);

    /// The ticked options, in running order.
    std::vector<HealthCheckOption> Chosen() const;
    /// The boxes follow `enable`; Start also wants at least one of them ticked.
    void UpdateOptionControls(bool enable);
    /// Whether there is a run that Cancel could cancel.
    void TakeCancel(bool take);

  signals:
    void StartWanted();
    void CancelWanted();
    void FolderWanted();

  private:
    struct OptionBox {
        HealthCheckOption Option;
        QCheckBox* Box;
    };
    QCheckBox* AddOption(std::size_t place, HealthCheckOption option, const char* objectName,
                         const char* caption);

    std::array<OptionBox, 6> m_Options{};
    QPushButton* m_Start;
    QPushButton* m_Cancel;
};

class GraphColumn;
class StepListWidget;
class ValueLabel;
class VerdictPanel;

/// The health check window: options, the steps of the running sequence with what they came to, live
/// traces, and the verdict.
class ACUHealthCheckWindow final : public QWidget {
    Q_OBJECT

  public:
    /// @param tools has report files made, with the wait window of this one
    ACUHealthCheckWindow(Station& station, const std::function<ReportTools(OpenExcelView&)>& tools);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QLayout* MakeHead();
    QLayout* MakeSideColumn();
    void Start();
    void RunHealthCheck();
    void ShowProgress(double share);
    void ProcedureRunning(bool running);

    Station& m_Station;
    HealthCheckOptionsPanel* m_Options;
    ValueLabel* m_Sequence;
    ValueLabel* m_Time;
    VerdictPanel* m_Verdict;
    StepListWidget* m_Steps;
    QProgressBar* m_Progress;
    GraphColumn* m_Graphs;
    OpenExcelWindow m_Wait;
    ReportTools m_Reports;
    ProcedureTimes m_Times;
    /// The procedure that runs is this window's.
    bool m_Running = false;
    Subscription m_Procedures;
    bool m_CloseAfterRun = false;
};

} // namespace ombrix

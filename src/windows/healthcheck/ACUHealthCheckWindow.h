#pragma once

#include "healthcheck/HealthCheckRun.h"
#include "windows/desktop/OpenExcelWindow.h"

#include <QWidget>

#include <memory>
#include <string>

class QLayout;
class QProgressBar;

namespace ombrix {

class GraphColumn;
class HealthCheckOptionsPanel;
class StepListWidget;

/// The health check window: options, live traces and the steps of the running sequence.
class frmACUHealthCheck final : public QWidget {
    Q_OBJECT

  public:
    /// @param sliders the main window's, which the run moves
    frmACUHealthCheck(Station& station, DACSliders& sliders, SpreadsheetLauncher launcher,
                      std::string templates);

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QLayout* MakeSideColumn();
    void Start();
    HealthCheckResult RunHealthCheck();
    void OfferWorkbook(const HealthCheckResult& result);
    void ProcedureRunning(bool running);

    Station& m_Station;
    DACSliders& m_Sliders;
    SpreadsheetLauncher m_Launcher;
    std::string m_Templates;
    HealthCheckOptionsPanel* m_Options;
    StepListWidget* m_Steps;
    QProgressBar* m_Progress;
    GraphColumn* m_Graphs;
    frmOpenExcel m_Wait;
    /// The run in progress; none while idle.
    std::unique_ptr<HealthCheckRun> m_Run;
    ProcedureGate::Subscription m_Procedures;
    bool m_CloseAfterRun = false;
};

} // namespace ombrix

#pragma once

#include "benchtests/TestRigRun.h"
#include "board/Station.h"

#include <QWidget>

#include <vector>

class QGroupBox;
class QHBoxLayout;
class QLayout;
class QPushButton;
class QTimer;
class QTreeWidget;

namespace ombrix {

class RampProgress;
class RigBoardPanel;
class ValueLabel;

/// The test rig window: the steps of the job, how far the present one is, and the inputs and
/// outputs of every board. While it is open no other window takes input.
class AIBTestRigWindow final : public QWidget, public TestRigView {
    Q_OBJECT

  public:
    explicit AIBTestRigWindow(Station& station);
    ~AIBTestRigWindow() override;

    /// Opens the window, which then runs the job. False while another procedure runs.
    bool RunTest(std::int32_t kind);

    void ShowSteps(const std::vector<TestRigStep>& steps) override;
    void BeginProgress(const RampStep& ramp) override;
    void ShowProgress(double elapsed_s) override;

  signals:
    void Closed();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void LayOut();
    QLayout* MakeButtons();
    QGroupBox* MakeCurrentValues();
    void PrepareList();
    void PrepareBoards();
    void RunPendingJob();
    void RunJob();
    void ShowOutcome(const TestRigResult& result);
    void TakeCancel(bool take);
    void Cancel();
    void UpdateScreen();

    Station& m_Station;
    ValueLabel* m_JobName;
    QTreeWidget* m_Status;
    RampProgress* m_CurrentJob;
    ValueLabel* m_Outcome;
    QWidget* m_BoardArea = nullptr;
    std::vector<RigBoardPanel*> m_Boards;
    QPushButton* m_Cancel;
    QPushButton* m_Close;
    QTimer* m_UpdateScreen;
    std::int32_t m_Kind = 0;
    bool m_Pending = false;
    /// The run in progress; none while idle.
    bool m_Running = false;
    bool m_CloseAfterRun = false;
};

} // namespace ombrix

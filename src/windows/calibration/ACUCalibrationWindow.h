#pragma once

#include "board/Station.h"
#include "calibration/run/CalibrationView.h"
#include "windows/procedure/ProcedureTimes.h"

#include <QWidget>

class QLayout;
class QPushButton;

namespace ombrix {

class DeviationPlotWidget;
class PointListWidget;
class StageListWidget;
class ValueLabel;
class ProgressBar;

/// The window of a running calibration: the stages of its sequence, the points as they are
/// measured, what it is doing, and Cancel. It comes with the first stage and goes with the end of
/// the sequence.
class ACUCalibrationWindow final : public QWidget, public CalibrationView {
    Q_OBJECT

  public:
    explicit ACUCalibrationWindow(Station& station);

    void Stage_Add(const std::string& name) override;
    void Stage_RunNext() override;
    void Stage_Complete(End ended) override;
    void BeginPoints(const PointTable& table) override;
    void ShowPoint(std::size_t point, const PointLine& line) override;
    void ShowLine(StageLine line, const std::string& text) override;
    void ShowWarning(const std::string& text) override;
    void BeginProgress(float span_s) override;
    void ShowProgress(float elapsed_s) override;
    void EndProgress() override;
    void TakeInput(bool take) override;
    void Close() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void LayOut();
    QWidget* MakeContent();
    QLayout* MakeFoot();
    QLayout* MakeStatusLines();
    void SetToDesign();
    void ClearLines();
    void Appear();
    void Cancel();
    ValueLabel& LineOf(StageLine line) const;

    Station& m_Station;
    ValueLabel* m_Unit;
    StageListWidget* m_Stages;
    PointListWidget* m_PointList;
    DeviationPlotWidget* m_Deviations;
    ValueLabel* m_Phase;
    ValueLabel* m_Demand;
    ValueLabel* m_Reading;
    ValueLabel* m_Remaining;
    ValueLabel* m_Warning;
    ValueLabel* m_Time;
    ProgressBar* m_Progress;
    QPushButton* m_Cancel;
    ProcedureTimes m_Times;
    /// What is being measured, of which stage.
    PointTable m_Points;
    QString m_PointsTitle;
};

} // namespace ombrix

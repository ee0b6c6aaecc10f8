#pragma once

#include "board/eprom/EpromGuard.h"
#include "board/procedure/ProcedureWait.h"
#include "calibration/judge/VelocityMeasurement.h"
#include "calibration/run/CalibrationLog.h"
#include "calibration/run/CalibrationOutcome.h"
#include "calibration/run/CalibrationServices.h"
#include "calibration/run/RunRecorder.h"
#include "calibration/unit/ACUCalibration.h"

#include <array>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// One calibration of the pressure sensor on the 50 mm base. Air that flows out through an open
/// base makes a back-pressure; a system run measures it at five flows and stores its polynomial,
/// an audit verifies that the pressure reads as zero at those flows. All air goes through
/// channel 0. One object serves one run.
class PressureRun {
  public:
    /// @param guard of the procedure that the run belongs to
    /// @param autoSave the audit sheet is stored without asking whether to view it
    PressureRun(clsACUCalibration& record, const CalibrationServices& services, EpromGuard& guard,
                CalibrationKind kind, bool autoSave);

    CalibrationOutcome CalibrateACUPressure();

  private:
    static constexpr std::size_t Points = 5;

    bool IsAudit() const { return m_Kind == CalibrationKind::Audit; }
    bool Running() const { return !m_Wait.Ended(); }
    std::string Unready() const;
    bool Confirmed();
    void Run();
    bool CalibratePressureBase();
    void AskForHose();
    void MeasurePoints();
    float RecordPressurePoint(float flow_ml_m);
    bool Pass(clsHiResTimer& timer, double duration_s, const std::function<void()>& work);
    void ShowPressure();
    void SetChannelAir_ml_m(std::int32_t channel, float flow_ml_m);
    bool FitPolynomial();
    void LogFit(const std::vector<float>& coefficients);
    bool CheckAudit();
    void FinishSystem(bool passed);
    void FinishAudit(bool passed);
    void Stop(const std::string& reason);
    void AddToHistory();
    void Log(std::initializer_list<std::string_view> lines);

    clsACUCalibration& m_Record;
    const CalibrationServices& m_Services;
    EpromGuard& m_Guard;
    CalibrationKind m_Kind;
    bool m_AutoSave;
    Platform& m_World;
    Cancellation m_Cancel;
    ProcedureWait m_Wait;
    AnswerWatch m_Watch;
    CalibrationLog m_Log;
    std::array<PressureReading, Points> m_Points{};
    std::size_t m_PointsMeasured = 0;
    PressureCal m_Measured;
    RunRecorder m_Recorder;
    CalibrationOutcome m_Outcome;
};

} // namespace ombrix

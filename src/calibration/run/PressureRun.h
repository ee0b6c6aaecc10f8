#pragma once

#include "board/procedure/HiResTimer.h"
#include "board/procedure/ProcedureWait.h"
#include "calibration/run/CalibrationRun.h"

#include <array>
#include <functional>
#include <optional>
#include <string>

namespace ombrix {

/// One calibration of the pressure sensor on the 50 mm base. Air that flows out through an open
/// base makes a back-pressure; a system run measures it at five flows and stores its polynomial,
/// an audit verifies that the pressure reads as zero at those flows. All air goes through
/// channel 0.
class PressureRun final : public CalibrationRun {
  public:
    PressureRun(const RunContext& context, CalibrationKind kind);

  private:
    static constexpr std::size_t Points = PressurePointCount;

    std::string Unready() const override;
    bool AskToBegin() override;
    void Measure() override;
    bool DatesWhatWasStopped() const override { return false; }
    void Store() override;
    HistoryEntry Measured() const override;
    const char* NotStoredText() const override {
        return m_HasPolynomial ? "Coefficients not stored in the EPROM" : "";
    }

    void CalibratePressureBase();
    void AskForHose();
    void MeasurePoints();
    std::array<float, Points> FlowsOfPoints() const;
    /// What the sensor reads; nothing when a reading has failed. @throws BoardError
    std::optional<PressureSample> Read();
    /// Adds a sample when one is due.
    void TakeSample(HiResTimer& timer, std::vector<PressureSample>& samples);
    /// The mean of a point; nothing when the operator has cancelled. @throws BoardError
    std::optional<float> RecordPressurePoint(float flow_ml_m);
    /// @throws BoardError when the sensor cannot be read
    void TakeZero();
    bool Pass(HiResTimer& timer, double duration_s, const std::function<void()>& work);
    void ShowPressure();
    void SetChannelAir_ml_m(std::int32_t channel, float flow_ml_m);
    void FinishSystem();
    void FinishAudit();

    AnswerWatch m_Watch;
    std::array<PressureReading, Points> m_Points{};
    std::size_t m_PointsMeasured = 0;
    bool m_HasPolynomial = false;
    /// PressureVerdict::NotFollowing
    std::string m_NotFollowing;
    /// Base and polynomial: as the unit has them, and what a system run makes of them.
    PressureCal m_Cal;
};

} // namespace ombrix

#pragma once

#include "calibration/report/CalibrationReport.h"
#include "calibration/run/CalibrationRun.h"

namespace ombrix {

class MeasuringLoop;

/// One velocity calibration of the ACU on the current board. A system run measures both channels
/// and replaces the stored table; an audit sets flows through the stored table and verifies
/// them. Nothing is written to the EPROM before the data have been judged good.
class VelocityRun final : public CalibrationRun {
  public:
    VelocityRun(const RunContext& context, CalibrationKind kind);

  private:
    void Announce() override;
    bool AskToBegin() override;
    void Measure() override;
    bool DatesWhatWasStopped() const override { return true; }
    void Store() override;
    void NoteCancelled() override;
    HistoryEntry Measured() const override;
    const char* NotStoredText() const override {
        return HasPartOfTable(m_Result) ? TableNotStored : "";
    }

    CalibrationKind Kind() const { return m_Result.Measured.Kind; }
    void MeasureChannels();
    void MeasureChannel(std::size_t channel, MeasuringLoop& loop);
    bool IsAcceptable(std::size_t channel) const;
    void FinishSystem();
    bool AskToSave();
    void SaveCoefficients();
    void FinishAudit();
    void FileAudit(bool wanted);
    void FillReport();
    void SaveReport();

    CalibrationReport m_Report;
    VelocityResult m_Result;
};

} // namespace ombrix

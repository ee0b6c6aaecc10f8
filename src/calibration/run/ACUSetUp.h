#pragma once

#include "board/eprom/EpromGuard.h"
#include "board/procedure/DrivingProcedure.h"
#include "calibration/judge/VelocityMeasurement.h"
#include "calibration/run/CalibrationOutcome.h"
#include "calibration/run/CalibrationServices.h"
#include "reports/CalibrationWorkbooks.h"

#include <cstdint>
#include <functional>
#include <string>

namespace ombrix {

/// The commands that prepare the ACU on the current board, the same for windows and terminal.
/// Each is a procedure: Station::Procedures must be free when it starts. Whatever way a
/// calibration ends, all air is off.
class ACUSetUp {
  public:
    /// The MFC number's text as the program starts with it: it stands for "not entered yet".
    static constexpr const char* MFCNumberPlaceholder = "M9200123Z";

    /// The words that ClearPressure sets to zero.
    static constexpr std::int32_t FirstPressureAddress = 600;
    static constexpr std::int32_t LastPressureAddress = 1020;

    explicit ACUSetUp(CalibrationServices services) : m_Services(std::move(services)) {}

    /// Asks for the serial number and writes the board's identity. False when the operator
    /// declines; the identity is read again by the next detection only.
    bool SetAIBSerialNumber(std::int32_t& serial, bool digital, bool analog);

    /// What became of an initialisation: Passed when every run of the sequence was made and
    /// passed, Error when it was stopped.
    struct Initialisation : CalibrationOutcome {
        /// A line for each stage that has not passed.
        std::string FailedStages;
    };
    /// The MFC number, then the initial calibrations. @param mfcNumber the number as it stands
    /// in the window; takes what the operator enters
    Initialisation RunACUInitialisation(std::string& mfcNumber, bool velocity, bool pressure);

    /// A single run of the present table.
    CalibrationOutcome RunVelocity(CalibrationKind kind);

    /// A single run of the pressure calibration.
    CalibrationOutcome RunPressure(CalibrationKind kind);

    /// Sets the pressure part of the EPROM to zero, after the question.
    /// @param progress told each address @return false when the operator declines
    bool ClearPressure(const std::function<void(std::int32_t address)>& progress);

    WorkbookOutcome CreateACUInfoDoc();

  private:
    void AskMFCNumber(std::string& mfcNumber);
    void ListAndRunStages(EpromGuard& guard, bool velocity, bool pressure, Initialisation& result);
    void RunStages(EpromGuard& guard, bool velocity, bool pressure, Initialisation& result);
    void RunVelocityStages(EpromGuard& guard, Initialisation& result);
    bool Stores(Initialisation& result, const std::function<void()>& save);
    clsACUCalibration& Record() const;
    RunningProcedure Begin() const;
    DrivenBoards CurrentBoard() const;
    CalibrationOutcome RunAlone(const char* stage,
                                const std::function<CalibrationOutcome(EpromGuard&)>& run);

    CalibrationServices m_Services;
};

} // namespace ombrix

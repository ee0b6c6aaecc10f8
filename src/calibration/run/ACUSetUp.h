#pragma once

#include "board/eprom/EpromGuard.h"
#include "board/procedure/DrivingProcedure.h"
#include "calibration/report/ACUInformation.h"
#include "calibration/run/CalibrationRun.h"

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

    ACUSetUp(ReportTools reports, CalibrationView& stages)
        : m_Reports(std::move(reports)), m_Stages(stages), m_Station(m_Reports.TheStation) {}

    /// Asks for the serial number and writes the board's identity. False when the operator
    /// declines; the identity is read again by the next detection only. @throws BoardError
    bool SetAIBSerialNumber(std::int32_t& serial, bool digital, bool analog);

    /// What became of an initialisation: passed when every run of the sequence was made and
    /// passed.
    struct Initialisation : CalibrationOutcome {
        /// A line for each stage that has not passed.
        std::string FailedStages;
    };
    /// The MFC number, then the initial calibrations. One of the velocity that ends before a new
    /// table is stored puts back what it has written to the EPROM; a number that was entered stays
    /// when the question after it is declined. @param mfcNumber the number as it stands in the
    /// window; takes what the operator enters
    Initialisation RunACUInitialisation(std::string& mfcNumber, bool velocity, bool pressure);

    /// A single run of the present table.
    CalibrationOutcome RunVelocity(CalibrationKind kind);

    /// A single run of the pressure calibration.
    CalibrationOutcome RunPressure(CalibrationKind kind);

    /// Declares the pressure sensor of the unit. @param fullScale_mBar of PressureSensors
    /// @throws EpromError, BoardError
    void DeclarePressureSensor(std::int32_t fullScale_mBar);

    /// Sets the pressure part of the EPROM to zero, after the question.
    /// @param progress told each address @return false when the operator declines
    bool ClearPressure(const std::function<void(std::int32_t address)>& progress);

    InformationReport CreateACUInfoDoc();

  private:
    /// What the stages of a sequence belong to.
    struct Sequence {
        EpromGuard Guard;
        DrivingProcedure Running;
        /// The record before the set-up.
        ACURecord Found;
        /// A system run has stored its table: the set-up stays.
        bool TableStored = false;
        /// The set-up could not be put back.
        bool NotPutBack = false;
    };

    /// False when there is none to be had.
    bool AskMFCNumber(std::string& mfcNumber);
    void ListAndRunStages(Sequence& sequence, bool velocity, bool pressure, Initialisation& result);
    void RunStages(Sequence& sequence, bool velocity, bool pressure, Initialisation& result);
    void RunVelocityStages(Sequence& sequence, Initialisation& result);
    bool StoreOrTell(Sequence& sequence, Initialisation& result, const std::function<void()>& save);
    void PutBack(Sequence& sequence);
    void SettleSystemRun(Sequence& sequence, const CalibrationOutcome& run, bool isLast);
    CalibrationOutcome RunAlone(const char* stage,
                                const std::function<CalibrationOutcome(const RunContext&)>& run);

    ReportTools m_Reports;
    CalibrationView& m_Stages;
    Station& m_Station;
};

} // namespace ombrix

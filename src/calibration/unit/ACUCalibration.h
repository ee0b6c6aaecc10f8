#pragma once

#include "board/AIB.h"
#include "board/procedure/BoardClaims.h"
#include "board/procedure/ProcedureGate.h"
#include "calibration/air/AirChannelControl.h"
#include "calibration/unit/ACURecord.h"

#include <functional>
#include <string>

namespace ombrix {

/// A calibration as it was last done: when (0 = never), by whom, with what result.
struct LastCalibration {
    OleDate CalDate;
    std::string User;
    bool Passed = false;
};

class EpromGuard;
struct CalibrationServices;
struct CalibrationOutcome;
enum class CalibrationKind;

/// The record of the ACU behind a board, mirrored field by field into the board's EPROM, and the
/// door to what can be done with the unit.
/// Reading never writes, except when the operator agrees to initialise a blank EPROM. A word
/// that cannot be read is noted by the board; the next fields are still dealt with.
/// What stores something takes the guard of the procedure that it belongs to, and throws
/// EpromError when the EPROM does not take it; the record is then as it was before.
class clsACUCalibration : private ACURecord {
  public:
    /// @param claims the boards that this program has to itself
    clsACUCalibration(Platform& world, BoardClaims& claims) : m_World(world), m_Claims(claims) {}

    /// A record that was kept elsewhere, for reports: it is bound to no board and drives nothing.
    clsACUCalibration(Platform& world, BoardClaims& claims, const ACURecord& kept,
                      std::int32_t serial)
        : ACURecord(kept), m_World(world), m_Claims(claims), m_KeptSerial(serial) {}

    /// All fields, for those who show or store them.
    const ACURecord& Record() const { return *this; }
    /// Takes back what was noted and is not to be stored.
    void Replace(const ACURecord& record) { static_cast<ACURecord&>(*this) = record; }

    bool ACUInitialised() const { return m_ACUInitialised; }
    /// The MFC number without surrounding blanks.
    std::string ACUMFCNumber() const;
    /// The MFC number reduced to A–Z and 0–9, as it stands in file and folder names.
    std::string MFCSerialNumber_Clean() const;
    std::int32_t PressureConfig() const { return m_DigitalPressureConfig; }
    std::int32_t CalibrationPoints() const { return m_CalibrationPoints; }
    /// ml/min at full scale. @param channel 0 to 3 @throws std::out_of_range
    float ChannelCapacity(std::int32_t channel) const;
    LastCalibration LastCalDone_Velocity_System() const;
    LastCalibration LastCalDone_Velocity_Audit() const;
    LastCalibration LastCalDone_Pressure_System() const;
    LastCalibration LastCalDone_Pressure_Audit() const;
    /// "ACU" and the board's serial number with five digits.
    std::string SerialNumberStr() const;

    /// Writes the header of a fresh unit: 5000 and 200 ml/min, 10 points, solenoid valves.
    void SaveFreshHeader(EpromGuard& guard);
    /// Writes the MFC number; an empty one rewrites the present one.
    void SaveMFCNumber(EpromGuard& guard, const std::string& mfcNumber);

    /// The fields of a fresh unit, written as below.
    void Init_VelocityHeader();
    /// Writes the whole record. These operations are for the work of an EpromGuard, which finds
    /// out whether the words have arrived; they return true.
    bool WriteEPROM();
    bool WriteEPROM_Header();
    /// An empty number rewrites the present one.
    bool WriteEPROM_MFCNumber(const std::string& mfcNumber);
    bool WriteEPROM_VelocityHeader();
    /// The channel's table; channel 0 also writes the demands, which all channels share.
    bool WriteEPROM_VelocitySystem(std::int32_t channel);
    bool WriteEPROM_VelocityDateUserSystem();
    bool WriteEPROM_VelocityDateUserAudit();
    bool WriteEPROM_PressureHeader();
    /// @param zeroOnly marks the pressure as uncalibrated instead of storing coefficients
    bool WriteEPROM_PressureSystem(bool zeroOnly);
    bool WriteEPROM_PressureDateUserSystem();
    bool WriteEPROM_PressureDateUserAudit();

    /// Binds the record to the board and reads it. False when the EPROM holds no record.
    bool ReadEPROMValues(clsAIB& board);
    /// Reads a record of version 1 or 2 from the bound board.
    bool ReadEPROMValues_v02(bool showErrors);

    /// Drives and reads the air channels. @param display shows what they are told
    /// @throws std::logic_error for a record that no board has been bound to
    AirChannelControl Air(DACSliders& display);
    /// One velocity calibration. @param unattended one of several that were started together
    CalibrationOutcome CalibrateACUAirVelocity(const CalibrationServices& services,
                                               EpromGuard& guard, CalibrationKind kind,
                                               bool unattended);
    /// Has the running calibration end at its next pass.
    void CancelCalibration();
    /// Replaces the stored table by a measured one, in the EPROM too, with date and user.
    void SaveVelocitySystemCalibration(EpromGuard& guard,
                                       const std::array<ACUChannelCal, ACUChannels>& measured);
    /// Takes note of an audit's result; SaveVelocityAudit stores it.
    void NoteVelocityAudit(bool passed);
    /// Stores an audit's result with date and user.
    /// @param before the record from before the result was noted
    void SaveVelocityAudit(EpromGuard& guard, bool passed, const ACURecord& before);

    /// One pressure calibration. @param autoSave the audit sheet is stored without asking
    CalibrationOutcome CalibrateACUPressure(const CalibrationServices& services, EpromGuard& guard,
                                            CalibrationKind kind, bool autoSave);
    /// The present pressure in mBar, without the back-pressure of the flow and the zero.
    float PressureGet_mBar(AirChannelControl& air) const;
    /// Takes the present reading as zero.
    void PressureZero(AirChannelControl& air);
    PressureCal Pressure() const;
    /// Replaces base and polynomial by measured ones, in the EPROM too, with date and user.
    void SavePressureSystemCalibration(EpromGuard& guard, const PressureCal& measured);
    /// Stores an audit's result with date and user.
    void SavePressureAudit(EpromGuard& guard, const PressureCal& measured, bool passed);

    /// Stands for a calibration that is running: meanwhile CancelCalibration reaches it.
    class RunningCalibration {
      public:
        RunningCalibration(clsACUCalibration& record, Cancellation& cancel) : m_Record(record) {
            m_Record.m_RunningCalibration = &cancel;
        }
        RunningCalibration(const RunningCalibration&) = delete;
        RunningCalibration& operator=(const RunningCalibration&) = delete;
        ~RunningCalibration() { m_Record.m_RunningCalibration = nullptr; }

      private:
        clsACUCalibration& m_Record;
    };

  private:
    void ReadEPROMValues_Velocity();
    void ReadEPROMValues_Pressure();
    void ReadVelocityTables();
    void CalculatePressureScaling();
    std::int32_t PressureFlowOffset(float flow_ml_m) const;
    /// False when they cannot be read.
    bool ReadCapacities();
    bool HasCapacities() const;
    bool InitialiseBlank();
    /// Runs work that changes fields and writes them; what the EPROM does not hold does not stay
    /// in the record either.
    void Store(EpromGuard& guard, const ACURecord& before, const std::function<void()>& work);
    void CopyPressureCal(const PressureCal& source);
    void Tell(const std::string& text, MessageIcon icon) const;

    /// Reads of one field; the address is where the field stands.
    std::int32_t ReadLong(std::int32_t address, std::string_view label) const;
    float ReadSingle(std::int32_t address, std::string_view label) const;
    OleDate ReadDate(std::int32_t address, std::string_view label) const;
    std::string ReadText(std::int32_t address, std::int32_t length, std::string_view label) const;
    std::string ReadVelocityUser(std::int32_t address, std::string_view label) const;
    void WriteLong(std::int32_t address, std::int32_t value) const;
    void WriteSingle(std::int32_t address, float value) const;
    void WriteDateUser(std::int32_t dateAddress, OleDate date, std::int32_t passedAddress,
                       std::int32_t passed, std::int32_t userAddress,
                       const std::string& user) const;
    void WriteText(std::int32_t address, std::int32_t length, const std::string& text) const;

    Platform& m_World;
    BoardClaims& m_Claims;
    clsAIB* m_AIB = nullptr;
    std::int32_t m_KeptSerial = 0;
    AirChannelState m_AirState;
    /// Not owned; none while no calibration runs.
    Cancellation* m_RunningCalibration = nullptr;
};

} // namespace ombrix

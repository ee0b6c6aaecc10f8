#pragma once

#include "board/AIB.h"
#include "board/procedure/BoardClaims.h"
#include "board/unit/ACURecord.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace ombrix {

class EpromGuard;

/// The calibration record of the ACU behind a board: as it was last read from the board's EPROM,
/// and what is stored there. Reading never writes, except when the operator agrees to initialise a
/// blank EPROM. What stores something takes the guard of the procedure that it belongs to, and
/// throws EpromError when the EPROM does not take it; the record is then as it was before.
class ACUCalibration {
  public:
    /// @param claims the boards that this program has to itself
    ACUCalibration(Platform& world, BoardClaims& claims, AIB& board)
        : m_World(world), m_Claims(claims), m_Board(board) {}

    const ACURecord& Record() const { return m_Record; }
    /// The unit as files and reports tell of it.
    ACU Unit() const { return {m_Board.SerialNumber(), m_Record}; }

    /// Reads the record. False when the EPROM holds none, or does not answer
    /// (ACURecord::IsRead).
    bool ReadEPROMValues();
    /// Reads the record again when it could not be read. @throws BoardError when it still cannot
    void RequireRecord();

    /// Writes the header of a fresh unit: 5000 and 200 ml/min, 10 points, solenoid valves.
    void SaveFreshHeader(EpromGuard& guard);
    /// What that would replace in the EPROM, for the question before it: a paragraph with a line
    /// for each value ("Solenoid valves: no → yes"). Empty when nothing that stands there would
    /// change; what is erased, or cannot be read, is no value.
    std::string FreshHeaderChanges();
    /// Has the EPROM hold again what it held before the guard's writing, and the record with it.
    /// False when that failed (EpromGuard::ChangesText). @param found the record from then
    bool PutBack(EpromGuard& guard, const ACURecord& found);
    /// Writes the MFC number; an empty one rewrites the present one. @throws std::invalid_argument
    /// for one that is too long
    void SaveMFCNumber(EpromGuard& guard, const std::string& mfcNumber);
    /// Replaces the stored tables by measured ones, with date and user.
    void SaveVelocitySystemCalibration(EpromGuard& guard,
                                       const std::array<ACUChannelCal, ACUChannels>& measured);
    /// Stores an audit's result with date and user.
    void SaveVelocityAudit(EpromGuard& guard, bool passed);
    /// Replaces base and polynomial by measured ones, with date and user.
    void SavePressureSystemCalibration(EpromGuard& guard, const PressureCal& measured);
    /// Declares the pressure sensor. @param fullScale_mBar of PressureSensors
    void SavePressureSensor(EpromGuard& guard, std::int32_t fullScale_mBar);
    /// Stores an audit's result with date and user.
    void SavePressureAudit(EpromGuard& guard, const PressureCal& measured, bool passed);

    /// Has the pressure count from a reading on, until the program ends.
    void PressureZero(std::int32_t zero_bits) { m_Record.PressureZero = zero_bits; }

  private:
    // False where a record is not read any further.
    bool ReadRecord();
    bool TakeRecord(EpromSource& from);
    bool ReadEPROMValues_v02(EpromSource& from);
    bool InitialiseBlank();
    /// Writes what the change notes; a record whose words the EPROM does not hold does not stay.
    void Store(EpromGuard& guard,
               const std::function<void(ACURecord& record, EpromSink& words)>& change);
    void Tell(const std::string& text, MessageIcon icon) const;

    Platform& m_World;
    BoardClaims& m_Claims;
    AIB& m_Board;
    ACURecord m_Record;
};

} // namespace ombrix

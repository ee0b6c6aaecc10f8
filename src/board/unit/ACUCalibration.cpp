#include "board/unit/ACUCalibration.h"

#include "board/eprom/EpromGuard.h"
#include "board/eprom/PartialWrite.h"
#include "board/unit/RecordCoding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <bit>
#include <stdexcept>

namespace ombrix {

namespace {

// What stands for "passed": units in the field have been written so.
constexpr std::int32_t VelocityPassed = -1;
constexpr std::int32_t PressurePassed = 1;

std::string FixedUser() {
    return FixedWidth(CalibrationUser, ACUMemoryMap::UserLength);
}

void TakePressureCal(ACURecord& record, const PressureCal& measured) {
    record.BaseDiameter = measured.BaseDiameter_mm;
    record.PressureCoeff = measured.Coefficients;
}

/// Whether a word of the header holds something that a fresh header could replace; the MFC number
/// is rewritten as it is.
bool IsHeaderValue(std::int32_t address, std::int32_t word) {
    namespace Map = ACUMemoryMap;
    constexpr std::int32_t erased = -1;
    if (address >= Map::ChannelCapacity && address < Map::CalibrationPoints)
        return IsCapacity(std::bit_cast<float>(word));
    return word != erased && address < Map::MFCNumber;
}

/// Remembers whether every word was answered.
class WatchedEprom final : public EpromSource {
  public:
    explicit WatchedEprom(EpromSource& from) : m_From(from) {}

    AIBStatus ReadEPROM(std::int32_t address, std::int32_t& word) override {
        const AIBStatus status = m_From.ReadEPROM(address, word);
        if (m_FirstFailure == Status::NoError)
            m_FirstFailure = status;
        return status;
    }
    AIBStatus FirstFailure() const { return m_FirstFailure; }

  private:
    EpromSource& m_From;
    AIBStatus m_FirstFailure = Status::NoError;
};

} // namespace

bool ACUCalibration::ReadEPROMValues() {
    if (!ReadRecord())
        Tell("There was an error reading the EPROM in the AIB", MessageIcon::Information);
    return m_Record.ACUInitialised;
}

bool ACUCalibration::ReadRecord() {
    WatchedEprom words(m_Board);
    m_Record.ReadStatus = Status::NoError;
    const bool whole = TakeRecord(words);
    m_Record.ReadStatus = words.FirstFailure();
    return whole;
}

bool ACUCalibration::TakeRecord(EpromSource& from) {
    m_Record.ACUInitialised = false;
    if (m_Board.IsUsb())
        m_Record.DataVersion = ReadDataVersion_Usb(from);
    else if (m_Board.IsFireWire())
        m_Record.DataVersion = ReadDataVersion_FireWire(from);
    const std::int32_t version = m_Record.DataVersion;
    if (version == -1 || version == 0 || version == 3)
        return true;
    const bool whole = (version != 1 && version != 2) || ReadEPROMValues_v02(from);
    // One that cannot be read any further has been told to the operator, and counts as a record.
    m_Record.ACUInitialised = true;
    return whole;
}

void ACUCalibration::RequireRecord() {
    if (!m_Record.IsRead())
        ReadRecord();
    if (!m_Record.IsRead())
        throw BoardError(m_Record.UnreadText());
}

bool ACUCalibration::ReadEPROMValues_v02(EpromSource& from) {
    if (!ReadCapacities(from, m_Record))
        return false; // what cannot be read is not known to be missing
    if (!HasCapacities(m_Record)) {
        if (FindPartialWrite(m_World, m_Board.SerialNumber()))
            return false; // it is to be made whole, not initialised
        // What a fresh header rewrites must not be lost to a record that has read nothing yet.
        TakeWrittenMFCNumber(from, m_Record);
        const Message question{"This ACU has not been initialised.\r\n\r\n"
                               "Would you like to Initialise the EPROM now?" +
                                   FreshHeaderChanges(),
                               MessageIcon::Question,
                               MessageButtons::YesNo,
                               {},
                               true}; // nobody has asked for anything to be written
        if (m_World.Messages.Ask(question) != Answer::Yes || !InitialiseBlank())
            return false;
    }
    ReadHeader(from, m_Record);
    if (m_Record.CalibrationPoints == 0) {
        Tell("Zero Calibration Points", MessageIcon::Information);
        return false;
    }
    ReadEPROMValues_Velocity(from, m_Record);
    if (const auto unknown = ReadEPROMValues_Pressure(from, m_Record))
        Tell("Un-recognised Pressure Value: " + GeneralText(*unknown) +
                 "\r\n\r\nUsing Default of 1000mBar",
             MessageIcon::Information);
    // The valves of a unit that another program has are that program's to set up. Whoever drives
    // makes sure of the pin (Outputs::PrepareValve): a refusal here does no harm.
    if (m_Board.IsFireWire() && m_Claims.ClaimUnlessTaken(m_Board.DevSerialNum()))
        m_Board.ConfigureGPIO(m_Record.HasSolenoidValves != 0 ? 1 : 0);
    return true;
}

bool ACUCalibration::InitialiseBlank() {
    try {
        EpromGuard guard(m_World, m_Claims, m_Board, "EPROM Initialisation");
        guard.MakeReady();
        // The question stood on a single reading, and what would be lost is a whole calibration.
        if (ReadCapacities(m_Board, m_Record) && HasCapacities(m_Record))
            throw EpromError("The EPROM holds the capacities of its channels, although they have "
                             "been read as missing: the link to the board is unsteady.\r\n\r\n"
                             "Nothing has been written. Please check the cable of the board, then "
                             "detect the boards again.");
        SaveFreshHeader(guard);
        return true;
    } catch (const std::runtime_error& error) {
        Tell(error.what(), MessageIcon::Critical);
        return false;
    }
}

void ACUCalibration::Store(EpromGuard& guard,
                           const std::function<void(ACURecord& record, EpromSink& words)>& change) {
    // What is written stands on what was there.
    RequireRecord();
    ACURecord changed = m_Record;
    EpromWords words;
    change(changed, words);
    guard.Write(words);
    m_Record = std::move(changed);
}

void ACUCalibration::SaveFreshHeader(EpromGuard& guard) {
    Store(guard, [this](ACURecord& record, EpromSink& words) {
        Init_VelocityHeader(words, record, m_Board.IsFireWire());
    });
}

std::string ACUCalibration::FreshHeaderChanges() {
    ACURecord fresh = m_Record;
    EpromWords words;
    Init_VelocityHeader(words, fresh, m_Board.IsFireWire());
    EpromImage present;
    EpromImage wanted;
    for (const EpromWords::Word& word : words.All()) {
        std::int32_t stored = 0;
        if (m_Board.ReadEPROM(word.Address, stored) != Status::NoError ||
            !IsHeaderValue(word.Address, stored))
            continue;
        present.SetWord(word.Address, stored);
        wanted.SetWord(word.Address, word.Value);
    }
    std::string lines;
    for (const EpromDifference& difference : EpromDifferences(present, wanted)) {
        const bool isValves = difference.Address == ACUMemoryMap::HasSolenoidValves;
        if (isValves && difference.Old != "0")
            continue; // "yes" by another number
        // The first word of a FireWire board has no name of its own.
        const std::string name = difference.Name.empty() ? "Data version" : difference.Name;
        lines += "\r\n  " +
                 (isValves ? "Solenoid valves: no → yes"
                           : fmt::format("{}: {} → {}", name, difference.Old, difference.New));
    }
    return lines.empty() ? lines : "\r\n\r\nThis changes in the EPROM:" + lines;
}

bool ACUCalibration::PutBack(EpromGuard& guard, const ACURecord& found) {
    if (!guard.PutBack())
        return false;
    m_Record = found;
    return true;
}

void ACUCalibration::SaveMFCNumber(EpromGuard& guard, const std::string& mfcNumber) {
    if (!ACURecord::IsMFCNumber(mfcNumber))
        throw std::invalid_argument(ACURecord::NumberRefusal(mfcNumber));
    Store(guard, [&](ACURecord& record, EpromSink& words) {
        WriteEPROM_MFCNumber(words, record, mfcNumber);
    });
}

void ACUCalibration::SaveVelocitySystemCalibration(
    EpromGuard& guard, const std::array<ACUChannelCal, ACUChannels>& measured) {
    Store(guard, [&](ACURecord& record, EpromSink& words) {
        record.VelocityCal = measured;
        record.VelocitySystemPassed = VelocityPassed;
        record.VelocitySystemDate = m_World.Time.Now();
        record.VelocitySystemUser = FixedUser();
        WriteEPROM_VelocitySystem(words, record, 0);
        WriteEPROM_VelocitySystem(words, record, 1);
        WriteEPROM_VelocityDateUserSystem(words, record);
    });
}

void ACUCalibration::SaveVelocityAudit(EpromGuard& guard, bool passed) {
    Store(guard, [&](ACURecord& record, EpromSink& words) {
        record.VelocityAuditPassed = passed ? VelocityPassed : 0;
        record.VelocityAuditDate = m_World.Time.Now();
        record.VelocityAuditUser = FixedUser();
        WriteEPROM_VelocityDateUserAudit(words, record);
    });
}

void ACUCalibration::SavePressureSystemCalibration(EpromGuard& guard, const PressureCal& measured) {
    Store(guard, [&](ACURecord& record, EpromSink& words) {
        record.PressureSystemDate = m_World.Time.Now();
        record.PressureSystemUser = FixedUser();
        record.PressureSystemPassed = PressurePassed;
        TakePressureCal(record, measured);
        // Four times over, as the units in the field have been written.
        for (int time = 0; time < 4; ++time)
            WriteEPROM_PressureSystem(words, record, false);
        WriteEPROM_PressureDateUserSystem(words, record);
    });
}

void ACUCalibration::SavePressureSensor(EpromGuard& guard, std::int32_t fullScale_mBar) {
    Store(guard, [&](ACURecord& record, EpromSink& words) {
        record.PressurePresent = fullScale_mBar != 0;
        record.MaxPressure = static_cast<float>(fullScale_mBar);
        WriteEPROM_PressureHeader(words, record);
        // A unit without a pressure calibration has no scale yet.
        if (record.PressureScale != 0.0F)
            record.CalculatePressureScaling();
    });
}

void ACUCalibration::SavePressureAudit(EpromGuard& guard, const PressureCal& measured,
                                       bool passed) {
    Store(guard, [&](ACURecord& record, EpromSink& words) {
        record.PressureAuditDate = m_World.Time.Now();
        record.PressureAuditUser = FixedUser();
        record.PressureAuditPassed = passed ? PressurePassed : 0;
        TakePressureCal(record, measured);
        WriteEPROM_PressureDateUserAudit(words, record);
    });
}

void ACUCalibration::Tell(const std::string& text, MessageIcon icon) const {
    m_World.Messages.Ask({text, icon, MessageButtons::Ok});
}

} // namespace ombrix

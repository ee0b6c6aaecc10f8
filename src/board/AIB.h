#pragma once

#include "board/AIBControl.h"
#include "board/BoardFeed.h"
#include "board/eprom/EpromStorage.h"
#include "platform/ports/Platform.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How an ACU hangs on its board.
namespace ombrix::ACUWiring {

/// The ADC that reads the pressure sensor.
constexpr std::int32_t PressureInput = 2;
/// The digital output of a USB board that switches the solenoid valves over.
constexpr std::int32_t UsbValveOutput = 8;
/// The pin of a FireWire board that does.
constexpr std::int32_t FireWireValvePin = 0;

} // namespace ombrix::ACUWiring

namespace ombrix {

/// How a board took what it was told, or answered what it was asked.
struct BoardAnswer {
    /// AccessDenied where another program has the board.
    AIBStatus Code = Status::NoError;
    /// Nothing was sent and nothing asked: the digital MFCs take no demands.
    bool MFCsNotReady = false;

    bool Taken() const { return Code == Status::NoError && !MFCsNotReady; }
    /// "The MFCs are not ready.", else the text of the status.
    std::string Text() const;
    /// The same with its full stop.
    std::string Sentence() const;
};

/// What a walking-register test has found.
struct WalkingFindings {
    /// Numbers of the bits that read back as another pattern.
    std::vector<int> FailedBits;
    /// The first write or read that the board has not answered; nothing is known of its bit.
    BoardAnswer Refusal;
};

/// What a board object works with.
struct BoardServices {
    AIBControl& Library;
    Platform& World;
    /// Is told of every reading and every demand, when given.
    BoardFeed* Feed = nullptr;
};

/// One detected accessory interface board: its identity, its operations and its EPROM. Operations
/// return the library's status after noting a failure (StatusOK); nothing is tried twice. Outputs
/// drives what hangs on it.
class AIB final : public EpromSource, public EpromSink {
  public:
    static constexpr std::int32_t DACChannels = 4;
    /// Of digital MFCs: the air channels.
    static constexpr std::int32_t MFCChannels = 2;
    static constexpr std::int32_t DACFullScale = 65535;
    static constexpr std::int32_t GPIOPins = 20;
    static constexpr std::int32_t PressureRegister = 92;

    explicit AIB(const BoardServices& services) : m_Services(services) {}

    /// Three parameter calls that exercise the digital MFC link; the results are discarded.
    void TestDigitalAIB();

    // Identity, as last read by GetAccessoryInfo.
    std::int32_t BoardIndex() const { return m_Index; }
    std::int32_t HWVersion() const { return m_Info.HWVersion; }
    std::int32_t DevType() const { return m_Info.DevType; }
    std::int32_t DevSerialNum() const { return m_Info.DevSerialNum; }
    std::int32_t SerialNumber() const { return m_Info.DevSerialNum; }
    const std::string& Vendor() const { return m_Info.Vendor; }
    const std::string& Module() const { return m_Info.Module; }
    const std::string& BuildDate() const { return m_Info.BuildDate; }
    std::int32_t ConfigBits() const { return m_Info.ConfigBits; }
    std::int32_t BusType() const { return m_Info.BusType; }
    /// "USB", "FireWire" or "UNKNOWN".
    std::string BusTypeText() const;
    bool IsUsb() const { return m_Info.BusType == static_cast<std::int32_t>(ombrix::BusType::Usb); }
    bool IsFireWire() const {
        return m_Info.BusType == static_cast<std::int32_t>(ombrix::BusType::FireWire);
    }
    /// Binds the object to a board of the library and reads its identity.
    void GetAccessoryInfo(std::int32_t index);
    /// The serial number that the board reports now; 0 for none. The identity stays as it is.
    std::int32_t ReportedSerial() const;
    AIBStatus WriteAIBInfo(std::int32_t first, std::int32_t code, std::int32_t serial);

    /// False from creation and after every failed call; nothing sets it true. Whether a reading
    /// can be used is told by the status of that reading.
    bool StatusOK() const { return m_StatusOK; }
    static std::string AIBErrorStr(AIBStatus status);

    AIBStatus UploadFPGAImage(std::string_view path);
    AIBStatus WriteReg(std::int32_t address, std::int32_t value);
    AIBStatus ReadReg(std::int32_t address, std::int32_t& value);
    AIBStatus ConfigureGPIO(std::int32_t mask);
    /// The mask that ConfigureGPIO has last set.
    std::int32_t Directions() const { return m_Directions; }
    /// Whether a pin was last set or cleared; nothing before the board has taken either.
    std::optional<bool> PinIsSet(std::int32_t pin) const { return m_Pins.Of(pin); }
    /// The same of an extended output, as the power of the MFCs.
    std::optional<bool> ExtendedIsSet(std::int32_t pin) const { return m_Extended.Of(pin); }
    AIBStatus SetGPO(std::int32_t pin);
    AIBStatus ClearGPO(std::int32_t pin);
    AIBStatus SetExtGPO(std::int32_t pin);
    AIBStatus ClearExtGPO(std::int32_t pin);
    /// Whether the output of the solenoid valves was last set or cleared; nothing before the board
    /// has taken either.
    std::optional<bool> ValveIsSet() const;
    AIBStatus GetGPI(std::int32_t pin, std::int32_t& level);
    AIBStatus GetVariable(std::int32_t number, std::int32_t& value);
    AIBStatus SetVariable(std::int32_t number, std::int32_t value);

    /// Channels 0 and 1 are digital MFCs.
    bool IsDigitalSetup() const { return m_DigitalSetup; }
    void IsDigitalSetup(bool digital) { m_DigitalSetup = digital; }
    /// The channel, 0 to 3, is a digital MFC.
    bool IsDigitalChannel(std::int32_t channel) const {
        return m_DigitalSetup && channel < MFCChannels;
    }
    /// What a channel is told or asked reaches the board: digital MFCs that are not ready take no
    /// demands, and read as 0 without having been asked.
    bool Reaches(std::int32_t channel) const { return m_MFCReady || !IsDigitalChannel(channel); }

    /// Digital MFC demand in percent of full scale; does nothing while the MFCs are not ready.
    AIBStatus MFCSetFlowRate(std::int32_t channel, float percent);
    /// Digital MFC reading on the scale of the ADCs, 0 to 65535; 0 while the MFCs are not ready.
    AIBStatus MFCGetFlowRate(std::int32_t channel, std::int32_t& value);
    AIBStatus SetDAC_UART(std::int32_t channel, std::int32_t value);
    AIBStatus GetADC_UART(std::int32_t channel, std::int32_t& value);

    /// Channels 0 to 3, values 0 to 65535; the air channels of a digital setup go to the MFCs.
    /// @throws std::out_of_range for another channel, before anything is sent
    AIBStatus SetDAC(std::int32_t channel, std::int32_t value);
    /// The value that a DAC channel has last taken.
    std::int32_t DAC(std::int32_t channel) const;
    /// Sets every output to zero: the DACs and the digital set-points, whatever the board is,
    /// whatever mode is selected and whether the MFCs are ready or not. Each is tried, also after
    /// another has failed. True when the board has taken all that it can have been told to drive:
    /// a board without digital MFCs may refuse their link, unless a set-point was sent to it.
    bool SwitchOutputsOff() noexcept;
    /// An output was told something else than zero and the board has not taken all the zeros of
    /// SwitchOutputsOff since.
    bool MayDrive() const { return m_MayDrive; }
    /// An output stands above zero, as far as the board has taken what it was told.
    bool Drives() const;
    AIBStatus GetADC(std::int32_t channel, std::int32_t& value);
    /// The value of GetADC; its status is dropped.
    std::int32_t MyGetADC(std::int32_t channel);
    /// The input as it was answered; nothing when the reading has failed or could not be asked
    /// for. @param answer takes how the reading went, when given
    std::optional<std::int32_t> Reading(std::int32_t channel, BoardAnswer* answer = nullptr);
    /// The analog converter itself, never the digital path; status neither checked nor returned.
    std::int32_t ADC(std::int32_t channel) const;
    /// The same with its status, which leaves StatusOK alone.
    AIBStatus ADC(std::int32_t channel, std::int32_t& value) const;

    /// Lets the board's EPROM be written while it lives: a word that nobody has prepared for, or
    /// will read back, cannot be written.
    class EpromWriting {
      public:
        /// @throws std::logic_error while there is another one for the board
        explicit EpromWriting(AIB& board);
        EpromWriting(const EpromWriting&) = delete;
        EpromWriting& operator=(const EpromWriting&) = delete;
        ~EpromWriting() { m_Board.m_EpromIsWritten = false; }

      private:
        AIB& m_Board;
    };

    /// @throws std::logic_error without an EpromWriting
    AIBStatus WriteEPROM(std::int32_t address, std::int32_t word) override;
    AIBStatus ReadEPROM(std::int32_t address, std::int32_t& word) override;
    AIBStatus DumpEPROM(std::string_view path);

    /// Loads the FPGA from the configuration file of the board's hardware version. A missing
    /// file is told to the operator and ends the program.
    bool StartFPGAUpload();
    /// The board has taken its configuration file since it was found.
    bool Programmed() const { return m_Programmed; }
    /// Path of the board's FPGA configuration file; empty when the version has none.
    std::string FPGAFileName() const;
    bool FileExists(std::string_view path) const { return m_Services.World.Files.FileExists(path); }

    /// Whether the digital MFCs take flow commands; boards without digital MFCs are always ready.
    bool CheckMFCReady();
    /// Result of the last CheckMFCReady.
    bool MFCReady() const { return m_MFCReady; }
    /// Whether the board has said so, and why not when it has not.
    const BoardAnswer& MFCReadyAnswer() const { return m_MFCReadyAnswer; }
    /// Walks a one through the 16 bits of the test register, with a message for each bit that
    /// fails. @param findings takes what was found, when given
    bool RunWalkingRegisterTest(WalkingFindings* findings = nullptr);

  private:
    AIBStatus CheckStatus(AIBStatus status);
    /// What outputs that are on or off were told last, a bit each.
    struct Levels {
        std::int32_t Told = 0;
        std::int32_t Set = 0;

        std::optional<bool> Of(std::int32_t pin) const;
    };
    AIBStatus NoteLevel(AIBStatus status, Levels& levels, std::int32_t pin, bool set);
    /// Has the feed told, if anybody listens. @param value_bits counts where the board has
    /// taken or answered it
    void Tell(BoardNote::Subject what, std::int32_t channel, bool answered,
              std::int32_t value_bits) const noexcept {
        if (m_Services.Feed != nullptr && m_Services.Feed->Any())
            TellFeed(what, channel, answered, value_bits);
    }
    void TellFeed(BoardNote::Subject what, std::int32_t channel, bool answered,
                  std::int32_t value_bits) const noexcept;
    bool HasDigitalMFCs() const { return HWVersion() > 0 && IsUsb(); }

    BoardServices m_Services;
    std::int32_t m_Index = 0;
    AccessoryInfo m_Info;
    bool m_DigitalSetup = false;
    bool m_StatusOK = false;
    bool m_MayDrive = false;
    /// A set-point above zero was sent and SwitchOutputsOff has not taken it back since.
    bool m_SetPointStands = false;
    std::array<std::int32_t, DACChannels> m_DAC{};
    bool m_Programmed = false;
    bool m_MFCReady = false;
    BoardAnswer m_MFCReadyAnswer;
    std::int32_t m_Directions = 0;
    Levels m_Pins;
    Levels m_Extended;
    bool m_EpromIsWritten = false;
};

} // namespace ombrix

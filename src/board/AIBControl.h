#pragma once

#include "boardhost/LibraryError.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace ombrix {

enum class BusType : std::int32_t { Usb = 1, FireWire = 2 };

/// The accessory information as the board library exchanges it: a packed block of 788 bytes,
/// integers little-endian, texts 8-bit with a fixed width of 256 bytes.
struct AccessoryInfoBlock {
    std::int32_t BusType = 0;
    std::int32_t HWVersion = 0;
    std::int32_t DevType = 0;
    std::int32_t DevSerialNum = 0;
    std::array<char, 256> Vendor{};
    std::array<char, 256> Module{};
    std::int32_t ConfigBits = 0;
    std::array<char, 256> BuildDate{};
};
static_assert(sizeof(AccessoryInfoBlock) == 788);
static_assert(offsetof(AccessoryInfoBlock, ConfigBits) == 528);
static_assert(offsetof(AccessoryInfoBlock, BuildDate) == 532);
static_assert(std::endian::native == std::endian::little,
              "The record is handed to the library as it lies in memory");

/// The accessory information as the program holds it; texts of 256 characters, untrimmed.
struct AccessoryInfo {
    /// 1 = USB, 2 = FireWire, anything else unknown.
    std::int32_t BusType = 0;
    /// Low 16 bits: 0 analog MFCs only, 1 digital and analog, 2 digital only.
    /// High 16 bits: number of the FPGA configuration file.
    std::int32_t HWVersion = 0;
    std::int32_t DevType = 0;
    std::int32_t DevSerialNum = 0;
    std::string Vendor;
    std::string Module;
    std::int32_t ConfigBits = 0;
    std::string BuildDate;
};

AccessoryInfo Decode(const AccessoryInfoBlock& record);
AccessoryInfoBlock Encode(const AccessoryInfo& info);

/// A board has stopped answering, or does not take what it is told.
class BoardError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Status of a board operation; only 0 means success.
using AIBStatus = std::int32_t;

namespace Status {
constexpr AIBStatus NoError = 0;
constexpr AIBStatus HardwareError = -1;
constexpr AIBStatus AccessDenied = 3;
constexpr AIBStatus Timeout = 32;
} // namespace Status

/// The four values by which the library selects a parameter of a digital MFC.
struct MFCParameter {
    std::int32_t First = 0;
    std::int32_t Second = 0;
    std::int32_t Third = 0;
    std::int32_t Fourth = 0;
};

/// Every operation of the board library: the one interface through which the program reaches
/// the hardware. Boards are addressed from 0 in the library's order. The library is called
/// from one thread only. Out arguments keep their value when a call fails.
class AIBControl {
  public:
    virtual ~AIBControl() = default;

    /// Opens the library and returns the number of boards attached. @throws AIBLibraryError
    virtual std::int32_t OpenAIBAPI() = 0;
    virtual AIBStatus CloseAIBAPI() = 0;
    virtual AIBStatus GetAccessoryInfo(std::int32_t index, AccessoryInfoBlock& record) = 0;

    /// Loads the FPGA from a configuration file; a real path of this machine.
    virtual AIBStatus UploadFPGAImage(std::int32_t index, const std::string& path) = 0;
    virtual AIBStatus WriteReg(std::int32_t index, std::int32_t address, std::int32_t value) = 0;
    virtual AIBStatus ReadReg(std::int32_t index, std::int32_t address, std::int32_t& value) = 0;

    /// Bit i of the mask makes general I/O pin i (0 to 19) an output.
    virtual AIBStatus ConfigureGPIO(std::int32_t index, std::int32_t mask) = 0;
    virtual AIBStatus SetGPO(std::int32_t index, std::int32_t pin) = 0;
    virtual AIBStatus ClearGPO(std::int32_t index, std::int32_t pin) = 0;
    virtual AIBStatus SetExtGPO(std::int32_t index, std::int32_t pin) = 0;
    virtual AIBStatus ClearExtGPO(std::int32_t index, std::int32_t pin) = 0;
    virtual AIBStatus GetGPI(std::int32_t index, std::int32_t pin, std::int32_t& level) = 0;

    /// Channels 0 to 3, values 0 to 65535.
    virtual AIBStatus SetDAC(std::int32_t index, std::int32_t channel, std::int32_t value) = 0;
    virtual AIBStatus GetADC(std::int32_t index, std::int32_t channel, std::int32_t& value) = 0;

    /// Writes the board's identity; the first value is always 0.
    virtual AIBStatus WriteAIBInfo(std::int32_t index, std::int32_t first, std::int32_t code,
                                   std::int32_t serial) = 0;
    /// One 32-bit word at a byte address, 0 to 2044 in steps of 4.
    virtual AIBStatus WriteEEPROM(std::int32_t index, std::int32_t address, std::int32_t word) = 0;
    virtual AIBStatus ReadEEPROM(std::int32_t index, std::int32_t address, std::int32_t& word) = 0;
    virtual AIBStatus DumpEEPROM(std::int32_t index, const std::string& path) = 0;

    /// Digital MFC channels 0 and 1; set-point and flow 0 to 32000, 32000 being full scale.
    virtual AIBStatus MFCSetFlowrate(std::int32_t index, std::int32_t channel,
                                     std::int32_t setPoint) = 0;
    virtual AIBStatus MFCGetFlowrate(std::int32_t index, std::int32_t channel,
                                     std::int32_t& flow) = 0;
    virtual AIBStatus MFCSetParameter(std::int32_t index, const MFCParameter& parameter,
                                      std::int32_t value) = 0;
    virtual AIBStatus MFCGetParameter(std::int32_t index, const MFCParameter& parameter,
                                      std::int32_t& value) = 0;

    virtual AIBStatus GetVariable(std::int32_t index, std::int32_t number, std::int32_t& value) = 0;
    virtual AIBStatus SetVariable(std::int32_t index, std::int32_t number, std::int32_t value) = 0;
};

} // namespace ombrix

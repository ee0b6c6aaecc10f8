#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace ombrix {

enum class BusType : std::int32_t { Usb = 1, FireWire = 2 };

/// The accessory information as the board library exchanges it: a packed block of 788 bytes,
/// integers little-endian, texts 8-bit with a fixed width of 256 bytes.
struct AccessoryInfoRecord {
    std::int32_t BusType = 0;
    std::int32_t HWVersion = 0;
    std::int32_t DevType = 0;
    std::int32_t DevSerialNum = 0;
    std::array<char, 256> Vendor{};
    std::array<char, 256> Module{};
    std::int32_t ConfigBits = 0;
    std::array<char, 256> BuildDate{};
};
static_assert(sizeof(AccessoryInfoRecord) == 788);
static_assert(offsetof(AccessoryInfoRecord, ConfigBits) == 528);
static_assert(offsetof(AccessoryInfoRecord, BuildDate) == 532);
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

AccessoryInfo Decode(const AccessoryInfoRecord& record);
AccessoryInfoRecord Encode(const AccessoryInfo& info);

} // namespace ombrix

#include "board/AIBControl.h"

#include "platform/text/Text.h"

#include <algorithm>
#include <string_view>

namespace ombrix {

namespace {

std::string DecodeText(const std::array<char, 256>& bytes) {
    return FromWindows1252(std::string_view(bytes.data(), bytes.size()));
}

std::array<char, 256> EncodeText(const std::string& text) {
    std::array<char, 256> bytes{};
    const std::string encoded = ToWindows1252(text);
    std::copy_n(encoded.begin(), std::min(encoded.size(), bytes.size()), bytes.begin());
    return bytes;
}

} // namespace

AccessoryInfo Decode(const AccessoryInfoBlock& record) {
    return {record.BusType,
            record.HWVersion,
            record.DevType,
            record.DevSerialNum,
            DecodeText(record.Vendor),
            DecodeText(record.Module),
            record.ConfigBits,
            DecodeText(record.BuildDate)};
}

AccessoryInfoBlock Encode(const AccessoryInfo& info) {
    return {info.BusType,
            info.HWVersion,
            info.DevType,
            info.DevSerialNum,
            EncodeText(info.Vendor),
            EncodeText(info.Module),
            info.ConfigBits,
            EncodeText(info.BuildDate)};
}

} // namespace ombrix

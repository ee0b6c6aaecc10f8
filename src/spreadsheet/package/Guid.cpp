#include "spreadsheet/package/Guid.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdint>

namespace ombrix::xlsx {

namespace {

/// The 32-bit hash of Fowler, Noll and Vo (FNV-1a).
std::uint32_t Hash(std::string_view text) {
    std::uint32_t hash = 2166136261U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return hash;
}

} // namespace

std::string DerivedGuid(std::string_view guid, std::string_view word) {
    constexpr std::size_t length = 38;
    constexpr std::size_t digits = 8;
    if (guid.size() != length || guid.front() != '{')
        return std::string(guid);
    const std::string_view first = guid.substr(1, digits);
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(first.data(), first.data() + digits, value, 16);
    if (error != std::errc() || end != first.data() + digits)
        return std::string(guid);
    return fmt::format("{{{:08X}{}", value ^ Hash(word), guid.substr(1 + digits));
}

} // namespace ombrix::xlsx

#pragma once

#include <string>
#include <string_view>

namespace ombrix {

/// What tells bytes from all others: their SHA-256 (FIPS 180-4) as 64 lower-case hexadecimal
/// digits.
std::string FingerprintOf(std::string_view bytes);

/// Digits of a fingerprint.
inline constexpr std::size_t FingerprintLength = 64;

} // namespace ombrix

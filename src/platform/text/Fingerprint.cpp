#include "platform/text/Fingerprint.h"

#include <fmt/format.h>

#include <array>
#include <sodium/crypto_hash_sha256.h>

namespace ombrix {

std::string FingerprintOf(std::string_view bytes) {
    std::array<unsigned char, crypto_hash_sha256_BYTES> hash{};
    crypto_hash_sha256(hash.data(), reinterpret_cast<const unsigned char*>(bytes.data()),
                       bytes.size());
    std::string text;
    for (const unsigned char byte : hash)
        text += fmt::format("{:02x}", byte);
    return text;
}

} // namespace ombrix

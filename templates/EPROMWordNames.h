#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ombrix::templates {

/// What a word of the EPROM holds.
struct EPROMWord {
    std::int32_t Address;
    /// "Channel 1 slope 3"; empty where no field of the ACU stands.
    std::string Name;
    /// Long, Single, Date or Text.
    std::string Kind;
};

/// The 512 words in the order of their addresses. Identity and version words, which differ
/// between boards, are left without a name.
std::vector<EPROMWord> EPROMWords();

} // namespace ombrix::templates

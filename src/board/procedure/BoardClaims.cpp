#include "board/procedure/BoardClaims.h"

#include <fmt/format.h>

namespace ombrix {

std::string ClaimPath(Drive& files, std::int32_t serial, const char* kind) {
    files.CreateFolder(ClaimFolder);
    return fmt::format(R"({}\AIB_{:05}.{})", ClaimFolder, serial, kind);
}

std::string NameOf(const ProgramIdentity& program) {
    return fmt::format("{}, process {} on {}", program.Name, program.ProcessId, program.Computer);
}

bool BoardClaims::Claim(std::int32_t serial) {
    std::unique_ptr<FileLock>& claim = m_Claims[serial];
    if (!claim) {
        claim = m_World.Files.TryLock(ClaimPath(m_World.Files, serial, "lock"),
                                      NameOf(m_World.Program));
    }
    return claim != nullptr;
}

bool BoardClaims::IsOurs(std::int32_t serial) noexcept {
    try {
        return Claim(serial);
    } catch (const std::exception&) {
        return true;
    }
}

std::string BoardClaims::Holder(std::int32_t serial) const {
    const std::string holder = m_World.Files.ReadFile(ClaimPath(m_World.Files, serial, "lock"));
    return holder.empty() ? "another program" : holder;
}

void BoardClaims::Require(std::int32_t serial) {
    if (!Claim(serial))
        throw BoardInUse(fmt::format("Board {} is in use by {}.\r\n\r\nPlease wait until that "
                                     "program has ended, or end it, and try again.",
                                     serial, Holder(serial)));
}

} // namespace ombrix

#include "board/eprom/BoardIdentity.h"

#include "board/eprom/EpromGuard.h"
#include "platform/os/ProgramLog.h"

#include <fmt/format.h>

namespace ombrix {

AIBStatus WriteIdentity(Station& station, std::int32_t serial, MFCSetup setup) {
    EpromGuard guard(station, "Board Identity", EpromGuard::Identity::MayBeMissing);
    guard.MakeReady();
    clsAIB& board = *station.g_CurrentAIB;
    const auto code = static_cast<std::int32_t>(setup);
    const AIBStatus status = board.WriteAIBInfo(0, code, serial);
    WriteLog(station.World,
             fmt::format("ACU{:05}, Board Identity: serial number {} → {}, MFC setup {}: {}",
                         board.SerialNumber(), board.SerialNumber(), serial, code,
                         clsAIB::AIBErrorStr(status)));
    return status;
}

} // namespace ombrix

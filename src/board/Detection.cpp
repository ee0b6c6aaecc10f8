#include "board/Detection.h"

#include "board/Recovery.h"
#include "platform/ProgramLog.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

std::string TimeOfDayText(const Clock& clock) {
    const CivilTime now = clock.Now().ToCivil().value_or(CivilTime{});
    return fmt::format("{:02}:{:02}:{:02}", now.Hour, now.Minute, now.Second);
}

void LogIdentity(Platform& world, const clsAIB& board) {
    WriteLog(world,
             fmt::format("Board {}: {}, serial number {}, hardware version {}, {}",
                         board.BoardIndex(), board.BusTypeText(), board.DevSerialNum(),
                         board.HWVersion(), board.MFCReady() ? "MFCs ready" : "MFCs not ready"));
}

void ProgramBoard(Station& station, DetectionView& view, std::int32_t index) {
    clsAIB& board = *station.g_AIBList.AIB(index);
    const std::string bus = board.BusTypeText();
    const std::int32_t serial = board.DevSerialNum();
    LogIdentity(station.World, board);
    view.SetTabCaption(index, fmt::format("{} AIB Detected ({})", bus, serial));
    view.ShowInitState(fmt::format("Initialising ACU {}: {}", index + 1, bus));
    view.ShowProgramming(fmt::format("Programming: AIB {}", index + 1), "Please Wait...");
    view.SetTabCaption(index, fmt::format("Programming {} AIB...", bus));
    station.World.Events.ProcessPendingEvents();
    // Programming a board would disturb the program that works with it.
    if (station.Claims.Claim(serial))
        board.StartFPGAUpload();
    view.SetTabCaption(index, fmt::format("AIB_{}: {}", serial, bus));
}

/// Takes the boards for this program, and says which ones another program has.
void ClaimBoards(Station& station) {
    std::string taken;
    for (const auto& board : station.g_AIBList.Boards()) {
        const std::int32_t serial = board->DevSerialNum();
        if (!station.Claims.Claim(serial))
            taken +=
                fmt::format("Board {} is in use by {}.\r\n", serial, station.Claims.Holder(serial));
    }
    if (!taken.empty())
        station.World.Messages.Ask({taken + "\r\nWhat another program has can be looked at here, "
                                            "but is neither programmed nor driven.",
                                    MessageIcon::Warning, MessageButtons::Ok});
}

} // namespace

bool DetectAndProgramBoards(Station& station, DetectionView& view) {
    std::int32_t count = 0;
    station.Claims.ReleaseAll();
    station.g_AIBList.OpenAIBAPI(count);
    if (count == 0) {
        WriteLog(station.World, "No boards detected");
        view.ShowOutcome(TimeOfDayText(station.World.Time) + " - No AIBs detected");
        return false;
    }
    view.ShowOutcome(fmt::format("ACUs Detected: {}", count));
    ClaimBoards(station);
    const std::vector<UnfinishedBoard> unfinished = SwitchOffUnfinished(station);
    for (std::int32_t index = 0; index < count; ++index)
        ProgramBoard(station, view, index);
    FinishRecovery(station, unfinished);
    view.ShowProgramming("Programming Completed", fmt::format("{} board(s) detected and programmed",
                                                              station.g_AIBList.AIBCount()));
    return true;
}

} // namespace ombrix

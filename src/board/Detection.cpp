#include "board/Detection.h"

#include "board/procedure/SafeOutputs.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

namespace ombrix {

namespace {

std::string TimeOfDayText(const Clock& clock) {
    return DateText(clock.Now(), "hh:nn:ss");
}

std::string ReadinessText(const AIB& board) {
    if (!board.MFCReadyAnswer().Taken())
        return "MFCs unknown: " + board.MFCReadyAnswer().Text();
    return board.MFCReady() ? "MFCs ready" : "MFCs not ready";
}

void LogIdentity(Platform& world, const AIB& board) {
    WriteLog(world, fmt::format("Board {}: {}, serial number {}, hardware version {}, {}",
                                board.BoardIndex(), board.BusTypeText(), board.DevSerialNum(),
                                board.HWVersion(), ReadinessText(board)));
}

} // namespace

std::string BoardCaption(const Station& station, const AIB& board) {
    const bool isOurs = station.Claims.Refusal(board.DevSerialNum()).empty();
    return fmt::format("AIB_{}: {}{}", board.DevSerialNum(), board.BusTypeText(),
                       isOurs ? "" : " (read only)");
}

namespace {

void ProgramBoard(Station& station, DetectionView& view, std::int32_t index) {
    AIB& board = *station.AIBList.AIB(index);
    const std::string bus = board.BusTypeText();
    const std::int32_t serial = board.DevSerialNum();
    LogIdentity(station.World, board);
    view.SetTabCaption(index, fmt::format("{} AIB Detected ({})", bus, serial));
    view.ShowInitState(fmt::format("Initialising ACU {}: {}", index + 1, bus));
    view.ShowProgramming(fmt::format("Programming: AIB {}", index + 1), "Please Wait...");
    view.SetTabCaption(index, fmt::format("Programming {} AIB...", bus));
    station.World.Events.ProcessPendingEvents();
    // Programming a board would disturb the program that works with it.
    if (station.Claims.ClaimUnlessTaken(serial))
        board.StartFPGAUpload();
    view.SetTabCaption(index, BoardCaption(station, board));
}

void ShowCount(const AIBList& list, DetectionView& view) {
    const auto& boards = list.Boards();
    const auto found = static_cast<std::ptrdiff_t>(boards.size());
    const auto programmed = std::count_if(boards.begin(), boards.end(),
                                          [](const auto& board) { return board->Programmed(); });
    if (programmed == found)
        view.ShowProgramming("Programming Completed",
                             fmt::format("{} board(s) detected and programmed", found));
    else
        view.ShowProgramming("Programming Incomplete",
                             fmt::format("{} board(s) detected, {} programmed", found, programmed));
}

/// Takes the boards for this program, and says which ones another program has.
void ClaimBoards(Station& station) {
    std::string taken;
    std::string untried;
    for (const auto& board : station.AIBList.Boards()) {
        const std::int32_t serial = board->DevSerialNum();
        try {
            if (!station.Claims.Claim(serial))
                taken += fmt::format("Board {} is in use by {}.\r\n", serial,
                                     station.Claims.Holder(serial));
        } catch (const DriveError& error) {
            untried += fmt::format("Board {}: {}.\r\n", serial, error.what());
        }
    }
    const auto warn = [&station](const std::string& text) {
        station.World.Messages.Ask({text, MessageIcon::Warning, MessageButtons::Ok});
    };
    if (!taken.empty())
        warn(taken + "\r\nWhat another program has can be looked at here, but is neither "
                     "programmed nor driven.");
    if (!untried.empty())
        warn("The boards cannot be kept from other programs:\r\n\r\n" + untried +
             "\r\nThey can be looked at, but not driven. Please make that folder writable, then "
             "detect the boards again.");
}

} // namespace

bool DetectAndProgramBoards(Station& station, DetectionView& view) {
    std::int32_t count = 0;
    station.Claims.ReleaseAll();
    station.AIBList.OpenAIBAPI(count);
    if (count == 0) {
        WriteLog(station.World, "No boards detected");
        view.ShowOutcome(TimeOfDayText(station.World.Time) + " - No AIBs detected");
        TellOfMissingBoards(station);
        return false;
    }
    view.ShowOutcome(fmt::format("ACUs Detected: {}", count));
    // Air off first: whatever is told has to be read by somebody.
    const std::vector<UnfinishedBoard> unfinished = SwitchOffUnfinished(station);
    ClaimBoards(station);
    for (std::int32_t index = 0; index < count; ++index)
        ProgramBoard(station, view, index);
    FinishRecovery(station, unfinished);
    TellOfMissingBoards(station);
    ShowCount(station.AIBList, view);
    return true;
}

} // namespace ombrix

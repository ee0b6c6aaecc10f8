#include "board/procedure/Recovery.h"

#include "board/procedure/OutputsOff.h"
#include "platform/os/ProgramLog.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

std::vector<UnfinishedBoard> SwitchOffUnfinished(Station& station) {
    std::vector<UnfinishedBoard> unfinished;
    for (const auto& board : station.AIBList.Boards()) {
        const std::int32_t serial = board->DevSerialNum();
        if (!station.Claims.IsOurs(serial))
            continue; // a program that runs sees to its boards itself
        if (const auto mark = FindMark(station.World, serial)) {
            station.Outputs.SwitchOff(*board);
            unfinished.push_back({board, *mark});
        }
    }
    return unfinished;
}

void TellOfMissingBoards(Station& station) {
    const auto detected = station.AIBList.Boards();
    std::string missing;
    for (const std::int32_t serial : MarkedBoards(station.World.Files)) {
        const bool found =
            std::any_of(detected.begin(), detected.end(),
                        [serial](const auto& board) { return board->DevSerialNum() == serial; });
        if (found || !station.Claims.IsOurs(serial))
            continue;
        if (const auto mark = FindMark(station.World, serial))
            missing += fmt::format("    Board {}: \"{}\", begun on {} ({})\r\n", serial,
                                   mark->Procedure, mark->Since, mark->Program);
    }
    if (missing.empty())
        return;
    station.AirMayFlow = true;
    const std::string text =
        "A board was left with its outputs on and is not there now: AIR MAY STILL BE "
        "FLOWING.\r\n\r\n" +
        missing +
        "\r\nPlease close the air supply or switch off the power of the Aeration Control Unit, "
        "then connect the board and detect the boards again.";
    WriteLog(station.World, text);
    station.World.Messages.Ask({text, MessageIcon::Critical, MessageButtons::Ok});
}

void FinishRecovery(Station& station, const std::vector<UnfinishedBoard>& unfinished) {
    std::string found;
    Boards stillOn;
    for (const auto& [board, mark] : unfinished) {
        if (!station.Outputs.SwitchOff(*board)) {
            stillOn.push_back(board);
            continue;
        }
        RemoveMark(station.World, board->DevSerialNum());
        found += fmt::format("\"{}\", begun on {} ({}), left the outputs of board {} on. They have "
                             "been set to zero now.\r\n\r\n",
                             mark.Procedure, mark.Since, mark.Program, board->DevSerialNum());
    }
    TellAirMayFlow(station, stillOn);
    if (found.empty())
        return;
    found += "Air may have been flowing until now. Please look after the unit before you go on.";
    WriteLog(station.World, found);
    station.World.Messages.Ask({found, MessageIcon::Warning, MessageButtons::Ok});
}

} // namespace ombrix

#include "board/Recovery.h"

#include "board/OutputsOff.h"
#include "platform/ProgramLog.h"

#include <fmt/format.h>

namespace ombrix {

std::vector<UnfinishedBoard> SwitchOffUnfinished(Station& station) {
    std::vector<UnfinishedBoard> unfinished;
    for (const auto& board : station.g_AIBList.Boards()) {
        const std::int32_t serial = board->DevSerialNum();
        if (!station.Claims.Claim(serial))
            continue; // a program that runs sees to its boards itself
        if (const auto mark = FindMark(station.World, serial)) {
            board->SwitchOutputsOff();
            unfinished.push_back({board, *mark});
        }
    }
    return unfinished;
}

void FinishRecovery(Station& station, const std::vector<UnfinishedBoard>& unfinished) {
    std::string found;
    Boards stillOn;
    for (const auto& [board, mark] : unfinished) {
        if (!board->SwitchOutputsOff()) {
            stillOn.push_back(board);
            continue;
        }
        RemoveMark(station.World, board->DevSerialNum());
        found += fmt::format("The program ended during \"{}\", begun on {} ({}). The outputs of "
                             "board {} have been set to zero.\r\n\r\n",
                             mark.Procedure, mark.Since, mark.Program, board->DevSerialNum());
    }
    TellAirMayFlow(station.World, stillOn);
    if (found.empty())
        return;
    found += "Air may have been flowing until now. Please look after the unit before you go on.";
    WriteLog(station.World, found);
    station.World.Messages.Ask({found, MessageIcon::Warning, MessageButtons::Ok});
}

} // namespace ombrix

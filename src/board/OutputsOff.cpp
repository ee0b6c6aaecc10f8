#include "board/OutputsOff.h"

#include "platform/ProgramLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace ombrix {

namespace {

/// A board whose claim cannot even be tried is taken for one of ours: air off comes first.
bool IsOurs(Station& station, const clsAIB& board) {
    try {
        return station.Claims.Claim(board.DevSerialNum());
    } catch (const std::exception&) {
        return true;
    }
}

std::string AirMayFlowText(const Boards& boards) {
    std::string list;
    for (const auto& board : boards)
        list += fmt::format("    Board {} ({})\r\n", board->DevSerialNum(), board->BusTypeText());
    return "The outputs could not be set to zero: AIR MAY STILL BE FLOWING.\r\n\r\n" + list +
           "\r\nPlease close the air supply and switch off the power of the Aeration Control "
           "Unit at once. Then check the cable of the board and detect the boards again.";
}

} // namespace

Boards SwitchOff(const Boards& boards) noexcept {
    Boards refusing;
    std::copy_if(boards.begin(), boards.end(), std::back_inserter(refusing),
                 [](const auto& board) { return !board->SwitchOutputsOff(); });
    return refusing;
}

void TellAirMayFlow(Platform& world, const Boards& boards) noexcept {
    if (boards.empty())
        return;
    try {
        const std::string text = AirMayFlowText(boards);
        WriteLog(world, text);
        world.Messages.Ask({text, MessageIcon::Critical, MessageButtons::Ok});
    } catch (const std::exception&) {
        return; // nobody is left who could be told
    }
}

void SwitchAllOff(Station& station) noexcept {
    Boards driven;
    for (const auto& board : station.g_AIBList.Boards()) {
        if (!IsOurs(station, *board))
            continue;
        const bool mayDrive = board->MayDrive();
        if (!board->SwitchOutputsOff() && mayDrive)
            driven.push_back(board);
    }
    TellAirMayFlow(station.World, driven);
}

} // namespace ombrix

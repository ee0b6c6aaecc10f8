#include "board/procedure/OutputsOff.h"

#include "board/procedure/BoardClaims.h"
#include "platform/os/ProgramLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace ombrix {

namespace {

std::string AirMayFlowText(const Boards& boards) {
    std::string list;
    for (const auto& board : boards)
        list += fmt::format("    Board {} ({})\r\n", board->DevSerialNum(), board->BusTypeText());
    return "The outputs could not be set to zero: AIR MAY STILL BE FLOWING.\r\n\r\n" + list +
           "\r\nPlease close the air supply and switch off the power of the Aeration Control "
           "Unit at once. Then check the cable of the board and detect the boards again.";
}

/// A mark of a procedure that is there already says more.
void MarkForNextStart(Platform& world, std::int32_t serial) noexcept {
    try {
        if (!FindMark(world, serial))
            LeaveMark(world, serial, "driving by hand");
    } catch (const std::exception& error) {
        WriteLog(world, std::string("No mark can be left: ") + error.what());
    }
}

} // namespace

Boards SwitchOff(Station& station, const Boards& boards) noexcept {
    Boards refusing;
    std::copy_if(boards.begin(), boards.end(), std::back_inserter(refusing),
                 [&station](const auto& board) { return !station.Outputs.SwitchOff(*board); });
    return refusing;
}

void TellAirMayFlow(Station& station, const Boards& boards) noexcept {
    if (boards.empty())
        return;
    station.AirMayFlow = true;
    Platform& world = station.World;
    try {
        const std::string text = AirMayFlowText(boards);
        WriteLog(world, text);
        world.Messages.Ask({text, MessageIcon::Critical, MessageButtons::Ok});
    } catch (const std::exception&) {
        return; // nobody is left who could be told
    }
}

bool SwitchAllOff(Station& station) noexcept {
    bool allOff = true;
    Boards driven;
    for (const auto& board : station.AIBList.Boards()) {
        const std::int32_t serial = board->DevSerialNum();
        if (!station.Claims.IsOurs(serial))
            continue;
        const bool mayDrive = board->MayDrive();
        const bool off = station.Outputs.SwitchOff(*board);
        allOff = allOff && off;
        if (!mayDrive)
            continue;
        if (off) {
            RemoveMark(station.World, serial);
        } else {
            driven.push_back(board);
            MarkForNextStart(station.World, serial);
        }
    }
    TellAirMayFlow(station, driven);
    return allOff;
}

} // namespace ombrix

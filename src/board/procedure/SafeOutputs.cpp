#include "board/procedure/SafeOutputs.h"

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
            LeaveMark(world, serial, DrivingByHand);
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
        if (!station.Claims.ClaimUnlessTaken(serial))
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

void StopAir(Station& station) noexcept {
    station.Procedures.Cancel();
    SwitchAllOff(station);
}

void LeaveOutputsAsSet(Station& station) noexcept {
    for (const auto& board : station.AIBList.Boards()) {
        const std::int32_t serial = board->DevSerialNum();
        if (IsOwnMarkByHand(station.World, serial))
            RemoveMark(station.World, serial);
    }
}

std::vector<UnfinishedBoard> SwitchOffUnfinished(Station& station) {
    std::vector<UnfinishedBoard> unfinished;
    for (const auto& board : station.AIBList.Boards()) {
        const std::int32_t serial = board->DevSerialNum();
        if (!station.Claims.ClaimUnlessTaken(serial))
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
        if (found || !station.Claims.ClaimUnlessTaken(serial))
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

#include "board/procedure/DrivingProcedure.h"

#include "board/procedure/BoardClaims.h"
#include "platform/os/ProgramLog.h"
#include "platform/ports/Drive.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace ombrix {

namespace {

/// What is known of a board, its claim and its mark, is known by its serial number.
void RequireSameIdentity(const AIB& board) {
    const std::int32_t reported = board.ReportedSerial();
    if (reported != 0 && reported != board.DevSerialNum())
        throw BoardError(fmt::format("The board that was detected with serial number {} reports {} "
                                     "now.\r\n\r\nPlease detect the boards again.",
                                     board.DevSerialNum(), reported));
}

} // namespace

DrivingProcedure::DrivingProcedure(Station& station, std::string name, Boards driven)
    : m_Station(station), m_Name(std::move(name)), m_Driven(std::move(driven)),
      m_Running(station.Procedures, m_Name, [this] { SwitchOffNow(); }) {}

void DrivingProcedure::Begin() {
    for (const auto& board : m_Driven) {
        m_Station.Claims.Require(board->DevSerialNum());
        RequireSameIdentity(*board);
    }
    m_Begun = true;
    m_Insistence.emplace(m_Station.Outputs);
    for (const auto& board : m_Driven) {
        const std::int32_t serial = board->DevSerialNum();
        // A mark that is there stands for outputs that nobody has switched off yet.
        if (FindMark(m_Station.World, serial))
            continue;
        LeaveMark(m_Station.World, serial, m_Name);
        m_Marked.push_back(board);
    }
}

void DrivingProcedure::SwitchOffNow() noexcept {
    if (!m_Begun)
        return;
    m_Insistence.reset(); // what is refused from here on is told as air that may be flowing
    if (m_LeaveOutputs) {
        RemoveMarks(m_Marked);
        return;
    }
    const Boards stillOn = SwitchOff(m_Station, m_Driven);
    Boards off;
    std::copy_if(m_Driven.begin(), m_Driven.end(), std::back_inserter(off),
                 [&stillOn](const auto& board) {
                     return std::find(stillOn.begin(), stillOn.end(), board) == stillOn.end();
                 });
    RemoveMarks(off);
    if (!stillOn.empty() && !std::exchange(m_Told, true))
        TellAirMayFlow(m_Station, stillOn);
}

void DrivingProcedure::RemoveMarks(const Boards& boards) noexcept {
    for (const auto& board : boards)
        RemoveMark(m_Station.World, board->DevSerialNum());
}

void RunBenchProcedure(Station& station, const std::string& name, Boards driven, Outcome& outcome,
                       const std::function<bool()>& body) {
    ProcedureLog log(station.World, "The " + name);
    DrivingProcedure running(station, name, std::move(driven));
    const auto fail = [&](End ended, const char* reason) {
        outcome.Ended = ended;
        outcome.Error = reason;
        running.SwitchOffNow(); // not only when somebody has read the message
        TellOperator(station.World, "The " + name + " has been stopped.\r\n\r\n" + reason,
                     MessageIcon::Critical);
    };
    try {
        running.Begin();
        if (!body())
            outcome.Ended = End::Cancelled;
    } catch (const DriveError& error) {
        fail(End::NotStored, error.what());
    } catch (const std::exception& error) {
        fail(End::Stopped, error.what());
    }
    if (!outcome.KeptElsewhere.empty()) {
        running.SwitchOffNow();
        TellOperator(station.World, outcome.KeptElsewhere, MessageIcon::Warning);
    }
    log.Ended(EndText(outcome) + (outcome.AllStored ? "" : ", not all stored"));
    station.Procedures.TellEnd(outcome, StageText(outcome.Ended));
}

} // namespace ombrix

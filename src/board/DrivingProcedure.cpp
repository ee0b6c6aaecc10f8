#include "board/DrivingProcedure.h"

#include "board/RunningMark.h"

#include <algorithm>
#include <utility>

namespace ombrix {

DrivingProcedure::DrivingProcedure(Station& station, std::string name, DrivenBoards driven)
    : m_Station(station), m_Name(std::move(name)), m_Driven(std::move(driven)),
      m_Running(station.Procedures, [this] { SwitchOffNow(); }) {}

void DrivingProcedure::Begin() {
    for (const auto& board : m_Driven.All)
        m_Station.Claims.Require(board->DevSerialNum());
    m_Begun = true;
    for (const auto& board : m_Driven.All)
        LeaveMark(m_Station.World, board->DevSerialNum(), m_Name);
}

void DrivingProcedure::SwitchOffNow() noexcept {
    if (!m_Begun)
        return;
    if (m_LeaveOutputs) {
        RemoveMarks({});
        return;
    }
    const Boards stillOn = SwitchOff(m_Driven.All);
    if (m_Driven.AfterOff)
        m_Driven.AfterOff();
    RemoveMarks(stillOn);
    if (!stillOn.empty() && !std::exchange(m_Told, true))
        TellAirMayFlow(m_Station.World, stillOn);
}

void DrivingProcedure::RemoveMarks(const Boards& stillOn) noexcept {
    for (const auto& board : m_Driven.All) {
        if (std::find(stillOn.begin(), stillOn.end(), board) == stillOn.end())
            RemoveMark(m_Station.World, board->DevSerialNum());
    }
}

} // namespace ombrix

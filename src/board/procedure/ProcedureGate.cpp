#include "board/procedure/ProcedureGate.h"

#include <cctype>
#include <stdexcept>
#include <utility>

namespace ombrix {

void ProcedureGate::SetRunning(bool running) {
    m_Running = running;
    m_CancelRequested = false;
    m_Listeners.Tell(running);
}

RunningProcedure::RunningProcedure(ProcedureGate& gate, std::string name,
                                   std::function<void()> makeSafe)
    : m_Gate(gate), m_MakeSafe(std::move(makeSafe)) {
    if (m_Gate.Running())
        throw std::logic_error("A procedure is running already");
    if (!name.empty())
        name.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
    m_Gate.m_Name = std::move(name);
    m_Gate.m_Progress = {};
    m_Gate.m_LastEnd.reset();
    m_Gate.SetRunning(true);
}

RunningProcedure::~RunningProcedure() {
    m_MakeSafe();
    m_Gate.SetRunning(false);
}

} // namespace ombrix

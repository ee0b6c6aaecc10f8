#include "board/procedure/ProcedureGate.h"

#include <stdexcept>

namespace ombrix {

ProcedureGate::Subscription ProcedureGate::Listen(Listener listener) {
    auto shared = std::make_shared<Listener>(std::move(listener));
    m_Listeners.push_back(shared);
    return Subscription(std::move(shared));
}

void ProcedureGate::SetRunning(bool running) {
    m_Running = running;
    std::erase_if(m_Listeners, [](const auto& listener) { return listener.expired(); });
    // A listener may subscribe others while it is told, so the list is walked as a copy.
    for (const auto& entry : std::vector(m_Listeners)) {
        if (const auto listener = entry.lock())
            (*listener)(running);
    }
}

RunningProcedure::RunningProcedure(ProcedureGate& gate, std::function<void()> makeSafe)
    : m_Gate(gate), m_MakeSafe(std::move(makeSafe)) {
    if (m_Gate.Running())
        throw std::logic_error("A procedure is running already");
    m_Gate.SetRunning(true);
}

RunningProcedure::~RunningProcedure() {
    m_MakeSafe();
    m_Gate.SetRunning(false);
}

} // namespace ombrix

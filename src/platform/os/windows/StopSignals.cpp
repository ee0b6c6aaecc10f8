#include "platform/os/ProgramStop.h"
#include "platform/os/windows/WindowsApi.h"

#include <array>
#include <atomic>
#include <deque>
#include <mutex>
#include <thread>

namespace ombrix {

namespace {

/// The system tells a function of a stop, with no object of ours: the event that it sets.
std::atomic<HANDLE> StopEvent = nullptr;

/// Called in a thread of the system's.
BOOL WINAPI OnStop(DWORD reason) {
    ::SetEvent(StopEvent.load());
    // When the console or the session ends, the program ends with this function.
    if (reason != CTRL_C_EVENT && reason != CTRL_BREAK_EVENT)
        ::Sleep(INFINITE);
    return TRUE;
}

/// Standard input, read by a thread of its own: neither a console nor a pipe can be waited for
/// together with an event.
class InputReader {
  public:
    static std::shared_ptr<InputReader> Start() {
        auto reader = std::make_shared<InputReader>();
        // Nothing ends a read that waits; the thread ends with the program.
        std::thread([reader] { reader->Run(); }).detach();
        return reader;
    }

    /// Set while there is something to take.
    HANDLE Arrived() const { return HandleOf(m_Arrived); }
    StopSignals::Input Take(char& character) {
        const std::scoped_lock lock(m_Access);
        if (m_Characters.empty())
            return StopSignals::Input::Ended;
        character = m_Characters.front();
        m_Characters.pop_front();
        if (m_Characters.empty() && !m_Ended)
            ::ResetEvent(Arrived());
        return StopSignals::Input::Character;
    }

  private:
    void Run() {
        const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
        std::array<char, 256> buffer{};
        while (true) {
            DWORD count = 0;
            const BOOL done = ::ReadFile(input, buffer.data(), buffer.size(), &count, nullptr);
            // Ctrl-C has a console give nothing, once.
            if (count == 0 && ::GetLastError() == ERROR_OPERATION_ABORTED) {
                ::SetLastError(ERROR_SUCCESS);
                continue;
            }
            const std::scoped_lock lock(m_Access);
            m_Characters.insert(m_Characters.end(), buffer.data(), buffer.data() + count);
            m_Ended = done == 0 || count == 0;
            ::SetEvent(Arrived());
            if (m_Ended)
                return;
        }
    }

    std::mutex m_Access;
    std::deque<char> m_Characters;
    bool m_Ended = false;
    FileDescriptor m_Arrived = Owned(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
};

} // namespace

struct StopSignals::Before {
    HANDLE Event = StopEvent.load();
    std::shared_ptr<InputReader> Input;
};

StopSignals::StopSignals()
    : m_Before(std::make_unique<Before>()),
      m_Signals(Owned(::CreateEventW(nullptr, FALSE, FALSE, nullptr))) {
    StopEvent = HandleOf(m_Signals);
    ::SetConsoleCtrlHandler(OnStop, TRUE);
}

StopSignals::~StopSignals() {
    ::SetConsoleCtrlHandler(OnStop, FALSE);
    StopEvent = m_Before->Event;
}

bool StopSignals::Take() {
    return ::WaitForSingleObject(HandleOf(m_Signals), 0) == WAIT_OBJECT_0;
}

StopSignals::Input StopSignals::AwaitInput(char& character) {
    if (!m_Before->Input)
        m_Before->Input = InputReader::Start();
    InputReader& input = *m_Before->Input;
    const std::array<HANDLE, 2> sources = {HandleOf(m_Signals), input.Arrived()};
    if (::WaitForMultipleObjects(sources.size(), sources.data(), FALSE, INFINITE) ==
        WAIT_OBJECT_0 + 1)
        return input.Take(character);
    ::SetEvent(HandleOf(m_Signals)); // it is still to be taken
    return Input::Signal;
}

} // namespace ombrix

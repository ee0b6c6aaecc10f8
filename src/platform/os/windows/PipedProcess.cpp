#include "platform/os/PipedProcess.h"

#include "platform/os/windows/Spawn.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

namespace ombrix {

namespace {

/// Most answers are there sooner than a sleeper is awake again.
constexpr std::chrono::microseconds StaysAwake(100);

[[noreturn]] void ThrowNoPipe() {
    throw std::system_error(LastErrorNumber(), std::generic_category(), "A pipe cannot be made");
}

/// An end of a pipe for a child.
HANDLE ForChild(const std::wstring& name, DWORD access) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return ::CreateFileW(name.c_str(), access, 0, &inherited, OPEN_EXISTING, 0, nullptr);
}

/// A pipe from this program, or to it: only pipes with a name can be read from with a deadline.
struct Pipe {
    FileDescriptor Own;
    FileDescriptor Childs;

    explicit Pipe(bool isInput) {
        LARGE_INTEGER now{};
        ::QueryPerformanceCounter(&now);
        const std::wstring name =
            Wide(fmt::format(R"(\\.\pipe\ombrix-{}-{}-{})", ::GetCurrentProcessId(),
                             ::GetCurrentThreadId(), now.QuadPart));
        constexpr DWORD bufferBytes = 65'536;
        const DWORD mode =
            isInput ? PIPE_ACCESS_OUTBOUND : PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED;
        Own = Owned(::CreateNamedPipeW(name.c_str(), mode | FILE_FLAG_FIRST_PIPE_INSTANCE,
                                       PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, bufferBytes,
                                       bufferBytes, 0, nullptr));
        if (!Own.IsOpen())
            ThrowNoPipe();
        Childs = Owned(ForChild(name, isInput ? GENERIC_READ : GENERIC_WRITE));
        if (!Childs.IsOpen())
            ThrowNoPipe();
    }
};

/// Reads ahead from a pipe, so that there is an event to wait for.
class PipeReader {
  public:
    explicit PipeReader(FileDescriptor pipe) : m_Pipe(std::move(pipe)) {
        m_Operation.hEvent = HandleOf(m_Arrived);
        Begin();
    }
    PipeReader(const PipeReader&) = delete;
    PipeReader& operator=(const PipeReader&) = delete;
    ~PipeReader() {
        DWORD count = 0;
        // The system writes into the buffer until it knows that nobody waits any more.
        if (m_IsReading && ::CancelIoEx(HandleOf(m_Pipe), &m_Operation) != 0)
            ::GetOverlappedResult(HandleOf(m_Pipe), &m_Operation, &count, TRUE);
    }

    /// Takes what is there, which may be nothing.
    std::size_t Take(std::span<char> bytes) {
        if (m_Waiting.empty())
            Collect();
        const std::size_t count = std::min(bytes.size(), m_Waiting.size());
        std::copy_n(m_Waiting.begin(), count, bytes.begin());
        m_Waiting = m_Waiting.subspan(count);
        if (m_Waiting.empty() && !m_IsReading && !m_HasEnded)
            Begin();
        return count;
    }
    bool HasEnded() const { return m_HasEnded && m_Waiting.empty(); }
    /// Set as soon as there is something to take.
    HANDLE Arrived() const { return HandleOf(m_Arrived); }

  private:
    void Begin() {
        m_IsReading = ::ReadFile(HandleOf(m_Pipe), m_Buffer.data(),
                                 static_cast<DWORD>(m_Buffer.size()), nullptr, &m_Operation) != 0 ||
                      ::GetLastError() == ERROR_IO_PENDING;
        m_HasEnded = !m_IsReading;
    }
    void Collect() {
        DWORD count = 0;
        if (!m_IsReading)
            return;
        if (::GetOverlappedResult(HandleOf(m_Pipe), &m_Operation, &count, FALSE) != 0) {
            m_Waiting = std::span(m_Buffer).first(count);
        } else if (::GetLastError() == ERROR_IO_INCOMPLETE) {
            return;
        } else {
            m_HasEnded = true;
        }
        m_IsReading = false;
    }

    FileDescriptor m_Pipe;
    FileDescriptor m_Arrived = Owned(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    OVERLAPPED m_Operation{};
    std::array<char, 4096> m_Buffer{};
    std::span<char> m_Waiting;
    bool m_IsReading = false;
    bool m_HasEnded = false;
};

} // namespace

struct PipedProcess::Parts {
    PipeReader Output;
    PipeReader Errors;
    Child Program;
};

PipedProcess::PipedProcess(const std::vector<std::string>& arguments) {
    Pipe input(true);
    Pipe output(false);
    Pipe errors(false);
    Child child;
    if (const int error = Spawn(
            arguments, {HandleOf(input.Childs), HandleOf(output.Childs), HandleOf(errors.Childs)},
            child);
        error != 0)
        throw std::system_error(error, std::generic_category(), arguments.front());
    m_Input = std::move(input.Own);
    // The ends of the child are its own from now on: a pipe ends with it.
    output.Childs = FileDescriptor();
    errors.Childs = FileDescriptor();
    m_Parts.reset(new Parts{PipeReader(std::move(output.Own)), PipeReader(std::move(errors.Own)),
                            std::move(child)});
}

PipedProcess::~PipedProcess() {
    Kill();
}

bool PipedProcess::Send(std::span<const char> bytes) {
    while (!bytes.empty()) {
        DWORD count = 0;
        if (::WriteFile(HandleOf(m_Input), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                        nullptr) == 0)
            return false;
        bytes = bytes.subspan(count);
    }
    return true;
}

PipedProcess::Received PipedProcess::Receive(std::span<char> bytes, TimePoint deadline) {
    using std::chrono::milliseconds;
    PipeReader& output = m_Parts->Output;
    PipeReader& errors = m_Parts->Errors;
    const auto sleepAt = std::min(deadline, std::chrono::steady_clock::now() + StaysAwake);
    while (true) {
        bytes = bytes.subspan(output.Take(bytes));
        if (bytes.empty())
            return Received::All;
        if (output.HasEnded())
            return Received::Ended;
        const auto now = std::chrono::steady_clock::now();
        if (now < sleepAt) {
            ::SwitchToThread();
            continue;
        }
        const auto left = std::chrono::ceil<milliseconds>(deadline - now);
        if (left <= milliseconds::zero())
            return Received::TimedOut;
        // Who prints much must not have to wait until somebody reads it.
        const std::array<HANDLE, 2> arrived = {output.Arrived(), errors.Arrived()};
        ::WaitForMultipleObjects(errors.HasEnded() ? 1 : 2, arrived.data(), FALSE,
                                 static_cast<DWORD>(left.count()));
        ReadErrorOutput();
    }
}

void PipedProcess::ReadErrorOutput() {
    std::array<char, 4096> buffer{};
    while (const std::size_t count = m_Parts->Errors.Take(buffer))
        m_ErrorOutput.append(buffer.data(), count);
}

std::string PipedProcess::TakeErrorOutput() {
    ReadErrorOutput();
    return std::exchange(m_ErrorOutput, {});
}

ChildOutcome PipedProcess::AwaitEnd(std::chrono::milliseconds timeout) {
    const Child child = std::exchange(m_Parts->Program, Child());
    const bool inTime = ombrix::AwaitEnd(child, timeout);
    child.Kill(); // with what it has started
    // One that a driver holds cannot be killed before the driver lets it go.
    constexpr std::chrono::milliseconds forDying(1000);
    if (!inTime && !ombrix::AwaitEnd(child, forDying))
        return {ChildOutcome::TimedOut, 0};
    const ChildOutcome outcome = Collect(child);
    return inTime ? outcome : ChildOutcome{ChildOutcome::TimedOut, 0};
}

void PipedProcess::Kill() noexcept {
    if (m_Parts && m_Parts->Program.Process.IsOpen())
        AwaitEnd(std::chrono::milliseconds(0));
}

} // namespace ombrix

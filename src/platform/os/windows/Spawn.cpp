#include "platform/os/windows/Spawn.h"

#include <algorithm>
#include <cstddef>
#include <memory>

namespace ombrix {

namespace {

/// An argument as programs take their command line apart: backslashes count before a quote alone.
std::string Quoted(const std::string& argument) {
    std::string text = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"')
            text.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, '\\') + "\"";
}

std::wstring CommandLine(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments)
        line += (line.empty() ? "" : " ") + Quoted(argument);
    return Wide(line);
}

/// The one thing that a child inherits: its standard handles.
class Inherited {
  public:
    explicit Inherited(const std::array<HANDLE, 3>& handles) : m_Handles(handles) {
        // One handle for two purposes may stand in the list once.
        std::sort(m_Handles.begin(), m_Handles.end());
        const auto count = static_cast<std::size_t>(
            std::unique(m_Handles.begin(), m_Handles.end()) - m_Handles.begin());
        SIZE_T bytes = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &bytes);
        m_Bytes = std::make_unique<std::byte[]>(bytes);
        ::InitializeProcThreadAttributeList(Get(), 1, 0, &bytes);
        ::UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_Handles.data(),
                                    count * sizeof(HANDLE), nullptr, nullptr);
    }
    Inherited(const Inherited&) = delete;
    Inherited& operator=(const Inherited&) = delete;
    ~Inherited() { ::DeleteProcThreadAttributeList(Get()); }

    LPPROC_THREAD_ATTRIBUTE_LIST Get() const {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_Bytes.get());
    }

  private:
    std::array<HANDLE, 3> m_Handles;
    std::unique_ptr<std::byte[]> m_Bytes;
};

} // namespace

int Spawn(const std::vector<std::string>& arguments, const std::array<HANDLE, 3>& standard,
          Child& child) {
    const Inherited inherited(standard);
    STARTUPINFOEXW start{};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = standard[0];
    start.StartupInfo.hStdOutput = standard[1];
    start.StartupInfo.hStdError = standard[2];
    start.lpAttributeList = inherited.Get();
    std::wstring line = CommandLine(arguments);
    PROCESS_INFORMATION process{};
    // Suspended: it must not start anything before it belongs to the job.
    constexpr DWORD flags = CREATE_NO_WINDOW | CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT;
    if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr,
                         &start.StartupInfo, &process) == 0)
        return LastErrorNumber();
    const FileDescriptor thread = Owned(process.hThread);
    child.Process = Owned(process.hProcess);
    child.Job = Owned(::CreateJobObjectW(nullptr, nullptr));
    ::AssignProcessToJobObject(HandleOf(child.Job), process.hProcess);
    ::ResumeThread(process.hThread);
    return 0;
}

bool AwaitEnd(const Child& child, std::chrono::milliseconds timeout,
              const std::function<void()>& whileWaiting) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    constexpr std::chrono::milliseconds betweenCalls(10);
    while (true) {
        const auto left = std::max(std::chrono::ceil<std::chrono::milliseconds>(
                                       deadline - std::chrono::steady_clock::now()),
                                   std::chrono::milliseconds::zero());
        const auto slice = whileWaiting ? std::min(left, betweenCalls) : left;
        if (::WaitForSingleObject(HandleOf(child.Process), static_cast<DWORD>(slice.count())) ==
            WAIT_OBJECT_0)
            return true;
        if (left.count() == 0)
            return false;
        if (whileWaiting)
            whileWaiting();
    }
}

ChildOutcome Collect(const Child& child) {
    ::WaitForSingleObject(HandleOf(child.Process), INFINITE);
    DWORD code = 0;
    ::GetExitCodeProcess(HandleOf(child.Process), &code);
    // Errors of the system's own end a program with their number.
    constexpr DWORD firstError = 0xC0000000;
    return {code >= firstError ? ChildOutcome::Killed : ChildOutcome::Exited,
            static_cast<int>(code)};
}

} // namespace ombrix

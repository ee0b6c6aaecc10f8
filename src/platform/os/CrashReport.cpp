#include "platform/os/CrashReport.h"

#include "platform/os/Computer.h"
#include "platform/os/CrashSystem.h"
#include "platform/text/Utf8Path.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <cxxabi.h>
#include <stdexcept>
#include <string_view>
#include <typeinfo>

namespace ombrix {

namespace {

/// A text of limited length that asks for no memory, so that a signal handler can make one.
/// What does not fit is cut off.
template <std::size_t Capacity>
class TextBuffer {
  public:
    TextBuffer& Text(std::string_view text) {
        const std::size_t length = std::min(text.size(), Capacity - 1 - m_Length);
        std::copy_n(text.data(), length, m_Characters.data() + m_Length);
        m_Length += length;
        return *this;
    }
    /// @param digits at least so many, filled with zeros
    TextBuffer& Number(std::int64_t value, std::size_t digits = 1) {
        std::array<char, 24> text{};
        const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
        const auto length = static_cast<std::size_t>(result.ptr - text.data());
        for (std::size_t missing = length; missing < digits; ++missing)
            Text("0");
        return Text({text.data(), length});
    }

    std::string_view View() const { return {m_Characters.data(), m_Length}; }
    const char* CString() const { return m_Characters.data(); }

  private:
    std::array<char, Capacity> m_Characters{};
    std::size_t m_Length = 0;
};

constexpr std::size_t LongestPath = 4096;

struct Moment {
    TextBuffer<16> Day;
    TextBuffer<16> Time;
};

/// Local time by arithmetic alone: the C library's conversion may not be called in a signal.
Moment MomentOf(std::int64_t utc_s, std::int64_t offset_s) {
    const std::chrono::sys_seconds local{std::chrono::seconds(utc_s + offset_s)};
    const auto day = std::chrono::floor<std::chrono::days>(local);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(local - day);
    Moment moment;
    moment.Day.Number(static_cast<int>(date.year()), 4)
        .Number(static_cast<unsigned>(date.month()), 2)
        .Number(static_cast<unsigned>(date.day()), 2);
    moment.Time.Number(time.hours().count(), 2)
        .Number(time.minutes().count(), 2)
        .Number(time.seconds().count(), 2);
    return moment;
}

std::string TypeName(const std::exception& error) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(error).name(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? name.get() : typeid(error).name();
}

/// What a report needs, laid ready: at the moment of a crash no memory can be asked for.
class Prepared {
  public:
    Prepared(const std::filesystem::path& folder, const std::string& program,
             const std::string& version)
        : m_Offset_s(CrashSystem::OffsetFromUtc_s()) {
        m_Folder.Text(folder.string());
        m_Program.Text(program);
        m_Version.Text(version);
    }

    /// Kept for the signal that ends the program of it.
    void NoteException(std::string_view text) { m_Exception.Text(text); }

    /// Calls nothing but what a signal handler may call.
    /// @param path takes the path @return false when there is no file
    bool Write(std::string_view reason, TextBuffer<LongestPath>& path) const {
        const std::int64_t now_s = std::time(nullptr);
        const Moment moment = MomentOf(now_s, m_Offset_s);
        path.Text(m_Folder.View()).Text("/crash_").Text(moment.Day.View());
        path.Text("_").Text(moment.Time.View()).Text("_").Text(m_Program.View());
        path.Text("_").Number(m_Process).Text(".txt");
        TextBuffer<2048> text;
        AddText(text, moment, reason);
        return CrashSystem::WriteReport(m_Folder.CString(), path.CString(), text.View());
    }

  private:
    void AddText(TextBuffer<2048>& text, const Moment& moment, std::string_view reason) const {
        text.Text(m_Program.View()).Text(" ").Text(m_Version.View());
        text.Text("\nProcess ").Number(m_Process);
        text.Text("\nDate ").Text(moment.Day.View()).Text(", time ").Text(moment.Time.View());
        text.Text("\nReason: ").Text(reason).Text("\n");
        if (!m_Exception.View().empty())
            text.Text("Exception: ").Text(m_Exception.View()).Text("\n");
        text.Text("\nCalls:\n");
    }

    TextBuffer<LongestPath> m_Folder;
    TextBuffer<64> m_Program;
    TextBuffer<64> m_Version;
    TextBuffer<1024> m_Exception;
    std::int64_t m_Offset_s;
    std::int64_t m_Process = ProcessId();
};

/// A signal handler is given no object of ours: this is the one way to it. Empty as soon as a
/// report has been begun, so that there is one and not one more for each thread that dies.
std::atomic<Prepared*> Current = nullptr;

void OnFatalError(std::string_view reason) {
    if (const Prepared* prepared = Current.exchange(nullptr)) {
        TextBuffer<LongestPath> path;
        prepared->Write(reason, path);
    }
}

/// The text of the exception that ends the program; the abort that follows writes the report.
[[noreturn]] void OnTerminate() {
    if (Prepared* prepared = Current.load(); prepared != nullptr) {
        try {
            if (std::current_exception())
                std::rethrow_exception(std::current_exception());
        } catch (const std::exception& error) {
            prepared->NoteException(TypeName(error) + ": " + error.what());
        } catch (...) {
            prepared->NoteException("of an unknown type");
        }
    }
    std::abort();
}

} // namespace

/// What catches the program's fatal errors, while it lives.
class CrashReport::Handlers {
  public:
    explicit Handlers(std::unique_ptr<Prepared> prepared)
        : m_Prepared(std::move(prepared)), m_Claimed(m_Prepared.get()), m_System(OnFatalError) {
        m_FormerTerminate = std::set_terminate(OnTerminate);
    }
    Handlers(const Handlers&) = delete;
    Handlers& operator=(const Handlers&) = delete;
    ~Handlers() { std::set_terminate(m_FormerTerminate); }

    const Prepared& Report() const { return *m_Prepared; }

  private:
    /// The one way to the report, as long as there is one.
    struct Claim {
        explicit Claim(Prepared* prepared) {
            Prepared* none = nullptr;
            if (!Current.compare_exchange_strong(none, prepared))
                throw std::logic_error("There is a crash report already");
        }
        Claim(const Claim&) = delete;
        Claim& operator=(const Claim&) = delete;
        ~Claim() { Current = nullptr; }
    };

    std::unique_ptr<Prepared> m_Prepared;
    Claim m_Claimed;
    CrashSystem m_System;
    std::terminate_handler m_FormerTerminate = nullptr;
};

CrashReport::CrashReport(const std::filesystem::path& folder, const std::string& program,
                         const std::string& version)
    : m_Handlers(std::make_unique<Handlers>(
          std::make_unique<Prepared>(std::filesystem::absolute(folder), program, version))) {}

CrashReport::~CrashReport() = default;

std::filesystem::path CrashReport::WriteException(const std::exception& error) const {
    TextBuffer<LongestPath> path;
    const std::string reason = "unexpected error, " + TypeName(error) + ": " + error.what();
    return m_Handlers->Report().Write(reason, path) ? PathOf(path.View()) : std::filesystem::path();
}

std::string UnexpectedErrorText(const std::exception& error, const std::filesystem::path& file) {
    const std::string text = std::string("Unexpected error: ") + error.what();
    if (file.empty())
        return text;
    return text + "\r\n\r\nWhat is known of it stands in:\r\n\r\n   " + file.string() +
           "\r\n\r\nPlease send the diagnostics to those who look after the program.";
}

} // namespace ombrix

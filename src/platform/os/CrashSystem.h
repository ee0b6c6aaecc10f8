#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace ombrix {

/// What the operating system does when the program dies of an error of its own. While an object
/// lives, each such error is told first; then the program dies as it would have.
class CrashSystem {
  public:
    /// @param onFatalError told the reason, in the middle of a crash: it may ask for no memory
    explicit CrashSystem(void (*onFatalError)(std::string_view reason));
    CrashSystem(const CrashSystem&) = delete;
    CrashSystem& operator=(const CrashSystem&) = delete;
    ~CrashSystem();

    /// How far local time is ahead of UTC, in seconds.
    static std::int64_t OffsetFromUtc_s();
    /// Writes a text and the calls that led here into a file; asks for no memory.
    /// @param folder made when there is none @return false when there is no file
    static bool WriteReport(const char* folder, const char* path, std::string_view text);

  private:
    struct Handlers;
    std::unique_ptr<Handlers> m_Handlers;
};

} // namespace ombrix

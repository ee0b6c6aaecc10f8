#pragma once

#include <exception>
#include <filesystem>
#include <memory>
#include <string>

namespace ombrix {

/// While it lives, a program that dies of an error of its own (a fatal signal, an exception that
/// nobody catches) leaves a file with the time, the reason and the calls that led there; then it
/// dies as it would have. One object a program, made before other threads are.
class CrashReport {
  public:
    /// @param folder real folder of the files, made when there is something to write
    CrashReport(const std::filesystem::path& folder, const std::string& program,
                const std::string& version);
    CrashReport(const CrashReport&) = delete;
    CrashReport& operator=(const CrashReport&) = delete;
    ~CrashReport();

    /// Writes a file about an exception that the program survives. Path of the file; empty when
    /// none could be written.
    std::filesystem::path WriteException(const std::exception& error) const;

  private:
    class Handlers;
    std::unique_ptr<Handlers> m_Handlers;
};

/// Has the program die as of an access to memory that there is not.
void CrashNow();

/// A text for the operator: what went wrong and where its file lies.
std::string UnexpectedErrorText(const std::exception& error, const std::filesystem::path& file);

} // namespace ombrix

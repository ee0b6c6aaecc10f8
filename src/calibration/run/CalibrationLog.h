#pragma once

#include "platform/ports/Platform.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// The text log of a calibration: one line a step, fields separated by commas. Lines reach the
/// operating system as they are written. When the file cannot be written, the whole log
/// goes on in the folder for temporary files, and the operator is told when it is closed.
class CalibrationLog {
  public:
    explicit CalibrationLog(Platform& world) : m_World(world) {}

    /// Begins a log in the system folder's "Calibration" folder, named by prefix and time.
    void OpenCalibrationLog(const std::string& prefix, const std::string& serialNumber);
    /// Writes one line.
    void LogCalibration(std::string_view line);
    void CloseCalibrationLog();

    /// The lines as far as they have been written.
    const std::vector<std::string>& Lines() const { return m_Lines; }
    /// Real paths of the files that hold the log; a second one when the first could not be
    /// written to its end.
    const std::vector<std::filesystem::path>& Files() const { return m_Files; }
    /// False when the log, or its end, is not where it belongs.
    bool AllStored() const { return m_AllStored; }

  private:
    void Open(const std::string& path);
    void Store(std::string_view line);
    void GoOnElsewhere(const std::string& reason);

    Platform& m_World;
    std::unique_ptr<OutputFile> m_File;
    std::string m_Name;
    std::string m_Trouble;
    std::vector<std::string> m_Lines;
    std::vector<std::filesystem::path> m_Files;
    bool m_AllStored = true;
};

} // namespace ombrix

#pragma once

#include "platform/os/LineFile.h"
#include "platform/ports/Platform.h"

#include <filesystem>
#include <optional>
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

    /// Real paths of the files that hold the log; a second one when the first could not be
    /// written to its end.
    const std::vector<std::filesystem::path>& Files() const { return m_Files; }
    /// False when the log, or its end, is not where it belongs.
    bool AllStored() const { return m_AllStored; }

  private:
    void NoteTrouble(const std::string& trouble);

    Platform& m_World;
    /// None from where neither place takes the log: the operator is told, and the run must not end
    /// for it.
    std::optional<LineFile> m_File;
    std::string m_Trouble;
    std::vector<std::filesystem::path> m_Files;
    bool m_AllStored = true;
};

} // namespace ombrix

#pragma once

#include "board/Station.h"
#include "board/procedure/Outcome.h"
#include "platform/os/LineFile.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace ombrix {

/// Records the four inputs and the pressure register of a board into a CSV file on drive C:. Each
/// line reaches the operating system as it is made. Times are seconds of the day since the start:
/// they turn negative when midnight passes, as readers of these files expect.
class DataRecorder {
  public:
    explicit DataRecorder(Station& station) : m_Station(station) {}

    bool Recording() const { return m_File && m_File->IsOpen(); }
    /// Begins a new file, named by the time, of the current board. @throws DriveError
    void Start();
    /// Appends a line. A reading that fails is an empty field. @throws DriveError and stops
    /// recording: what was written is whole
    void RecordLine();
    /// Appends what somebody has noted: the time, empty fields in the place of the readings, the
    /// text. @throws DriveError and stops recording
    void Mark(const std::string& text);
    void Stop();

    std::int64_t Lines() const { return m_Lines; }
    /// From the start on, until it was stopped.
    double Duration_s() const;
    /// Of the five of each line, how many the board has not answered.
    std::int64_t FailedReadings() const { return m_FailedReadings; }
    /// There are lines, and nothing in them.
    bool NothingAnswered() const { return m_Lines > 0 && m_FailedReadings == Readings * m_Lines; }
    /// The last file; there is one from the first start on.
    LineFile& File() { return *m_File; }

  private:
    /// Inputs and pressure register.
    static constexpr std::int64_t Readings = AIB::DACChannels + 1;

    std::string Elapsed() const;
    void Append(const std::string& line);

    Station& m_Station;
    /// The board that was current when the recording began.
    std::shared_ptr<AIB> m_Board;
    std::optional<LineFile> m_File;
    double m_StartOfDay_s = 0.0;
    double m_Start_s = 0.0;
    double m_Stop_s = 0.0;
    std::int64_t m_Lines = 0;
    std::int64_t m_FailedReadings = 0;
};

/// What became of a recording. Errors are in the outcome; a recording in which nothing was answered
/// has failed.
struct RecordingResult : Outcome {
    std::int64_t Lines = 0;
    std::int64_t FailedReadings = 0;
};

/// A recording of a given length, a line every 10 ms, as a procedure.
class TimedRecording {
  public:
    static constexpr double LineSpacing_s = 0.01;

    explicit TimedRecording(Station& station) : m_Station(station), m_Recorder(station) {}

    /// @param progress told the share that is done, 0 to 1, a few times a second
    RecordingResult Run(double duration_s, const std::function<void(double share)>& progress);

  private:
    bool Record(double duration_s, const std::function<void(double share)>& progress);

    Station& m_Station;
    DataRecorder m_Recorder;
};

} // namespace ombrix

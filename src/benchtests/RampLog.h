#pragma once

#include "board/procedure/AnswerWatch.h"
#include "platform/ports/Drive.h"

#include <array>
#include <cstdint>

namespace ombrix {

/// Samples the two boards of a ramp into the rig's file, a line a sample.
class RampLog {
  public:
    using Channels = std::array<std::int32_t, clsAIB::DACChannels>;

    static constexpr auto Path = R"(C:\_AIBData.csv)";

    /// Begins the file anew. @throws DriveError
    RampLog(Drive& files, clsAIB& output, clsAIB& input);

    /// Reads both boards and writes a line. @param now_s time since the ramp started
    /// @return what the inputs of the input board read @throws DriveError, BoardError
    Channels Take(double now_s);

    std::int64_t Lines() const { return m_Lines; }
    std::filesystem::path RealPath() const { return m_File->RealPath(); }

  private:
    struct WatchedBoard {
        clsAIB& Board;
        AnswerWatch Watch;
    };

    static Channels OutputsOf(const WatchedBoard& board);
    static Channels ReadInputs(WatchedBoard& board, double now_s);

    std::unique_ptr<OutputFile> m_File;
    WatchedBoard m_Output;
    WatchedBoard m_Input;
    std::int64_t m_Lines = 0;
};

} // namespace ombrix

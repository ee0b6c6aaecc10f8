#pragma once

#include "board/Station.h"

#include <string>

namespace ombrix {

/// Where the progress of a detection shows.
class DetectionView {
  public:
    virtual ~DetectionView() = default;

    /// The time of a try that found no board, or the number of boards found.
    virtual void ShowOutcome(const std::string& text) = 0;
    virtual void ShowInitState(const std::string& text) = 0;
    virtual void ShowProgramming(const std::string& first, const std::string& second) = 0;
    /// Tab of a board, from 0; made when there is none yet.
    virtual void SetTabCaption(std::int32_t board, const std::string& caption) = 0;
};

/// "AIB_7: FireWire", and that it is read only where this program may not drive it.
std::string BoardCaption(const Station& station, const AIB& board);

/// Opens the board library, identifies and claims the boards, switches off what a program that
/// died has left driven, and loads the FPGA of each board but those that another program has: these
/// stay as they are, and count as not programmed.
/// False when no board was found. A missing configuration file ends the program.
bool DetectAndProgramBoards(Station& station, DetectionView& view);

} // namespace ombrix

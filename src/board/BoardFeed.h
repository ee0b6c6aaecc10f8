#pragma once

#include "board/procedure/Listeners.h"

#include <cstdint>
#include <optional>

namespace ombrix {

class AIB;

/// What a board has just been asked or told, whoever did it, and how it answered.
struct BoardNote {
    enum class Subject : std::uint8_t {
        /// An input, 0 to 3, be it an analog converter or a digital MFC.
        Input,
        /// An output, 0 to 3, in the same way.
        Output,
        /// The pressure register; its channel is 0.
        Pressure,
    };

    const AIB& Board;
    Subject What = Subject::Input;
    std::int32_t Channel = 0;
    /// What was read, or what the output has taken; nothing when the board has refused it, or
    /// could not be asked.
    std::optional<std::int32_t> Value_bits;
    /// By the station's monotonic clock.
    double Time_s = 0.0;
};

/// Those who follow what boards are asked and told: panels that show live values, records of
/// them. They are told in the middle of a measurement, so what they do must be short. While
/// nobody listens, a reading costs what it did.
using BoardFeed = Listeners<const BoardNote&>;

} // namespace ombrix

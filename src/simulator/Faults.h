#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// A fault text that names no fault of the bench; the message lists the right forms.
class FaultError : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/// What is wrong with a simulated bench.
struct Faults {
    struct FailingCall {
        std::int32_t Status = 0;
        /// Name of the library operation; empty for every one.
        std::string Operation;
    };
    struct SlowCall {
        double Latency_s = 0.0;
        /// As of a failing call.
        std::string Operation;
    };
    /// A call that never returns: the process hangs in it, or dies of it.
    struct FatalCall {
        std::string Operation;
        /// Which call of that operation, from 1.
        int Nth = 1;
        bool Hangs = false;
    };
    struct ChannelFault {
        std::int32_t Channel = 0;
        double Amount = 0;
    };

    std::vector<FailingCall> FailingCalls;
    std::vector<SlowCall> SlowCalls;
    std::vector<FatalCall> FatalCalls;
    bool EpromReadOnly = false;
    /// A word written reads back with one bit wrong.
    bool EpromFlip = false;
    /// Now and then a word is read with one bit wrong.
    bool EpromUnsteady = false;
    std::vector<int> StuckBits;
    std::vector<std::int32_t> NotReadyChannels;
    std::vector<ChannelFault> Hysteresis_bits;
    std::vector<ChannelFault> Gain_percent;
    bool NoAir = false;
    bool PressureFrozen = false;
    std::optional<double> UnplugAt_s;

    /// @throws FaultError
    static Faults Parse(std::span<const std::string> texts);
    static double Sum(const std::vector<ChannelFault>& faults, std::int32_t channel);
    /// How long a call of that library operation takes beyond its own time.
    double LatencyOf_s(std::string_view operation) const;
};

} // namespace ombrix

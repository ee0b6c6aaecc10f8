#pragma once

#include "boardhost/BoardLibrary.h"
#include "boardhost/DrivenOutputs.h"
#include "boardhost/Protocol.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace ombrix {

/// The library of a board host: loaded once, called as the program asks, and left with the outputs
/// at zero when the program is gone. What the library writes beyond its arguments falls into room
/// that nobody uses.
class HostCalls {
  public:
    HostCalls();
    HostCalls(const HostCalls&) = delete;
    HostCalls& operator=(const HostCalls&) = delete;
    ~HostCalls();

    /// Makes a call. @param block of the request before, of the answer after it; TextBytes long
    hostprotocol::Answer Make(const hostprotocol::Request& request, std::span<char> block);
    /// Sets every board to zero that has an output driven.
    void SwitchOff();

  private:
    struct Arguments;

    hostprotocol::Answer Load(std::span<char> block);
    std::int32_t Call(const hostprotocol::Request& request, Arguments& arguments);
    std::int32_t Read(const hostprotocol::Request& request, std::int32_t& value);
    std::int32_t Write(const hostprotocol::Request& request);

    std::optional<BoardLibrary> m_Library;
    DrivenOutputs m_Driven;
    std::unique_ptr<Arguments> m_Arguments;
};

} // namespace ombrix

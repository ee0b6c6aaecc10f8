#pragma once

#include "boardhost/Protocol.h"

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace ombrix {

/// Which outputs of which boards stand at something else than zero, by what the library was told:
/// what has to be switched off when the one who drove them is gone.
class DrivenOutputs {
  public:
    /// A call is about to be made: what it drives counts from now on, whatever comes of it.
    void Note(const hostprotocol::Request& request);
    /// It has been made. @param status as the library has returned it
    void NoteResult(const hostprotocol::Request& request, std::int32_t status);

    /// With those of another one.
    void Add(const DrivenOutputs& others);

    bool Any() const { return !m_Driven.empty(); }
    bool Drives(std::int32_t index) const { return m_Driven.contains(index); }
    std::vector<std::int32_t> Boards() const;

    /// A demand on an output that is not zero.
    static bool IsDemand(const hostprotocol::Request& request);
    /// What makes a board safe: zeros for the set-points of both digital MFCs and all four DACs.
    static std::vector<hostprotocol::Request> ZerosFor(std::int32_t index);

  private:
    /// By board index, a bit for each output.
    std::map<std::int32_t, std::uint32_t> m_Driven;
};

} // namespace ombrix

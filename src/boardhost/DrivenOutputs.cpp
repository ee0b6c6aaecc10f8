#include "boardhost/DrivenOutputs.h"

#include <cstddef>

namespace ombrix {

using hostprotocol::Operation;
using hostprotocol::Request;

namespace {

constexpr std::int32_t MFCChannels = 2;
constexpr std::int32_t DACChannels = 4;

bool IsOutput(const Request& request) {
    return request.What == Operation::SetDAC || request.What == Operation::MFCSetFlowrate;
}

/// The bit of an output; none for a channel that there is not, which no library drives.
std::uint32_t BitOf(const Request& request) {
    const std::int32_t channel = request.Selectors[0];
    const bool isDAC = request.What == Operation::SetDAC;
    if (channel < 0 || channel >= (isDAC ? DACChannels : MFCChannels))
        return 0;
    return 1U << (isDAC ? channel + MFCChannels : channel);
}

} // namespace

bool DrivenOutputs::IsDemand(const Request& request) {
    return IsOutput(request) && request.Value != 0;
}

void DrivenOutputs::Note(const Request& request) {
    if (const std::uint32_t bit = IsDemand(request) ? BitOf(request) : 0; bit != 0)
        m_Driven[request.Index] |= bit;
}

void DrivenOutputs::NoteResult(const Request& request, std::int32_t status) {
    const auto board = m_Driven.find(request.Index);
    if (status != 0 || !IsOutput(request) || request.Value != 0 || board == m_Driven.end())
        return;
    board->second &= ~BitOf(request);
    if (board->second == 0)
        m_Driven.erase(board);
}

void DrivenOutputs::Add(const DrivenOutputs& others) {
    for (const auto& [index, outputs] : others.m_Driven)
        m_Driven[index] |= outputs;
}

std::vector<std::int32_t> DrivenOutputs::Boards() const {
    std::vector<std::int32_t> boards;
    for (const auto& [index, outputs] : m_Driven)
        boards.push_back(index);
    return boards;
}

std::vector<Request> DrivenOutputs::ZerosFor(std::int32_t index) {
    std::vector<Request> zeros;
    const auto add = [&](Operation operation, std::int32_t channels) {
        for (std::int32_t channel = 0; channel < channels; ++channel) {
            Request request;
            request.What = operation;
            request.Index = index;
            request.Selectors[0] = channel;
            zeros.push_back(request);
        }
    };
    add(Operation::MFCSetFlowrate, MFCChannels);
    add(Operation::SetDAC, DACChannels);
    return zeros;
}

} // namespace ombrix

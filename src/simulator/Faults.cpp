#include "simulator/Faults.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace ombrix {

namespace {

constexpr std::string_view Forms =
    "status:N, status:N@CALL, eprom-readonly, eprom-flip, eprom-unsteady, stuck-bit:N, "
    "not-ready:CH, hysteresis:CH,BITS, gain:CH,PERCENT, no-air, pressure-frozen, unplug@SECONDS, "
    "latency:MS, latency:MS@CALL, hang@CALL, hang@CALL:N, crash@CALL, crash@CALL:N";

/// Returns the number of boards.
constexpr std::string_view CallWithoutStatus = "OpenAIBAPI";
constexpr std::array<std::string_view, 24> Operations = {
    CallWithoutStatus, "CloseAIBAPI",     "GetAccessoryInfo", "UploadFPGAImage", "WriteReg",
    "ReadReg",         "ConfigureGPIO",   "SetGPO",           "ClearGPO",        "SetExtGPO",
    "ClearExtGPO",     "GetGPI",          "SetDAC",           "GetADC",          "WriteAIBInfo",
    "WriteEEPROM",     "ReadEEPROM",      "DumpEEPROM",       "MFCSetFlowrate",  "MFCGetFlowrate",
    "MFCSetParameter", "MFCGetParameter", "GetVariable",      "SetVariable"};

[[noreturn]] void Reject(std::string_view text, std::string_view why) {
    throw FaultError(fmt::format("\"{}\" is no fault of the simulated bench: {}. Faults are {}.",
                                 text, why, Forms));
}

template <class Number>
Number ParseValue(std::string_view fault, std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        Reject(fault, fmt::format("\"{}\" is not a number", text));
    return value;
}

template <class Number>
Number ParseInRange(std::string_view fault, std::string_view text, Number first, Number last) {
    const auto value = ParseValue<Number>(fault, text);
    if (!(value >= first && value <= last))
        Reject(fault, fmt::format("{} is not within {} to {}", text, first, last));
    return value;
}

std::int32_t ParseChannel(std::string_view fault, std::string_view text) {
    return ParseInRange<std::int32_t>(fault, text, 0, 1);
}

Faults::ChannelFault ParseChannelFault(std::string_view fault, std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos)
        Reject(fault, "a channel and an amount are wanted");
    return {ParseChannel(fault, text.substr(0, comma)),
            ParseInRange(fault, text.substr(comma + 1), -65535.0, 65535.0)};
}

std::string ParseOperation(std::string_view fault, std::string_view text) {
    if (std::find(Operations.begin(), Operations.end(), text) == Operations.end())
        Reject(fault, fmt::format("\"{}\" is no operation of the board library", text));
    return std::string(text);
}

/// "N" or "N@CALL": the text of the number, and the operation, which is empty for every one.
std::pair<std::string_view, std::string> ParseCall(std::string_view fault, std::string_view text) {
    const std::size_t at = text.find('@');
    if (at == std::string_view::npos)
        return {text, {}};
    return {text.substr(0, at), ParseOperation(fault, text.substr(at + 1))};
}

Faults::FailingCall ParseStatus(std::string_view fault, std::string_view text) {
    auto [status, operation] = ParseCall(fault, text);
    if (operation == CallWithoutStatus)
        Reject(fault, operation + " returns no status");
    return {ParseValue<std::int32_t>(fault, status), std::move(operation)};
}

Faults::SlowCall ParseLatency(std::string_view fault, std::string_view text) {
    constexpr double longest_ms = 60'000.0;
    auto [latency_ms, operation] = ParseCall(fault, text);
    return {ParseInRange(fault, latency_ms, 0.0, longest_ms) / 1000.0, std::move(operation)};
}

/// "CALL" or "CALL:N"
Faults::FatalCall ParseFatalCall(std::string_view fault, std::string_view text, bool hangs) {
    const std::size_t colon = text.find(':');
    const int nth = colon == std::string_view::npos
                        ? 1
                        : ParseInRange(fault, text.substr(colon + 1), 1, 1'000'000'000);
    return {ParseOperation(fault, text.substr(0, colon)), nth, hangs};
}

void ParseOne(std::string_view text, Faults& faults) {
    const std::size_t nameEnd = std::min(text.find_first_of(":@"), text.size());
    const std::string_view name = text.substr(0, nameEnd);
    const std::string_view value =
        nameEnd < text.size() ? text.substr(nameEnd + 1) : std::string_view{};
    if (name == "status")
        faults.FailingCalls.push_back(ParseStatus(text, value));
    else if (text == "eprom-readonly")
        faults.EpromReadOnly = true;
    else if (text == "eprom-flip")
        faults.EpromFlip = true;
    else if (text == "eprom-unsteady")
        faults.EpromUnsteady = true;
    else if (name == "stuck-bit")
        faults.StuckBits.push_back(ParseInRange(text, value, 0, 15));
    else if (name == "not-ready")
        faults.NotReadyChannels.push_back(ParseChannel(text, value));
    else if (name == "hysteresis")
        faults.Hysteresis_bits.push_back(ParseChannelFault(text, value));
    else if (name == "gain")
        faults.Gain_percent.push_back(ParseChannelFault(text, value));
    else if (text == "no-air")
        faults.NoAir = true;
    else if (text == "pressure-frozen")
        faults.PressureFrozen = true;
    else if (name == "unplug")
        faults.UnplugAt_s = ParseInRange(text, value, 0.0, 1e9);
    else if (name == "latency")
        faults.SlowCalls.push_back(ParseLatency(text, value));
    else if (name == "hang" || name == "crash")
        faults.FatalCalls.push_back(ParseFatalCall(text, value, name == "hang"));
    else
        Reject(text, "the name is not known");
}

} // namespace

Faults Faults::Parse(std::span<const std::string> texts) {
    Faults faults;
    for (const std::string& text : texts)
        ParseOne(text, faults);
    return faults;
}

double Faults::Sum(const std::vector<ChannelFault>& faults, std::int32_t channel) {
    double sum = 0.0;
    for (const ChannelFault& fault : faults)
        sum += fault.Channel == channel ? fault.Amount : 0.0;
    return sum;
}

double Faults::LatencyOf_s(std::string_view operation) const {
    double latency_s = 0.0;
    for (const SlowCall& slow : SlowCalls)
        latency_s += slow.Operation.empty() || slow.Operation == operation ? slow.Latency_s : 0.0;
    return latency_s;
}

} // namespace ombrix

#include "board/HostedAIBControl.h"

#include "board/BoardHost.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace ombrix {

using hostprotocol::NameOf;
using hostprotocol::RecordBytes;
using hostprotocol::TextBytes;

namespace {

using Int = std::int32_t;

constexpr Int LargestReading = 65535;
constexpr Int LargestFlow = 32000;
static_assert(sizeof(AccessoryInfoBlock) == RecordBytes);

} // namespace

HostedAIBControl::HostedAIBControl(Options options) : m_Options(std::move(options)) {}

HostedAIBControl::~HostedAIBControl() = default;

// How a call is made, and what becomes of one that goes wrong.

std::optional<HostedAIBControl::Answer> HostedAIBControl::Call(const Request& request,
                                                               std::span<char> block) {
    if (IsHeldBack(request))
        return std::nullopt;
    if (!m_Host)
        Start();
    m_Driven.Note(request);
    std::optional<Answer> answer;
    try {
        answer = Exchange(request, block);
    } catch (const BoardError&) {
        SwitchOffDriven();
        throw;
    }
    if (!answer) {
        SwitchOffDriven();
        return std::nullopt;
    }
    m_Driven.NoteResult(request, answer->Result);
    m_HeldBack.NoteResult(request, answer->Result);
    return answer;
}

HostedAIBControl::Answer HostedAIBControl::CallBoard(const Request& request,
                                                     std::span<char> block) {
    try {
        Answer timeout;
        timeout.Result = Status::Timeout;
        return Call(request, block).value_or(timeout);
    } catch (const AIBLibraryError& error) {
        throw BoardError(error.what());
    }
}

bool HostedAIBControl::IsHeldBack(const Request& request) const {
    if (!m_HeldBack.Drives(request.Index))
        return false;
    switch (request.What) {
    case Operation::GetADC:
    case Operation::MFCGetFlowrate:
    case Operation::ReadReg: return true;
    default: return DrivenOutputs::IsDemand(request);
    }
}

std::optional<HostedAIBControl::Answer> HostedAIBControl::Exchange(const Request& request,
                                                                   std::span<char> block) {
    const bool isLong =
        request.What == Operation::UploadFPGAImage || request.What == Operation::DumpEEPROM;
    const auto limit =
        isLong ? std::max(m_Options.CallTimeout, LongCallTimeout) : m_Options.CallTimeout;
    const BoardHost::Reply reply = m_Host->Make(request, block, limit);
    LogPrinted();
    if (reply.Kind == BoardHost::Reply::Answered)
        return reply.Answer;
    const std::unique_ptr<BoardHost> lost = std::move(m_Host);
    const std::string_view name = NameOf(request.What);
    if (reply.Kind == BoardHost::Reply::TimedOut) {
        m_Options.Log(fmt::format("The board library has not returned from {} within {} s: its "
                                  "host is replaced",
                                  name, static_cast<double>(limit.count()) / 1000.0));
        return std::nullopt;
    }
    const std::string text = fmt::format("The board library has ended unexpectedly in {} ({})",
                                         name, lost->HowItEnded());
    m_Options.Log(text);
    throw BoardError(text);
}

void HostedAIBControl::Start() {
    m_Host =
        std::make_unique<BoardHost>(m_Options.Program, m_Options.Library, m_Options.CallTimeout);
    LogPrinted();
    if (!m_Opened)
        return;
    m_Options.Log("The board library has been loaded again, by another host");
    try {
        OpenAgain();
    } catch (const BoardError&) {
        m_Host.reset();
        throw;
    }
}

void HostedAIBControl::OpenAgain() {
    const BoardError others("After the board library has been loaded again, it reports other "
                            "boards.\r\n\r\nPlease detect the boards again.");
    Request request;
    request.What = Operation::OpenAIBAPI;
    std::array<char, RecordBytes> block{};
    const auto opened = Exchange(request, block);
    if (!opened)
        throw BoardError("The board library does not open the boards again: AIB Timeout.");
    if (opened->Result != static_cast<Int>(m_Serials.size()))
        throw others;
    request.What = Operation::GetAccessoryInfo;
    for (const Int serial : m_Serials) {
        const auto answer = Exchange(request, block);
        AccessoryInfoBlock record;
        std::memcpy(&record, block.data(), sizeof record);
        if (!answer || (serial != 0 && record.DevSerialNum != serial))
            throw others;
        ++request.Index;
    }
}

void HostedAIBControl::SwitchOffDriven() noexcept {
    if (!m_Driven.Any())
        return;
    try {
        m_HeldBack.Add(m_Driven);
        Start();
        for (const Int index : m_Driven.Boards()) {
            for (const Request& zero : DrivenOutputs::ZerosFor(index)) {
                const auto answer = Exchange(zero, {});
                if (!answer)
                    return;
                m_Driven.NoteResult(zero, answer->Result);
            }
            m_Options.Log(fmt::format("Outputs of board {} {}", index,
                                      m_Driven.Drives(index) ? "could not be set to zero"
                                                             : "have been set to zero"));
        }
    } catch (const std::exception& error) {
        m_Options.Log(std::string("Outputs could not be set to zero: ") + error.what());
    }
}

void HostedAIBControl::LogPrinted() {
    m_PrintedPart += m_Host->TakePrinted();
    for (std::size_t end = 0; (end = m_PrintedPart.find('\n')) != std::string::npos;) {
        if (m_PrintedLines++ < MostPrintedLines)
            m_Options.Log("Board library: " + m_PrintedPart.substr(0, end));
        else if (m_PrintedLines == MostPrintedLines + 1)
            m_Options.Log("Board library: it prints more, which is not noted");
        m_PrintedPart.erase(0, end + 1);
    }
}

AIBStatus HostedAIBControl::Write(Operation what, Int index, const Selectors& selectors,
                                  Int value) {
    return CallBoard({0, what, 0, index, selectors, value}).Result;
}

AIBStatus HostedAIBControl::Read(Operation what, Int index, const Selectors& selectors, Int& value,
                                 std::optional<Int> top) {
    const Answer answer = CallBoard({0, what, 0, index, selectors, value});
    if (answer.Result != Status::NoError)
        return answer.Result;
    if (top && (answer.Value < 0 || answer.Value > *top))
        return Status::HardwareError;
    value = answer.Value;
    return Status::NoError;
}

AIBStatus HostedAIBControl::WithPath(Operation what, Int index, const std::string& path) {
    const std::string text = ToWindows1252(path);
    std::array<char, TextBytes> block{};
    if (text.size() >= block.size())
        return Status::HardwareError;
    std::copy(text.begin(), text.end(), block.begin());
    return CallBoard({0, what, 0, index, {}, 0}, block).Result;
}

// The operations.

Int HostedAIBControl::OpenAIBAPI() {
    if (!m_Host)
        m_Opened = false; // what was open is looked for anew
    Request request;
    request.What = Operation::OpenAIBAPI;
    std::optional<Answer> answer;
    try {
        answer = Call(request, {});
    } catch (const BoardError& error) {
        throw AIBLibraryError(AIBLibraryError::NotLoadable, error.what());
    }
    if (!answer)
        throw AIBLibraryError(AIBLibraryError::NotLoadable,
                              "The board library does not tell its boards: AIB Timeout.");
    const Int count = std::max(answer->Result, 0);
    if (count > MostBoards)
        throw AIBLibraryError(
            AIBLibraryError::NotLoadable,
            fmt::format("The board library reports {} boards; there can be {} at most.\r\n\r\n"
                        "Please install the board library that belongs to this program.",
                        count, MostBoards));
    m_Opened = true;
    m_HeldBack = {}; // nobody goes on with what the boards were told before
    m_Serials.assign(static_cast<std::size_t>(count), 0);
    return count;
}

AIBStatus HostedAIBControl::CloseAIBAPI() {
    m_Opened = false;
    // Without a host nothing is open.
    return m_Host ? Write(Operation::CloseAIBAPI, 0, {}) : Status::NoError;
}

AIBStatus HostedAIBControl::GetAccessoryInfo(Int index, AccessoryInfoBlock& record) {
    std::array<char, RecordBytes> block{};
    std::memcpy(block.data(), &record, sizeof record);
    const Answer answer = CallBoard({0, Operation::GetAccessoryInfo, 0, index, {}, 0}, block);
    std::memcpy(&record, block.data(), sizeof record);
    if (index >= 0 && index < static_cast<Int>(m_Serials.size()))
        m_Serials.at(static_cast<std::size_t>(index)) = record.DevSerialNum;
    return answer.Result;
}

AIBStatus HostedAIBControl::UploadFPGAImage(Int index, const std::string& path) {
    return WithPath(Operation::UploadFPGAImage, index, path);
}

AIBStatus HostedAIBControl::WriteReg(Int index, Int address, Int value) {
    return Write(Operation::WriteReg, index, {address}, value);
}

AIBStatus HostedAIBControl::ReadReg(Int index, Int address, Int& value) {
    return Read(Operation::ReadReg, index, {address}, value);
}

AIBStatus HostedAIBControl::ConfigureGPIO(Int index, Int mask) {
    return Write(Operation::ConfigureGPIO, index, {}, mask);
}

AIBStatus HostedAIBControl::SetGPO(Int index, Int pin) {
    return Write(Operation::SetGPO, index, {pin});
}

AIBStatus HostedAIBControl::ClearGPO(Int index, Int pin) {
    return Write(Operation::ClearGPO, index, {pin});
}

AIBStatus HostedAIBControl::SetExtGPO(Int index, Int pin) {
    return Write(Operation::SetExtGPO, index, {pin});
}

AIBStatus HostedAIBControl::ClearExtGPO(Int index, Int pin) {
    return Write(Operation::ClearExtGPO, index, {pin});
}

AIBStatus HostedAIBControl::GetGPI(Int index, Int pin, Int& level) {
    return Read(Operation::GetGPI, index, {pin}, level);
}

AIBStatus HostedAIBControl::SetDAC(Int index, Int channel, Int value) {
    return Write(Operation::SetDAC, index, {channel}, value);
}

AIBStatus HostedAIBControl::GetADC(Int index, Int channel, Int& value) {
    return Read(Operation::GetADC, index, {channel}, value, LargestReading);
}

AIBStatus HostedAIBControl::WriteAIBInfo(Int index, Int first, Int code, Int serial) {
    const AIBStatus status = Write(Operation::WriteAIBInfo, index, {first, code}, serial);
    if (status == Status::NoError && index >= 0 && index < static_cast<Int>(m_Serials.size()))
        m_Serials.at(static_cast<std::size_t>(index)) = serial;
    return status;
}

AIBStatus HostedAIBControl::WriteEEPROM(Int index, Int address, Int word) {
    return Write(Operation::WriteEEPROM, index, {address}, word);
}

AIBStatus HostedAIBControl::ReadEEPROM(Int index, Int address, Int& word) {
    return Read(Operation::ReadEEPROM, index, {address}, word);
}

AIBStatus HostedAIBControl::DumpEEPROM(Int index, const std::string& path) {
    return WithPath(Operation::DumpEEPROM, index, path);
}

AIBStatus HostedAIBControl::MFCSetFlowrate(Int index, Int channel, Int setPoint) {
    return Write(Operation::MFCSetFlowrate, index, {channel}, setPoint);
}

AIBStatus HostedAIBControl::MFCGetFlowrate(Int index, Int channel, Int& flow) {
    return Read(Operation::MFCGetFlowrate, index, {channel}, flow, LargestFlow);
}

namespace {

std::array<Int, 4> SelectorsOf(const MFCParameter& parameter) {
    return {parameter.First, parameter.Second, parameter.Third, parameter.Fourth};
}

} // namespace

AIBStatus HostedAIBControl::MFCSetParameter(Int index, const MFCParameter& parameter, Int value) {
    return Write(Operation::MFCSetParameter, index, SelectorsOf(parameter), value);
}

AIBStatus HostedAIBControl::MFCGetParameter(Int index, const MFCParameter& parameter, Int& value) {
    return Read(Operation::MFCGetParameter, index, SelectorsOf(parameter), value);
}

AIBStatus HostedAIBControl::GetVariable(Int index, Int number, Int& value) {
    return Read(Operation::GetVariable, index, {number}, value);
}

AIBStatus HostedAIBControl::SetVariable(Int index, Int number, Int value) {
    return Write(Operation::SetVariable, index, {number}, value);
}

} // namespace ombrix

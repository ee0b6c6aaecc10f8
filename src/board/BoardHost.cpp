#include "board/BoardHost.h"

#include "boardhost/LibraryError.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <vector>

namespace ombrix {

namespace {

constexpr std::chrono::milliseconds ForEnding(1000);

template <class... Arguments>
AIBLibraryError NotUsable(fmt::format_string<Arguments...> text, Arguments&&... arguments) {
    return {AIBLibraryError::NotLoadable, fmt::format(text, std::forward<Arguments>(arguments)...)};
}

} // namespace

BoardHost::BoardHost(const std::string& program, const std::string& library,
                     std::chrono::milliseconds limit) try
    : m_Process({program}) {
    hostprotocol::Greeting greeting{};
    const auto received = m_Process.Receive(greeting, std::chrono::steady_clock::now() + limit);
    if (received != PipedProcess::Received::All || !hostprotocol::IsGreeting(greeting))
        throw NotUsable("{} does not belong to this program.\r\n\r\nPlease install Ombrix again.",
                        program);
    Load(library, limit);
} catch (const std::system_error& error) {
    throw NotUsable("The program that works with the board library cannot be started: "
                    "{}\r\n\r\nPlease install Ombrix again.",
                    error.what());
}

BoardHost::~BoardHost() {
    if (!m_Sound)
        return; // it is killed
    hostprotocol::Request leave;
    leave.What = hostprotocol::Operation::Leave;
    m_Process.Send(hostprotocol::Encode(leave));
    m_Process.EndInput();
    m_Process.AwaitEnd(ForEnding);
}

void BoardHost::Load(const std::string& library, std::chrono::milliseconds limit) {
    std::array<char, hostprotocol::TextBytes> block{};
    std::copy_n(library.begin(), std::min(library.size(), block.size() - 1), block.begin());
    hostprotocol::Request request;
    request.What = hostprotocol::Operation::Load;
    const Reply reply = Make(request, block, limit);
    if (reply.Kind == Reply::TimedOut)
        throw NotUsable("The board library {} cannot be loaded: it takes longer than {} s.",
                        library, static_cast<double>(limit.count()) / 1000.0);
    if (reply.Kind == Reply::Ended)
        throw NotUsable("The board library {} has ended unexpectedly while it was loaded ({})",
                        library, HowItEnded());
    if (reply.Answer.Result != 0)
        throw AIBLibraryError(reply.Answer.Result, hostprotocol::TextOf(block));
}

BoardHost::Reply BoardHost::Make(hostprotocol::Request request, std::span<char> block,
                                 std::chrono::milliseconds limit) {
    m_Sound = false; // until it has answered
    request.Number = ++m_Number;
    request.Limit_ms = static_cast<std::int32_t>(limit.count());
    const auto head = hostprotocol::Encode(request);
    const auto follows = block.first(hostprotocol::BlockOfRequest(request.What));
    std::vector<char> message(head.begin(), head.end());
    message.insert(message.end(), follows.begin(), follows.end());
    if (!m_Process.Send(message))
        return {Reply::Ended, {}};

    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::array<char, hostprotocol::Answer::Bytes> answerHead{};
    auto received = m_Process.Receive(answerHead, deadline);
    const hostprotocol::Answer answer = hostprotocol::DecodeAnswer(answerHead);
    if (received == PipedProcess::Received::All &&
        (answer.Number != request.Number || answer.What != request.What))
        received = PipedProcess::Received::Ended; // whatever that was, no host answers so
    if (received == PipedProcess::Received::All && hostprotocol::BlockOfAnswer(request.What) != 0)
        received =
            m_Process.Receive(block.first(hostprotocol::BlockOfAnswer(request.What)), deadline);
    m_Sound = received == PipedProcess::Received::All;
    if (received == PipedProcess::Received::TimedOut)
        return {Reply::TimedOut, {}};
    return {m_Sound ? Reply::Answered : Reply::Ended, answer};
}

std::string BoardHost::HowItEnded() {
    const ChildOutcome outcome = m_Process.AwaitEnd(ForEnding);
    switch (outcome.Kind) {
    case ChildOutcome::Exited: return fmt::format("exit status {}", outcome.Code);
    case ChildOutcome::Killed: return TextOfKilled(outcome.Code);
    default: return "its connection is broken";
    }
}

} // namespace ombrix

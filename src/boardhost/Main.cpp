// The board host: loads the board library in the program's stead and makes its calls, one at a
// time. What it is told and what it answers stands in docs/board-host.md.
#include "boardhost/HostCalls.h"
#include "boardhost/HostPipes.h"

#include <algorithm>
#include <vector>

namespace {

using namespace ombrix;
using namespace ombrix::hostprotocol;

/// The head of a message and what follows it, in one piece.
std::vector<char> MessageOf(const Answer& answer, std::span<const char> block) {
    const auto head = Encode(answer);
    std::vector<char> message(head.begin(), head.end());
    const auto follows = block.first(BlockOfAnswer(answer.What));
    message.insert(message.end(), follows.begin(), follows.end());
    return message;
}

/// Makes calls until the program has no more. @return whether it has taken its leave
bool Serve(const HostPipes& pipes, HostCalls& calls) {
    std::array<char, Request::Bytes> head{};
    std::array<char, TextBytes> block{};
    while (pipes.Read(head)) {
        const Request request = DecodeRequest(head);
        if (!IsOperation(static_cast<std::int32_t>(request.What)))
            return false;
        if (request.What == Operation::Leave)
            return true;
        if (!pipes.Read(std::span(block).first(BlockOfRequest(request.What))))
            return false;
        const HostPipes::TimeLimit limit(request.Limit_ms);
        const Answer answer = calls.Make(request, block);
        if (!pipes.Write(MessageOf(answer, block)))
            return false;
    }
    return false;
}

} // namespace

int main() {
    const HostPipes pipes;
    HostCalls calls;
    if (!pipes.Write(MakeGreeting()))
        return 1;
    if (Serve(pipes, calls))
        return 0;
    // Nobody is left who could switch off what has been driven.
    constexpr std::int32_t longest_ms = 60'000;
    const HostPipes::TimeLimit limit(longest_ms);
    calls.SwitchOff();
    return 0;
}

#include "terminal/Interrupts.h"

#include <array>
#include <poll.h>
#include <unistd.h>

namespace ombrix {

bool Interrupts::Poll() {
    m_Interrupted = m_Signals.Take() || m_Interrupted;
    return m_Interrupted;
}

std::optional<std::string> Interrupts::ReadLine() {
    std::string line;
    while (!Poll()) {
        std::array<pollfd, 2> sources = {
            {{STDIN_FILENO, POLLIN, 0}, {m_Signals.Descriptor(), POLLIN, 0}}};
        if (::poll(sources.data(), sources.size(), -1) < 0 || (sources[0].revents == 0))
            continue;
        char character = '\0';
        const ssize_t count = ::read(STDIN_FILENO, &character, 1);
        if (count <= 0)
            return line.empty() ? std::nullopt : std::optional(line);
        if (character == '\n')
            return line;
        if (character != '\r')
            line += character;
    }
    return std::nullopt;
}

} // namespace ombrix

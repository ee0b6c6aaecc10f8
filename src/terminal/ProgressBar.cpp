#include "terminal/ProgressBar.h"

#include "terminal/StandardError.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <unistd.h>

namespace ombrix {

ProgressBar::ProgressBar() : m_IsTerminal(::isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    if (m_ShownPercent >= 0)
        WriteError("\n");
}

void ProgressBar::Show(double share) {
    const int percent = static_cast<int>(std::clamp(share, 0.0, 1.0) * 100.0);
    if (!m_IsTerminal || percent == m_ShownPercent)
        return;
    m_ShownPercent = percent;
    constexpr int width = 40;
    const int filled = percent * width / 100;
    WriteError(fmt::format("\r[{}{}] {:3} %", std::string(static_cast<std::size_t>(filled), '#'),
                           std::string(static_cast<std::size_t>(width - filled), '.'), percent));
}

} // namespace ombrix

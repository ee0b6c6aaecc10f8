#include "terminal/TerminalStages.h"

#include "platform/os/Computer.h"
#include "terminal/TerminalPorts.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

namespace ombrix {

TerminalProgress::TerminalProgress() : m_IsTerminal(ErrorsGoToTerminal()) {}

TerminalProgress::~TerminalProgress() {
    if (m_ShownPercent >= 0)
        WriteError("\n");
}

void TerminalProgress::Show(double share) {
    const int percent = static_cast<int>(std::clamp(share, 0.0, 1.0) * 100.0);
    if (!m_IsTerminal || percent == m_ShownPercent)
        return;
    m_ShownPercent = percent;
    constexpr int width = 40;
    const int filled = percent * width / 100;
    WriteError(fmt::format("\r[{}{}] {:3} %", std::string(static_cast<std::size_t>(filled), '#'),
                           std::string(static_cast<std::size_t>(width - filled), '.'), percent));
}

void TerminalStages::Show(const std::string& text) {
    m_Bar.reset(); // ends its line
    WriteError(text + "\n");
}

void TerminalStages::Stage_Add(const std::string& name) {
    m_Stages.push_back({name, "Pending"});
}

void TerminalStages::Stage_RunNext() {
    Stage& stage = m_Stages.at(m_Begun++);
    stage.Result = "Running...";
    Show(fmt::format("{}: {}", stage.Name, stage.Result));
}

void TerminalStages::Stage_Complete(End ended) {
    Stage& stage = m_Stages.at(m_Begun - 1);
    stage.Result = StageResult(ended);
    Show(fmt::format("{}: {}", stage.Name, stage.Result));
}

void TerminalStages::BeginPoints(const PointTable& table) {
    m_Points = table.Title;
}

void TerminalStages::ShowPoint(std::size_t point, const PointLine& line) {
    if (line.Passed == false) // what passes would hide it
        Show(fmt::format("  Failed: {}, point {}: {}", m_Points.substr(0, m_Points.find(',')),
                         point + 1, line.Why));
}

void TerminalStages::ShowLine(StageLine line, const std::string& text) {
    // The other lines change too often for a terminal that keeps what was printed.
    if (line != StageLine::Phase || text == m_Phase)
        return;
    m_Phase = text;
    Show("  " + text);
}

void TerminalStages::ShowWarning(const std::string& text) {
    Show("  Warning: " + text);
}

void TerminalStages::BeginProgress(float span_s) {
    m_Span_s = span_s;
    m_Bar = std::make_unique<TerminalProgress>();
}

void TerminalStages::ShowProgress(float elapsed_s) {
    if (m_Bar && m_Span_s > 0.0F)
        m_Bar->Show(static_cast<double>(elapsed_s / m_Span_s));
}

void TerminalStages::EndProgress() {
    m_Bar.reset();
}

void TerminalStages::Close() {
    m_Bar.reset();
}

} // namespace ombrix

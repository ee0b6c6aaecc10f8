#include "terminal/TerminalStages.h"

#include "terminal/StandardError.h"

#include <fmt/format.h>

namespace ombrix {

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

void TerminalStages::Stage_Complete(bool aborted, bool passed) {
    Stage& stage = m_Stages.at(m_Begun - 1);
    stage.Result = aborted ? "Aborted" : passed ? "Run: Passed" : "Run: Failed";
    Show(fmt::format("{}: {}", stage.Name, stage.Result));
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
    m_Bar = std::make_unique<ProgressBar>();
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

#include "terminal/TerminalPorts.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <cctype>
#include <vector>

namespace ombrix {

bool Interrupts::Poll() {
    m_Interrupted = m_Signals.Take() || m_Interrupted;
    return m_Interrupted;
}

std::optional<std::string> Interrupts::ReadLine() {
    std::string line;
    while (!Poll()) {
        char character = '\0';
        const StopSignals::Input input = m_Signals.AwaitInput(character);
        if (input == StopSignals::Input::Signal)
            continue;
        if (input == StopSignals::Input::Ended)
            return line.empty() ? std::nullopt : std::optional(line);
        if (character == '\n')
            return line;
        if (character != '\r')
            line += character;
    }
    return std::nullopt;
}

namespace {

struct Choice {
    Answer Value;
    std::string_view Name;
};

std::vector<Choice> Choices(MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::OkCancel: return {{Answer::Ok, "OK"}, {Answer::Cancel, "Cancel"}};
    case MessageButtons::YesNo: return {{Answer::Yes, "Yes"}, {Answer::No, "No"}};
    case MessageButtons::YesNoCancel:
        return {{Answer::Yes, "Yes"}, {Answer::No, "No"}, {Answer::Cancel, "Cancel"}};
    case MessageButtons::RetryCancel: return {{Answer::Retry, "Retry"}, {Answer::Cancel, "Cancel"}};
    case MessageButtons::Ok: break;
    }
    return {{Answer::Ok, "OK"}};
}

/// The refusing button comes last in every set, the affirmative one first.
Answer Refusal(const std::vector<Choice>& choices) {
    return choices.back().Value;
}

std::string_view Heading(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Question: return "Question";
    case MessageIcon::Warning: return "Warning";
    case MessageIcon::Critical: return "Error";
    case MessageIcon::Information: break;
    }
    return "Information";
}

bool Names(std::string_view name, std::string_view typed) {
    if (typed.empty() || typed.size() > name.size())
        return false;
    for (std::size_t i = 0; i < typed.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(typed[i])) !=
            std::tolower(static_cast<unsigned char>(name[i])))
            return false;
    }
    return true;
}

} // namespace

std::string WithPlainLineEnds(const std::string& text) {
    return ReplaceAll(text, "\r\n", "\n");
}

void TerminalEventPump::ProcessPendingEvents() {
    // A look costs a call to the operating system; a person does not feel 5 ms.
    const auto now = std::chrono::steady_clock::now();
    if (now - m_LastLook < std::chrono::milliseconds(5))
        return;
    m_LastLook = now;
    if (m_Interrupts.Poll() && OnInterrupt)
        OnInterrupt();
}

Answer TerminalOperator::Ask(const Message& message) {
    WriteError(fmt::format("{}: {}\n", Heading(message.Icon), WithPlainLineEnds(message.Text)));
    if (message.Icon == MessageIcon::Critical || message.Icon == MessageIcon::Warning)
        m_LastTrouble = message.Text;
    const std::vector<Choice> choices = Choices(message.Buttons);
    if (choices.size() == 1)
        return choices.front().Value;
    if (m_Yes) {
        const bool declines =
            message.DeclinedUnattended || message.Buttons == MessageButtons::RetryCancel;
        return declines ? Refusal(choices) : choices.front().Value;
    }
    std::string offer;
    for (const Choice& choice : choices)
        offer += fmt::format("{}{}", offer.empty() ? "" : "/", choice.Name);
    while (true) {
        WriteError(fmt::format("[{}] ", offer));
        const auto typed = m_Interrupts.ReadLine();
        if (!typed)
            return Refusal(choices);
        for (const Choice& choice : choices) {
            if (Names(choice.Name, *typed))
                return choice.Value;
        }
    }
}

std::optional<std::string> TerminalOperator::AskText(const std::string& prompt,
                                                     const std::string& proposed,
                                                     const std::string& /*title*/) {
    if (m_Yes)
        return proposed;
    WriteError(fmt::format("{}\n[{}] ", WithPlainLineEnds(prompt), proposed));
    const auto typed = m_Interrupts.ReadLine();
    return typed && typed->empty() ? proposed : typed;
}

bool TerminalDocuments::OpenDocument(const std::filesystem::path& path) {
    WriteError(path.string() + "\n");
    return true;
}

} // namespace ombrix

#include "platform/os/LoggedPorts.h"

#include "platform/os/ProgramLog.h"

#include <cstdlib>

namespace ombrix {

namespace {

std::string Heading(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Question: return "Question: ";
    case MessageIcon::Warning: return "Warning: ";
    case MessageIcon::Critical: return "Error: ";
    case MessageIcon::Information: break;
    }
    return "Message: ";
}

const char* Name(Answer answer) {
    switch (answer) {
    case Answer::Cancel: return "Cancel";
    case Answer::Yes: return "Yes";
    case Answer::No: return "No";
    case Answer::Retry: return "Retry";
    case Answer::Ok: break;
    }
    return "OK";
}

} // namespace

Answer LoggedOperator::Ask(const Message& message) {
    // Noted before it is answered: the program may die with the box still open.
    WriteLog(m_World, Heading(message.Icon) + message.Text);
    const Answer answer = m_Messages.Ask(message);
    if (message.Buttons != MessageButtons::Ok)
        WriteLog(m_World, std::string("Answer: ") + Name(answer));
    return answer;
}

std::optional<std::string> LoggedOperator::AskText(const std::string& prompt,
                                                   const std::string& proposed,
                                                   const std::string& title) {
    WriteLog(m_World, "Question: " + prompt);
    auto text = m_Messages.AskText(prompt, proposed, title);
    WriteLog(m_World, text ? "Answer: \"" + *text + "\"" : "Answer: Cancel");
    return text;
}

void LoggedEnd::EndProgram(ExitStatus status) {
    WriteLog(m_World,
             "Program ends at once, exit status " + std::to_string(static_cast<int>(status)));
    m_End.EndProgram(status);
    std::abort(); // never reached, which the compiler does not see of a virtual call
}

} // namespace ombrix

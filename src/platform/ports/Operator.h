#pragma once

#include <optional>
#include <string>

namespace ombrix {

enum class MessageIcon { Information, Question, Warning, Critical };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class Answer { Ok, Cancel, Yes, No, Retry };

/// A modal message box. Texts use CR LF as line end, as they stand in the operator's manual.
struct Message {
    std::string Text;
    MessageIcon Icon = MessageIcon::Information;
    MessageButtons Buttons = MessageButtons::Ok;
    std::string Title = {};
    /// The question is whether to try something again: an unattended station declines it, so
    /// that nothing runs for ever.
    bool AsksRetry = false;
};

/// The person at the bench: told of failures and asked for decisions.
class Operator {
  public:
    virtual ~Operator() = default;

    /// Shows the message until it is answered.
    virtual Answer Ask(const Message& message) = 0;
    /// Asks for a line of text; nothing when the operator cancels.
    virtual std::optional<std::string>
    AskText(const std::string& prompt, const std::string& proposed, const std::string& title) = 0;
    /// Nobody is there: every answer is the proposed one, so that asking again changes nothing.
    virtual bool Unattended() const { return false; }
};

} // namespace ombrix

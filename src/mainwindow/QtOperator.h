#pragma once

#include "platform/Operator.h"

namespace ombrix {

/// The operator before a desktop: message boxes and input boxes over the window in use. A box
/// without a title of its own carries the application's.
class QtOperator final : public Operator {
  public:
    Answer Ask(const Message& message) override;
    std::optional<std::string> AskText(const std::string& prompt, const std::string& proposed,
                                       const std::string& title) override;
};

} // namespace ombrix

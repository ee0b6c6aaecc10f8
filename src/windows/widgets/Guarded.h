#pragma once

#include "platform/ports/Platform.h"

#include <exception>
#include <utility>

namespace ombrix {

/// Runs the work of an event handler. The toolkit's event loop cannot carry exceptions, so what
/// goes wrong is told to the operator here. False when something did.
template <class Work>
bool Guarded(Operator& messages, Work&& work) {
    try {
        std::forward<Work>(work)();
        return true;
    } catch (const std::exception& error) {
        messages.Ask({error.what(), MessageIcon::Critical, MessageButtons::Ok});
        return false;
    }
}

} // namespace ombrix

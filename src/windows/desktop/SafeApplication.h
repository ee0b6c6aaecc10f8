#pragma once

#include <QApplication>

#include <exception>
#include <functional>

namespace ombrix {

/// An application in which an exception that no event handler has caught is reported, instead
/// of taking the program down with its outputs driven.
class SafeApplication final : public QApplication {
  public:
    using QApplication::QApplication;

    /// Told what has gone wrong; until it is set, exceptions go their way.
    std::function<void(const std::exception& error)> OnUnexpectedError;

    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& error) {
            if (!OnUnexpectedError)
                throw;
            OnUnexpectedError(error);
            return true;
        }
    }
};

} // namespace ombrix

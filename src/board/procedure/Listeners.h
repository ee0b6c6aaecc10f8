#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace ombrix {

/// Keeps a listener told for as long as it lives.
class Subscription {
  public:
    Subscription() = default;

  private:
    template <class... Args>
    friend class Listeners;

    explicit Subscription(std::shared_ptr<void> listener) : m_Listener(std::move(listener)) {}

    std::shared_ptr<void> m_Listener;
};

/// Those who want to be told of something.
template <class... Args>
class Listeners {
  public:
    using Listener = std::function<void(Args...)>;

    [[nodiscard]] Subscription Listen(Listener listener) {
        auto shared = std::make_shared<Listener>(std::move(listener));
        m_Listeners.push_back(shared);
        return Subscription(std::move(shared));
    }

    void Tell(Args... args) {
        std::erase_if(m_Listeners, [](const auto& listener) { return listener.expired(); });
        // A listener may subscribe others while it is told, so the list is walked as a copy.
        for (const auto& entry : std::vector(m_Listeners)) {
            if (const auto listener = entry.lock())
                (*listener)(args...);
        }
    }

    /// Somebody has listened since the last time that was told.
    bool Any() const { return !m_Listeners.empty(); }

    /// Tells nobody any more.
    void Clear() { m_Listeners.clear(); }

  private:
    std::vector<std::weak_ptr<Listener>> m_Listeners;
};

} // namespace ombrix

#pragma once

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <utility>

namespace velmor {

/// Tells work on another thread that nobody waits for it any more. Copies share one state: the
/// starter keeps one and gives the work another. The standard library's std::stop_token is not yet
/// to be had on every system. Any thread.
class Cancellation {
  struct State {
    std::mutex lock;
    bool cancelled = false;
    std::list<std::function<void()>> hooks;
  };

public:
  /// Calls a function when the work is cancelled, or at once when it has been. Once the hook is
  /// destroyed the function neither runs nor is called. It must be short, and must not use the
  /// cancellation itself.
  class Hook {
  public:
    Hook(const Cancellation& cancellation, std::function<void()> function)
        : state(cancellation.state) {
      const std::lock_guard guard(state->lock);
      if (state->cancelled) function();
      place = state->hooks.insert(state->hooks.end(), std::move(function));
    }
    Hook(const Hook&) = delete;
    Hook& operator=(const Hook&) = delete;
    ~Hook() {
      const std::lock_guard guard(state->lock);
      state->hooks.erase(place);
    }

  private:
    std::shared_ptr<State> state;
    std::list<std::function<void()>>::iterator place;
  };

  /// The second call and later ones do nothing.
  void cancel() {
    const std::lock_guard guard(state->lock);
    if (std::exchange(state->cancelled, true)) return;
    std::ranges::for_each(state->hooks, [](const auto& hook) { hook(); });
  }

  [[nodiscard]] bool isCancelled() const {
    const std::lock_guard guard(state->lock);
    return state->cancelled;
  }

private:
  std::shared_ptr<State> state = std::make_shared<State>();
};

} // namespace velmor

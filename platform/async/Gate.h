#pragma once

#include "platform/MainLoop.h"

#include <algorithm>
#include <coroutine>
#include <utility>
#include <vector>

namespace velmor {

/// `co_await gate` waits until somebody opens it; a gate that is open is closed again at once.
/// Cancelling does not end the wait: who opens the gate promises to do so. Main thread only.
class Gate {
public:
  explicit Gate(MainLoop& mainLoop) : loop(mainLoop) {}
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

  /// All that wait go on, in the actor lane.
  void open() {
    for (auto* const one : std::exchange(waiting, {})) {
      one->gate = nullptr;
      one->timer = loop.callLater(MainLoop::Lane::Actor, Seconds{0},
                                  [handle = one->handle] { handle.resume(); });
    }
  }

  class Wait {
  public:
    explicit Wait(Gate& where) : gate(&where) {}
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    ~Wait() {
      if (gate) std::erase(gate->waiting, this);
    }

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waitingTask) {
      handle = waitingTask;
      gate->waiting.push_back(this);
    }
    void await_resume() const noexcept {}

  private:
    friend class Gate;
    Gate* gate;
    std::coroutine_handle<> handle;
    std::unique_ptr<Timer> timer;
  };

  Wait operator co_await() { return Wait(*this); }

private:
  MainLoop& loop;
  std::vector<Wait*> waiting;
};

} // namespace velmor

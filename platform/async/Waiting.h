#pragma once

#include "platform/Cancellation.h"
#include "platform/MainLoop.h"
#include "platform/async/Task.h"

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>

namespace velmor {

/// `co_await isCancelled()` tells whether the running task has been cancelled.
///
/// Put the answer into a variable first: GCC 12 lays out the coroutine's frame wrongly when a
/// co_await stands in the condition of an if or a loop.
class CancellationCheck {
public:
  bool await_ready() const noexcept { return false; }

  template <typename Promise>
  bool await_suspend(std::coroutine_handle<Promise> waiting) noexcept {
    cancelled = waiting.promise().context && waiting.promise().context->cancelled;
    return false;
  }

  bool await_resume() const noexcept { return cancelled; }

private:
  bool cancelled = false;
};

inline CancellationCheck isCancelled() {
  return {};
}

/// `co_await Sleep(loop, delay)` waits; cancelling the task ends the wait early.
class Sleep {
public:
  Sleep(MainLoop& mainLoop, Seconds duration) : loop(mainLoop), delay(duration) {}
  Sleep(const Sleep&) = delete;
  Sleep& operator=(const Sleep&) = delete;
  ~Sleep() { forgetWake(); }

  bool await_ready() const noexcept { return false; }

  template <typename Promise>
  bool await_suspend(std::coroutine_handle<Promise> waiting) {
    context = waiting.promise().context;
    if (context && context->cancelled) return false;
    if (context) context->wake = [this, waiting] { resumeAfter(Seconds{0}, waiting); };
    resumeAfter(delay, waiting);
    return true;
  }

  void await_resume() { forgetWake(); }

private:
  void resumeAfter(Seconds time, std::coroutine_handle<> waiting) {
    timer = loop.callLater(MainLoop::Lane::Actor, time, [waiting] { waiting.resume(); });
  }

  void forgetWake() {
    if (context) context->wake = nullptr;
    context = nullptr;
  }

  MainLoop& loop;
  Seconds delay;
  TaskContext* context = nullptr;
  std::unique_ptr<Timer> timer;
};

namespace detail {

/// Runs a function on a worker thread. The state, and with it the function, outlives a task that is
/// destroyed meanwhile.
template <typename Function>
class WorkerCall {
public:
  using Result = std::invoke_result_t<Function>;
  using Start = void (MainLoop::*)(MainLoop::Work work, MainLoop::Work done);

  WorkerCall(MainLoop& mainLoop, Start startOnLoop, Function function,
             std::optional<Cancellation> toCancel = std::nullopt)
      : loop(mainLoop)
      , start(startOnLoop)
      , cancellation(std::move(toCancel))
      , state(std::make_shared<State>(std::move(function))) {}
  WorkerCall(const WorkerCall&) = delete;
  WorkerCall& operator=(const WorkerCall&) = delete;
  ~WorkerCall() {
    forgetWake();
    state->waiting = nullptr;
  }

  bool await_ready() const noexcept { return false; }

  template <typename Promise>
  void await_suspend(std::coroutine_handle<Promise> waiting) {
    state->waiting = waiting;
    if (cancellation) context = waiting.promise().context;
    if (context) context->wake = [toCancel = *cancellation]() mutable { toCancel.cancel(); };
    if (context && context->cancelled) cancellation->cancel();
    (loop.*start)([state = state] { state->run(); },
                  [state = state] {
                    if (state->waiting) state->waiting.resume();
                  });
  }

  Result await_resume() {
    forgetWake();
    if (state->failure) std::rethrow_exception(state->failure);
    return std::move(*state->result);
  }

private:
  struct State {
    explicit State(Function work) : function(std::move(work)) {}

    void run() noexcept {
      try {
        result.emplace(function());
      } catch (...) {
        failure = std::current_exception();
      }
    }

    Function function;
    std::optional<Result> result;
    std::exception_ptr failure;
    std::coroutine_handle<> waiting;
  };

  void forgetWake() {
    if (context) context->wake = nullptr;
    context = nullptr;
  }

  MainLoop& loop;
  Start start;
  std::optional<Cancellation> cancellation;
  std::shared_ptr<State> state;
  TaskContext* context = nullptr;
};

} // namespace detail

/// `co_await onWorker(loop, function)` runs the blocking function on another thread and gives its
/// result, or throws what it threw. Other work of the main thread runs meanwhile.
///
/// The function may outlive the task: it owns what it uses, or uses what outlives the loop.
template <typename Function>
detail::WorkerCall<Function> onWorker(MainLoop& loop, Function function) {
  return {loop, &MainLoop::startWorker, std::move(function)};
}

/// As above; cancelling the task cancels the function's work too, which makes it end early.
template <typename Function>
detail::WorkerCall<Function> onWorker(MainLoop& loop, Function function,
                                      Cancellation cancellation) {
  return {loop, &MainLoop::startWorker, std::move(function), std::move(cancellation)};
}

/// As `onWorker`, but nothing else runs in the actor lane until the task goes on
/// (`MainLoop::occupyActor`).
template <typename Function>
detail::WorkerCall<Function> occupied(MainLoop& loop, Function function) {
  return {loop, &MainLoop::occupyActor, std::move(function)};
}

} // namespace velmor

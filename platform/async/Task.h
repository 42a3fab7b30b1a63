#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <optional>
#include <utility>

namespace velmor {

/// What all coroutines of one running task share.
struct TaskContext {
  bool cancelled = false;
  bool done = false;
  /// Ends the wait that the task is in early; empty while it is in none that can be ended.
  std::function<void()> wake;
};

namespace detail {

class TaskPromiseBase {
public:
  std::suspend_always initial_suspend() const noexcept { return {}; }

  auto final_suspend() const noexcept {
    struct ResumeAwaiting {
      bool await_ready() const noexcept { return false; }
      std::coroutine_handle<> await_suspend(std::coroutine_handle<>) const noexcept {
        return awaiting;
      }
      void await_resume() const noexcept {}
      std::coroutine_handle<> awaiting;
    };
    return ResumeAwaiting{awaiting};
  }

  void unhandled_exception() noexcept { failure = std::current_exception(); }

  std::coroutine_handle<> awaiting = std::noop_coroutine();
  TaskContext* context = nullptr;
  std::exception_ptr failure;
};

template <typename T>
class TaskPromise : public TaskPromiseBase {
public:
  auto get_return_object() { return std::coroutine_handle<TaskPromise>::from_promise(*this); }
  void return_value(T result) { value.emplace(std::move(result)); }

  T take() {
    if (failure) std::rethrow_exception(failure);
    return std::move(*value);
  }

private:
  std::optional<T> value;
};

template <>
class TaskPromise<void> : public TaskPromiseBase {
public:
  auto get_return_object() { return std::coroutine_handle<TaskPromise>::from_promise(*this); }
  void return_void() const noexcept {}

  void take() const {
    if (failure) std::rethrow_exception(failure);
  }
};

} // namespace detail

/// An operation that runs on the main thread and may wait without blocking it. It starts when it
/// is awaited, or handed to a TaskGroup; what it throws reaches who awaits it. Destroying a task
/// that waits ends it where it stands.
template <typename T>
class [[nodiscard]] Task {
public:
  using promise_type = detail::TaskPromise<T>;

  // The promise makes a handle, which becomes the task.
  Task(std::coroutine_handle<promise_type> handle) : coroutine(handle) {} // NOLINT
  Task(Task&& other) noexcept : coroutine(std::exchange(other.coroutine, nullptr)) {}
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  Task& operator=(Task&&) = delete;
  ~Task() {
    if (coroutine) coroutine.destroy();
  }

  bool await_ready() const noexcept { return false; }

  template <typename AwaitingPromise>
  std::coroutine_handle<> await_suspend(std::coroutine_handle<AwaitingPromise> awaiting) {
    coroutine.promise().awaiting = awaiting;
    coroutine.promise().context = awaiting.promise().context;
    return coroutine;
  }

  T await_resume() { return coroutine.promise().take(); }

private:
  std::coroutine_handle<promise_type> coroutine;
};

} // namespace velmor

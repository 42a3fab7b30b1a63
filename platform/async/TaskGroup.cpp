#include "platform/async/TaskGroup.h"

#include <algorithm>

namespace velmor {

void TaskHandle::cancel() const {
  if (!context || context->cancelled) return;
  context->cancelled = true;
  if (context->wake) std::exchange(context->wake, nullptr)();
}

/// The outermost coroutine of a task; it exists to tell the group when the task has ended.
struct TaskGroup::Driver {
  struct Promise {
    TaskContext* context = nullptr;
    TaskGroup* group = nullptr;
    const Running* running = nullptr;

    Driver get_return_object() {
      return Driver{std::coroutine_handle<Promise>::from_promise(*this)};
    }
    std::suspend_always initial_suspend() const noexcept { return {}; }
    void return_void() const noexcept {}
    void unhandled_exception() const noexcept { std::terminate(); }

    auto final_suspend() const noexcept {
      struct LeaveGroup {
        bool await_ready() const noexcept { return false; }
        // The group destroys the coroutine, and with it this object: nothing may follow.
        void await_suspend(std::coroutine_handle<Promise> driver) const noexcept {
          driver.promise().group->ended(driver.promise().running);
        }
        void await_resume() const noexcept {}
      };
      return LeaveGroup{};
    }
  };

  using promise_type = Promise;
  std::coroutine_handle<Promise> coroutine;
};

struct TaskGroup::Running {
  explicit Running(Driver started) : driver(started) {}
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() { driver.coroutine.destroy(); }

  Driver driver;
  std::shared_ptr<TaskContext> context = std::make_shared<TaskContext>();
};

TaskGroup::TaskGroup(MainLoop& mainLoop) : loop(mainLoop) {}

TaskGroup::~TaskGroup() = default;

TaskGroup::Driver TaskGroup::drive(Task<void> task) {
  co_await task;
}

TaskHandle TaskGroup::start(Task<void> task) {
  auto running = std::make_shared<Running>(drive(std::move(task)));
  auto& promise = running->driver.coroutine.promise();
  promise.context = running->context.get();
  promise.group = this;
  promise.running = running.get();
  tasks.push_back(running);
  loop.post(MainLoop::Lane::Actor, [weak = std::weak_ptr(running)] {
    // A plain pointer, since the coroutine may end and be destroyed inside the call.
    Running* pending = weak.lock().get();
    if (pending) pending->driver.coroutine.resume();
  });
  return TaskHandle(running->context);
}

void TaskGroup::cancelAll() {
  for (const auto& running : tasks)
    TaskHandle(running->context).cancel();
}

bool TaskGroup::isEmpty() const {
  return tasks.empty();
}

void TaskGroup::whenEmpty(MainLoop::Work work) {
  emptied = std::move(work);
}

void TaskGroup::ended(const Running* running) {
  running->context->done = true;
  const auto position = std::find_if(tasks.begin(), tasks.end(),
                                     [&](const auto& task) { return task.get() == running; });
  tasks.erase(position);
  if (tasks.empty() && emptied) loop.post(MainLoop::Lane::Actor, emptied);
}

} // namespace velmor

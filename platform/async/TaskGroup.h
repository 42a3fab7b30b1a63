#pragma once

#include "platform/MainLoop.h"
#include "platform/async/Task.h"

#include <list>
#include <memory>

namespace velmor {

/// A started task, as its starter sees it. Copies speak of the same task.
class TaskHandle {
public:
  TaskHandle() = default;
  explicit TaskHandle(std::shared_ptr<TaskContext> task) : context(std::move(task)) {}

  /// Sets the flag that the task tests at its next check point, and ends a sleep that it is in, or
  /// blocking work that can be stopped. Nothing else is interrupted.
  void cancel() const;

  [[nodiscard]] bool isDone() const { return !context || context->done; }

private:
  std::shared_ptr<TaskContext> context;
};

/// Runs tasks in the actor lane and owns them until they end. Destroying the group ends the tasks
/// that still wait, where they stand. Main thread only.
class TaskGroup {
public:
  explicit TaskGroup(MainLoop& mainLoop);
  TaskGroup(const TaskGroup&) = delete;
  TaskGroup& operator=(const TaskGroup&) = delete;
  ~TaskGroup();

  /// Starts the task soon, after what the actor lane already has to do. A task given here handles
  /// its own failures: one that throws ends the program.
  TaskHandle start(Task<void> task);

  /// Cancels every task that runs.
  void cancelAll();

  [[nodiscard]] bool isEmpty() const;

  /// Called in the actor lane each time the last running task has ended.
  void whenEmpty(MainLoop::Work work);

private:
  struct Running;
  struct Driver;

  static Driver drive(Task<void> task);
  void ended(const Running* running);

  MainLoop& loop;
  std::list<std::shared_ptr<Running>> tasks;
  MainLoop::Work emptied;
};

} // namespace velmor

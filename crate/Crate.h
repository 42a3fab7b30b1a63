#pragma once

#include "crate/CrateReading.h"
#include "platform/FileWatcher.h"
#include "platform/Platform.h"
#include "platform/async/Gate.h"
#include "platform/async/TaskGroup.h"

#include <functional>
#include <memory>

namespace velmor {

/// The DJ's own music on this machine: read in the background when somebody first asks for it, and
/// again what has changed, a moment after it has. Nobody who asks later waits for that. Nothing is
/// written beside the sources. Main thread.
class Crate {
public:
  /// `findPlaces` is called before each reading, on a worker thread.
  Crate(const Platform& platform, std::function<CratePlaces()> findPlaces);
  Crate(const Crate&) = delete;
  Crate& operator=(const Crate&) = delete;
  ~Crate();

  using Contents = std::shared_ptr<const CrateContents>;

  /// What is known, after the first reading. Never null. As long as no music has been found, it is
  /// looked for anew.
  [[nodiscard]] Task<Contents> contents();

  /// Begins to read unless music is known, or is being read already.
  void look();

  /// What is known now; nothing before the first reading has ended. Never null.
  [[nodiscard]] Contents known() const;

  [[nodiscard]] bool isReading() const { return progress != nullptr; }
  [[nodiscard]] bool isRead() const { return last.contents != nullptr; }
  /// 0 to 1; 1 when nothing is being read.
  [[nodiscard]] double progressOfReading() const { return progress ? progress->value() : 1; }

  /// Calls `work` in the actor lane when a reading begins, while it goes on, at most four times a
  /// second, and when it has ended.
  void whenChanged(MainLoop::Work work) { changed = std::move(work); }

private:
  void start();
  [[nodiscard]] Task<void> read();
  void tell() const;
  void tellProgress();
  void readSoon();

  Clock& clock;
  MainLoop& loop;
  FileWatcher& watcher;
  const std::function<CratePlaces()> findPlaces;
  MainLoop::Work changed;
  CrateReading last;
  std::unique_ptr<FileWatch> watch;
  /// What watches call; they may live a moment longer than the crate does.
  const std::shared_ptr<const MainLoop::Work> noticed;
  /// Null when nothing is being read.
  std::shared_ptr<ReadingProgress> progress;
  double toldProgress = 0;
  bool isOutdated = false;
  /// Until the next reading, after a change.
  Seconds rest{0};
  std::unique_ptr<Timer> telling;
  std::unique_ptr<Timer> waiting;
  Gate ended;
  TaskGroup tasks;
};

} // namespace velmor

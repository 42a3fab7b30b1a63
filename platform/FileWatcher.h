#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace velmor {

/// Watching, as long as it lives. Destroy it on any thread; what it calls is not called any more
/// when that happens on the main thread.
class FileWatch {
public:
  FileWatch() = default;
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;
  virtual ~FileWatch() = default;
};

/// What is watched.
struct WatchedPlaces {
  /// Whatever happens right in these folders, not in those below.
  std::vector<std::filesystem::path> folders;
  /// These files, whether they are there or not. The folder of each is there.
  std::vector<std::filesystem::path> files;
};

/// Notices when files change, without looking at them again and again.
class FileWatcher {
public:
  virtual ~FileWatcher() = default;

  /// Calls `changed` in the display lane after something has changed, once for many changes. What
  /// cannot be watched, since it is not there or the system watches too much already, is left out.
  /// Any thread.
  [[nodiscard]] virtual std::unique_ptr<FileWatch> watch(const WatchedPlaces& places,
                                                         std::function<void()> changed) = 0;
};

} // namespace velmor

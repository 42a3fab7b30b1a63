#pragma once

#include "platform/FileManager.h"
#include "platform/Platform.h"

#include <filesystem>
#include <memory>

namespace velmor {

/// A private folder for one measurement; it is gone, with everything in it, when this is destroyed.
/// While it is in use it is held, so that other runs leave it alone. Any thread.
class WorkingFolder {
public:
  /// Throws FileError.
  explicit WorkingFolder(const Platform& platform);
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  ~WorkingFolder();

  [[nodiscard]] std::filesystem::path sample() const { return path / "sample.wav"; }
  [[nodiscard]] std::filesystem::path report() const { return path / "features.json"; }

  /// Removes what runs that were killed or crashed have left: the folders that nobody holds.
  static void removeAbandoned(const Platform& platform);

private:
  Platform platform;
  std::filesystem::path path;
  std::unique_ptr<FolderHold> hold;
};

} // namespace velmor

#pragma once

#include "platform/Platform.h"

#include <filesystem>

namespace velmor {

/// A private folder for one measurement; it is gone, with everything in it, when this is destroyed.
class WorkingFolder {
public:
  /// Throws FileError.
  explicit WorkingFolder(const Platform& platform);
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  ~WorkingFolder();

  [[nodiscard]] std::filesystem::path sample() const { return path / "sample.wav"; }
  [[nodiscard]] std::filesystem::path report() const { return path / "features.json"; }

private:
  Platform platform;
  std::filesystem::path path;
};

} // namespace velmor

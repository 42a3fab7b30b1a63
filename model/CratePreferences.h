#pragma once

#include "platform/Platform.h"

#include <filesystem>

namespace velmor {

/// How the DJ wants the crate ranked: the file "crate.json" beside the settings, whose own form is
/// fixed. Main thread.
class CratePreferences {
public:
  /// Reads the file. Without a readable one everything is as it usually is.
  explicit CratePreferences(const Platform& platform);

  /// Keys count. Some DJs mix by ear or play what nobody mixes harmonically.
  [[nodiscard]] bool keys() const { return useKeys; }

  /// Throws FileError; nothing has changed then.
  void setKeys(bool count);

private:
  FileManager& files;
  const std::filesystem::path path;
  bool useKeys = true;
};

} // namespace velmor

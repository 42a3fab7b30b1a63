#pragma once

#include "platform/FileManager.h"
#include "platform/MainLoop.h"
#include "platform/SystemLog.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace velmor {

/// A file that always holds the last line it was given. It is replaced whole, so that a reader
/// never sees half a line. When it cannot be written, because its folder is on a disk that was
/// taken away, say, it is tried again every two seconds; the first failure goes to the log. Main
/// thread only.
class TrackFile {
public:
  static constexpr Seconds retryInterval{2};

  TrackFile(MainLoop& mainLoop, FileManager& fileManager, SystemLog& systemLog,
            std::filesystem::path file);

  void write(std::string line);

private:
  void attempt();

  MainLoop& loop;
  FileManager& files;
  SystemLog& log;
  const std::filesystem::path path;
  /// Not yet in the file.
  std::optional<std::string> waiting;
  bool hasFailed = false;
  std::unique_ptr<Timer> retry;
};

} // namespace velmor

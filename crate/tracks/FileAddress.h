#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velmor {

/// Addresses of files, "file:///music/A%20-%20B.mp3". Any thread.
struct FileAddress {
  /// "" for a path that is not absolute on this machine.
  [[nodiscard]] static std::string of(const std::filesystem::path& file);

  /// The file that the address names; also for those that name a host, and for the drives of
  /// Windows ("C:/Music/1.mp3"). "" for other addresses.
  [[nodiscard]] static std::string path(std::string_view address);
};

} // namespace velmor

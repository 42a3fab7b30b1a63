#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace velmor {

/// The whole file. Nothing when it cannot be read, is longer than `limit` bytes, also because it
/// grows while it is read, or is no regular file: a pipe or a device in its place is not opened,
/// since that alone may wait for ever. Links are followed. Any thread.
[[nodiscard]] std::optional<std::string> readRegularFile(const std::filesystem::path& path,
                                                         std::size_t limit);

} // namespace velmor

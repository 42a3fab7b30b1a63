#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmor {

/// The one place that touches the databases of DJ programs. They belong to running programs:
/// nothing is written, no file is created and a lock is waited for only briefly. Any thread.
class SQLiteReader {
public:
  /// Runs the query and returns the first `columns` columns of its first row as trimmed texts, ""
  /// for NULL. A text ends at its first NUL. Throws NowPlayingError::noActiveSession on every
  /// failure, an empty result among them.
  [[nodiscard]] static std::vector<std::string> readTextRow(const std::filesystem::path& path,
                                                            const std::string& query, int columns);

  /// True for a database that this user may read.
  [[nodiscard]] static bool canRead(const std::filesystem::path& path);
};

} // namespace velmor

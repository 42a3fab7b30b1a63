#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmor {

/// Reads the databases of DJ programs. The programs may be running, so Velmor writes nothing,
/// creates no file and waits at most 150 ms for a lock. Stateless; any thread.
class SQLiteReader {
public:
  /// Runs the query and returns the first `columns` columns of its first row as trimmed texts, ""
  /// for NULL. A text ends at its first NUL. Throws NowPlayingError::noActiveSession when the
  /// database cannot be read, the query is wrong or there is no row.
  [[nodiscard]] static std::vector<std::string> readTextRow(const std::filesystem::path& path,
                                                            const std::string& query, int columns);

  /// True when the file is a database that this user may read.
  [[nodiscard]] static bool canRead(const std::filesystem::path& path);
};

} // namespace velmor

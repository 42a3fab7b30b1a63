#pragma once

#include "base/Database.h"
#include "base/Text.h"
#include "platform/MainLoop.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace velmor {

struct Platform;

/// When to give a query up.
struct QueryLimits {
  Seconds deadline{2};
  /// Asked again and again while the query runs, on its thread.
  std::function<bool()> isCancelled = nullptr;
  /// Longer texts are cut.
  std::size_t mostCharacters = text::mostCharacters;

  /// The usual ones, and that the query ends when the program does.
  [[nodiscard]] static QueryLimits untilQuit(const Platform& platform);
};

/// Reads the databases of DJ programs. The programs may be running, so Velmor writes nothing,
/// creates no file and waits at most 150 ms for a lock. A database whose newest rows cannot be seen
/// is not read at all: better no track than an old one. Stateless; any thread.
class SQLiteReader {
public:
  using Obstacle = Database::Obstacle;

  /// Runs the query and returns the first `columns` columns of its first row as trimmed texts, ""
  /// for NULL. A text ends at its first NUL. Throws NowPlayingError::noActiveSession when the
  /// database cannot be read, the query is wrong or takes too long, or there is no row.
  [[nodiscard]] static std::vector<std::string> readTextRow(const std::filesystem::path& path,
                                                            const std::string& query, int columns,
                                                            const QueryLimits& limits = {});

  /// What keeps this user from reading the database.
  [[nodiscard]] static Obstacle obstacle(const std::filesystem::path& path);
};

} // namespace velmor

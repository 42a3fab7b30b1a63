#include "nowplaying/shared/SQLiteReader.h"

#include "nowplaying/shared/NowPlayingError.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

namespace velmor {

namespace {

constexpr std::chrono::milliseconds patience{150};

} // namespace

QueryLimits QueryLimits::untilQuit(const Platform& platform) {
  return {.isCancelled = [&workspace = platform.workspace] { return workspace.isTerminating(); }};
}

std::vector<std::string> SQLiteReader::readTextRow(const std::filesystem::path& path,
                                                   const std::string& query, int columns,
                                                   const QueryLimits& limits) {
  try {
    const auto database =
        Database::forReading(path, {patience, limits.deadline, limits.isCancelled});
    auto rows = database.query(query);
    if (!rows.next()) throw NowPlayingError::noActiveSession();
    std::vector<std::string> row;
    row.reserve(static_cast<std::size_t>(columns));
    for (int column = 0; column < columns; ++column)
      row.push_back(rows.text(column, limits.mostCharacters));
    // What this row does not show may have been written meanwhile.
    database.confirm();
    return row;
  } catch (const DatabaseError&) {
    throw NowPlayingError::noActiveSession();
  }
}

Database::Obstacle SQLiteReader::obstacle(const std::filesystem::path& path) {
  return Database::obstacle(path);
}

} // namespace velmor

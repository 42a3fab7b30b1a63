#include "nowplaying/SQLiteReader.h"

#include "nowplaying/NowPlayingError.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <memory>

namespace velmor {

namespace {

namespace fs = std::filesystem;
using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Obstacle = SQLiteReader::Obstacle;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

constexpr int busyTimeoutMilliseconds = 150;
/// The largest value that SQLite may put together, in bytes.
constexpr int largestValue = 16 * 1024 * 1024;
/// Between two looks at the clock: so many take well below a millisecond.
constexpr int stepsBetweenLooks = 1000;

fs::path companion(const fs::path& path, const char* suffix) {
  auto beside = path;
  beside += suffix;
  return beside;
}

bool isMissing(const fs::path& path) {
  std::error_code ignored;
  return !fs::exists(path, ignored);
}

/// Opening anything else than a file may block for ever, and SQLite opens what lies beside it too.
bool areFiles(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) &&
         std::ranges::all_of(std::array{"-wal", "-shm", "-journal"}, [&](const char* suffix) {
           const auto beside = companion(path, suffix);
           return isMissing(beside) || fs::is_regular_file(beside, ignored);
         });
}

bool usesWriteAheadLog(const fs::path& path) {
  constexpr std::size_t readVersion = 19;
  constexpr char writeAheadLog = 2;
  std::array<char, readVersion + 1> header{};
  std::ifstream file(path, std::ios::binary);
  return file.read(header.data(), header.size()) && header[readVersion] == writeAheadLog;
}

enum class Log {
  /// SQLite can read what there is.
  readable,
  /// Nobody has the database open, and everything is in it. SQLite would create what is missing
  /// even for a reader, and leave it there.
  leftBehind,
  /// It holds rows that cannot be seen.
  stray
};

Log stateOfLog(const fs::path& path) {
  if (!usesWriteAheadLog(path)) return Log::readable;
  std::error_code error;
  const auto log = companion(path, "-wal");
  const auto size = fs::file_size(log, error);
  const bool isEmpty = error ? isMissing(log) : size == 0;
  const bool hasIndex = !isMissing(companion(path, "-shm"));
  if (isEmpty) return hasIndex && !error ? Log::readable : Log::leftBehind;
  return hasIndex ? Log::readable : Log::stray;
}

Connection open(const fs::path& path, bool immutable) {
  const auto name = immutable ? "file:" + text::percentEncoded(path.string(), "/") + "?immutable=1"
                              : path.string();
  const int flags = SQLITE_OPEN_READONLY | (immutable ? SQLITE_OPEN_URI : 0);
  sqlite3* handle = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &handle, flags, nullptr);
  Connection connection(handle, &sqlite3_close);
  if (result != SQLITE_OK || !connection) throw NowPlayingError::noActiveSession();
  sqlite3_busy_timeout(handle, busyTimeoutMilliseconds);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, largestValue);
  return connection;
}

/// Ends a query that takes too long, or that nobody waits for any more.
class Watch {
public:
  Watch(const Connection& connection, const QueryLimits& limits)
      : cancelled(limits.isCancelled), end(std::chrono::steady_clock::now() + limits.deadline) {
    sqlite3_progress_handler(connection.get(), stepsBetweenLooks, isOver, this);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

private:
  static int isOver(void* watch) {
    const auto& self = *static_cast<Watch*>(watch);
    const bool isCancelled = self.cancelled && self.cancelled();
    return isCancelled || std::chrono::steady_clock::now() >= self.end ? 1 : 0;
  }

  const std::function<bool()>& cancelled;
  const std::chrono::time_point<std::chrono::steady_clock, Seconds> end;
};

Statement prepare(const Connection& connection, const std::string& query) {
  sqlite3_stmt* handle = nullptr;
  const int result = sqlite3_prepare_v2(connection.get(), query.c_str(), -1, &handle, nullptr);
  Statement statement(handle, &sqlite3_finalize);
  if (result != SQLITE_OK || !statement) throw NowPlayingError::noActiveSession();
  return statement;
}

std::string columnText(const Statement& statement, int column, std::size_t mostCharacters) {
  const auto* const bytes = sqlite3_column_text(statement.get(), column);
  if (!bytes) return {};
  const auto text = text::trimmed(reinterpret_cast<const char*>(bytes));
  return std::string(text::trimmed(text::withValidUtf8(text::bounded(text, mostCharacters))));
}

} // namespace

QueryLimits QueryLimits::untilQuit(const Platform& platform) {
  return {.isCancelled = [&workspace = platform.workspace] { return workspace.isTerminating(); }};
}

std::vector<std::string> SQLiteReader::readTextRow(const fs::path& path, const std::string& query,
                                                   int columns, const QueryLimits& limits) {
  const auto log = areFiles(path) ? stateOfLog(path) : Log::stray;
  if (log == Log::stray) throw NowPlayingError::noActiveSession();
  const auto connection = open(path, log == Log::leftBehind);
  const Watch watch(connection, limits);
  const auto statement = prepare(connection, query);
  if (sqlite3_step(statement.get()) != SQLITE_ROW) throw NowPlayingError::noActiveSession();
  std::vector<std::string> row;
  row.reserve(static_cast<std::size_t>(columns));
  for (int column = 0; column < columns; ++column)
    row.push_back(columnText(statement, column, limits.mostCharacters));
  // The program may have been started meanwhile, and have written what this row does not show.
  if (log == Log::leftBehind && stateOfLog(path) != log) throw NowPlayingError::noActiveSession();
  return row;
}

Obstacle SQLiteReader::obstacle(const fs::path& path) {
  if (isMissing(path)) return Obstacle::missing;
  if (!areFiles(path)) return Obstacle::notAFile;
  if (stateOfLog(path) == Log::stray) return Obstacle::strayLog;
  try {
    static_cast<void>(readTextRow(path, "SELECT count(*) FROM sqlite_master", 1));
    return Obstacle::none;
  } catch (const NowPlayingError&) {
    return Obstacle::unreadable;
  }
}

} // namespace velmor

#include "base/Database.h"

#include "base/Text.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <fstream>

namespace velmor {

namespace {

namespace fs = std::filesystem;
using Obstacle = Database::Obstacle;

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

/// What stands in the way before the database is opened.
Obstacle obstacleBefore(const fs::path& path) {
  if (isMissing(path)) return Obstacle::missing;
  if (!areFiles(path)) return Obstacle::notAFile;
  return stateOfLog(path) == Log::stray ? Obstacle::strayLog : Obstacle::none;
}

DatabaseError failure(sqlite3* database, int result) {
  return DatabaseError(database ? sqlite3_errmsg(database) : sqlite3_errstr(result));
}

} // namespace

Query::Query(sqlite3* database, const std::string& statement)
    : handle(nullptr, &sqlite3_finalize), connection(database) {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database, statement.c_str(), -1, &prepared, nullptr);
  handle.reset(prepared);
  if (result != SQLITE_OK) throw failure(database, result);
  if (!handle) throw DatabaseError("there is no statement");
}

Query& Query::bind(std::string_view text) {
  sqlite3_bind_text(handle.get(), ++bound, text.data(), static_cast<int>(text.size()),
                    SQLITE_TRANSIENT); // NOLINT: the constant is a cast in C
  return *this;
}

Query& Query::bind(std::int64_t number) {
  sqlite3_bind_int64(handle.get(), ++bound, number);
  return *this;
}

Query& Query::bind(double number) {
  sqlite3_bind_double(handle.get(), ++bound, number);
  return *this;
}

void Query::run() {
  const int result = sqlite3_step(handle.get());
  if (result != SQLITE_DONE) throw failure(connection, result);
  sqlite3_reset(handle.get());
  bound = 0;
}

bool Query::next() {
  const int result = sqlite3_step(handle.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) throw failure(connection, result);
  return result == SQLITE_ROW;
}

std::string Query::text(int column, std::size_t most) const {
  const auto* const bytes = sqlite3_column_text(handle.get(), column);
  if (!bytes) return {};
  const auto text = text::bounded(text::trimmed(reinterpret_cast<const char*>(bytes)), most);
  return std::string(text::trimmed(text::withValidUtf8(text)));
}

double Query::number(int column) const {
  return sqlite3_column_double(handle.get(), column);
}

std::int64_t Query::integer(int column) const {
  return sqlite3_column_int64(handle.get(), column);
}

class Database::Watch {
public:
  explicit Watch(const DatabaseLimits& limits)
      : cancelled(limits.isCancelled), end(Clock::now() + limits.deadline) {}

  static int isOver(void* watch) {
    const auto& self = *static_cast<const Watch*>(watch);
    const bool isCancelled = self.cancelled && self.cancelled();
    return isCancelled || Clock::now() >= self.end ? 1 : 0;
  }

private:
  using Clock = std::chrono::steady_clock;

  const std::function<bool()> cancelled;
  const std::chrono::time_point<Clock, std::chrono::duration<double>> end;
};

Database::Database(sqlite3* opened)
    : watch(nullptr, [](Watch* kept) { delete kept; }) // NOLINT: a smart pointer's own
    , handle(opened, &sqlite3_close) {}

Database Database::open(const std::string& name, int flags, std::chrono::milliseconds patience) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &opened, flags, nullptr);
  Database database(opened);
  if (result != SQLITE_OK || !opened) throw failure(opened, result);
  sqlite3_busy_timeout(opened, static_cast<int>(patience.count()));
  return database;
}

Database Database::forReading(const fs::path& path, const DatabaseLimits& limits) {
  switch (obstacleBefore(path)) {
  case Obstacle::missing:
    throw DatabaseError("there is no such file");
  case Obstacle::notAFile:
    throw DatabaseError("not a file, or something beside it is none");
  case Obstacle::strayLog:
    throw DatabaseError("its newest rows lie in a log that was left behind");
  default:
    break;
  }
  const bool immutable = stateOfLog(path) == Log::leftBehind;
  const auto name = immutable ? "file:" + text::percentEncoded(path.string(), "/") + "?immutable=1"
                              : path.string();
  auto database =
      open(name, SQLITE_OPEN_READONLY | (immutable ? SQLITE_OPEN_URI : 0), limits.patience);
  if (immutable) database.leftBehind = path;
  sqlite3_limit(database.handle.get(), SQLITE_LIMIT_LENGTH, largestValue);
  database.watch.reset(new Watch(limits));
  sqlite3_progress_handler(database.handle.get(), stepsBetweenLooks, &Watch::isOver,
                           database.watch.get());
  return database;
}

Obstacle Database::obstacle(const fs::path& path) {
  if (const auto obstacle = obstacleBefore(path); obstacle != Obstacle::none) return obstacle;
  try {
    const auto database = forReading(path);
    auto tables = database.query("SELECT count(*) FROM sqlite_master");
    return tables.next() ? Obstacle::none : Obstacle::unreadable;
  } catch (const DatabaseError&) {
    return Obstacle::unreadable;
  }
}

void Database::confirm() const {
  if (!leftBehind.empty() && stateOfLog(leftBehind) != Log::leftBehind) {
    throw DatabaseError("another program has begun to write it");
  }
}

Database Database::forWriting(const std::filesystem::path& path,
                              std::chrono::milliseconds patience) {
  return open(path.string(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, patience);
}

void Database::run(const std::string& statements) const {
  const int result = sqlite3_exec(handle.get(), statements.c_str(), nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) throw failure(handle.get(), result);
}

Query Database::query(const std::string& statement) const {
  return {handle.get(), statement};
}

} // namespace velmor

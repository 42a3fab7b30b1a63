#include "base/Database.h"

#include "base/Text.h"

#include <sqlite3.h>

#include <array>
#include <fstream>

namespace velmor {

namespace {

/// True for a write-ahead-logging database without its log or the log's index: nobody has it open.
/// SQLite would create what is missing even for a reader, and leave it there.
bool isLeftBehind(const std::filesystem::path& path) {
  constexpr std::size_t readVersion = 19;
  constexpr char writeAheadLog = 2;
  std::array<char, readVersion + 1> header{};
  std::ifstream file(path, std::ios::binary);
  if (!file.read(header.data(), header.size())) return false;
  if (header[readVersion] != writeAheadLog) return false;
  const auto isMissing = [&path](const char* suffix) {
    auto companion = path;
    companion += suffix;
    std::error_code ignored;
    return !std::filesystem::exists(companion, ignored);
  };
  return isMissing("-wal") || isMissing("-shm");
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

std::string Query::text(int column) const {
  const auto* const bytes = sqlite3_column_text(handle.get(), column);
  if (!bytes) return {};
  const auto valid = text::withValidUtf8(reinterpret_cast<const char*>(bytes));
  return std::string(text::trimmed(valid));
}

double Query::number(int column) const {
  return sqlite3_column_double(handle.get(), column);
}

std::int64_t Query::integer(int column) const {
  return sqlite3_column_int64(handle.get(), column);
}

Database::Database(sqlite3* opened) : handle(opened, &sqlite3_close) {}

Database Database::open(const std::string& name, int flags, std::chrono::milliseconds patience) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &opened, flags, nullptr);
  Database database(opened);
  if (result != SQLITE_OK || !opened) throw failure(opened, result);
  sqlite3_busy_timeout(opened, static_cast<int>(patience.count()));
  return database;
}

Database Database::forReading(const std::filesystem::path& path,
                              std::chrono::milliseconds patience) {
  const bool immutable = isLeftBehind(path);
  const auto name = immutable ? "file:" + text::percentEncoded(path.string(), "/") + "?immutable=1"
                              : path.string();
  return open(name, SQLITE_OPEN_READONLY | (immutable ? SQLITE_OPEN_URI : 0), patience);
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

#include "nowplaying/SQLiteReader.h"

#include "base/Text.h"
#include "nowplaying/NowPlayingError.h"

#include <sqlite3.h>

#include <array>
#include <fstream>
#include <memory>

namespace velmor {

namespace {

using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

constexpr int busyTimeoutMilliseconds = 150;

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

Connection open(const std::filesystem::path& path) {
  const bool immutable = isLeftBehind(path);
  const auto name = immutable ? "file:" + text::percentEncoded(path.string(), "/") + "?immutable=1"
                              : path.string();
  const int flags = SQLITE_OPEN_READONLY | (immutable ? SQLITE_OPEN_URI : 0);
  sqlite3* handle = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &handle, flags, nullptr);
  Connection connection(handle, &sqlite3_close);
  if (result != SQLITE_OK || !connection) throw NowPlayingError::noActiveSession();
  sqlite3_busy_timeout(handle, busyTimeoutMilliseconds);
  return connection;
}

Statement prepare(const Connection& connection, const std::string& query) {
  sqlite3_stmt* handle = nullptr;
  const int result = sqlite3_prepare_v2(connection.get(), query.c_str(), -1, &handle, nullptr);
  Statement statement(handle, &sqlite3_finalize);
  if (result != SQLITE_OK || !statement) throw NowPlayingError::noActiveSession();
  return statement;
}

std::string columnText(const Statement& statement, int column) {
  const auto* const bytes = sqlite3_column_text(statement.get(), column);
  if (!bytes) return {};
  const auto valid = text::withValidUtf8(reinterpret_cast<const char*>(bytes));
  return std::string(text::trimmed(valid));
}

} // namespace

std::vector<std::string> SQLiteReader::readTextRow(const std::filesystem::path& path,
                                                   const std::string& query, int columns) {
  const auto connection = open(path);
  const auto statement = prepare(connection, query);
  if (sqlite3_step(statement.get()) != SQLITE_ROW) throw NowPlayingError::noActiveSession();
  std::vector<std::string> row;
  row.reserve(static_cast<std::size_t>(columns));
  for (int column = 0; column < columns; ++column)
    row.push_back(columnText(statement, column));
  return row;
}

bool SQLiteReader::canRead(const std::filesystem::path& path) {
  try {
    static_cast<void>(readTextRow(path, "SELECT count(*) FROM sqlite_master", 1));
    return true;
  } catch (const NowPlayingError&) {
    return false;
  }
}

} // namespace velmor

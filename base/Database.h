#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace velmor {

/// A database could not be read or written; the message is SQLite's own.
class DatabaseError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A query and where it stands in its rows. Columns count from 0. While it stands at a row, the
/// database stays locked against writers: read what is wanted, then let it go.
class Query {
public:
  Query(sqlite3* database, const std::string& statement);

  /// Sets the statement's next question mark, from the first on.
  Query& bind(std::string_view text);
  Query& bind(std::int64_t number);
  Query& bind(double number);
  /// Carries out a statement that has no rows, and makes it ready to be bound again. Throws
  /// DatabaseError.
  void run();

  /// Goes to the next row; false behind the last one. Throws DatabaseError, also when somebody
  /// else holds the lock for longer than the database waits.
  [[nodiscard]] bool next();

  /// The column as trimmed, valid UTF-8; "" for NULL. A text ends at its first NUL.
  [[nodiscard]] std::string text(int column) const;
  /// 0 for NULL and for what is no number.
  [[nodiscard]] double number(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;

private:
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> handle;
  sqlite3* connection;
  int bound = 0;
};

/// An SQLite database. One thread at a time.
class Database {
public:
  /// Opens another program's database to read it. That program may be running, so nothing is
  /// written and no file is created, and nobody waits longer than `patience` for a lock. Throws
  /// DatabaseError.
  [[nodiscard]] static Database forReading(const std::filesystem::path& path,
                                           std::chrono::milliseconds patience);

  /// Opens a database of Velmor's own, making it when it is missing. Waits as long as `forReading`
  /// does. Throws DatabaseError.
  [[nodiscard]] static Database forWriting(const std::filesystem::path& path,
                                           std::chrono::milliseconds patience);

  /// Carries out statements that have no rows. Throws DatabaseError.
  void run(const std::string& statements) const;

  /// Throws DatabaseError when the statement is wrong.
  [[nodiscard]] Query query(const std::string& statement) const;

private:
  explicit Database(sqlite3* opened);
  [[nodiscard]] static Database open(const std::string& name, int flags,
                                     std::chrono::milliseconds patience);

  std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle;
};

} // namespace velmor

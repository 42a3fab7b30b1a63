#pragma once

#include "base/Text.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
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

  /// The column as trimmed, valid UTF-8; "" for NULL. A text ends at its first NUL, or at so many
  /// characters.
  [[nodiscard]] std::string text(int column, std::size_t most = text::mostCharacters) const;
  /// 0 for NULL and for what is no number.
  [[nodiscard]] double number(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;

private:
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> handle;
  sqlite3* connection;
  int bound = 0;
};

/// When to give up.
struct DatabaseLimits {
  /// For a lock that somebody else holds.
  std::chrono::milliseconds patience{150};
  /// For everything that is done with the database.
  std::chrono::duration<double> deadline{2};
  /// Asked again and again while a query runs, on its thread.
  std::function<bool()> isCancelled = nullptr;
};

/// An SQLite database. One thread at a time.
class Database {
public:
  /// Why a database gives no rows.
  enum class Obstacle {
    none,
    missing,
    /// A folder, a pipe or a device in the place of the file, or of one that belongs to it.
    notAFile,
    /// A write-ahead log without its index lies beside it: what it holds cannot be seen without
    /// writing.
    strayLog,
    /// No right to read it, locked, damaged, or no database.
    unreadable
  };

  /// Opens another program's database to read it. That program may be running, so nothing is
  /// written and no file is created, and nobody waits for ever. A database whose newest rows cannot
  /// be seen is not opened: better none than old ones. Throws DatabaseError.
  [[nodiscard]] static Database forReading(const std::filesystem::path& path,
                                           const DatabaseLimits& limits = {});

  /// What keeps this user from reading the database.
  [[nodiscard]] static Obstacle obstacle(const std::filesystem::path& path);

  /// Throws DatabaseError when what was read may be old: its program has been started meanwhile.
  /// For a database opened for reading, when all that is wanted has been read.
  void confirm() const;

  /// Opens a database of Velmor's own, making it when it is missing, and waits at most so long for
  /// a lock. Throws DatabaseError.
  [[nodiscard]] static Database forWriting(const std::filesystem::path& path,
                                           std::chrono::milliseconds patience);

  /// Carries out statements that have no rows. Throws DatabaseError.
  void run(const std::string& statements) const;

  /// Throws DatabaseError when the statement is wrong.
  [[nodiscard]] Query query(const std::string& statement) const;

private:
  /// Ends what takes too long, or what nobody waits for any more.
  class Watch;

  explicit Database(sqlite3* opened);
  [[nodiscard]] static Database open(const std::string& name, int flags,
                                     std::chrono::milliseconds patience);

  /// Empty for a database that may change while it is read.
  std::filesystem::path leftBehind;
  std::unique_ptr<Watch, void (*)(Watch*)> watch;
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle;
};

} // namespace velmor

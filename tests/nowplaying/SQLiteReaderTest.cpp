#include "nowplaying/shared/SQLiteReader.h"

#include "nowplaying/shared/NowPlayingError.h"
#include "tests/support/DatabaseFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <map>
#include <sstream>

using namespace velmor;

namespace {

using Obstacle = SQLiteReader::Obstacle;
using Row = std::vector<std::string>;

constexpr auto oneRow = "CREATE TABLE t(x); INSERT INTO t VALUES('kept');";

class SQLiteReading : public testing::Test {
protected:
  std::optional<Row> read(const std::string& query = "SELECT x FROM t", int columns = 1,
                          const QueryLimits& limits = {}) {
    try {
      return SQLiteReader::readTextRow(path, query, columns, limits);
    } catch (const NowPlayingError& error) {
      EXPECT_EQ(error.errorCase(), NowPlayingError::Case::noActiveSession);
      return std::nullopt;
    }
  }

  /// Every file of the folder with its bytes, but the index of a write-ahead log, in which readers
  /// mark their place.
  std::map<std::string, std::string> folderContent() const {
    std::map<std::string, std::string> content;
    for (const auto& entry : std::filesystem::directory_iterator(path.parent_path())) {
      std::ostringstream bytes;
      if (!entry.path().string().ends_with("-shm")) bytes << std::ifstream(entry.path()).rdbuf();
      content[entry.path().filename()] = bytes.str();
    }
    return content;
  }

  void fill(const std::string& statements) { const DatabaseFile filled(path, statements); }

  TemporaryFolder folder;
  /// A name that means something else to an address.
  std::filesystem::path path = folder.path / "dj's ünö #1?mode=rwc%20/lib.sqlite";
};

TEST_F(SQLiteReading, GivesTheFirstRowAsTrimmedTexts) {
  fill(oneRow + std::string("INSERT INTO t VALUES('second')"));
  EXPECT_EQ(read(), Row{"kept"});
  EXPECT_EQ(read("SELECT NULL, 128.5, 7, '  two words' || char(10), 'cut' || char(0) || 'off', "
                 "CAST(x'41FF42' AS TEXT)",
                 8),
            (Row{"", "128.5", "7", "two words", "cut", "A\uFFFDB", "", ""}));
  EXPECT_EQ(read("SELECT x FROM t", 0), Row{});
}

TEST_F(SQLiteReading, FailsAlikeForEveryReason) {
  EXPECT_FALSE(read());
  EXPECT_FALSE(std::filesystem::exists(path.parent_path()));
  fill(oneRow);
  for (const auto* const query : {"SELECT x FROM t WHERE x = 'no'", "SELECT y FROM t", "",
                                  "INSERT INTO t VALUES('written')"}) {
    EXPECT_FALSE(read(query)) << query;
  }
  EXPECT_EQ(read("SELECT count(*) FROM t"), Row{"1"});
}

TEST_F(SQLiteReading, TakesDamagedFilesForEmptyOnes) {
  fill("PRAGMA journal_mode = WAL;" + std::string(oneRow));
  std::ostringstream whole;
  whole << std::ifstream(path).rdbuf();
  for (const std::size_t length : {0U, 19U, 20U, 100U, 4096U}) {
    std::ofstream(path) << whole.str().substr(0, length);
    const auto before = folderContent();
    EXPECT_FALSE(read()) << length;
    EXPECT_EQ(folderContent(), before) << length;
  }
}

TEST_F(SQLiteReading, DoesNotWaitForAWriterThatKeepsItsLock) {
  DatabaseFile writer(path, oneRow);
  writer.run("BEGIN EXCLUSIVE; INSERT INTO t VALUES('new')");
  EXPECT_FALSE(read());
  writer.run("COMMIT");
  EXPECT_EQ(read("SELECT count(*) FROM t"), Row{"2"});
}

TEST_F(SQLiteReading, SeesWhatALiveLogHoldsAndLeavesItAlone) {
  DatabaseFile writer(path, "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;" +
                                std::string(oneRow) + "UPDATE t SET x = 'logged'");
  writer.run("BEGIN IMMEDIATE; UPDATE t SET x = 'uncommitted'");
  // Beside it, what a program leaves that has crashed: the database, its log and the log's index.
  const auto crashed = folder.path / "crashed";
  std::filesystem::copy(path.parent_path(), crashed);
  for (const auto& database : {path, crashed / path.filename()}) {
    path = database;
    const auto before = folderContent();
    EXPECT_EQ(read(), Row{"logged"}) << path;
    EXPECT_EQ(folderContent(), before) << path;
  }
}

TEST_F(SQLiteReading, NeverGivesARowThatALogWithoutItsIndexMayHaveReplaced) {
  DatabaseFile writer(path, "PRAGMA journal_mode = WAL;" + std::string(oneRow) +
                                "PRAGMA wal_checkpoint(TRUNCATE)");
  const auto whole = path;
  const std::tuple<const char*, const char*, bool> rows[] = {
      {"nothing new", "SELECT 1", true}, {"a newer row", "UPDATE t SET x = 'new'", false}};
  for (const auto& [name, statement, isRead] : rows) {
    writer.run(statement);
    path = folder.path / name / whole.filename();
    std::filesystem::copy(whole.parent_path(), path.parent_path());
    std::filesystem::remove(path.string() + "-shm");
    const auto before = folderContent();
    EXPECT_EQ(read(), isRead ? std::optional(Row{"kept"}) : std::nullopt) << name;
    EXPECT_EQ(SQLiteReader::obstacle(path), isRead ? Obstacle::none : Obstacle::strayLog) << name;
    EXPECT_EQ(folderContent(), before) << name;
  }
  std::filesystem::remove(path.string() + "-wal");
  EXPECT_EQ(read(), Row{"kept"}) << "no log, nothing newer";
}

TEST_F(SQLiteReading, OpensNothingButFiles) {
  EXPECT_EQ(SQLiteReader::obstacle(path), Obstacle::missing);
  fill(oneRow);
  for (const auto* const suffix : {"-wal", "-shm", "-journal", ""}) {
    const auto place = path.string() + suffix;
    std::filesystem::remove(place);
    ASSERT_EQ(mkfifo(place.c_str(), 0600), 0);
    EXPECT_FALSE(read()) << suffix;
    EXPECT_EQ(SQLiteReader::obstacle(path), Obstacle::notAFile) << suffix;
    std::filesystem::remove(place);
  }
}

TEST_F(SQLiteReading, GivesUpWhatTakesTooLongOrTooMuch) {
  fill(oneRow);
  const auto* const endless = "WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n) "
                              "SELECT count(*) FROM n";
  EXPECT_FALSE(read(endless, 1, {.deadline = Seconds{0.01}}));
  int looks = 0;
  EXPECT_FALSE(
      read(endless, 1, {.deadline = Seconds{1e6}, .isCancelled = [&] { return ++looks == 3; }}));
  EXPECT_EQ(looks, 3);
  EXPECT_FALSE(read("SELECT hex(zeroblob(100000000))"));
  EXPECT_EQ(read("SELECT hex(zeroblob(1000000))").value().front().size(), text::mostCharacters);
}

TEST_F(SQLiteReading, ReadsALogDatabaseLeftBehindWithoutATrace) {
  fill("PRAGMA journal_mode = WAL;" + std::string(oneRow));
  using std::filesystem::perms;
  for (const auto rights : {perms::owner_all, perms::owner_read | perms::owner_exec}) {
    std::filesystem::permissions(path.parent_path(), rights);
    EXPECT_EQ(read(), Row{"kept"});
    EXPECT_EQ(folderContent().size(), 1U);
  }
  std::filesystem::permissions(path.parent_path(), perms::owner_all);
  // Of the two versions in the header, the second is the one that tells readers of a log.
  std::fstream(path).seekp(18) << "\x01\x02";
  EXPECT_EQ(read(), Row{"kept"});
  EXPECT_EQ(folderContent().size(), 1U);
  std::fstream(path).seekp(18) << "\x02\x01";
  const DatabaseFile writer(path, "BEGIN EXCLUSIVE");
  EXPECT_FALSE(read()) << "without a log a writer's lock holds";
}

} // namespace

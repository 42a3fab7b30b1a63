#pragma once

#include "tests/fakes/FakePlatform.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace velmor {

/// A DJ program's end of a database: open for writing until it is destroyed.
class DatabaseFile {
public:
  explicit DatabaseFile(const std::filesystem::path& path, const std::string& statements = "") {
    std::filesystem::create_directories(path.parent_path());
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
    connection.reset(handle);
    run("PRAGMA synchronous = OFF;" + statements);
  }

  void run(const std::string& statements) {
    EXPECT_EQ(sqlite3_exec(connection.get(), statements.c_str(), nullptr, nullptr, nullptr),
              SQLITE_OK)
        << sqlite3_errmsg(connection.get());
  }

private:
  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> connection{nullptr, &sqlite3_close};
};

/// A home on disk whose databases the fake system knows of.
class HomeWithDatabases : public FakePlatform {
public:
  HomeWithDatabases() { environment.home = folder.path; }

  void addDatabase(const std::filesystem::path& path, const std::string& statements) {
    const DatabaseFile database(folder.path / path, statements);
    files.files[folder.path / path];
  }

  /// Writes a file that is no database.
  void put(const std::filesystem::path& path, const std::string& bytes) const {
    std::ofstream(folder.path / path) << bytes;
  }

private:
  TemporaryFolder folder;
};

} // namespace velmor

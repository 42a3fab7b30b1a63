#include "platform/linux/system/PosixEnvironment.h"
#include "platform/linux/system/PosixFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>

namespace velmor {

namespace {

namespace fs = std::filesystem;

class FilesTest : public testing::Test {
protected:
  std::size_t filesInFolder() { return files.list(folder.path).size(); }

  TemporaryFolder folder;
  PosixFileManager files;
  fs::path path = folder.path / "config.json";
};

TEST_F(FilesTest, WrittenFilesArePrivateAndLeaveNothingElse) {
  const auto living = ".config.json." + std::to_string(::getppid()) + "-1.velmor-new";
  for (const auto& name : {living, std::string(".config.json.notes.velmor-new"), path.string()})
    std::ofstream(folder.path / name) << "half";
  ::chmod(path.c_str(), 0644);
  files.writeAtomically(path, "new");
  EXPECT_EQ(files.read(path), "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
  EXPECT_EQ(filesInFolder(), 3U) << "what other writers still write is left alone";
  const auto link = folder.path / "link";
  fs::create_symlink(path, link);
  files.writeAtomically(link, "newer");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(files.read(path), "newer");
}

TEST_F(FilesTest, StrangeLinksAreNotWrittenThrough) {
  std::ofstream(folder.path / "foreign") << "x";
  constexpr uid_t nobody = 65534;
  const bool given = ::chown((folder.path / "foreign").c_str(), nobody, nobody) == 0;
  for (const auto* const target : {"nowhere", "config.json", given ? "foreign" : "/proc/version"}) {
    fs::remove(path);
    fs::create_symlink(target, path);
    EXPECT_THROW(files.writeAtomically(path, "key"), FileError) << target;
    EXPECT_TRUE(fs::is_symlink(path)) << target;
  }
  EXPECT_EQ(filesInFolder(), 2U);
  files.move(path, folder.path / "kept");
  EXPECT_TRUE(fs::is_symlink(folder.path / "kept"));
  EXPECT_THROW(files.move(path, folder.path / "kept"), FileError);
}

TEST_F(FilesTest, FailedWritesKeepTheOldFileAndCleanUp) {
  files.writeAtomically(path, "old");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{4096, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  std::string message;
  try {
    files.writeAtomically(path, std::string(100'000, 'x'));
  } catch (const FileError& error) {
    message = error.what();
  }
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(message, "The file \"" + path.string() + "\" could not be written: File too large.");
  EXPECT_EQ(files.read(path), "old");

  fs::create_directory(folder.path / "taken");
  EXPECT_THROW(files.writeAtomically(folder.path / "taken", "x"), FileError);
  EXPECT_THROW(files.createFolder(path / "below", 0700), FileError);
  EXPECT_EQ(filesInFolder(), 2U);
}

TEST_F(FilesTest, WritersKilledAtAnyMomentLeaveAWholeFile) {
  const std::string first(300'000, 'a');
  const std::string second(200'000, 'b');
  for (int round = 0; round < 15; ++round) {
    std::array<int, 2> progress{};
    ASSERT_EQ(::pipe(progress.data()), 0);
    const pid_t writer = ::fork();
    if (writer == 0) {
      while (true) {
        files.writeAtomically(path, first);
        files.writeAtomically(path, second);
        if (::write(progress[1], "x", 1) != 1) ::_exit(1);
      }
    }
    char step = 0;
    for (int steps = 0; steps <= round % 3; ++steps)
      ASSERT_EQ(::read(progress[0], &step, 1), 1);
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    ::close(progress[0]);
    ::close(progress[1]);
    const auto content = files.read(path);
    ASSERT_TRUE(content == first || content == second);
    files.writeAtomically(path, first);
    ASSERT_EQ(filesInFolder(), 1U);
  }
}

TEST_F(FilesTest, AFolderIsHeldByOneUntilItsHolderIsKilled) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  const auto holder = ::fork();
  if (holder == 0) {
    const auto hold = files.hold(folder.path);
    [[maybe_unused]] const auto written = ::write(ends[1], hold ? "+" : "-", 1);
    ::pause();
  }
  char told = 0;
  ASSERT_EQ(::read(ends[0], &told, 1), 1);
  EXPECT_EQ(told, '+');
  EXPECT_FALSE(files.hold(folder.path));
  ::kill(holder, SIGKILL);
  ::waitpid(holder, nullptr, 0);
  EXPECT_TRUE(files.hold(folder.path));
  EXPECT_FALSE(files.hold(folder.path / "none"));
}

TEST_F(FilesTest, ToldApartFilesFoldersAndPrograms) {
  files.createFolder(folder.path / "a" / "b", 0700);
  EXPECT_EQ(fs::status(folder.path / "a").permissions(), fs::perms(0700));
  files.writeAtomically(path, "four");
  EXPECT_EQ(files.size(path), 4U);
  const std::array<timespec, 2> times = {{{0, 0}, {1'700'000'000, 123'456'789}}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
  const auto entries = files.list(folder.path);
  const auto entry = std::ranges::find(entries, path, &FolderEntry::path);
  ASSERT_NE(entry, entries.end());
  EXPECT_EQ(entry->modified, std::chrono::system_clock::time_point(
                                 std::chrono::nanoseconds(1'700'000'000'123'456'789)));
  EXPECT_FALSE(files.isExecutable(path));
  files.setPermissions(path, 0700);
  EXPECT_TRUE(files.isExecutable(path));
  EXPECT_FALSE(files.isExecutable(folder.path));
  EXPECT_EQ(files.read(folder.path), std::nullopt);
  files.remove(folder.path / "a");
  EXPECT_TRUE(files.list(folder.path / "a").empty());
  EXPECT_THROW(files.setPermissions(folder.path / "a", 0700), FileError);
}

TEST_F(FilesTest, OnlyRegularFilesOfBoundedLengthAreRead) {
  const auto pipe = folder.path / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  fs::create_symlink(pipe, folder.path / "link");
  for (const fs::path& no : {pipe, folder.path / "link", fs::path("/dev/zero")})
    EXPECT_EQ(files.read(no), std::nullopt) << no;
  std::ofstream(path).close();
  fs::resize_file(path, FileManager::readLimit);
  EXPECT_EQ(files.read(path).value_or("").size(), FileManager::readLimit);
  fs::resize_file(path, FileManager::readLimit + 1);
  EXPECT_EQ(files.read(path), std::nullopt);
  // Its size is no measure of such a file.
  EXPECT_NE(files.read("/proc/self/stat").value_or(""), "");
}

TEST(EnvironmentTest, FoldersComeFromAbsoluteVariablesOnly) {
  ::setenv("HOME", "/home/dj", 1);
  const PosixEnvironment environment;
  const std::string absolute = "/somewhere";
  for (const std::string value : {"", "relative", "/somewhere"}) {
    ::setenv("XDG_CONFIG_HOME", value.c_str(), 1);
    ::setenv("TMPDIR", value.c_str(), 1);
    const bool counts = value == absolute;
    EXPECT_EQ(environment.applicationSupportDirectory(), counts ? absolute : "/home/dj/.config");
    EXPECT_EQ(environment.temporaryDirectory(), counts ? absolute : "/tmp");
  }
  ::unsetenv("TMPDIR");
  EXPECT_EQ(environment.variable("TMPDIR"), std::nullopt);
  ::unsetenv("HOME");
  EXPECT_TRUE(environment.homeDirectory().is_absolute());
}

} // namespace

} // namespace velmor

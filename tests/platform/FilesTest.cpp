#include "platform/linux/FolderBundle.h"
#include "platform/linux/GioWorkspace.h"
#include "platform/linux/PosixEnvironment.h"
#include "platform/linux/PosixFileManager.h"
#include "tests/platform/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

namespace velmor {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class FilesTest : public testing::Test {
protected:
  std::size_t filesInFolder() { return files.list(folder.path).size(); }

  TemporaryFolder folder;
  PosixFileManager files;
  fs::path path = folder.path / "config.json";
};

TEST_F(FilesTest, WrittenFilesArePrivateAndLeaveNothingElse) {
  files.writeAtomically(path, "old");
  ::chmod(path.c_str(), 0644);
  files.writeAtomically(path, "new");
  EXPECT_EQ(files.read(path), "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
  EXPECT_EQ(filesInFolder(), 1U);
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
  EXPECT_THROW(files.writeAtomically(folder.path / "missing" / "file", "x"), FileError);
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

TEST_F(FilesTest, TemporariesOfLivingWritersAreLeftAlone) {
  const auto living =
      folder.path / (".config.json." + std::to_string(::getppid()) + "-1.velmor-new");
  std::ofstream(living) << "half";
  std::ofstream(folder.path / ".config.json.notes.velmor-new") << "of the user";
  files.writeAtomically(path, "new");
  EXPECT_EQ(filesInFolder(), 3U);
}

TEST_F(FilesTest, ToldApartFilesFoldersAndPrograms) {
  files.createFolder(folder.path / "a" / "b", 0700);
  files.createFolder(folder.path / "a" / "b", 0700);
  EXPECT_EQ(fs::status(folder.path / "a").permissions(), fs::perms(0700));
  files.writeAtomically(path, "four");
  EXPECT_EQ(files.size(path), 4U);
  EXPECT_FALSE(files.isExecutable(path));
  files.setPermissions(path, 0700);
  EXPECT_TRUE(files.isExecutable(path));
  EXPECT_FALSE(files.isExecutable(folder.path));
  EXPECT_EQ(files.size(folder.path), std::nullopt);
  EXPECT_EQ(files.read(folder.path), std::nullopt);
  EXPECT_TRUE(files.list(folder.path / "missing").empty());
  files.remove(folder.path / "a");
  EXPECT_FALSE(files.exists(folder.path / "a"));
  EXPECT_THROW(files.setPermissions(folder.path / "a", 0700), FileError);
}

TEST_F(FilesTest, BundlesAnswerForWhatTheyHold) {
  const auto root = folder.path / "share" / "velmor";
  EXPECT_EQ(FolderBundle::folderOfExecutable("/opt/bin/velmor"), "/opt/share/velmor");
  files.createFolder(root / "Web", 0755);
  EXPECT_EQ(FolderBundle::folderOfExecutable(folder.path / "velmor"), root);
  std::ofstream(root / "Web" / "index.html") << "page";
  std::ofstream(root / "Info.json") << R"({"Version": "1.2.3", "Number": 4})";
  const FolderBundle bundle(root);
  EXPECT_EQ(bundle.resource("index", "html", "Web"), root / "Web" / "index.html");
  EXPECT_EQ(bundle.resource("index", "html", ""), std::nullopt);
  EXPECT_EQ(bundle.informationEntry("Version"), "1.2.3");
  EXPECT_EQ(bundle.informationEntry("Number"), std::nullopt);
  std::ofstream(root / "Info.json") << "{";
  EXPECT_EQ(FolderBundle(root).informationEntry("Version"), std::nullopt);
}

TEST(EnvironmentTest, FoldersComeFromAbsoluteVariablesOnly) {
  ::setenv("HOME", "/home/dj", 1);
  const PosixEnvironment environment;
  struct Case {
    const char* value;
    const char* support;
    const char* temporary;
  };
  for (const auto& [value, support, temporary] :
       {Case{"", "/home/dj/.config", "/tmp"}, Case{"relative", "/home/dj/.config", "/tmp"},
        Case{"/somewhere", "/somewhere", "/somewhere"}}) {
    ::setenv("XDG_CONFIG_HOME", value, 1);
    ::setenv("TMPDIR", value, 1);
    EXPECT_EQ(environment.applicationSupportDirectory(), support);
    EXPECT_EQ(environment.temporaryDirectory(), temporary);
    EXPECT_EQ(environment.variable("TMPDIR"), value);
  }
  ::unsetenv("TMPDIR");
  EXPECT_EQ(environment.variable("TMPDIR"), std::nullopt);
  ::unsetenv("HOME");
  EXPECT_TRUE(environment.homeDirectory().is_absolute());
}

TEST(WorkspaceTest, AURLHasAScheme) {
  for (const char* url : {"https://example.org/?a=b", "spotify:track:1", "x+y-z.1:"})
    EXPECT_TRUE(hasScheme(url)) << url;
  for (const char* text : {"", "foo", "/etc/x", "--help", "-a:b", "1a:b", ":x", "a b:c", "ä:b"})
    EXPECT_FALSE(hasScheme(text)) << text;
}

} // namespace

} // namespace velmor

#include "platform/linux/desktop/DesktopEntries.h"

#include "tests/fakes/FakeSystem.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

namespace velmor {

namespace {

namespace fs = std::filesystem;

class DesktopEntriesTest : public testing::Test {
protected:
  DesktopEntriesTest() {
    environment.variables["XDG_DATA_HOME"] = folder.path / "own";
    environment.variables["XDG_DATA_DIRS"] = (folder.path / "shared").string() + ":/nowhere";
    write("shared/applications/org.mixxx.Mixxx.desktop", "Name=Mixxx\nExec=/usr/bin/mixxx -d %F");
    write("shared/applications/browser.desktop",
          "Name=Browser\nName[de]=Stöberer\nExec=env X=1 browse\nStartupWMClass=Browser-Window");
    write("shared/applications/kde/viewer.desktop", "Name=Viewer\nExec=viewer");
    write("shared/applications/link.desktop", "Name=Link\nExec=link\nType=Link");
    write("shared/applications/large.desktop", "Exec=large\n#" + std::string(2'000'000, 'x'));
    // Nobody ever writes into it.
    mkfifo((folder.path / "shared/applications/pipe.desktop").c_str(), 0600);
    write("shared/applications/broken.desktop", "Name=Broken\nExec=\"unclosed");
    // Opening it would wait for somebody who writes.
    ::mkfifo((folder.path / "shared/applications/pipe.desktop").c_str(), 0600);
  }

  void write(const std::string& name, const std::string& keys) {
    const auto path = folder.path / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "[Desktop Entry]\nType=Application\n" << keys << "\n";
  }

  TemporaryFolder folder;
  FakeEnvironment environment;
};

std::string identifierOf(const std::optional<DesktopEntry>& entry) {
  return entry ? entry->identifier : "";
}

TEST_F(DesktopEntriesTest, FindsApplications) {
  DesktopEntries entries(environment);
  entries.refresh();
  EXPECT_EQ(identifierOf(entries.forProgram("mixxx")), "org.mixxx.Mixxx");
  EXPECT_EQ(identifierOf(entries.forWindowClass("MIXXX")), "org.mixxx.Mixxx");
  EXPECT_EQ(identifierOf(entries.forWindowClass("browser-window")), "browser");
  // It has said that its windows are of another class.
  EXPECT_EQ(identifierOf(entries.forWindowClass("browser")), "");
  EXPECT_EQ(entries.forIdentifier("browser")->name, "Browser");
  EXPECT_EQ(identifierOf(entries.forProgram("viewer")), "kde-viewer");
  for (const auto* program : {"link", "large", ""})
    EXPECT_EQ(identifierOf(entries.forProgram(program)), "") << program;
}

TEST_F(DesktopEntriesTest, NoticesWhatIsInstalledAndPrefersTheUsersOwn) {
  DesktopEntries entries(environment);
  entries.refresh();
  // A folder's time may be too coarse to tell two changes of one moment apart.
  const auto earlier = fs::file_time_type::clock::now() - std::chrono::hours(1);
  write("own/applications/browser.desktop", "Name=Mine\nExec=browse");
  fs::last_write_time(folder.path / "own/applications", earlier);
  entries.refresh();
  EXPECT_EQ(entries.forIdentifier("browser")->name, "Mine");
  fs::remove_all(folder.path / "shared");
  entries.refresh();
  EXPECT_EQ(identifierOf(entries.forProgram("mixxx")), "");
  EXPECT_EQ(entries.forIdentifier("browser")->name, "Mine");
}

} // namespace

} // namespace velmor

#include "platform/linux/loop/InotifyWatcher.h"

#include "platform/linux/loop/GlibMainLoop.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <utility>

using namespace velmor;

namespace {

/// Lets a loop run until a change has been noticed, or for this long.
bool isNoticed(bool& noticed, Seconds longest) {
  GlibMainLoop loop;
  const auto end = loop.callLater(MainLoop::Lane::Display, longest, [&] { loop.quit(); });
  const auto look = loop.callEvery(MainLoop::Lane::Display, Seconds{0.01}, [&] {
    if (noticed) loop.quit();
  });
  loop.run();
  return std::exchange(noticed, false);
}

TEST(InotifyWatcher, NoticesWhatItIsToldToWatch) {
  TemporaryFolder folder;
  bool noticed = false;
  const auto library = folder.path / "library";
  std::filesystem::create_directories(folder.path / "music");
  const auto write = [](const std::filesystem::path& path) { std::ofstream(path) << "x"; };
  auto watch = InotifyWatcher().watch(
      {.folders = {folder.path / "music", folder.path / "none"}, .files = {library}},
      [&] { noticed = true; });
  constexpr Seconds patience{30};
  constexpr Seconds moment{0.2};
  write(folder.path / "log");
  EXPECT_FALSE(isNoticed(noticed, moment)) << "another file beside the library";
  write(library);
  EXPECT_TRUE(isNoticed(noticed, patience));
  std::filesystem::rename(library, folder.path / "old");
  EXPECT_TRUE(isNoticed(noticed, patience));
  write(folder.path / "music/1.mp3");
  EXPECT_TRUE(isNoticed(noticed, patience));
  watch.reset();
  std::filesystem::remove(folder.path / "music/1.mp3");
  EXPECT_FALSE(isNoticed(noticed, moment));
}

} // namespace

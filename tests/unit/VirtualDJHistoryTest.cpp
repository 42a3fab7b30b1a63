#include "nowplaying/VirtualDJHistory.h"

#include "nowplaying/VirtualDJDetector.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/unit/Outcome.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

const std::filesystem::path home = "/home/dj/Documents/VirtualDJ";
const std::filesystem::path libraryHome = "/home/dj/Library/Application Support/VirtualDJ";
const std::string byteOrderMark = "\xEF\xBB\xBF";

class VirtualDJSession : public testing::Test {
protected:
  VirtualDJSession() {
    system.loop.setNow(Clock::TimePoint(std::chrono::seconds(1782707891 + 100)));
    system.processes.handler = [](const ChildProcess& child) -> ChildResult {
      return {0, child.executable == "/usr/bin/pgrep" ? "7\n" : "", ""};
    };
  }

  void addList(const std::filesystem::path& path, const std::string& text, int daysOld = 0) {
    system.files.files[path] = {text, 0600, system.loop.now() - std::chrono::hours(24 * daysOld)};
  }

  std::string current() {
    return outcome([&] { return VirtualDJDetector::current(system.platform); });
  }

  FakePlatform system;
};

const std::string entryLine =
    "#EXTVDJ:<time>12:36</time><lastplaytime>1782707891</lastplaytime><filesize>9744561</filesize>"
    "<artist>A/B</artist><title>T (Pt.2)</title><songlength>241.622</songlength>";

TEST_F(VirtualDJSession, IsReadFromTheLastEntryOfTheList) {
  const std::string old = "#EXTVDJ:<time>12:30</time><lastplaytime>1782707800</lastplaytime>"
                          "<songlength>9999</songlength>\n/Users/dj/Old - Song.mp3\n";
  const auto entry = [](const std::string& tags) {
    return "#EXTVDJ:" + tags + "\n/Users/dj/Artist - Title.mp3\n";
  };
  const std::pair<std::string, std::string> rows[] = {
      {old + entryLine + "\n/Users/dj/Artist - Title.mp3\n", "Title / Artist / "},
      {byteOrderMark + entryLine + "\r\nF:\\Music\\Nick Cave & The Bad Seeds - T.mp3\r\n\r\n",
       "T / Nick Cave & The Bad Seeds / "},
      {entryLine + "\n  /Users/dj/Sigur Ro\u0301s - A - B.flac  \n# a comment\n\n",
       "A - B / Sigur Ro\u0301s / "},
      {entryLine + "\nnetsearch://dz715352532\n", noSession},
      {old + "/Users/dj/Artist - Title.mp3\n", noSession},
      {entry("<lastplaytime>1782707891</lastplaytime><songlength>100</songlength>"),
       "Title / Artist / "},
      {entry("<lastplaytime>1782707891</lastplaytime><songlength>60</songlength>"), noSession},
      {entry("<lastplaytime>1782707891</lastplaytime>"), noSession},
      {entry("<lastplaytime>1782707999</lastplaytime><songlength>240</songlength>"), noSession},
      {entry("<lastplaytime>1e300</lastplaytime><songlength>1e300</songlength>"), noSession},
      {entry("<songlength>1e12</songlength>"), noSession},
      {entry("<lastplaytime>soon</lastplaytime><songlength>240</songlength>"), noSession},
      {"/Users/dj/Artist - Title.mp3", noSession},
      {entryLine + "\n", noSession},
      {entryLine + "\n/Users/dj/\xFF - Title.mp3\n", noSession},
      {"", noSession},
  };
  for (const auto& [list, track] : rows) {
    addList(home / "History/2026-06-29.m3u", list);
    EXPECT_EQ(current(), track) << list;
  }
}

TEST_F(VirtualDJSession, IsTheNewestListOfTheFirstHomeThatExists) {
  EXPECT_EQ(current(), noSession);
  addList(home / "History/old.m3u", "", 200);
  addList(home / "History/new.M3U", entryLine + "\n/x/Documents - List.mp3", 1);
  addList(home / "History/newer.txt", "", 0);
  addList(home / "History/tracklist.txt", byteOrderMark + "VirtualDJ History 2026/06/29\r\n"
                                                          "------------------------------\r\n"
                                                          "12:30 : Other - Track\r\n"
                                                          "12:36 : Wrong - Day\r\n"
                                                          " 12:36 : Named - In the list\r\n");
  EXPECT_EQ(current(), "In the list / Named / ");
  system.files.files[home / "History/tracklist.txt"].bytes = "\xFF";
  EXPECT_EQ(current(), "List / Documents / ");
  system.files.folders[libraryHome] = 0700;
  EXPECT_EQ(current(), noSession);
  addList(libraryHome / "History/a.m3u", entryLine + "\n/x/Library - List.mp3", 300);
  EXPECT_EQ(current(), "List / Library / ");
}

TEST(VirtualDJHistory, NamesTracksByListOrFile) {
  const struct {
    const char* tracklist;
    const char* playTime;
    const char* mediaPath;
    const char* artist;
    const char* title;
  } rows[] = {
      {"21:03 : Artist - Title", "21:03", "/x", "Artist", "Title"},
      {"21:04 : Artist - Title", "21:03", "/Music/Artist - Title.mp3", "Artist", "Title"},
      {"21:03 : \n : X - Y", " ", "/Music/F - G.mp3", "F", "G"},
      {"21:03 : No separator", "21:03", "/Music/F - G.mp3", "", ""},
      {"21:03:Close - Call", "21:03", "/Music/F - G.mp3", "F", "G"},
      {"", "21:03", "/Music/T feat. X", "", ""},
      {"", "", "-A--B.mp3", "A", "-B"},
      {"", "", "A-", "", ""},
      {"", "", "C:\\Music\\A - B.v2.mp3", "A", "B.v2"},
      {"", "", "", "", ""},
  };
  for (const auto& row : rows) {
    const auto [artist, title] =
        VirtualDJHistory::historyMetadata(row.tracklist, row.playTime, row.mediaPath);
    EXPECT_EQ(artist, row.artist) << row.tracklist << row.mediaPath;
    EXPECT_EQ(title, row.title) << row.tracklist << row.mediaPath;
  }
}

TEST(VirtualDJHistory, ReadsTags) {
  const std::pair<const char*, std::optional<std::string>> rows[] = {
      {"#EXTVDJ:<time>12:36</time>", "12:36"},
      {"<TiMe>1</other>", "1"},
      {"<lastplaytime>5</lastplaytime>", std::nullopt},
      {"<time></time>", ""},
      {"<time>1 < 2 & 3</time>", "1 < 2 & 3"},
      {"<time>1", std::nullopt},
      {"</time><time", std::nullopt},
      {"", std::nullopt}};
  for (const auto& [line, value] : rows) {
    EXPECT_EQ(VirtualDJHistory::tagValue("time", line), value) << line;
  }
}

} // namespace
} // namespace velmor

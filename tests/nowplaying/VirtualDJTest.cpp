#include "nowplaying/readers/VirtualDJDetector.h"
#include "nowplaying/readers/VirtualDJHistory.h"
#include "nowplaying/readers/VirtualDJNetworkControl.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/support/Outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmor;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

std::string line(const std::string& address) {
  return "virtualdj  4242 dj  31u  IPv4  0x1a2b  0t0  TCP " + address + " (LISTEN)\n";
}

const std::string header = "COMMAND PID USER FD TYPE DEVICE SIZE/OFF NODE NAME\n";

TEST(VirtualDJNetworkControl, FindsThePortsOfThisMachine) {
  const std::pair<std::string, std::vector<int>> rows[] = {
      {header + line("127.0.0.1:8080") + line("*:80") + line("*:80"), {80, 8080}},
      {header + line("127.0.0.1:49152->127.0.0.1:50000"), {49152}},
      {header + line("[::1]:80") + line("192.168.0.2:80") + line("*:http"), {}},
      {"\n\n" + line("*:1") + "\n" + line("*:2"), {2}}, // no header
      {header + "virtualdj 4242 dj 31u IPv4 0x1 0t0 TCP\n" + line("-81-82"), {81}},
      {header + line("*:80") + "\xFF", {}},
  };
  for (const auto& [lines, ports] : rows)
    EXPECT_THAT(VirtualDJNetworkControl::parsePorts(lines), ElementsAreArray(ports)) << lines;
}

class NetworkControl : public testing::Test {
protected:
  NetworkControl() {
    system.processes.handler = [this](const ChildProcess& child) -> ChildResult {
      if (child.executable != "/usr/sbin/lsof") return {0, identifiers, ""};
      if (!hasLsof) throw LaunchError("No such file or directory");
      return {1, header + line("*:8082") + line("*:81"), "ignored"};
    };
  }

  NowPlayingTrack answered(const std::string& body, int status = 200) {
    system.http.handler = [=](const auto&) { return HttpResponse{status, body}; };
    return VirtualDJNetworkControl::queryNetworkControl(system.platform, 80);
  }

  std::string identifiers = "4242\n\n 4243\n";
  bool hasLsof = true;
  FakePlatform system;
};

TEST_F(NetworkControl, AsksLsofAboutEveryProcessAndPortsUntilOneAnswers) {
  system.http.handler = [](const HttpRequest& request) -> HttpResponse {
    if (request.url.starts_with("http://127.0.0.1:81/")) throw TransportError("timed out");
    return {200, "Song|||Artist||||||||||||"};
  };
  EXPECT_EQ(VirtualDJDetector::current(system.platform).title, "Song");
  EXPECT_THAT(system.processes.started.back().arguments,
              ElementsAre("-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p", "4242,4243"));
  EXPECT_EQ(system.http.requests.size(), 2U);
  EXPECT_EQ(system.http.requests.back().timeout, Seconds{0.7});
  EXPECT_EQ(system.http.configurations.back().resourceTimeout, Seconds{1.0});
  hasLsof = false;
  EXPECT_THAT(VirtualDJNetworkControl::listeningPorts(system.platform), IsEmpty());
  identifiers = "";
  EXPECT_THROW((void)VirtualDJDetector::current(system.platform), NowPlayingError);
  EXPECT_EQ(system.processes.started.back().executable, "/usr/bin/pgrep");
}

TEST_F(NetworkControl, ReadsTheMasterDeck) {
  const NowPlayingTrack whole{.title = "a",
                              .artist = "b",
                              .album = "c",
                              .genre = "d",
                              .bpm = 124.5,
                              .key = "8A",
                              .source = "VirtualDJ",
                              .detection = "VirtualDJ master-deck metadata"};
  EXPECT_EQ(answered("a|||b|||c|||d|||124.5|||8A\n"), whole);
  EXPECT_EQ(answered("a|||b|||c|||d|||124%|||8A", 404).bpm, 124);
  EXPECT_EQ(answered("a|||b|||||||||y|||").bpm, 0);
  for (const auto* const body :
       {"", "a|||b|||c|||d|||e", "a|||b|||c|||d|||e|||f|||g", "|||b|||c|||d|||e|||f",
        "a||||||c|||d|||e|||f", "a|||b|||c|||d|||e|||\xFF"}) {
    EXPECT_THROW(answered(body), NowPlayingError) << body;
  }
}

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

  FakePlatform system;
};

/// An entry that is being played, but for its last line, the track's path.
const std::string entryLine = "#EXTVDJ:<time>12:36</time><lastplaytime>1782707891</lastplaytime>"
                              "<artist>A/B</artist><songlength>241.622</songlength>";

TEST_F(VirtualDJSession, IsReadFromTheLastEntryOfTheList) {
  const std::string old = "#EXTVDJ:<time>12:30</time><lastplaytime>1782707800</lastplaytime>"
                          "<songlength>9999</songlength>\n/Users/dj/Old - Song.mp3\n";
  const std::string path = "/Users/dj/Artist - Title.mp3\n";
  const std::pair<std::string, std::string> rows[] = {
      {byteOrderMark + old + entryLine + "\r\nF:\\Music\\Nick Cave & The Bad Seeds - T.mp3\r\n",
       "T / Nick Cave & The Bad Seeds / "},
      {entryLine + "\n  /Users/dj/Sigur Ro\u0301s - A - B.flac  \n# a comment\n\n",
       "A - B / Sigur Ro\u0301s / "},
      {entryLine + "\nnetsearch://dz715352532\n", noSession},
      {entryLine + "\n/Users/dj/\xFF - Title.mp3\n", noSession},
      {old + path, noSession},
      {"#EXTINF" + entryLine.substr(7) + "\n" + path, noSession},
      {entryLine, noSession},
  };
  for (const auto& [list, track] : rows) {
    addList(home / "History/2026-06-29.m3u", list);
    EXPECT_EQ(outcome(VirtualDJDetector::current, system.platform), track) << list;
  }
  const std::tuple<const char*, const char*, bool> times[] = {
      {"1782707891", "100", true}, {"1782707891", "60", false}, {"1782707891", "", false},
      {"1782707991", "1", true},   {"1782707891", "0", false},  {"1782707999", "240", false},
      {"1e300", "1e300", false},   {"soon", "240", false}};
  for (const auto& [started, length, plays] : times) {
    addList(home / "History/2026-06-29.m3u", std::string("#EXTVDJ:<lastplaytime>") + started +
                                                 "</lastplaytime><songlength>" + length +
                                                 "</songlength>\n" + path);
    EXPECT_EQ(outcome(VirtualDJDetector::current, system.platform),
              plays ? "Title / Artist / " : noSession)
        << started << " " << length;
  }
}

TEST_F(VirtualDJSession, IsTheNewestListOfTheFirstHomeThatExists) {
  addList(home / "History/old.m3u", "", 200);
  addList(home / "History/new.M3U", entryLine + "\n/x/Documents - List.mp3", 1);
  addList(home / "History/newer.txt", "");
  addList(home / "History/tracklist.txt", byteOrderMark + "VirtualDJ History 2026/06/29\r\n"
                                                          "12:30 : Other - Track\r\n"
                                                          "12:36 : Wrong - Day\r\n"
                                                          " 12:36 : Named - In the list\r\n");
  EXPECT_EQ(outcome(VirtualDJDetector::current, system.platform), "In the list / Named / ");
  addList(home / "History/tracklist.txt", "\xFF");
  EXPECT_EQ(outcome(VirtualDJDetector::current, system.platform), "List / Documents / ");
  system.files.folders[libraryHome] = 0700;
  EXPECT_EQ(outcome(VirtualDJDetector::current, system.platform), noSession);
  addList(libraryHome / "History/a.m3u", entryLine + "\n/x/Library - List.mp3", 300);
  EXPECT_EQ(outcome(VirtualDJDetector::current, system.platform), "List / Library / ");
}

TEST(VirtualDJHistory, NamesTracksByListOrFile) {
  // What the list says, when and which file was played; then artist and title.
  const std::array<std::string, 5> rows[] = {
      {"21:03 : Artist - Title", "21:03", "/x", "Artist", "Title"},
      {"21:03 : \n : X - Y", " ", "/Music/F - G.mp3", "F", "G"},
      {"21:03 : No separator", "21:03", "/Music/F - G.mp3", "", ""},
      {"21:03:Close - Call", "21:03", "/Music/F - G.mp3", "F", "G"},
      {"", "21:03", "/Music/T feat. X", "", ""},
      {"", "", "-A--B.mp3", "A", "-B"},
      {"", "", "C:\\Music\\A - B.v2.mp3", "A", "B.v2"},
  };
  for (const auto& [tracklist, time, path, artist, title] : rows) {
    const auto names = VirtualDJHistory::historyMetadata(tracklist, time, path);
    EXPECT_EQ(names.first + " / " + names.second, artist + " / " + title) << tracklist << path;
  }
}

TEST(VirtualDJHistory, ReadsTags) {
  const std::pair<const char*, std::optional<std::string>> rows[] = {
      {"<TiMe>1</other>", "1"},  {"<lastplaytime>5</lastplaytime>", std::nullopt},
      {"<time></time>", ""},     {"<time>1 < 2 & 3</time>", "1 < 2 & 3"},
      {"<time>1", std::nullopt}, {"</time><time", std::nullopt}};
  for (const auto& [line, value] : rows)
    EXPECT_EQ(VirtualDJHistory::tagValue("time", line), value) << line;
}

} // namespace

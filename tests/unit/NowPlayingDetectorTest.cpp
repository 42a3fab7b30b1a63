#include "nowplaying/NowPlayingDetector.h"

#include "tests/unit/DatabaseFile.h"
#include "tests/unit/Outcome.h"
#include "tests/unit/RekordboxScreen.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace velmor {
namespace {

/// A machine on which a row of the table starts programs, and which notes down every program that
/// is asked for and every question to a player.
class Machine : public HomeWithDatabases {
public:
  Machine() {
    processes.handler = [this](const ChildProcess& child) { return run(child); };
    scripts.handler = [this](const std::string& script) { return answer(script); };
  }

  void mixxxRuns() { processes.running.insert("mixxx"); }
  void mixxxPlays() {
    mixxxRuns();
    applications.running.push_back({"org.mixxx.mixxx", "Mixxx", 11});
    windows.windows = {{11, "A - From Mixxx | Mixxx"}};
  }
  void rekordboxRuns() { processes.running.insert("rekordbox"); }
  void rekordboxIsRefused() {
    applications.running.push_back({"com.pioneerdj.rekordboxdj", "rekordbox", 12});
    accessibility.errorCode = accessibilityError::apiDisabled;
  }
  void rekordboxPlays() {
    applications.running.push_back({"", "Rekordbox.app", 12});
    accessibility.applications[12] = RekordboxScreen::application(
        RekordboxScreen::texts({"From rekordbox", "A", "0:30", "-3:00", "128.00", "8A"}, {}));
  }
  void djayRuns() { processes.running.insert("djay"); }
  void spotifyPlays() {
    player("Spotify", "From Spotify\x1E"
                      "A\x1E"
                      "B");
  }
  void spotifyIsPaused() { player("Spotify", "STATE:paused", "yes"); }
  void spotifyRefuses() { player("Spotify", "error"); }
  void spotifyCannotBeAsked() { player("Spotify", "launch"); }
  void spotifyCannotBeAskedTwice() { player("Spotify", "STATE:paused", "launch"); }
  void spotifyIsStopped() { player("Spotify", "STATE:paused", "no"); }
  void musicPlays() {
    player("Music", "From Music\x1E"
                    "A\x1E"
                    "B");
  }
  void musicIsPaused() { player("Music", "STATE:paused", "yes"); }
  void browserPlays() {
    mediaRemote.playing = true;
    mediaRemote.info = {{nowPlayingKey::title, "From the browser"},
                        {nowPlayingKey::artist, "A"},
                        {nowPlayingKey::bundleIdentifier, "com.google.Chrome"}};
  }
  void virtualDJRuns() { processes.running.insert("virtualdj"); }
  void virtualDJPlays() {
    virtualDJRuns();
    http.handler = [](const HttpRequest&) {
      return HttpResponse{200, "From VirtualDJ|||A||||||||||||"};
    };
  }
  void seratoPlays() {
    processes.running.insert("serato dj lite");
    addDatabase("Music/_Serato_/Library/master.sqlite",
                "CREATE TABLE history_entry(id, name, artist, album, genre, bpm, key, app_name,"
                " played, start_time, end_time);"
                "INSERT INTO history_entry VALUES"
                "(1, 'From Serato', 'A', '', '', 0, '', 'Serato DJ Lite', 1, 5, -1);");
  }

  std::string trace;

private:
  void note(const std::string& question) { trace += (trace.empty() ? "" : ", ") + question; }

  void player(const std::string& name, const std::string& track, const std::string& paused = "") {
    processes.running.insert(name == "Spotify" ? "spotify" : "music");
    answers["track? " + name] = track;
    answers["paused? " + name] = paused;
  }

  ChildResult run(const ChildProcess& child) {
    if (child.executable == record.lsof) {
      note("lsof");
      return {0, "COMMAND\nvdj 7 u 9u IPv4 0x1 0t0 TCP 127.0.0.1:80 (LISTEN)\n", ""};
    }
    const auto& name = child.arguments.back();
    note(name);
    return processes.running.contains(name) ? ChildResult{0, "7\n", ""} : ChildResult{1, "", ""};
  }

  ChildResult answer(const std::string& script) {
    const std::string name = script.find("Spotify") != std::string::npos ? "Spotify" : "Music";
    const bool isPausedScript = script.find("is paused") != std::string::npos;
    const auto question = (isPausedScript ? "paused? " : "track? ") + name;
    note(question);
    const auto& text = answers[question];
    if (text == "launch") throw LaunchError("No such file or directory");
    if (text == "error") return {1, "", "execution error: Not authorized. (-1743)"};
    return {0, text, ""};
  }

  std::map<std::string, std::string> answers;
};

const std::string accessibilityDenied =
    "Velmor needs Accessibility access for rekordbox. In System Settings → Privacy & Security → "
    "Accessibility, remove and re-enable Velmor, then restart from ~/Applications/Velmor.app.";
const std::string automationDenied =
    "Velmor needs Automation permission for the media player. Allow it in System Settings → "
    "Privacy & Security → Automation, then try again.";
const std::string playbackPaused = "media player is paused. Start playback and try again.";
const std::string noMixxx = "mixxx, mixxx, ";
const std::string noDJ = noMixxx + "rekordbox, djay, djay pro, djayapp, ";
const std::string noPlayer = noDJ + "spotify, music, ";
const std::string noSerato = "serato dj pro, serato dj lite, serato dj, ";

struct Row {
  std::vector<void (Machine::*)()> programs;
  std::string outcome;
  /// Everything that was asked, in order.
  std::string trace;
};

const std::vector<Row> rows{
    {{}, noSession, noPlayer + "virtualdj, " + noSerato + "spotify, music"},
    {{&Machine::mixxxPlays, &Machine::rekordboxPlays}, "From Mixxx / A / ", "mixxx, mixxx"},
    {{&Machine::mixxxRuns, &Machine::rekordboxPlays, &Machine::spotifyPlays},
     "From rekordbox / A / ",
     "mixxx, mixxx"},
    {{&Machine::mixxxRuns, &Machine::rekordboxIsRefused}, accessibilityDenied, "mixxx, mixxx"},
    {{&Machine::rekordboxRuns, &Machine::spotifyPlays},
     noSession,
     noMixxx + "rekordbox, rekordbox"},
    {{&Machine::djayRuns, &Machine::spotifyPlays, &Machine::musicPlays, &Machine::browserPlays},
     "From Spotify / A / B",
     noMixxx + "rekordbox, djay, djay, spotify, track? Spotify"},
    {{&Machine::spotifyIsPaused, &Machine::musicPlays},
     "From Music / A / B",
     noDJ + "spotify, track? Spotify, music, track? Music"},
    {{&Machine::spotifyRefuses, &Machine::musicPlays},
     automationDenied,
     noDJ + "spotify, track? Spotify"},
    {{&Machine::spotifyCannotBeAsked, &Machine::browserPlays},
     "No such file or directory",
     noDJ + "spotify, track? Spotify"},
    {{&Machine::browserPlays, &Machine::virtualDJPlays},
     "From the browser / A / ",
     noDJ + "spotify, music"},
    {{&Machine::virtualDJPlays, &Machine::seratoPlays},
     "From VirtualDJ / A / ",
     noPlayer + "virtualdj, virtualdj, lsof"},
    {{&Machine::virtualDJRuns, &Machine::seratoPlays},
     "From Serato / A / ",
     noPlayer + "virtualdj, virtualdj, lsof, serato dj pro, serato dj lite"},
    {{&Machine::spotifyIsPaused},
     playbackPaused,
     noDJ + "spotify, track? Spotify, music, virtualdj, " + noSerato + "spotify, paused? Spotify"},
    {{&Machine::spotifyIsStopped, &Machine::musicIsPaused},
     playbackPaused,
     noDJ + "spotify, track? Spotify, music, track? Music, virtualdj, " + noSerato +
         "spotify, paused? Spotify, music, paused? Music"},
    {{&Machine::spotifyCannotBeAskedTwice},
     noSession,
     noDJ + "spotify, track? Spotify, music, virtualdj, " + noSerato +
         "spotify, paused? Spotify, music"},
};

TEST(NowPlayingDetector, AsksTheSourcesInOrderAndNoMoreThanNeeded) {
  for (const auto& row : rows) {
    Machine machine;
    for (const auto program : row.programs) {
      (machine.*program)();
    }
    NowPlayingDetector detector(machine.platform);
    EXPECT_EQ(outcome([&] { return detector.current(); }), row.outcome) << row.trace;
    EXPECT_EQ(machine.trace, row.trace) << row.outcome;
  }
}

TEST(NowPlayingDetector, LabelsPlayersAsMedia) {
  Machine machine;
  machine.spotifyPlays();
  const auto track = NowPlayingDetector(machine.platform).current();
  EXPECT_EQ(track.source + ", " + track.detection, "macOS media, macOS media session");
  EXPECT_EQ(machine.mediaRemote.opened, 0);
}

} // namespace
} // namespace velmor

#include "nowplaying/NowPlayingDetector.h"

#include "nowplaying/shared/NowPlayingError.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/nowplaying/RekordboxScreen.h"
#include "tests/support/Outcome.h"

#include <gtest/gtest.h>

using namespace velmor;

namespace {

/// A machine on which a row of the table starts programs. It notes every program that is asked for
/// and every question to a player.
class Machine : public FakePlatform {
public:
  Machine() {
    processes.handler = [this](const ChildProcess& child) { return run(child); };
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
        RekordboxScreen::texts({"From rekordbox", "A", "0:30", "128.00", "8A"}, {}));
  }
  void djayRuns() { processes.running.insert("djay"); }
  void spotifyPlays() { player("Spotify", "From Spotify\036A\036B", ""); }
  void spotifyRefuses() { player("Spotify", "error", ""); }
  void spotifyCannotBeAsked() { player("Spotify", "launch", ""); }
  void spotifyCannotBeAskedTwice() { player("Spotify", "STATE:paused", "launch"); }
  void musicPlays() { player("Music", "From Music\036A\036B", ""); }
  void musicIsPaused() { player("Music", "STATE:paused", "yes"); }
  void browserPlays() {
    mediaRemote.playing = true;
    mediaRemote.info = {{nowPlayingKey::title, "From the browser"}, {nowPlayingKey::artist, "A"}};
  }
  void virtualDJPlays() {
    processes.running.insert("virtualdj");
    http.handler = [](const HttpRequest&) {
      return HttpResponse{200, "From VirtualDJ|||A||||||||||||"};
    };
  }

  std::string trace;

private:
  void player(const std::string& name, const std::string& track, const std::string& paused) {
    processes.running.insert(name == "Spotify" ? "spotify" : "music");
    answers["track? " + name] = track;
    answers["paused? " + name] = paused;
  }

  ChildResult run(const ChildProcess& child) {
    if (child.executable == record.lsof) {
      return {0, "COMMAND\nvdj 7 u 9u IPv4 0x1 0t0 TCP 127.0.0.1:80 (LISTEN)\n", ""};
    }
    if (child.executable == "/usr/bin/osascript") return answer(child.input.value_or(""));
    const auto& name = child.arguments.back();
    trace += name + ", ";
    return processes.running.contains(name) ? ChildResult{0, "7\n", ""} : ChildResult{1, "", ""};
  }

  ChildResult answer(const std::string& script) {
    const std::string name = script.find("Spotify") != std::string::npos ? "Spotify" : "Music";
    const bool isPausedScript = script.find("is paused") != std::string::npos;
    const auto question = (isPausedScript ? "paused? " : "track? ") + name;
    trace += question + ", ";
    const auto& text = answers[question];
    if (text == "launch") throw LaunchError("No such file or directory");
    if (text == "error") return {1, "", "execution error: Not authorized. (-1743)"};
    return {0, text, ""};
  }

  std::map<std::string, std::string> answers;
};

TEST(NowPlayingDetector, AsksTheSourcesInOrderAndNoMoreThanNeeded) {
  using Programs = std::vector<void (Machine::*)()>;
  const std::pair<Programs, std::string> rows[] = {
      {{&Machine::mixxxPlays, &Machine::rekordboxPlays}, "From Mixxx / A / "},
      {{&Machine::mixxxRuns, &Machine::rekordboxPlays}, "From rekordbox / A / "},
      {{&Machine::mixxxRuns, &Machine::rekordboxIsRefused},
       NowPlayingError::accessibilityDenied("rekordbox").what()},
      {{&Machine::rekordboxRuns, &Machine::spotifyPlays}, noSession},
      {{&Machine::djayRuns, &Machine::spotifyPlays, &Machine::musicPlays}, "From Spotify / A / B"},
      {{&Machine::spotifyRefuses, &Machine::musicPlays},
       NowPlayingError::automationDenied("the media player").what()},
      {{&Machine::spotifyCannotBeAsked, &Machine::browserPlays}, "No such file or directory"},
      {{&Machine::musicPlays, &Machine::browserPlays}, "From Music / A / B"},
      {{&Machine::browserPlays, &Machine::virtualDJPlays}, "From the browser / A / "},
      {{&Machine::musicIsPaused, &Machine::virtualDJPlays}, "From VirtualDJ / A / "},
  };
  for (const auto& [programs, expected] : rows) {
    Machine machine;
    for (const auto program : programs)
      (machine.*program)();
    NowPlayingDetector detector(machine.platform);
    EXPECT_EQ(outcome([&] { return detector.current(); }), expected);
    EXPECT_EQ(machine.applications.listings, 1) << expected;
  }
}

TEST(NowPlayingDetector, LooksForPausedPlayersLast) {
  Machine machine;
  machine.spotifyCannotBeAskedTwice();
  machine.musicIsPaused();
  NowPlayingDetector detector(machine.platform);
  EXPECT_EQ(outcome([&] { return detector.current(); }),
            "media player is paused. Start playback and try again.");
  EXPECT_EQ(machine.trace, "mixxx, mixxx, rekordbox, djay, djay pro, djayapp, "
                           "spotify, track? Spotify, music, track? Music, virtualdj, "
                           "serato dj pro, serato dj lite, serato dj, "
                           "spotify, paused? Spotify, music, paused? Music, ");
  EXPECT_EQ(machine.applications.listings, 1);
  EXPECT_THROW((void)detector.current(), NowPlayingError);
  EXPECT_EQ(machine.applications.listings, 2) << "each look sees the desktop afresh";
}

} // namespace

#include "nowplaying/shared/NowPlayingError.h"
#include "tests/app/ControllerFixture.h"

using namespace velmor;

namespace {

using Heard = std::vector<std::string>;
constexpr Seconds poll{1.5};

class WatcherTest : public ControllerFixture {
protected:
  /// Changes settings and saves.
  template <typename Change>
  void save(Change change) {
    auto config = store->current();
    change(config);
    controller.saveSettings(config);
  }

  /// The events until the next poll is over.
  Heard next(int polls = 1) {
    system.loop.advance(polls * poll);
    return heard();
  }
  Heard next(const char* title) {
    play(title);
    return next();
  }
};

} // namespace

TEST_F(WatcherTest, ForgivesOneMissAndTellsOfAStopOnce) {
  controller.startNowPlayingWatcher();
  controller.startNowPlayingWatcher();
  EXPECT_EQ(next("A"), (Heard{"track-changed A", "suggestions-ready A"}));
  EXPECT_EQ(system.mediaRemote.opened, 2) << "one loop, one poll every 1.5 s";
  stop();
  EXPECT_EQ(next(), Heard{});
  EXPECT_EQ(next("A"), Heard{});
  stop();
  EXPECT_EQ(next(10), Heard{"track-stopped"});
}

TEST_F(WatcherTest, TellsTracksApartByWhatADjReads) {
  const auto fingerprint = [](const char* title, const char* artist) {
    return trackFingerprint({.title = title, .artist = artist});
  };
  EXPECT_EQ(fingerprint("T ", "A"), std::string("t\0a", 3));
  EXPECT_EQ(fingerprint("T", " "), "");
  EXPECT_EQ(fingerprint(" SVEFN\n", "SIGUR RÓS "), fingerprint("Svefn", "Sigur Ro\u0301s"));
}

TEST_F(WatcherTest, TellsOfATrackThatGetsNoSuggestion) {
  requestFailure = "The request timed out.";
  controller.startNowPlayingWatcher();
  EXPECT_EQ(next("A"), (Heard{"track-changed A", "analysis-error The request timed out."}));
  save([](AppConfig& config) { config.tinkerApiKey = ""; });
  EXPECT_EQ(next("B"), Heard{"track-changed B"});
  save([](AppConfig& config) { config.aiModel = "velmor/crate"; });
  EXPECT_EQ(next("C").back(), "analysis-error No music found for your crate") << "needs no key";
  EXPECT_EQ(system.http.requests.size(), 1U);
}

TEST_F(WatcherTest, DropsLateAnswers) {
  // What happens while the provider thinks about A, and what is heard of it.
  const std::tuple<const char*, std::function<void()>, Heard> cases[] = {
      {"A, B and A again",
       [&] {
         EXPECT_EQ(next("B"), Heard{"track-changed B"});
         EXPECT_EQ(next("A"), Heard{"track-changed A"});
       },
       {"suggestions-ready A"}},
      {"playback stopped", [&] { stop(), system.loop.advance(2 * poll); }, {"track-stopped"}},
      {"switched off", [&] { save([](AppConfig& c) { c.autoSuggestTracks = false; }); }, {}},
      {"another tolerance",
       [&] {
         save([](AppConfig& c) { c.bpmTolerance = 5; });
         system.loop.advance(poll);
       },
       {"track-changed A", "suggestions-ready A"}},
      {"the program ends", [&] { system.workspace.terminate(); }, {}},
  };
  for (const auto& [name, meanwhile, expected] : cases) {
    controller.stopNowPlayingWatcher();
    save([](AppConfig& c) { c.autoSuggestTracks = true; });
    system.loop.holdWorkers();
    EXPECT_EQ(next("A"), Heard{"track-changed A"}) << name;
    meanwhile();
    system.loop.finishWorkers();
    EXPECT_EQ(heard(), expected) << name;
  }
}

TEST_F(WatcherTest, PaysForNoSuggestionThatIsNotWanted) {
  // Listening to A takes so long that the user stops the watcher meanwhile.
  installExtractor([this](const ChildProcess& child) -> ChildResult {
    if (child.executable == "/usr/local/bin/ffmpeg") controller.stopNowPlayingWatcher();
    return {1, "", ""};
  });
  controller.startNowPlayingWatcher();
  EXPECT_EQ(next("A"), Heard{"track-changed A"});
  EXPECT_TRUE(system.http.requests.empty());
}

TEST_F(WatcherTest, SavingStartsAndStopsUnlessItFails) {
  save([](AppConfig& config) { config.autoSuggestTracks = false; });
  EXPECT_EQ(next("A"), Heard{});
  save([](AppConfig& config) { config.autoSuggestTracks = true; });
  save([](AppConfig& config) { config.theme = "dark"; });
  EXPECT_EQ(next(2), (Heard{"track-changed A", "suggestions-ready A"}));
  system.files.writeFailure = "The disk is full.";
  EXPECT_THROW(save([](AppConfig& config) { config.autoSuggestTracks = false; }), FileError);
  EXPECT_EQ(next("B"), (Heard{"track-changed B", "suggestions-ready B"})) << "it goes on";
}

TEST_F(WatcherTest, ComparesOnlyWhatASuggestionDependsOn) {
  const std::pair<void (*)(AppConfig&), bool> cases[] = {
      {[](AppConfig& c) { c.aiModel += " "; }, true},
      {[](AppConfig& c) { c.recommendationCount = 7; }, true},
      {[](AppConfig& c) { c.bpmTolerance = 3; }, true},
      {[](AppConfig& c) { c.tinkerApiKey = "x"; }, true},
      {[](AppConfig& c) { c.openaiApiKey = "x"; }, false},
      {[](AppConfig& c) { c.window.x = 9; }, false},
  };
  const auto previous = store->current();
  for (const auto& [change, expected] : cases) {
    auto next = previous;
    change(next);
    EXPECT_EQ(AppController::recommendationSettingsChanged(previous, next), expected);
  }
  EXPECT_TRUE(AppController::recommendationSettingsChanged(
      {.aiModel = " GPT-5"}, {.openaiApiKey = "x", .aiModel = " GPT-5"}));
}

TEST_F(WatcherTest, TellsOnceThatAccessIsDenied) {
  const std::vector<RunningApplication> rekordbox{
      {.bundleIdentifier = "com.pioneerdj.rekordboxdj", .processIdentifier = 7}};
  system.applications.running = rekordbox;
  system.accessibility.errorCode = accessibilityError::apiDisabled;
  controller.startNowPlayingWatcher();
  EXPECT_EQ(next(5), Heard{std::string("analysis-error ") +
                           NowPlayingError::accessibilityDenied("rekordbox").what()});
  system.applications.running.clear();
  EXPECT_EQ(next("A"), (Heard{"track-changed A", "suggestions-ready A"}));
  system.applications.running = rekordbox;
  EXPECT_EQ(next(3), Heard{"track-stopped"});
}

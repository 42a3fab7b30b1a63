#include "tests/unit/ControllerFixture.h"

using namespace velmor;

namespace {

using Heard = std::vector<std::string>;
constexpr Seconds poll{1.5};

class WatcherTest : public ControllerFixture {
protected:
  /// Changes one setting and saves.
  template <typename Change>
  void save(Change change) {
    auto config = store->current();
    change(config);
    controller.saveSettings(config);
  }
};

} // namespace

TEST_F(WatcherTest, TellsOfTracksStopsAndSuggestions) {
  controller.startNowPlayingWatcher();
  controller.startNowPlayingWatcher();
  system.loop.runPending();
  EXPECT_EQ(heard(), Heard{});
  play("A");
  system.loop.advance(poll);
  EXPECT_EQ(heard(), (Heard{"track-changed A", "suggestions-ready A"}));
  EXPECT_EQ(system.mediaRemote.opened, 2) << "one loop, one poll every 1.5 s";
  play("B");
  system.loop.advance(poll);
  EXPECT_EQ(heard(), (Heard{"track-changed B", "suggestions-ready B"}));
  stop();
  system.loop.advance(poll);
  EXPECT_EQ(heard(), Heard{}) << "one miss is forgiven";
  play("B");
  system.loop.advance(poll);
  EXPECT_EQ(heard(), Heard{});
  stop();
  system.loop.advance(10 * poll);
  EXPECT_EQ(heard(), Heard{"track-stopped"});
  play("B");
  system.loop.advance(poll);
  EXPECT_EQ(heard(), (Heard{"track-changed B", "suggestions-ready B"}));
}

TEST_F(WatcherTest, TellsTracksApartByWhatADjReads) {
  controller.startNowPlayingWatcher();
  play("Svefn-g-englar", "Sigur Rós");
  system.loop.runPending();
  heard();
  for (const auto& [title, artist] : {std::pair{" SVEFN-G-ENGLAR\n", "SIGUR RÓS "},
                                      std::pair{"Svefn-g-englar", "Sigur Ro\u0301s"}}) {
    play(title, artist);
    system.loop.advance(poll);
    EXPECT_EQ(heard(), Heard{}) << title;
  }
  EXPECT_EQ(AppController::trackFingerprint({.title = "T ", .artist = "A"}),
            std::string("t\0a", 3));
  EXPECT_EQ(AppController::trackFingerprint({.title = "T", .artist = " "}), "");
}

TEST_F(WatcherTest, SkipsTheSuggestionWithoutAKey) {
  save([](AppConfig& config) { config.tinkerApiKey = ""; });
  play("A");
  system.loop.advance(poll);
  EXPECT_EQ(heard(), Heard{"track-changed A"});
  EXPECT_TRUE(system.http.requests.empty());
}

TEST_F(WatcherTest, ReportsFailuresOfTheCurrentTrackOnly) {
  requestFailure = "The request timed out.";
  controller.startNowPlayingWatcher();
  play("A");
  system.loop.runPending();
  EXPECT_EQ(heard(), (Heard{"track-changed A", "analysis-error The request timed out."}));
  system.loop.holdWorkers();
  play("B");
  system.loop.advance(poll);
  play("C");
  system.loop.advance(poll);
  system.loop.finishWorkers();
  EXPECT_EQ(heard(),
            (Heard{"track-changed B", "track-changed C", "analysis-error The request timed out."}));
}

TEST_F(WatcherTest, DropsLateAnswers) {
  // What happens while the provider thinks about A, and what is heard of it.
  struct Case {
    const char* name;
    std::function<void()> meanwhile;
    Heard heard;
  };
  const Case cases[] = {
      {"another track",
       [this] {
         play("B");
         system.loop.advance(poll);
       },
       {"track-changed B", "suggestions-ready B"}},
      {"A, B and A again",
       [this] {
         play("B");
         system.loop.advance(poll);
         play("A");
         system.loop.advance(poll);
       },
       {"track-changed B", "track-changed A", "suggestions-ready A"}},
      {"playback stopped",
       [this] {
         stop();
         system.loop.advance(2 * poll);
       },
       {"track-stopped"}},
      {"switched off", [this] { save([](AppConfig& c) { c.autoSuggestTracks = false; }); }, {}},
      {"another tolerance",
       [this] {
         save([](AppConfig& c) { c.bpmTolerance = 5; });
         system.loop.advance(poll);
       },
       {"track-changed A", "suggestions-ready A"}},
      {"another theme",
       [this] { save([](AppConfig& c) { c.theme = "red"; }); },
       {"suggestions-ready A"}},
      {"the program ends", [this] { system.workspace.terminate(); }, {}},
  };
  for (const auto& [name, meanwhile, expected] : cases) {
    controller.stopNowPlayingWatcher();
    system.workspace.terminations = 0;
    save([](AppConfig& config) {
      config.autoSuggestTracks = true;
      config.bpmTolerance = 10;
    });
    stop();
    system.loop.advance(3 * poll);
    system.loop.holdWorkers();
    play("A");
    system.loop.advance(poll);
    EXPECT_EQ(heard(), Heard{"track-changed A"}) << name;
    meanwhile();
    system.loop.finishWorkers();
    EXPECT_EQ(heard(), expected) << name;
  }
}

TEST_F(WatcherTest, PaysForNoSuggestionThatIsNotWanted) {
  controller.startNowPlayingWatcher();
  system.loop.runPending();
  // The key of A's suggestion is looked up, then listening takes so long that B begins.
  system.environment.variables["ESSENTIA_EXTRACTOR"] = "/opt/extractor";
  system.files.files["/opt/extractor"].permissions = 0755;
  system.files.files["/usr/local/bin/ffmpeg"].permissions = 0755;
  system.processes.handler = [this](const ChildProcess& child) -> ChildResult {
    if (child.executable == "/usr/local/bin/ffmpeg") controller.stopNowPlayingWatcher();
    return {1, "", ""};
  };
  play("A");
  system.loop.advance(2 * poll);
  EXPECT_EQ(heard(), Heard{"track-changed A"});
  EXPECT_TRUE(system.http.requests.empty());
}

TEST_F(WatcherTest, SavingRestartsOrStops) {
  play("A");
  save([](AppConfig& config) { config.autoSuggestTracks = false; });
  system.loop.advance(2 * poll);
  EXPECT_EQ(heard(), Heard{});
  save([](AppConfig& config) { config.autoSuggestTracks = true; });
  system.loop.runPending();
  EXPECT_EQ(heard(), (Heard{"track-changed A", "suggestions-ready A"}));
  save([](AppConfig& config) { config.theme = "dark"; });
  save([](AppConfig& config) { config.openaiApiKey = "not in use"; });
  system.loop.advance(2 * poll);
  EXPECT_EQ(heard(), Heard{});
  save([](AppConfig& config) { config.recommendationCount = 5; });
  requestFailure = "x";
  system.loop.advance(poll);
  EXPECT_EQ(heard(), (Heard{"track-changed A", "analysis-error x"}));

  system.files.writeFailure = "The disk is full.";
  EXPECT_THROW(save([](AppConfig& config) { config.autoSuggestTracks = false; }), FileError);
  play("B");
  system.loop.advance(poll);
  EXPECT_EQ(heard(), (Heard{"track-changed B", "analysis-error x"})) << "the watcher goes on";
}

TEST_F(WatcherTest, ComparesOnlyWhatASuggestionDependsOn) {
  const std::pair<std::function<void(AppConfig&)>, bool> cases[] = {
      {[](AppConfig& c) { c.aiModel += " "; }, true},
      {[](AppConfig& c) { c.recommendationCount = 7; }, true},
      {[](AppConfig& c) { c.bpmTolerance = 3; }, true},
      {[](AppConfig& c) { c.tinkerApiKey = "x"; }, true},
      {[](AppConfig& c) { c.openaiApiKey = "x"; }, false},
      {[](AppConfig& c) { c.autoSuggestTracks = false; }, false},
      {[](AppConfig& c) { c.theme = "red"; }, false},
      {[](AppConfig& c) { c.window.x = 9; }, false},
      {[](AppConfig& c) { c.version = 9; }, false},
  };
  const auto previous = store->current();
  for (const auto& [change, expected] : cases) {
    auto next = previous;
    change(next);
    EXPECT_EQ(AppController::recommendationSettingsChanged(previous, next), expected);
  }
  auto before = previous;
  before.aiModel = " GPT-5";
  auto after = before;
  after.openaiApiKey = "x";
  EXPECT_TRUE(AppController::recommendationSettingsChanged(before, after));
}

TEST_F(WatcherTest, TellsOnceThatAccessIsDenied) {
  system.applications.running = {
      {.bundleIdentifier = "com.pioneerdj.rekordboxdj", .processIdentifier = 7}};
  system.accessibility.errorCode = accessibilityError::apiDisabled;
  controller.startNowPlayingWatcher();
  system.loop.advance(5 * poll);
  const auto first = heard();
  ASSERT_EQ(first.size(), 1U);
  EXPECT_TRUE(first.front().starts_with("analysis-error Velmor needs Accessibility access for "
                                        "rekordbox. In System Settings → "));
  system.applications.running.clear();
  play("A");
  system.loop.advance(poll);
  system.applications.running = {{.localizedName = "Rekordbox.app", .processIdentifier = 7}};
  system.loop.advance(3 * poll);
  EXPECT_EQ(heard(), (Heard{"track-changed A", "suggestions-ready A", "track-stopped"}));
}

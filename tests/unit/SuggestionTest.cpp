#include "tests/unit/ControllerFixture.h"

using namespace velmor;

namespace {

const auto noSession = "No active media session found. Start playback in a supported DJ app, then "
                       "try again.";

class SuggestionTest : public ControllerFixture {
protected:
  /// "ok", or the failure's text; the result is left in `result`.
  std::string outcomeOf(Task<VisionResult> suggestion) {
    std::string outcome = "unfinished";
    const auto run = [](Task<VisionResult> task, VisionResult& value,
                        std::string& text) -> Task<void> {
      try {
        value = co_await task;
        text = "ok";
      } catch (const std::exception& error) {
        text = error.what();
      }
    };
    TaskGroup tasks(system.loop);
    tasks.start(run(std::move(suggestion), result, outcome));
    system.loop.runPending();
    return outcome;
  }

  std::string suggest() { return outcomeOf(controller.suggestTracks()); }
  std::string analyze(const NowPlayingTrack& track) {
    return outcomeOf(controller.analyzeNowPlaying(track));
  }

  /// Installs an extractor, and a recorder that always works.
  void installExtractor(int status, const std::string& report) {
    system.environment.variables["ESSENTIA_EXTRACTOR"] = "/opt/extractor";
    system.files.files["/opt/extractor"].permissions = 0755;
    system.files.files["/usr/local/bin/ffmpeg"].permissions = 0755;
    system.processes.handler = [=, this](const ChildProcess& child) -> ChildResult {
      if (child.executable == "/usr/bin/pgrep") return {1, "", ""};
      system.files.files[child.arguments.back()].bytes = report;
      return {child.executable == "/opt/extractor" ? status : 0, "", ""};
    };
  }

  VisionResult result;
};

} // namespace

TEST_F(SuggestionTest, RunsFromDetectionToResult) {
  play("Song");
  EXPECT_EQ(suggest(), "ok");
  EXPECT_EQ(result.currentTrack.song, "Song");
  EXPECT_EQ(result.recommendations.size(), 3U);
  EXPECT_EQ(result.source, "macOS Media Control + Tinker");
  EXPECT_EQ(result.notice, "Detected through macOS media session.");
  EXPECT_NE(prompt.find("Verified by macOS media session\n- Source application: macOS media"),
            std::string::npos);
}

TEST_F(SuggestionTest, NeedsAKey) {
  auto config = store->current();
  config.tinkerApiKey = "";
  store->save(config);
  EXPECT_EQ(suggest(), "Tinker API key is required for recommendations");
  EXPECT_EQ(controller.getState(), (AppState{false, false, "API key required"}));
  config.aiModel = " GPT-4.1 ";
  store->save(config);
  EXPECT_EQ(suggest(), "OpenAI API key is required for recommendations");
  EXPECT_TRUE(system.http.requests.empty());
  system.environment.variables["OPENAI_API_KEY"] = "env";
  EXPECT_EQ(controller.getState(), (AppState{true, false, "OpenAI recommendations ready"}));
}

TEST_F(SuggestionTest, WordsFailures) {
  EXPECT_EQ(suggest(), noSession);
  system.applications.running = {
      {.bundleIdentifier = "com.pioneerdj.rekordboxdj", .processIdentifier = 7}};
  EXPECT_EQ(suggest(), "rekordbox is running but no active deck was detected. Play a track in "
                       "Performance mode, then try again.");
  system.applications.running.clear();
  play("Song");
  requestFailure = "The request timed out.";
  EXPECT_EQ(suggest(), "The request timed out.");
}

TEST_F(SuggestionTest, LabelsEverySource) {
  const std::tuple<const char*, const char*> cases[] = {
      {"Serato performance history", "Serato Performance History + Tinker"},
      {"Mixxx current-track metadata", "Mixxx Current Track + Tinker"},
      {"rekordbox deck metadata", "rekordbox Deck Metadata + Tinker"},
      {"VirtualDJ master-deck metadata", "VirtualDJ Master Deck + Tinker"},
      {"VirtualDJ play history", "VirtualDJ Play History + Tinker"},
      {"djay Pro play history", "djay Pro Play History + Tinker"},
      {"mixxx current-track metadata", "macOS Media Control + Tinker"}};
  for (const auto& [detection, label] : cases) {
    EXPECT_EQ(analyze({.title = "T", .artist = "A", .key = "F♯m", .detection = detection}), "ok");
    EXPECT_EQ(result.source, label);
    EXPECT_EQ(result.notice, "Detected through " + std::string(detection) + ".");
    EXPECT_EQ(result.currentTrack.key, "11A");
  }
  EXPECT_EQ(analyze({.title = "T", .artist = "A"}), "ok");
  EXPECT_EQ(result.source, "macOS Media Control + Tinker");
  EXPECT_EQ(result.notice, "Detected through macOS now-playing metadata.");
  EXPECT_EQ(result.currentTrack.other, "Verified by macOS media session");
  EXPECT_EQ(result.currentTrack.confidence, 100);
}

TEST_F(SuggestionTest, ListensWhenTheExtractorIsInstalled) {
  installExtractor(0, R"({"rhythm":{"bpm":127.9},"lowlevel":{"average_loudness":0.87654},
                          "tonal":{"key_edma":{"key":"F#","scale":"minor"}}})");
  const NowPlayingTrack track{.title = "T",
                              .artist = "A",
                              .bpm = 100,
                              .key = "Am",
                              .detection = "Serato performance history"};
  EXPECT_EQ(analyze(track), "ok");
  EXPECT_EQ(result.notice, "Detected through Serato performance history and analyzed with "
                           "Essentia.");
  EXPECT_EQ(result.currentTrack.bpm, 127.9);
  EXPECT_EQ(result.currentTrack.key, "11A");
  EXPECT_EQ(result.currentTrack.other, "Essentia audio analysis; average loudness 0.877");
  EXPECT_TRUE(controller.getState().essentiaAvailable);

  installExtractor(2, "");
  EXPECT_EQ(analyze(track), "ok");
  EXPECT_EQ(result.notice, "Detected through Serato performance history; Essentia audio analysis "
                           "was unavailable for this sample.");
  EXPECT_EQ(result.currentTrack.bpm, 100);
  EXPECT_NE(prompt.find("- BPM: 100.00\n- Key: 8A\n"), std::string::npos);

  installExtractor(0, "{}");
  EXPECT_EQ(analyze(track), "ok");
  EXPECT_EQ(result.currentTrack.key, "");
}

TEST_F(SuggestionTest, UsesTheAddressesOfTheEnvironment) {
  play("Song");
  system.environment.variables = {{"VELMOR_TINKER_URL", "http://127.0.0.1:1/x"},
                                  {"VELMOR_OPENAI_URL", ""}};
  AppController local(system.platform, store);
  EXPECT_EQ(outcomeOf(local.suggestTracks()), "ok");
  EXPECT_EQ(suggest(), "ok");
  EXPECT_EQ(system.http.requests.at(0).url, "http://127.0.0.1:1/x");
  EXPECT_EQ(system.http.requests.at(1).url,
            "https://tinker.thinkingmachines.dev/services/tinker-prod/anthropic/api/v1/messages");
}

TEST_F(SuggestionTest, TellsVersionAndBuildDate) {
  EXPECT_EQ(controller.appInfo(), (AppInfo{"1.0.0", "16.11.2026"}));
  system.loop.advance(Seconds{100 * 3600});
  EXPECT_EQ(controller.appInfo().buildDate, "16.11.2026");
  system.bundle.information = {{"CFBundleShortVersionString", "2.1.0"},
                               {"VelmorBuildDate", "01.02.2026"}};
  EXPECT_EQ(AppController(system.platform, store).appInfo(), (AppInfo{"2.1.0", "01.02.2026"}));
}

#include "analysis/LastMeasurement.h"
#include "tests/app/ControllerFixture.h"
#include "tests/nowplaying/RekordboxScreen.h"
#include "tests/support/DatabaseFile.h"
#include "tests/support/Outcome.h"

#include <algorithm>

using namespace velmor;

namespace {

class SuggestionTest : public ControllerFixture {
protected:
  std::string outcomeOf(Task<VisionResult> suggestion) {
    return taskOutcome(system.loop, std::move(suggestion), result);
  }
  std::string suggest() { return outcomeOf(controller.suggestTracks()); }
  AppState state() {
    AppState state;
    EXPECT_EQ(taskOutcome(system.loop, controller.getState(), state), "ok");
    return state;
  }
  std::string analyze(const NowPlayingTrack& track) {
    return outcomeOf(controller.analyzeNowPlaying(track));
  }

  /// Analyses the track with a recorder that always works.
  std::string listen(int status, const std::string& report) {
    installExtractor([=, this](const ChildProcess& child) -> ChildResult {
      system.files.files[child.arguments.back()].bytes = report;
      return {child.executable == "/opt/extractor" ? status : 0, "no tempo", ""};
    });
    return analyze({.title = "T", .artist = "A", .bpm = 100, .key = "Am", .detection = "sight"});
  }

  VisionResult result;
};

} // namespace

TEST_F(SuggestionTest, NeedsAKey) {
  auto config = store->current();
  config.tinkerApiKey = "";
  store->save(config);
  EXPECT_EQ(suggest(), "Tinker API key is required for recommendations");
  EXPECT_EQ(state(), (AppState{false, false, "API key required"}));
  config.aiModel = " GPT-4.1 ";
  store->save(config);
  EXPECT_EQ(suggest(), "OpenAI API key is required for recommendations");
  EXPECT_TRUE(system.http.requests.empty());
  system.environment.variables["OPENAI_API_KEY"] = "env";
  EXPECT_EQ(state(), (AppState{true, false, "OpenAI recommendations ready"}));
}

TEST_F(SuggestionTest, RecordsNothingForAQuestionThatCannotBeAsked) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {" \n", "", "Tinker API key is not configured"},
      {"key\r", "", "The API key contains a line break. Enter it again without one."},
      {"key", "ftp://x",
       "VELMOR_TINKER_URL is not a whole address that begins with http:// or https://."}};
  play("Song");
  installExtractor([](const ChildProcess&) { return ChildResult{1, "", ""}; });
  for (const auto& [key, address, message] : cases) {
    system.environment.variables["TINKER_API_KEY"] = key;
    system.environment.variables["VELMOR_TINKER_URL"] = address;
    AppController fresh(system.platform, store);
    EXPECT_EQ(outcomeOf(fresh.suggestTracks()), message);
  }
  EXPECT_TRUE(std::ranges::none_of(system.processes.started, &ChildProcess::endsWithVelmor));
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

TEST_F(SuggestionTest, PutsWhatItHearsInPlaceOfWhatItWasTold) {
  EXPECT_EQ(listen(0, R"({"rhythm":{"bpm":127.9},"lowlevel":{"average_loudness":0.87654},
                          "tonal":{"key_edma":{"key":"F#","scale":"minor"}}})"),
            "ok");
  EXPECT_NE(prompt.find("- BPM: 127.90\n- Key: 11A\n"), std::string::npos);
  EXPECT_EQ(result.currentTrack.other, "Essentia audio analysis; average loudness 0.877");
  EXPECT_EQ(result.notice, "Detected through sight and analyzed with Essentia.");
  EXPECT_EQ(listen(2, "{}"), "ok");
  EXPECT_EQ(result.notice, "Detected through sight; Essentia audio analysis was unavailable for "
                           "this sample.");
  EXPECT_EQ(system.log.lines.back(),
            "Velmor: the sample could not be measured: run Essentia: exit 2 (no tempo)");
  EXPECT_NE(prompt.find("- BPM: 100.00\n- Key: 8A\n"), std::string::npos);
  EXPECT_EQ(LastMeasurement::read(system.platform),
            "2026-11-16 00:00 UTC: failed: run Essentia: exit 2 (no tempo)");
  EXPECT_EQ(system.processes.started.back().variables,
            (std::map<std::string, std::string>{{"VELMOR_KNOWN_BPM", "100.00"},
                                                {"VELMOR_KNOWN_KEY", "8A"}}));
  EXPECT_EQ(listen(0, "{}"), "ok");
  EXPECT_EQ(result.currentTrack.key, "");
}

TEST_F(SuggestionTest, AsksTheDefaultProviderAboutWhatPlays) {
  play("Song");
  EXPECT_EQ(suggest(), "ok");
  EXPECT_EQ(result.currentTrack.song, "Song");
  EXPECT_EQ(system.http.requests.back().url, ProviderEndpoint::tinkerDefault);
}

TEST_F(SuggestionTest, TellsRekordboxsDecksApartByASecondLook) {
  const auto show = [&](const std::string& left, const std::string& right) {
    system.accessibility.applications[2] = RekordboxScreen::application(RekordboxScreen::texts(
        {"Cued", "A", left, "128.00", "8A"}, {"Playing", "A", right, "128.00", "8A"}));
  };
  system.applications.running = {{"com.pioneerdj.rekordboxdj", "rekordbox", 2}};
  TaskGroup tasks(system.loop);
  const auto ask = [&]() -> Task<void> { result = co_await controller.suggestTracks(); };
  show("0:02", "3:40");
  tasks.start(ask());
  system.loop.runPending();
  EXPECT_TRUE(system.http.requests.empty());
  show("0:02", "3:42");
  system.loop.advance(NowPlayingDetector::secondLook);
  EXPECT_EQ(result.currentTrack.song, "Playing");
  show("0:02", "3:43");
  EXPECT_EQ(suggest(), "ok") << "at once, since the clocks are known";
}

TEST_F(SuggestionTest, SuggestsFromTheDjsOwnMusicWithoutAKeyOrANetwork) {
  auto config = store->current();
  config.aiModel = " Velmor/Crate";
  config.tinkerApiKey = "";
  store->save(config);
  play("Song");
  EXPECT_EQ(state(), (AppState{false, false, "No music found for your crate"}));
  EXPECT_EQ(suggest(), "No music found for your crate");

  TemporaryFolder home;
  system.environment.home = home.path;
  const auto library = home.path / ".mixxx/mixxxdb.sqlite";
  system.files.files[library];
  DatabaseFile mixxx(library, R"(
    CREATE TABLE library(id INTEGER PRIMARY KEY, artist, title, album, genre, bpm, key, location,
                         mixxx_deleted);
    CREATE TABLE track_locations(id INTEGER PRIMARY KEY, location, fs_deleted);
    CREATE TABLE Playlists(id INTEGER PRIMARY KEY, hidden);
    CREATE TABLE PlaylistTracks(playlist_id, track_id, position, pl_datetime_added);
    INSERT INTO track_locations VALUES(1, '/m/1', 0);
    INSERT INTO library VALUES (1, 'ARTIST', 'song', '', 'House', 128, 'Am', 1, 0),
      (2, 'B', 'Far', '', 'House', 100, 'Am', 1, 0), (3, 'C', 'Near', '', 'House', 127, 'Em', 1, 0),
      (4, 'D', 'Fair', '', 'House', 122, 'Em', 1, 0), (5, 'E', 'None', '', 'House', 180, '', 1, 0))");
  installExtractor([](const ChildProcess&) { return ChildResult{1, "", ""}; });
  EXPECT_EQ(suggest(), "ok");
  EXPECT_TRUE(std::ranges::none_of(system.processes.started, &ChildProcess::endsWithVelmor));
  EXPECT_EQ(std::tie(result.currentTrack.bpm, result.currentTrack.key), std::tuple(128.0, "8A"))
      << "the crate knows what the player does not say, so nothing is recorded";
  ASSERT_EQ(result.recommendations.size(), 3U);
  EXPECT_EQ(result.recommendations[0].song, "Near");
  EXPECT_EQ(result.recommendations[1].song, "Fair");
  EXPECT_EQ(result.recommendations[0].key, "9A");
  EXPECT_EQ(result.source, "macOS Media Control + Your crate");
  EXPECT_EQ(state(), (AppState{true, true, "Your crate: 5 tracks"}));
  mixxx.run("DELETE FROM library WHERE id > 4");
  EXPECT_EQ(state().provider, "Your crate: 5 tracks") << "nobody waits for a reading";
  system.fileWatcher.notice();
  system.loop.advance(Seconds{3});
  EXPECT_EQ(state().provider, "Your crate: 4 tracks") << "what changes is read again";
  EXPECT_TRUE(system.http.requests.empty());

  EXPECT_EQ(outcomeOf(controller.suggestAfterNamed("d - fair")), "ok");
  EXPECT_EQ(result.currentTrack.song, "Fair");
  EXPECT_EQ(result.source, "Your crate");
  EXPECT_EQ(outcomeOf(controller.suggestAfterNamed("nothing")),
            "Your crate has no track with the name \"nothing\". Give it as \"Artist - Title\".");
}

TEST_F(SuggestionTest, TellsVersionAndBuildDate) {
  EXPECT_EQ(controller.appInfo(), (AppInfo{"1.0.0", "16.11.2026"}));
  system.loop.advance(Seconds{100 * 3600});
  EXPECT_EQ(controller.appInfo().buildDate, "16.11.2026");
  system.bundle.information = {{"CFBundleShortVersionString", "2.1.0"},
                               {"VelmorBuildDate", "01.02.2026"}};
  EXPECT_EQ(AppController(system.platform, store).appInfo(), (AppInfo{"2.1.0", "01.02.2026"}));
}

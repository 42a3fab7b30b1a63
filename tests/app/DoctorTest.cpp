#include "analysis/LastMeasurement.h"
#include "app/DoctorTrials.h"
#include "base/Json.h"
#include "model/AppConfig.h"
#include "platform/SystemStatus.h"
#include "tests/support/DatabaseFile.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace velmor;
using testing::HasSubstr;
using testing::Not;

namespace {

using State = DoctorFinding::State;

struct SomeServices : SystemStatus {
  std::vector<SystemService> services() override {
    return {{"Display", false, "none", "Start it."}, {"Sound server", true, "here", ""}};
  }
};

struct DoctorTest : testing::Test {
  HomeWithDatabases system;
  SomeServices status;

  DoctorReport examine() { return Doctor(system.platform, status).examine(); }

  static DoctorFinding find(const DoctorReport& report, const std::string& name) {
    for (const auto* findings : {&report.sources, &report.surroundings}) {
      const auto found = std::ranges::find(*findings, name, &DoctorFinding::name);
      if (found != findings->end()) return *found;
    }
    ADD_FAILURE() << name << " is not in the report";
    return {};
  }
};

} // namespace

TEST_F(DoctorTest, TellsRunningProgramsWhoseFilesCannotBeReadFromThoseThatCan) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"Mixxx", "mixxx", ".mixxx/mixxxdb.sqlite"},
      {"djay Pro", "djay", "Music/djay/djay Media Library/MediaLibrary.db"},
      {"Serato", "serato dj", "Music/_Serato_/Library/master.sqlite"}};
  for (const auto& [name, process, database] : cases) {
    EXPECT_EQ(find(examine(), name).state, State::absent) << name;
    EXPECT_FALSE(find(examine(), name).advice.empty()) << name;
    system.processes.running = {process};
    EXPECT_EQ(find(examine(), name).state, State::faulty) << name;
    // Known to the system, but not there to be read.
    system.files.files[system.environment.home / database];
    EXPECT_EQ(find(examine(), name).state, State::faulty) << name;
    EXPECT_FALSE(examine().trackCanBeFound) << name;
    system.addDatabase(database, "CREATE TABLE t (x)");
    EXPECT_EQ(find(examine(), name).state, State::ready) << name;
    EXPECT_TRUE(examine().trackCanBeFound) << name;
    system.processes.running.clear();
  }
}

TEST_F(DoctorTest, TellsOfEverySourceToolAndServiceWithWhatToDo) {
  system.processes.running = {"spotify"};
  system.mediaRemote.available = false;
  std::string text;
  const auto report = examine();
  for (const auto* findings : {&report.sources, &report.surroundings})
    for (const auto& finding : *findings) {
      text += finding.name + (finding.state == State::faulty ? "!, " : ", ");
      EXPECT_EQ(finding.advice.empty(), finding.state == State::ready) << finding.name;
    }
  EXPECT_EQ(text, "Mixxx, rekordbox, djay Pro, Spotify, Music, Media session!, VirtualDJ, Serato, "
                  "Display, Sound server, ffmpeg, Extractor, lsof, Your music, Model provider!, ");
  EXPECT_THAT(report.readable(),
              HasSubstr("\n  Spotify             absent  running, but plays nothing\n"));
  EXPECT_EQ(
      nlohmann::json::parse(report.json()).at("surroundings").at(1),
      nlohmann::json(
          {{"name", "Sound server"}, {"state", "ready"}, {"detail", "here"}, {"advice", ""}}));
}

TEST_F(DoctorTest, NamesTheRefusalOfRekordboxsWindowAndThatNobodyElseIsAskedThen) {
  system.mediaRemote.playing = true;
  system.mediaRemote.info =
      NowPlayingInfo{{nowPlayingKey::title, "T"}, {nowPlayingKey::artist, "A"}};
  EXPECT_TRUE(examine().trackCanBeFound);
  system.applications.running = {{"com.pioneerdj.rekordboxdj", "rekordbox", 7}};
  system.accessibility.errorCode = accessibilityError::apiDisabled;
  const auto report = examine();
  EXPECT_EQ(find(report, "Media session").state, State::ready);
  EXPECT_EQ(find(report, "Display").state, State::absent);
  EXPECT_EQ(find(report, "Sound server").state, State::ready);
  system.windows.windows = {{5, "A - T | Mixxx"}};
  EXPECT_EQ(find(examine(), "Mixxx").state, State::absent);
  system.processes.running = {"mixxx"};
  system.applications.running.push_back({"", "Mixxx", 5});
  EXPECT_EQ(find(examine(), "Mixxx").state, State::ready);
  EXPECT_EQ(find(report, "rekordbox").state, State::faulty);
  EXPECT_THAT(find(report, "rekordbox").advice, HasSubstr("accessibility bus"));
  EXPECT_FALSE(report.trackCanBeFound);
}

TEST_F(DoctorTest, SaysWhyATrackThatPlaysCannotBeTold) {
  system.mediaRemote.playing = true;
  system.mediaRemote.info = NowPlayingInfo{{nowPlayingKey::title, "A film"}};
  system.processes.running = {"mixxx", "serato dj"};
  system.applications.running = {{"", "Mixxx", 5}};
  system.windows.windows = {{5, "Only A Title | Mixxx"}};
  const auto history = "Music/_Serato_/Library/master.sqlite";
  system.addDatabase(history, "PRAGMA journal_mode = WAL; CREATE TABLE t (x)");
  system.put(std::string(history) + "-wal", "not empty");
  const auto report = examine();
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"Mixxx", "has no artist", "enter both"},
      {"Media session", "does not tell title and artist", "both tags"},
      {"Serato", "cannot be read", "Start and quit the program once"}};
  for (const auto& [name, detail, advice] : cases) {
    EXPECT_EQ(find(report, name).state, State::faulty) << name;
    EXPECT_THAT(find(report, name).detail, HasSubstr(detail));
    EXPECT_THAT(find(report, name).advice, HasSubstr(advice));
  }
  EXPECT_FALSE(report.trackCanBeFound);
  system.mediaRemote.available = false;
  system.processes.running = {"spotify"};
  system.record.answerScript = [](const PlayerScript&) { return ChildResult{1, "", ""}; };
  EXPECT_THAT(find(examine(), "Spotify").detail, HasSubstr("no session bus"));
}

TEST_F(DoctorTest, SaysWhereTheKeyIsButNeverTheKey) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"", "", "no key"}, {"sk-stored", "", "config.json"}, {"", "sk-given", "OPENAI_API_KEY"}};
  const auto file = system.environment.applicationSupportDirectory() / "Velmor/config.json";
  for (const auto& [stored, given, detail] : cases) {
    const AppConfig config{.openaiApiKey = stored, .aiModel = "gpt-5"};
    system.files.files[file].bytes = nlohmann::json(config).dump();
    system.environment.variables = {{"OPENAI_API_KEY", given}, {"TINKER_API_KEY", "sk-other"}};
    const auto report = examine();
    EXPECT_THAT(find(report, "Model provider").detail, HasSubstr(detail));
    EXPECT_EQ(report.suggestionCanBeAsked, detail != std::string("no key"));
    EXPECT_THAT(report.readable() + report.json(), Not(HasSubstr("sk-")));
  }
  system.files.writeFailure = "The disk is full.";
  EXPECT_EQ(find(examine(), "Model provider").advice, "The disk is full.");
}

TEST_F(DoctorTest, NamesTheExtractorItsVersionAndWhatItLastHeard) {
  system.environment.variables["ESSENTIA_EXTRACTOR"] = "/opt/extractor";
  system.files.files["/opt/extractor"].permissions = 0755;
  ChildResult version;
  system.processes.handler = [&](const ChildProcess& child) {
    return child.executable == "/opt/extractor" ? version : ChildResult{1, "", ""};
  };
  const auto said = [&] { return find(examine(), "Extractor").detail; };
  version = {1, "wrong number of arguments\nUsage: ...\n", ""};
  EXPECT_EQ(said(), "/opt/extractor, which does not tell its version; nothing measured yet");
  version = {0, "extractor\t2.0\nfree of charge\n", ""};
  LastMeasurement::keep(system.platform, "174.0 BPM, F minor");
  EXPECT_THAT(said(), testing::MatchesRegex("/opt/extractor, extractor 2.0; last measurement "
                                            "....-..-.. ..:.. UTC: 174.0 BPM, F minor"));
}

TEST_F(DoctorTest, ListensToTheDeviceAndRepeatsTheToolsOwnWords) {
  system.environment.variables["ESSENTIA_EXTRACTOR"] = "/opt/extractor";
  for (const auto* const program : {"/opt/extractor", "/usr/local/bin/ffmpeg"})
    system.files.files[program].permissions = 0755;
  const auto silence = std::string("RIFF\0\0\0\0WAVEfmt \x10\0\0\0", 20) + std::string(14, '\0') +
                       std::string("\x10\0data\4\0\0\0\0\0\0\0", 14);
  // As long as it may be, and one more.
  const std::string words(400 - std::string("[1mtoo quiet").size(), 'x');
  const std::tuple<std::string, int, std::string> cases[] = {
      {silence, 0, "Recording!: :BlackHole 2ch, loudest -100.0 dB, average -100.0 dB: silence"},
      {"RIFF", 0, "Recording!: :BlackHole 2ch gives no sound file that Velmor can read"},
      {"RIFF", 1, "Recording!: :BlackHole 2ch: exit 1 (no such device)"}};
  for (const auto& [recorded, exitStatus, expected] : cases) {
    const std::string extra = recorded == silence ? "" : "x";
    system.record.captureDevices.resize(1);
    system.processes.handler = [&](const ChildProcess& child) -> ChildResult {
      if (child.executable == "/opt/extractor") return {2, "\x1B[1mtoo\nquiet" + words + extra, ""};
      system.files.files[child.arguments.back()].bytes = recorded;
      return {exitStatus, "no such device\n", ""};
    };
    std::string text;
    for (const auto& finding : DoctorTrials::listen(system.platform))
      text +=
          finding.name + (finding.state == State::faulty ? "!: " : ": ") + finding.detail + "\n";
    const auto measured = "Measurement!: /opt/extractor: exit 2 ([1mtoo quiet" + words +
                          (extra.empty() ? ")\n" : " …)\n");
    EXPECT_EQ(text, expected + "\n" + (exitStatus == 0 ? measured : ""));
  }
  EXPECT_TRUE(std::ranges::none_of(system.files.folders, [](const auto& folder) {
    return folder.first.string().starts_with("/tmp/velmor-audio-");
  }));
}

TEST_F(DoctorTest, AsksOnlyWithAKeyAndIsNotReadyWhenATrialFails) {
  EXPECT_THAT(DoctorTrials::ask(system.platform).at(0).detail, HasSubstr("no key for Tinker"));
  EXPECT_TRUE(system.http.requests.empty());
  system.environment.variables["TINKER_API_KEY"] = "tk-given";
  system.http.handler = [](const HttpRequest&) { return HttpResponse{401, ""}; };
  const auto refused = DoctorTrials::ask(system.platform).at(0);
  EXPECT_EQ(refused.detail, "Tinker refuses the key (status 401).");
  DoctorReport report{.trackCanBeFound = true, .suggestionCanBeAsked = true};
  EXPECT_TRUE(report.isReady());
  report.trials = {refused};
  EXPECT_FALSE(report.isReady());
}

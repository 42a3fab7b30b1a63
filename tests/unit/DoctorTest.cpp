#include "app/Doctor.h"

#include "model/AppConfig.h"
#include "nowplaying/NowPlayingError.h"
#include "tests/fakes/FakeSystemStatus.h"
#include "tests/unit/DatabaseFile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

using namespace velmor;
using testing::HasSubstr;
using testing::Not;

namespace {

using State = DoctorFinding::State;

struct DoctorTest : testing::Test {
  HomeWithDatabases system;
  FakeSystemStatus status;

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

TEST_F(DoctorTest, SaysOfEverythingThatIsNotReadyWhatToDo) {
  status.present = {{"Display", false, "none", "Start it."}, {"Sound server", true, "here", ""}};
  system.mediaRemote.available = false;
  const auto report = examine();
  EXPECT_FALSE(report.trackCanBeFound);
  EXPECT_FALSE(report.suggestionCanBeAsked);
  EXPECT_EQ(report.sources.size(), 8U);
  for (const auto* findings : {&report.sources, &report.surroundings}) {
    for (const auto& finding : *findings) {
      EXPECT_FALSE(finding.detail.empty()) << finding.name;
      EXPECT_EQ(finding.advice.empty(), finding.state == State::ready) << finding.name;
    }
  }
  EXPECT_EQ(find(report, "Display").state, State::absent);
  EXPECT_EQ(find(report, "Sound server").state, State::ready);
}

TEST_F(DoctorTest, TellsRunningProgramsWhoseFilesCannotBeReadFromThoseThatCan) {
  struct Case {
    const char* name;
    const char* process;
    const char* database;
  };
  for (const auto& [name, process, database] :
       {Case{"Mixxx", "mixxx", ".mixxx/mixxxdb.sqlite"},
        Case{"djay Pro", "djay", "Music/djay/djay Media Library/MediaLibrary.db"},
        Case{"Serato", "serato dj", "Music/_Serato_/Library/master.sqlite"}}) {
    EXPECT_EQ(find(examine(), name).state, State::absent) << name;
    system.processes.running = {process};
    EXPECT_EQ(find(examine(), name).state, State::faulty) << name;
    EXPECT_FALSE(examine().trackCanBeFound) << name;
    // Known to the system, but not there to be read.
    system.files.files[system.environment.home / database];
    EXPECT_EQ(find(examine(), name).state, State::faulty) << name;
    system.addDatabase(database, "CREATE TABLE t (x)");
    EXPECT_EQ(find(examine(), name).state, State::ready) << name;
    EXPECT_TRUE(examine().trackCanBeFound) << name;
    system.processes.running.clear();
  }
}

TEST_F(DoctorTest, NamesTheRefusalOfRekordboxsWindowAndThatNobodyElseIsAskedThen) {
  system.mediaRemote.playing = true;
  EXPECT_TRUE(examine().trackCanBeFound);
  system.applications.running = {{"com.pioneerdj.rekordboxdj", "rekordbox", 7}};
  system.accessibility.errorCode = accessibilityError::apiDisabled;
  const auto report = examine();
  EXPECT_EQ(find(report, "Media session").state, State::ready);
  EXPECT_EQ(find(report, "rekordbox").state, State::faulty);
  EXPECT_EQ(find(report, "rekordbox").advice,
            NowPlayingError::accessibilityDenied("rekordbox").errorDescription());
  EXPECT_FALSE(report.trackCanBeFound);
}

TEST_F(DoctorTest, SaysWhereTheKeyIsButNeverTheKey) {
  struct Case {
    const char* settings;
    const char* environment;
    State state;
    const char* detail;
  };
  const auto file = system.environment.applicationSupportDirectory() / "Velmor/config.json";
  for (const auto& [settings, environment, state, detail] :
       {Case{"", "", State::faulty, "no key"}, Case{"sk-stored", "", State::ready, "config.json"},
        Case{"sk-stored", "sk-given", State::ready, "OPENAI_API_KEY"}}) {
    AppConfig config;
    config.aiModel = "gpt-5";
    config.openaiApiKey = settings;
    system.files.files[file].bytes = nlohmann::json(config).dump();
    system.environment.variables = {{"OPENAI_API_KEY", environment}, {"TINKER_API_KEY", "tk"}};
    const auto report = examine();
    EXPECT_EQ(find(report, "Model provider").state, state) << detail;
    EXPECT_THAT(find(report, "Model provider").detail, HasSubstr(detail));
    EXPECT_EQ(report.suggestionCanBeAsked, state == State::ready);
    EXPECT_THAT(report.readable() + report.json(), Not(HasSubstr("sk-")));
  }
  system.files.writeFailure = "The disk is full.";
  EXPECT_EQ(find(examine(), "Model provider").advice, "The disk is full.");
}

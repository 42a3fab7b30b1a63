#include "app/Program.h"

#include "app/DoctorTrials.h"
#include "app/crate/CrateText.h"
#include "app/streams/WindowService.h"
#include "platform/LineInput.h"
#include "platform/SystemStatus.h"
#include "tests/app/ControllerFixture.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakeLocalService.h"
#include "tests/support/Outcome.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

using namespace velmor;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A system whose main loop runs until the program ends or a minute is over.
class FakeHost : public Host, LineInput, SystemStatus {
public:
  explicit FakeHost(FakePlatform& fake) : local(fake.loop), system(fake) {}

  const Platform& platform() const override { return system.platform; }
  LineInput& standardInput() override { return *this; }
  SystemStatus& systemStatus() override { return *this; }
  bool isErrorTerminal() const override { return isTerminal; }
  LocalService& localService() override { return local; }
  void onOutputClosed(MainLoop::Work work) override { closeOutput = std::move(work); }
  std::optional<Desktop> openDesktop() override {
    return hasDisplay ? std::optional(desktop.desktop) : std::nullopt;
  }
  void run() override {
    if (meanwhile) meanwhile();
    for (int second = 0; second < 60 && !system.workspace.isTerminating(); ++second)
      system.loop.advance(Seconds{1});
  }
  void onTerminationRequest(MainLoop::Work work) override { terminate = std::move(work); }
  void read(std::function<void(std::string)> onLine, std::function<void()> onEnd) override {
    for (const auto& line : lines)
      onLine(line);
    onEnd();
  }
  std::vector<SystemService> services() override { return {}; }

  FakeDesktop desktop;
  bool hasDisplay = true;
  bool isTerminal = false;
  std::vector<std::string> lines;
  /// What happens once the loop runs.
  std::function<void()> meanwhile;
  MainLoop::Work terminate;
  MainLoop::Work closeOutput;
  FakeLocalService local;

private:
  FakePlatform& system;
};

class ProgramTest : public ControllerFixture {
protected:
  int run(const std::vector<std::string>& arguments) {
    system.workspace.terminations = 0;
    out.str("");
    err.str("");
    return Program(host, out, err).run(arguments);
  }

  FakeHost host{system};
  std::ostringstream out;
  std::ostringstream err;
};

} // namespace

TEST_F(ProgramTest, CarriesOutEachCommandLine) {
  const std::string track = "A – T [macOS media: macOS media session]\n";
  const std::string json = R"({"album":"","artist":"A","bpm":0,"detection":"macOS media session",)"
                           R"("genre":"","key":"","source":"macOS media","title":"T"})"
                           "\n";
  const std::string ranking =
      "Now playing: A – T\nDetected through macOS media session. macOS Media "
      "Control + Tinker\n\n1. B – Next 0/100\n   \n2. B – Next 0/100\n   "
      "\n3. B – Next 0/100\n   \n";
  const auto noMusic = "No music found for your crate\n";
  const std::tuple<std::vector<std::string>, const char*, int, std::string, std::string> cases[] = {
      // What plays; then status, output and errors.
      {{"now"}, "", 1, "", noSession + "\n"},
      {{"now"}, "T", 0, track, ""},
      {{"now", "--json"}, "T", 0, json, ""},
      {{"suggest"}, "", 1, "", noSession + "\n"},
      {{"suggest"}, "T", 0, ranking, ""},
      {{"suggest"}, "gone", 1, "A – gone [macOS media: macOS media session]\n", "Lost.\n"},
      {{"suggest", "--crate"}, "T", 1, "", noMusic},
      {{"after", "A - T"}, "", 1, "", noMusic},
      {{"crate"}, "", 1, noMusic, ""},
      {{"--version"}, "", 0, "Velmor 1.0.0 (16.11.2026)\n", ""},
      {{"--help"}, "", 0, CommandLine::help, ""},
      {{"sing"}, "", 2, "", CommandLine::usage + std::string("\n")},
  };
  for (const auto& [arguments, title, status, output, errors] : cases) {
    stop();
    if (*title) play(title, "A");
    requestFailure = title == std::string("gone") ? "Lost." : "";
    EXPECT_EQ(run(arguments), status) << arguments.front() << title;
    EXPECT_EQ(out.str(), output) << arguments.front() << title;
    EXPECT_EQ(err.str(), errors) << arguments.front() << title;
  }
  host.isTerminal = true;
  EXPECT_EQ(run({"crate"}), 1);
  EXPECT_EQ(err.str(), "\r\033[KReading your music: 0 %\r\033[K");
  host.isTerminal = false;
  EXPECT_EQ(run({"suggest", "--json"}), 1);
  auto config = store->current();
  config.tinkerApiKey = "";
  store->save(config);
  EXPECT_EQ(run({"suggest"}), 1);
  EXPECT_EQ(err.str(), "Tinker API key is required for recommendations\n");
}

TEST_F(ProgramTest, SaysInItsStatusWhatItsOutputCannot) {
  std::ofstream full("/dev/full");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--help"}, {"bridge"}}) {
    system.workspace.terminations = 0;
    host.lines = {R"({"id":"1","method":"GetState"})"};
    full.clear();
    EXPECT_EQ(Program(host, full, err).run(arguments), 1) << arguments.front();
  }
  EXPECT_EQ(err.str(), "The output could not be written.\nThe answers could not be written.\n");
  host.meanwhile = [this] { host.terminate(); };
  play("T");
  EXPECT_EQ(run({"now"}), 1) << "told to end before it could say anything";
  EXPECT_EQ(out.str() + err.str(), "");
  EXPECT_EQ(run({"bridge"}), 0);
}

TEST_F(ProgramTest, AnswersTheBridgeUntilItsInputHasEndedAndAllIsSaid) {
  play("T");
  host.lines = {R"({"id":"1","method":"SuggestTracks"})", "not JSON",
                R"({"id":"2","method":"StartCompactDrag"})"};
  system.files.folders["/tmp/velmor-audio-left"] = 0700;
  EXPECT_EQ(run({"bridge"}), 0);
  EXPECT_TRUE(system.files.folders.find("/tmp/velmor-audio-left") == system.files.folders.end());
  EXPECT_THAT(out.str(), HasSubstr("window.__velmorResolve(\"2\", null);\n"));
  EXPECT_THAT(out.str(), HasSubstr("window.__velmorResolve(\"1\", {"));
  EXPECT_EQ(system.workspace.terminations, 1);
  host.lines.clear();
  EXPECT_EQ(run({"bridge"}), 0);
  EXPECT_EQ(out.str(), "");
}

TEST_F(ProgramTest, ExaminesAndTriesWhatItIsAskedTo) {
  EXPECT_EQ(run({"doctor"}), 1);
  EXPECT_THAT(out.str(), HasSubstr("\n  Media session "));
  EXPECT_EQ(err.str(), "");
  play("T");
  system.mediaRemote.playing = true;
  EXPECT_EQ(run({"doctor", "--json"}), 0);
  EXPECT_THAT(out.str(), StartsWith("{"));
  EXPECT_EQ(run({"doctor", "--ask"}), 0);
  EXPECT_EQ(err.str(), "Sending Tinker one small request for the model "
                       "\"thinkingmachines/Inkling-Small\". It may cost a fraction of a cent.\n");
  EXPECT_THAT(out.str(), HasSubstr("Tinker answers, and takes the key and the model."));
  EXPECT_EQ(run({"doctor", "--listen"}), 1);
  EXPECT_EQ(err.str(), DoctorTrials::announcementOfListening);
}

TEST_F(ProgramTest, OpensOneWindow) {
  host.hasDisplay = false;
  EXPECT_EQ(run({}), 2);
  EXPECT_THAT(err.str(), StartsWith("velmor: the window needs an X11 display"));
  host.hasDisplay = true;
  auto& application = host.desktop.application;
  application.runsAlready = true;
  EXPECT_EQ(run({}), 0);
  EXPECT_TRUE(host.desktop.windows.windows.empty());
  application.runsAlready = false;
  host.meanwhile = [&] {
    auto& window = *host.desktop.windows.windows.front();
    window.orders.clear();
    application.delegate.lock()->applicationShouldHandleReopen();
    EXPECT_THAT(window.orders, testing::ElementsAre("key"));
    host.terminate();
    EXPECT_FALSE(window.visible);
  };
  EXPECT_EQ(run({}), 0);
  host.meanwhile = nullptr;
  system.files.writeFailure = "Permission denied";
  EXPECT_EQ(run({}), 1);
  EXPECT_THAT(application.alerts, testing::ElementsAre("Permission denied"));
}

TEST(CrateText, TellsWhatWasFoundAndWhatWasNot) {
  CrateContents crate;
  const CrateTrack withTempo{.title = "T", .bpm = 120};
  CrateTrack withKey{.title = "U"};
  withKey.key.emplace();
  crate.tracks = {&withTempo, &withKey, &withKey};
  crate.sources = {{.name = "Mixxx", .place = "/p\n", .tracks = 3}};
  crate.skipped.assign(20, {"/f\x1B", "why"});
  const auto text = CrateText::readable(crate);
  EXPECT_THAT(text, HasSubstr("\n  Mixxx: 3 (/p )\nWithout tempo: 2\nWithout key: 1\nSkipped: 20\n"
                              "  /f : why\n"));
  EXPECT_TRUE(text.ends_with("  /f : why\n"));
  CrateContents empty;
  empty.sources = crate.sources;
  empty.skipped = {{"f", "why"}};
  EXPECT_EQ(CrateText::json(empty),
            R"({"skipped":[{"file":"f","reason":"why"}],"sources":[{"name":"Mixxx","place":)"
            R"("/p\n","tracks":3}],"tracks":0,"withoutKey":0,"withoutTempo":0})"
            "\n");
  crate.skipped.push_back(crate.skipped.front());
  EXPECT_TRUE(CrateText::readable(crate).ends_with("  and more; --json names all\n"));
}

TEST_F(ProgramTest, FollowsTheTrackUntilItsReaderHasEnough) {
  const std::tuple<std::vector<std::string>, std::string, std::string> cases[] = {
      // What is printed, and what stands in the file at the end.
      {{"--format", "{title} [{bpm}]"}, "T\n\nU\n", ""},
      {{"--output", "/x/track.txt", "--format", "{title}"}, "", "U\n"},
  };
  for (const auto& [options, printed, written] : cases) {
    stop();
    host.meanwhile = [&, isPrinting = written.empty()] {
      system.loop.advance(Seconds{2});
      play("T");
      system.loop.advance(Seconds{9});
      stop();
      system.loop.advance(Seconds{9});
      play("U");
      system.loop.advance(Seconds{2});
      isPrinting ? host.closeOutput() : host.terminate();
    };
    std::vector<std::string> arguments{"now", "--follow"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run(arguments), 0);
    EXPECT_EQ(out.str(), printed);
    EXPECT_EQ(system.files.files["/x/track.txt"].bytes, written);
  }
  EXPECT_EQ(run({"now", "--follow", "--format", "{bmp}"}), 2);
  EXPECT_THAT(err.str(), HasSubstr("no field {bmp}"));
}

TEST_F(ProgramTest, AsksTheRunningWindow) {
  auto window = std::make_shared<AppController>(system.platform, store);
  WindowService service(system.platform, window);
  service.start(host.local);
  play("T", "A");
  auto looks = [this, before = 0]() mutable {
    return system.mediaRemote.opened - std::exchange(before, system.mediaRemote.opened);
  };
  EXPECT_EQ(run({"now"}), 0);
  EXPECT_EQ(out.str(), "A – T [macOS media: macOS media session]\n");
  EXPECT_EQ(looks(), 1) << "one of the two looked";
  EXPECT_EQ(run({"suggest"}), 0);
  EXPECT_THAT(out.str(), StartsWith("Now playing: A – T\n"));
  requestFailure = "Lost.";
  EXPECT_EQ(run({"suggest"}), 1);
  EXPECT_EQ(out.str() + err.str(), "A – T [macOS media: macOS media session]\nLost.\n");
  stop();
  EXPECT_EQ(run({"now"}), 1);
  EXPECT_EQ(err.str(), noSession + "\n");

  // Followers have the window look, which else does so by itself only.
  host.meanwhile = [&] {
    play("U", "A");
    system.loop.advance(Seconds{3});
    looks();
    const auto second = host.local.connect();
    second->send(WindowQuestion{WindowQuestion::Kind::follow}.line());
    system.loop.advance(Seconds{15});
    EXPECT_LE(looks(), 11) << "no more than the window alone";
    host.terminate();
  };
  EXPECT_EQ(run({"now", "--follow"}), 0);
  EXPECT_EQ(out.str(), "A – U [macOS media: macOS media session]\n");
  system.loop.advance(Seconds{1});
  looks();
  system.loop.advance(Seconds{30});
  EXPECT_EQ(looks(), 0) << "nobody follows any more";
}

#include "analysis/AudioAnalysisService.h"
#include "analysis/SoundLevel.h"
#include "analysis/WorkingFolder.h"
#include "base/VelmorError.h"
#include "tests/fakes/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace velmor;
using testing::ElementsAre;
using testing::MatchesRegex;

namespace {

const auto measured = "127.900000F#minor0.000000";

class AudioAnalysisTest : public testing::Test {
protected:
  AudioAnalysisTest() {
    for (const auto* const program : {"/usr/local/bin/ffmpeg", "/opt/extractor"})
      system.files.files[program].permissions = 0755;
    system.environment.variables["ESSENTIA_EXTRACTOR"] = "/opt/extractor";
    system.processes.handler = [this](const ChildProcess& child) -> ChildResult {
      if (child.executable == "/usr/bin/which") return {1, whichOutput, ""};
      if (child.executable == "/opt/extractor") {
        if (extractor.exitStatus == 0) system.files.files[child.arguments.at(1)].bytes = report;
        return extractor;
      }
      const auto& device = child.arguments.at(child.arguments.size() - 9);
      if (device == missing) return {1, "no such\ndevice\n", ""};
      system.files.files[child.arguments.back()].bytes = device == silent ? "" : "RIFF";
      return {0, "", ""};
    };
  }

  std::string outcome() {
    try {
      const auto features = AudioAnalysisService::analyze(system.platform, known);
      return std::to_string(features.bpm) + features.key + features.scale +
             std::to_string(features.loudness);
    } catch (const std::exception& error) {
      return error.what();
    }
  }

  /// The devices that a successful measurement tries.
  std::vector<std::string> devicesTried() {
    system.processes.started.clear();
    EXPECT_EQ(outcome(), measured);
    std::vector<std::string> devices;
    for (const auto& child : system.processes.started)
      if (child.executable.ends_with("ffmpeg")) devices.push_back(child.arguments.at(6));
    return devices;
  }

  FakePlatform system;
  AudioAnalysisService::Known known;
  ChildResult extractor;
  std::string report =
      R"({"rhythm":{"bpm":127.9},"tonal":{"key_edma":{"key":"F#","scale":"minor"}}})";
  std::string whichOutput;
  std::string missing = "?";
  std::string silent = "?";
};

} // namespace

TEST_F(AudioAnalysisTest, RecordsAndMeasures) {
  EXPECT_EQ(outcome(), measured);
  const auto& children = system.processes.started;
  ASSERT_EQ(children.size(), 2U);
  const auto sample = std::filesystem::path(children.at(1).arguments.at(0));
  EXPECT_THAT(children.at(0).arguments,
              ElementsAre("-hide_banner", "-loglevel", "error", "-f", "avfoundation", "-i",
                          ":BlackHole 2ch", "-t", "15", "-ac", "2", "-ar", "44100", "-y",
                          sample.string()));
  EXPECT_EQ(sample.filename(), "sample.wav");
  for (int name = 0; name < 40; ++name) {
    const auto folder = WorkingFolder(system.platform).sample().parent_path();
    EXPECT_THAT(folder, MatchesRegex("/tmp/velmor-audio-[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-"
                                     "[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
  }
  EXPECT_EQ(children.at(1).arguments.at(1), sample.parent_path() / "features.json");
  EXPECT_EQ(children.at(0).timeLimit, std::chrono::seconds{60});
  EXPECT_EQ(children.at(1).timeLimit, std::chrono::seconds{120});
  EXPECT_TRUE(system.files.folders.empty()) << "nothing is left";
}

TEST_F(AudioAnalysisTest, TellsTheExtractorAloneWhatIsKnownAndLetsOthersGoFirst) {
  using Variables = std::map<std::string, std::string>;
  const std::pair<AudioAnalysisService::Known, Variables> cases[] = {
      {{}, {}},
      {{.bpm = 174}, {{"VELMOR_KNOWN_BPM", "174.00"}}},
      {{-1, "8A", "Drum\n & Bass; \x1B[1m" + std::string(200, 'x')},
       {{"VELMOR_KNOWN_KEY", "8A"},
        {"VELMOR_KNOWN_GENRE", "Drum  & Bass;  [1m" + std::string(82, 'x')}}}};
  for (const auto& [given, expected] : cases) {
    known = given;
    EXPECT_EQ(outcome(), measured);
    const auto& children = system.processes.started;
    const auto& listener = children.at(children.size() - 1);
    EXPECT_EQ(listener.variables, expected);
    EXPECT_TRUE(listener.isInBackground);
    EXPECT_FALSE(children.at(children.size() - 2).isInBackground) << "a recording must not stutter";
    EXPECT_TRUE(children.at(children.size() - 2).variables.empty());
  }
}

TEST_F(AudioAnalysisTest, TriesTheDevicesInOrderUntilOneIsHeard) {
  system.record.existingCaptureDevices = [] { return std::vector<std::string>{":Loop"}; };
  system.environment.variables["VELMOR_AUDIO_DEVICE"] = " :MyLoop\n";
  missing = ":MyLoop";
  silent = ":BlackHole 2ch";
  EXPECT_THAT(devicesTried(), ElementsAre(":MyLoop", ":BlackHole 2ch", ":BlackHole"));
  system.environment.variables["VELMOR_AUDIO_DEVICE"] = "  ";
  system.record.captureDevices = {silent};
  EXPECT_THAT(devicesTried(), ElementsAre(":BlackHole 2ch", ":Loop"));
}

TEST_F(AudioAnalysisTest, FindsTheExtractor) {
  system.files.files["/opt/extractor"].permissions = 0644;
  EXPECT_EQ(outcome(), "Essentia extractor is not installed");
  EXPECT_EQ(system.processes.started.size(), 2U) << "nothing is recorded without an extractor";
  EXPECT_THAT(system.processes.started.at(1).arguments,
              ElementsAre("essentia_streaming_extractor_music.exe"));
  whichOutput = " /usr/bin/x \n";
  EXPECT_EQ(AudioAnalysisService::extractorPath(system.platform), "/usr/bin/x");
}

TEST_F(AudioAnalysisTest, FailsWithASentenceAndLeavesNothing) {
  extractor = {2, "ERROR\n", ""};
  EXPECT_EQ(outcome(), "run Essentia: exit 2 (ERROR\n)");
  extractor.output = "\xFF";
  EXPECT_EQ(outcome(), "run Essentia: exit 2 ()");
  extractor = {};
  report = "garbage";
  EXPECT_TRUE(outcome().starts_with("The data couldn't be read"));
  system.record.captureDevices.clear();
  EXPECT_EQ(outcome(), "system audio capture requires ffmpeg and a loopback device such as "
                       "BlackHole");
  system.record.captureDevices = {":BlackHole"};
  system.files.files.erase("/usr/local/bin/ffmpeg");
  EXPECT_EQ(outcome(), "ffmpeg is not installed");
  EXPECT_TRUE(system.files.folders.empty()) << "nothing is left";
  system.files.writeFailure = "The disk is full.";
  EXPECT_EQ(outcome(), "The disk is full.");
}

TEST_F(AudioAnalysisTest, RemovesWhatKilledRunsHaveLeftAndNothingElse) {
  const std::filesystem::path left = "/tmp/velmor-audio-LEFT";
  const std::filesystem::path inUse = "/tmp/velmor-audio-USED";
  for (const auto& folder : {left, inUse, std::filesystem::path("/tmp/other")})
    system.files.folders[folder] = 0700;
  system.files.files[left / "sample.wav"].bytes = "RIFF";
  system.files.held.insert(inUse);
  EXPECT_EQ(outcome(), measured);
  EXPECT_FALSE(system.files.files.contains(left / "sample.wav"));
  EXPECT_EQ(system.files.folders.size(), 2U);
  for (const auto& child : system.processes.started)
    EXPECT_TRUE(child.endsWithVelmor);
}

TEST_F(AudioAnalysisTest, LogsWhyNoDeviceCouldBeRecorded) {
  silent = ":Silent";
  system.record.captureDevices = {missing, silent};
  EXPECT_TRUE(outcome().starts_with("system audio capture requires"));
  EXPECT_THAT(system.log.lines,
              ElementsAre("Velmor: could not record ?: exit 1 (no such device)",
                          "Velmor: could not record :Silent: the recording is empty"));
}

TEST(SoundLevel, IsReadFromTheSamplesOfAWholeFile) {
  const auto wav = [](const std::string& bits, const std::string& samples) {
    const auto size = std::string(1, static_cast<char>(samples.size())) + std::string(3, '\0');
    return std::string("RIFF\0\0\0\0WAVEfmt \x10\0\0\0\1\0\2\0\x44\xac\0\0\0\0\0\0\4\0", 34) +
           bits + std::string("LIST\3\0\0\0abc\0data", 16) + size + samples;
  };
  const std::string sixteen("\x10\0", 2);
  const auto loud = SoundLevel::of(wav(sixteen, std::string("\0\x80\0\0\0\0\0\0", 8)));
  ASSERT_TRUE(loud);
  EXPECT_NEAR(loud->peak, 0, 0.01);
  EXPECT_NEAR(loud->average, -6.02, 0.01);
  EXPECT_EQ(SoundLevel::of(wav(sixteen, std::string(4, '\0')))->peak, SoundLevel::silence);
  for (const auto& bad : {std::string("RIFF"), std::string("MThd"), wav(sixteen, ""),
                          wav(std::string("\x18\0", 2), "abc")})
    EXPECT_FALSE(SoundLevel::of(bad)) << bad.size();
}

TEST_F(AudioAnalysisTest, ReadsReportsLeniently) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"rhythm":{"bpm":"128"},"lowlevel":{"average_loudness":0.5}})", "0.0000000.500000"},
      {R"({"rhythm":[],"tonal":{"key_edma":7},"lowlevel":null})", "0.0000000.000000"},
      {R"({"tonal":{"key_edma":{"key":1,"scale":"major"}}})", "0.000000major0.000000"},
  };
  for (const auto& [text, expected] : cases) {
    report = text;
    EXPECT_EQ(outcome(), expected) << text;
  }
}

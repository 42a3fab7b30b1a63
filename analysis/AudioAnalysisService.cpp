#include "analysis/AudioAnalysisService.h"

#include "analysis/ExtractorReport.h"
#include "analysis/WorkingFolder.h"
#include "base/Number.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"
#include "platform/ProcessLauncher.h"
#include "platform/SystemLog.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>

namespace velmor {

namespace {

// Far more than either takes: for those that hang.
constexpr std::chrono::seconds recorderLimit{60};
constexpr std::chrono::seconds extractorLimit{120};
constexpr std::array extractorNames{"essentia_streaming_extractor_music",
                                    "essentia_streaming_extractor_music.exe"};

/// The user's own device first, then the loopback devices that systems like this one have.
std::vector<std::string> usualDevices(const Platform& platform) {
  std::vector<std::string> devices;
  const auto add = [&](std::string_view device) {
    const auto name = text::trimmed(device);
    if (!name.empty()) devices.emplace_back(name);
  };
  add(platform.environment.variable("VELMOR_AUDIO_DEVICE").value_or(""));
  for (const auto& device : platform.record.captureDevices)
    add(device);
  return devices;
}

ChildProcess recorder(const Platform& platform, const std::string& device,
                      const std::filesystem::path& outputPath, int seconds) {
  std::vector<std::string> arguments{"-hide_banner", "-loglevel", "error", "-f",
                                     platform.record.captureFormat};
  std::ranges::copy(platform.record.captureOptions, std::back_inserter(arguments));
  std::ranges::copy(std::array<std::string, 10>{"-i", device, "-t", std::to_string(seconds), "-ac",
                                                "2", "-ar", "44100", "-y", outputPath.string()},
                    std::back_inserter(arguments));
  const auto ffmpeg = AudioAnalysisService::ffmpegPath(platform);
  if (!ffmpeg) throw VelmorError("ffmpeg is not installed");
  return {.executable = *ffmpeg,
          .arguments = arguments,
          .mergeErrorOutput = true,
          .endsWithVelmor = true,
          .timeLimit = recorderLimit};
}

/// Why this device gives no recording; "" when it gives one.
std::string failureToRecord(const Platform& platform, const std::string& device,
                            const std::filesystem::path& outputPath, int seconds) {
  const auto child = recorder(platform, device, outputPath, seconds);
  try {
    const auto result = platform.processes.run(child);
    const auto words = std::string(text::trimmed(text::printable(result.output)));
    if (result.exitStatus != 0)
      return device + ": exit " + std::to_string(result.exitStatus) + " (" + words + ")";
  } catch (const LaunchError& error) {
    return device + ": " + error.what();
  }
  if (platform.files.size(outputPath).value_or(0) > 0) return "";
  return device + ": the recording is empty";
}

/// Only what is known, so that nothing is known wrongly.
std::map<std::string, std::string> variablesOf(const AudioAnalysisService::Known& known) {
  constexpr std::size_t longest = 100;
  std::map<std::string, std::string> variables;
  const auto add = [&](const char* name, const std::string& value) {
    const auto words = text::withValidUtf8(text::printable(value).substr(0, longest));
    if (!words.empty()) variables[name] = words;
  };
  if (known.bpm > 0) add("VELMOR_KNOWN_BPM", number::formatFixed(known.bpm, 2));
  add("VELMOR_KNOWN_KEY", known.key);
  add("VELMOR_KNOWN_GENRE", known.genre);
  return variables;
}

/// Tries these devices until one gives a recording.
void captureFromFirst(const Platform& platform, const std::vector<std::string>& devices,
                      const std::filesystem::path& outputPath, int seconds,
                      AudioAnalysisService::Capture& capture) {
  for (const auto& device : devices) {
    auto failure = failureToRecord(platform, device, outputPath, seconds);
    if (failure.empty()) {
      capture.device = device;
      return;
    }
    capture.failures.push_back(std::move(failure));
  }
}

} // namespace

std::optional<std::string> AudioAnalysisService::extractorPath(const Platform& platform) {
  const auto chosen = platform.environment.variable("ESSENTIA_EXTRACTOR").value_or("");
  if (!chosen.empty() && platform.files.isExecutable(chosen)) return chosen;
  for (const auto* name : extractorNames) {
    try {
      const auto result = platform.processes.run({platform.record.which, {name}});
      const auto path = text::trimmed(result.output);
      if (!path.empty() && text::isValidUtf8(path)) return std::string(path);
    } catch (const LaunchError&) {
      continue;
    }
  }
  return std::nullopt;
}

std::optional<std::string> AudioAnalysisService::ffmpegPath(const Platform& platform) {
  const auto& locations = platform.record.ffmpegLocations;
  const auto found = std::ranges::find_if(
      locations, [&](const auto& location) { return platform.files.isExecutable(location); });
  return found == locations.end() ? std::nullopt : std::optional(*found);
}

AudioAnalysisService::Capture AudioAnalysisService::capture(const Platform& platform,
                                                            const std::filesystem::path& outputPath,
                                                            int seconds) {
  Capture capture;
  captureFromFirst(platform, usualDevices(platform), outputPath, seconds, capture);
  if (capture.device.empty()) {
    captureFromFirst(platform, platform.record.existingCaptureDevices(), outputPath, seconds,
                     capture);
  }
  return capture;
}

void AudioAnalysisService::captureLoopback(const Platform& platform,
                                           const std::filesystem::path& outputPath) {
  constexpr int sampleSeconds = 15;
  const auto result = capture(platform, outputPath, sampleSeconds);
  if (!result.device.empty()) return;
  for (const auto& failure : result.failures)
    platform.log.write("Velmor: could not record " + failure);
  throw VelmorError("system audio capture requires ffmpeg and a loopback device such as BlackHole");
}

ChildResult AudioAnalysisService::runExtractor(const Platform& platform,
                                               const std::string& extractor,
                                               const std::filesystem::path& sample,
                                               const std::filesystem::path& report,
                                               const Known& known) {
  return platform.processes.run({.executable = extractor,
                                 .arguments = {sample.string(), report.string()},
                                 .mergeErrorOutput = true,
                                 .endsWithVelmor = true,
                                 .isInBackground = true,
                                 .variables = variablesOf(known),
                                 .timeLimit = extractorLimit});
}

std::string AudioAnalysisService::extractorVersion(const Platform& platform,
                                                   const std::string& extractor) {
  try {
    const auto result = platform.processes.run(
        {.executable = extractor, .arguments = {"--version"}, .endsWithVelmor = true});
    if (result.exitStatus != 0) return "";
    const auto line = text::split(text::trimmed(result.output), '\n').front();
    return text::printable(line);
  } catch (const LaunchError&) {
    return "";
  }
}

AudioAnalysisService::Features AudioAnalysisService::analyze(const Platform& platform,
                                                             const Known& known) {
  const auto extractor = extractorPath(platform);
  if (!extractor) throw VelmorError("Essentia extractor is not installed");
  const WorkingFolder folder(platform);
  captureLoopback(platform, folder.sample());
  const auto result = runExtractor(platform, *extractor, folder.sample(), folder.report(), known);
  if (result.exitStatus != 0) {
    const auto output = text::isValidUtf8(result.output) ? result.output : "";
    throw VelmorError("run Essentia: exit " + std::to_string(result.exitStatus) + " (" + output +
                      ")");
  }
  const auto report = platform.files.read(folder.report());
  if (!report) throw FileError("The extractor's report could not be read.");
  return ExtractorReport::features(*report);
}

} // namespace velmor

#include "analysis/AudioAnalysisService.h"

#include "analysis/ExtractorReport.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"
#include "platform/ProcessLauncher.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <string>

namespace velmor {

namespace {

/// A random (version 4) UUID in upper case.
std::string freshUuid() {
  constexpr std::string_view pattern = "xxxxxxxx-xxxx-4xxx-Vxxx-xxxxxxxxxxxx";
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::random_device random;
  std::string uuid(pattern);
  for (char& place : uuid) {
    if (place == 'x') place = digits[random() % 16];
    if (place == 'V') place = digits[8 + random() % 4];
  }
  return uuid;
}

} // namespace

WorkingFolder::WorkingFolder(const Platform& thePlatform)
    : platform(thePlatform)
    , path(platform.environment.temporaryDirectory() / ("velmor-audio-" + freshUuid())) {
  platform.files.createFolder(path, 0700);
}

WorkingFolder::~WorkingFolder() {
  platform.files.remove(path);
}

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
                      const std::filesystem::path& outputPath) {
  std::vector<std::string> arguments{"-hide_banner", "-loglevel", "error", "-f",
                                     platform.record.captureFormat};
  std::ranges::copy(platform.record.captureOptions, std::back_inserter(arguments));
  std::ranges::copy(std::array<std::string, 10>{"-i", device, "-t", "15", "-ac", "2", "-ar",
                                                "44100", "-y", outputPath.string()},
                    std::back_inserter(arguments));
  const auto ffmpeg = AudioAnalysisService::ffmpegPath(platform);
  if (!ffmpeg) throw VelmorError("ffmpeg is not installed");
  return {.executable = *ffmpeg,
          .arguments = arguments,
          .mergeErrorOutput = true,
          .timeLimit = recorderLimit};
}

/// False when this device gives no recording.
bool record(const Platform& platform, const std::string& device,
            const std::filesystem::path& outputPath) {
  const auto child = recorder(platform, device, outputPath);
  try {
    if (platform.processes.run(child).exitStatus != 0) return false;
  } catch (const LaunchError&) {
    return false;
  }
  return platform.files.size(outputPath).value_or(0) > 0;
}

/// False when none of these devices gives a recording.
bool recordFromFirst(const Platform& platform, const std::vector<std::string>& devices,
                     const std::filesystem::path& outputPath) {
  return std::ranges::any_of(
      devices, [&](const auto& device) { return record(platform, device, outputPath); });
}

void runExtractor(const Platform& platform, const std::string& extractor,
                  const WorkingFolder& folder) {
  const auto result =
      platform.processes.run({.executable = extractor,
                              .arguments = {folder.sample().string(), folder.report().string()},
                              .mergeErrorOutput = true,
                              .timeLimit = extractorLimit});
  if (result.exitStatus == 0) return;
  const auto output = text::isValidUtf8(result.output) ? result.output : "";
  throw VelmorError("run Essentia: exit " + std::to_string(result.exitStatus) + " (" + output +
                    ")");
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

void AudioAnalysisService::captureLoopback(const Platform& platform,
                                           const std::filesystem::path& outputPath) {
  if (recordFromFirst(platform, usualDevices(platform), outputPath)) return;
  if (recordFromFirst(platform, platform.record.existingCaptureDevices(), outputPath)) return;
  throw VelmorError("system audio capture requires ffmpeg and a loopback device such as BlackHole");
}

AudioAnalysisService::Features AudioAnalysisService::analyze(const Platform& platform) {
  const auto extractor = extractorPath(platform);
  if (!extractor) throw VelmorError("Essentia extractor is not installed");
  const WorkingFolder folder(platform);
  captureLoopback(platform, folder.sample());
  runExtractor(platform, *extractor, folder);
  const auto report = platform.files.read(folder.report());
  if (!report) throw FileError("The extractor's report could not be read.");
  return ExtractorReport::features(*report);
}

} // namespace velmor

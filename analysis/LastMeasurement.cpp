#include "analysis/LastMeasurement.h"

#include "base/Number.h"
#include "base/Text.h"
#include "platform/Clock.h"
#include "platform/Environment.h"
#include "platform/FileManager.h"

#include <array>
#include <chrono>
#include <ctime>

namespace velmor {

namespace {

std::filesystem::path folderOf(const Platform& platform) {
  return platform.environment.cacheDirectory() / "Velmor";
}

std::filesystem::path fileOf(const Platform& platform) {
  return folderOf(platform) / "last-measurement.txt";
}

std::string minuteOf(Clock::TimePoint moment) {
  const auto seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm parts{};
  ::gmtime_r(&seconds, &parts);
  constexpr std::size_t most = 32;
  std::array<char, most> written{};
  const auto length = std::strftime(written.data(), written.size(), "%Y-%m-%d %H:%M UTC", &parts);
  return {written.data(), length};
}

/// One line of bounded length, whatever a tool has printed.
std::string lineOf(const std::string& words) {
  constexpr std::size_t most = 300;
  return text::withValidUtf8(text::printable(words).substr(0, most));
}

} // namespace

std::string LastMeasurement::outcomeOf(const AudioAnalysisService::Features& features) {
  return number::formatFixed(features.bpm, 1) + " BPM, " + features.key + " " + features.scale;
}

void LastMeasurement::keep(const Platform& platform, const std::string& outcome) {
  try {
    platform.files.createFolder(folderOf(platform), 0700);
    platform.files.writeAtomically(fileOf(platform),
                                   minuteOf(platform.clock.now()) + ": " + lineOf(outcome) + "\n");
  } catch (const FileError&) {
    // Only doctor misses it.
  }
}

std::string LastMeasurement::read(const Platform& platform) {
  return lineOf(std::string(text::trimmed(platform.files.read(fileOf(platform)).value_or(""))));
}

} // namespace velmor

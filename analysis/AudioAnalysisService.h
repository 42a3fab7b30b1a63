#pragma once

#include "platform/Platform.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// A private folder for one measurement; it is gone, with everything in it, when this is destroyed.
class WorkingFolder {
public:
  /// Throws FileError.
  explicit WorkingFolder(const Platform& platform);
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  ~WorkingFolder();

  [[nodiscard]] std::filesystem::path sample() const { return path / "sample.wav"; }
  [[nodiscard]] std::filesystem::path report() const { return path / "features.json"; }

private:
  Platform platform;
  std::filesystem::path path;
};

/// Measures what the computer is playing: captures a short sample and has the Essentia extractor
/// analyse it. Stateless; any thread.
class AudioAnalysisService {
public:
  /// A measurement. What the report lacks stays at its default.
  struct Features {
    /// Beats per minute.
    double bpm = 0;
    /// The tonic, such as "F#".
    std::string key;
    /// "major" or "minor".
    std::string scale;
    /// 0 to 1.
    double loudness = 0;
  };

  /// Where the extractor lies; nothing when it is not installed. May run a child.
  [[nodiscard]] static std::optional<std::string> extractorPath(const Platform& platform);

  /// Where ffmpeg lies; nothing when it is not installed.
  [[nodiscard]] static std::optional<std::string> ffmpegPath(const Platform& platform);

  /// Captures and measures a sample. Blocks for the capture's 15 seconds and the extractor's run.
  /// Throws VelmorError, LaunchError, FileError or DecodingError.
  [[nodiscard]] static Features analyze(const Platform& platform);

  /// Records a sample of the system's sound into the file. Throws VelmorError.
  static void captureLoopback(const Platform& platform, const std::filesystem::path& outputPath);
};

} // namespace velmor

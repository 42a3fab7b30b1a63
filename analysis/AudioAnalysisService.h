#pragma once

#include "platform/Platform.h"
#include "platform/ProcessLauncher.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

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

  /// What came of trying one device after the other.
  struct Capture {
    /// The device that was recorded; "" when none could be.
    std::string device;
    /// Why those before it could not, a sentence each, in the recorder's own words.
    std::vector<std::string> failures;
  };

  /// Captures and measures a sample. Blocks for the capture's 15 seconds and the extractor's run.
  /// Throws VelmorError, LaunchError, FileError or DecodingError.
  [[nodiscard]] static Features analyze(const Platform& platform);

  /// Records so many seconds of the system's sound into the file. Throws VelmorError when ffmpeg is
  /// not installed.
  [[nodiscard]] static Capture capture(const Platform& platform,
                                       const std::filesystem::path& outputPath, int seconds);

  /// Has the extractor measure a recording and write its report. Throws LaunchError.
  [[nodiscard]] static ChildResult runExtractor(const Platform& platform,
                                                const std::string& extractor,
                                                const std::filesystem::path& sample,
                                                const std::filesystem::path& report);

  /// Records a sample of the system's sound into the file. When no device can be recorded, the log
  /// says why of each. Throws VelmorError.
  static void captureLoopback(const Platform& platform, const std::filesystem::path& outputPath);
};

} // namespace velmor

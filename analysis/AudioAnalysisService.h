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

  /// What is known of the track already, to help the extractor: "" and 0 where nothing is. What it
  /// hears at half or double time it reports at the level of this tempo, and a key that it is not
  /// sure of it leaves as it is here. Handed over as the environment variables VELMOR_KNOWN_BPM,
  /// VELMOR_KNOWN_KEY and VELMOR_KNOWN_GENRE, which other extractors do not look at.
  struct Known {
    /// Beats per minute.
    double bpm = 0;
    /// In Camelot notation.
    std::string key;
    std::string genre;
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
  /// Throws VelmorError, also when the extractor finds no steady beat, LaunchError, FileError or
  /// DecodingError.
  [[nodiscard]] static Features analyze(const Platform& platform, const Known& known);

  /// Records so many seconds of the system's sound into the file. Throws VelmorError when ffmpeg is
  /// not installed.
  [[nodiscard]] static Capture capture(const Platform& platform,
                                       const std::filesystem::path& outputPath, int seconds);

  /// Has the extractor measure a recording and write its report. Throws LaunchError.
  [[nodiscard]] static ChildResult runExtractor(const Platform& platform,
                                                const std::string& extractor,
                                                const std::filesystem::path& sample,
                                                const std::filesystem::path& report,
                                                const Known& known);

  /// What the extractor calls itself, a line; "" when it does not say. Runs it for a moment.
  [[nodiscard]] static std::string extractorVersion(const Platform& platform,
                                                    const std::string& extractor);

  /// Records a sample of the system's sound into the file. When no device can be recorded, the log
  /// says why of each. Throws VelmorError.
  static void captureLoopback(const Platform& platform, const std::filesystem::path& outputPath);
};

} // namespace velmor

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// What the program was started for.
struct CommandLine {
  enum class Command { window, now, suggest, after, crate, doctor, bridge, serve, version, help };

  Command command = Command::window;
  /// Prints one compact JSON object instead of text to read.
  bool json = false;
  /// Doctor sends the model provider a small request.
  bool ask = false;
  /// Doctor records and measures a few seconds of sound.
  bool listen = false;
  /// Suggests from the DJ's own music, whatever the model is.
  bool fromCrate = false;
  /// Stays, and tells each change of the track.
  bool follow = false;
  /// How a track is printed; "" for the usual way.
  std::string format;
  /// The file that the track is written to instead; "" for none.
  std::string output;
  /// Where `serve` answers; 0 for any free port.
  int port = 0;
  /// The track that the suggestions shall follow, as "Artist - Title".
  std::string track;

  static constexpr auto usage = "usage: velmor [now [--follow] [--json | --format FORMAT] "
                                "[--output FILE] | serve --port N | suggest [--crate] [--json] | "
                                "after \"ARTIST - TITLE\" [--json] | crate [--json] | "
                                "doctor [--json] [--ask] [--listen] | bridge | --version | --help]";
  static const char* const help;

  /// Nothing when an argument is unknown or out of place.
  [[nodiscard]] static std::optional<CommandLine> parse(const std::vector<std::string>& arguments);
};

} // namespace velmor

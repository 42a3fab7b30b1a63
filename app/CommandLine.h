#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// What the program was started for.
struct CommandLine {
  enum class Command { window, now, suggest, after, crate, doctor, bridge, version, help };

  Command command = Command::window;
  /// Prints one compact JSON object instead of text to read.
  bool json = false;
  /// Doctor sends the model provider a small request.
  bool ask = false;
  /// Doctor records and measures a few seconds of sound.
  bool listen = false;
  /// Suggests from the DJ's own music, whatever the model is.
  bool fromCrate = false;
  /// The track that the suggestions shall follow, as "Artist - Title".
  std::string track;

  static constexpr auto usage = "usage: velmor [now [--json] | suggest [--crate] [--json] | "
                                "after \"ARTIST - TITLE\" [--json] | crate [--json] | "
                                "doctor [--json] [--ask] [--listen] | bridge | --version | --help]";
  static const char* const help;

  /// Nothing when an argument is unknown or out of place.
  [[nodiscard]] static std::optional<CommandLine> parse(const std::vector<std::string>& arguments);
};

} // namespace velmor

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// What the program was started for.
struct CommandLine {
  enum class Command { window, now, suggest, doctor, bridge, version, help };

  Command command = Command::window;
  /// Prints one compact JSON object instead of text to read.
  bool json = false;
  /// Doctor sends the model provider a small request.
  bool ask = false;
  /// Doctor records and measures a few seconds of sound.
  bool listen = false;

  static constexpr auto usage = "usage: velmor [now [--json] | suggest [--json] | "
                                "doctor [--json] [--ask] [--listen] | bridge | --version | --help]";
  static const char* const help;

  /// Nothing when an argument is unknown or out of place.
  [[nodiscard]] static std::optional<CommandLine> parse(const std::vector<std::string>& arguments);
};

} // namespace velmor

#pragma once

#include <chrono>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace velmor::tools {

/// The command line of the program.
struct Options {
  int port = 0;                    ///< 0 for any free port
  std::filesystem::path catalogue; ///< empty for the bundled one
  std::filesystem::path record;    ///< empty for none
  std::string key = "local-demo-key";
  std::string version = "1.0.0";
  std::chrono::milliseconds delay{0}; ///< before each answer
  bool help = false;

  /// Gives a message where the arguments (without the program's name) are not right.
  static std::variant<Options, std::string> read(std::span<const char* const> arguments);

  static std::string_view usage();
  static std::string_view helpText();
};

} // namespace velmor::tools

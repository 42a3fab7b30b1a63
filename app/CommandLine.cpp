#include "app/CommandLine.h"

#include <map>

namespace velmor {

const char* const CommandLine::help =
    R"(Velmor tells which track is playing and asks a language model what to mix in next.

usage: velmor [COMMAND]

  (none)             open the window
  now [--json]       say which track is playing
  suggest [--json]   suggest next tracks for the one that is playing
  doctor [--json]    say which sources, tools and keys are there, and what to do about the rest
  bridge             speak the page's protocol on standard input and output
  --version          print the version and the build date
  --help             print this text

Environment: OPENAI_API_KEY and TINKER_API_KEY take precedence over the saved keys;
VELMOR_OPENAI_URL and VELMOR_TINKER_URL replace the providers' addresses.
Settings lie in ~/.config/Velmor/config.json. See velmor(1) for the rest.
)";

std::optional<CommandLine> CommandLine::parse(const std::vector<std::string>& arguments) {
  static const std::map<std::string, Command, std::less<>> commands{
      {"now", Command::now},       {"suggest", Command::suggest},   {"doctor", Command::doctor},
      {"bridge", Command::bridge}, {"--version", Command::version}, {"--help", Command::help},
      {"-h", Command::help},
  };
  CommandLine line;
  if (arguments.empty()) return line;
  const auto command = commands.find(arguments.front());
  if (command == commands.end()) return std::nullopt;
  line.command = command->second;
  const bool hasJson = line.command == Command::now || line.command == Command::suggest ||
                       line.command == Command::doctor;
  line.json = hasJson && arguments.size() == 2 && arguments.back() == "--json";
  const std::size_t expected = line.json ? 2 : 1;
  return arguments.size() == expected ? std::optional(line) : std::nullopt;
}

} // namespace velmor

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
         [--ask]     also send the model provider one small request, to try key and model
         [--listen]  also record and measure five seconds of what the computer plays
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
  const bool isDoctor = line.command == Command::doctor;
  const bool hasJson = isDoctor || line.command == Command::now || line.command == Command::suggest;
  for (auto option = arguments.begin() + 1; option != arguments.end(); ++option) {
    bool* const meant = *option == "--json" && hasJson      ? &line.json
                        : *option == "--ask" && isDoctor    ? &line.ask
                        : *option == "--listen" && isDoctor ? &line.listen
                                                            : nullptr;
    if (!meant || *meant) return std::nullopt;
    *meant = true;
  }
  return line;
}

} // namespace velmor

#include "app/CommandLine.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace velmor {

const char* const CommandLine::help =
    R"(Velmor tells which track is playing and suggests what to mix in next.

usage: velmor [COMMAND]

  (none)             open the window
  now [--json]       say which track is playing
      [--follow]     stay, and print a line at each change
      [--format "{artist} - {title} [{bpm} BPM, {key}]"]
                     print such lines; an empty field takes its brackets with it
      [--output FILE]
                     write the line into a file, which is never there in part
  serve --port N     answer at http://127.0.0.1:N: /overlay is a page for streams, /now and
                     /suggestions are JSON, /events tells each change
  suggest [--crate] [--json]
                     suggest next tracks for the one that is playing; with --crate from
                     your own music, without a key
  after "ARTIST - TITLE" [--json]
                     suggest next tracks for this one of your own music
  crate [--json]     say what of your own music Velmor knows
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

namespace {

bool hasJson(CommandLine::Command command) {
  using Command = CommandLine::Command;
  return command == Command::now || command == Command::suggest || command == Command::after ||
         command == Command::crate || command == Command::doctor;
}

/// 1 to 65535; 0, for any free port, is there too.
std::optional<int> portOf(const std::string& text) {
  int port = -1;
  const auto* const end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, port);
  const bool isPort = failure == std::errc() && stop == end && port >= 0 && port <= 65535;
  return isPort ? std::optional(port) : std::nullopt;
}

} // namespace

std::optional<CommandLine> CommandLine::parse(const std::vector<std::string>& arguments) {
  static const std::map<std::string, Command, std::less<>> commands{
      {"now", Command::now},     {"suggest", Command::suggest},   {"doctor", Command::doctor},
      {"after", Command::after}, {"crate", Command::crate},       {"bridge", Command::bridge},
      {"serve", Command::serve}, {"--version", Command::version}, {"--help", Command::help},
      {"-h", Command::help},
  };
  CommandLine line;
  if (arguments.empty()) return line;
  const auto command = commands.find(arguments.front());
  if (command == commands.end()) return std::nullopt;
  line.command = command->second;
  std::vector<std::string> options(arguments.begin() + 1, arguments.end());
  if (line.command == Command::after) {
    if (options.empty()) return std::nullopt;
    line.track = options.front();
    options.erase(options.begin());
  }
  const auto take = [&options](const char* option) {
    const auto found = std::ranges::find(options, option);
    if (found == options.end()) return false;
    options.erase(found);
    return true;
  };
  // The value behind an option; "" for an option that is not there, nothing for one without.
  const auto takeValue = [&options](const char* option) -> std::optional<std::string> {
    const auto found = std::ranges::find(options, option);
    if (found == options.end()) return "";
    if (found + 1 == options.end() || (found + 1)->empty()) return std::nullopt;
    const auto value = *(found + 1);
    options.erase(found, found + 2);
    return value;
  };
  if (line.command == Command::now) {
    const auto format = takeValue("--format");
    const auto output = takeValue("--output");
    if (!format || !output) return std::nullopt;
    line.format = *format;
    line.output = *output;
    line.follow = take("--follow");
  }
  if (line.command == Command::serve) {
    const auto port = portOf(takeValue("--port").value_or(""));
    if (!port) return std::nullopt;
    line.port = *port;
  }
  if (hasJson(line.command)) line.json = take("--json");
  if (line.command == Command::suggest) line.fromCrate = take("--crate");
  if (line.command == Command::doctor) {
    line.ask = take("--ask");
    line.listen = take("--listen");
  }
  if (line.json && !line.format.empty()) return std::nullopt;
  return options.empty() ? std::optional(line) : std::nullopt;
}

} // namespace velmor

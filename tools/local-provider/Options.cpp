#include "Options.h"

#include "Numbers.h"

#include <charconv>
#include <optional>

namespace velmor::tools {
namespace {

std::optional<std::chrono::milliseconds> secondsIn(std::string_view text) {
  constexpr double longest = 3600;
  double seconds = 0;
  const auto* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seconds);
  if (error != std::errc{} || stop != end || !(seconds >= 0 && seconds <= longest))
    return std::nullopt;
  return std::chrono::milliseconds(static_cast<long>(seconds * 1000));
}

/// Sets the option; false when the value does not suit it. Nothing for an unknown name.
std::optional<bool> set(Options& options, std::string_view name, std::string_view value) {
  if (name == "--port") {
    const auto port = wholeNumber(value);
    options.port = port.value_or(0);
    return port && *port >= 0 && *port <= 65535;
  }
  if (name == "--delay") {
    const auto delay = secondsIn(value);
    options.delay = delay.value_or(std::chrono::milliseconds(0));
    return delay.has_value();
  }
  if (name == "--catalogue")
    options.catalogue = value;
  else if (name == "--record")
    options.record = value;
  else if (name == "--key")
    options.key = value;
  else if (name == "--version")
    options.version = value;
  else
    return std::nullopt;
  // The HTTP library decodes "%41" and the like in headers: such a key would never match.
  if (name == "--key" && value.find('%') != std::string_view::npos) return false;
  return name == "--version" || !value.empty();
}

} // namespace

std::variant<Options, std::string> Options::read(std::span<const char* const> arguments) {
  Options options;
  for (size_t index = 0; index < arguments.size(); ++index) {
    const std::string name = arguments[index];
    if (name == "--help") {
      options.help = true;
      continue;
    }
    const bool hasValue = index + 1 < arguments.size();
    const auto fits = set(options, name, hasValue ? arguments[index + 1] : "");
    if (!fits) return "unknown option " + name;
    if (!hasValue) return name + " needs a value";
    if (!*fits) return "wrong value for " + name;
    ++index;
  }
  return options;
}

std::string_view Options::usage() {
  return "usage: velmor-local-provider [--port N] [--catalogue FILE] [--record FILE] [--key TEXT] "
         "[--delay SECONDS] [--version X.Y.Z] [--help]\n";
}

std::string_view Options::helpText() {
  return R"(
A model provider and version server on 127.0.0.1, for demonstrations and tests. Prints its
address when it is ready, and runs until SIGTERM or SIGINT. Refused requests are told on
standard error.

  --port N           port to listen on; 0, the default, takes a free one
  --catalogue FILE   songs to rank, instead of the bundled ones
  --record FILE      append each request to FILE as one line of JSON, without its key
  --key TEXT         the key to accept, without "%" (default "local-demo-key")
  --delay SECONDS    wait before each answer
  --version X.Y.Z    the release that GET /v1/macos names (default "1.0.0")
)";
}

} // namespace velmor::tools

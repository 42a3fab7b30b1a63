#include "nowplaying/readers/VirtualDJNetworkControl.h"

#include "base/Number.h"
#include "base/Text.h"
#include "nowplaying/shared/NowPlayingError.h"
#include "nowplaying/shared/ProcessUtils.h"
#include "platform/Environment.h"
#include "platform/HttpSession.h"
#include "platform/PlatformRecord.h"
#include "platform/ProcessLauncher.h"

#include <optional>
#include <set>
#include <sstream>

namespace velmor {

namespace {

constexpr Seconds requestTimeout{0.7};
constexpr Seconds wholeWait{1.0};
constexpr std::string_view fieldSeparator = "|||";
constexpr std::string_view allowedInQuery = "!$&'()*+,;=:@/?";

/// Answers the six fields of the song on the master deck when it plays and can be heard, else "".
constexpr std::string_view script =
    "deck master play ? deck master is_audible ? get_text '"
    "`deck master get_loaded_song \"title\"`|||"
    "`deck master get_loaded_song \"artist\"`|||"
    "`deck master get_loaded_song \"album\"`|||"
    "`deck master get_loaded_song \"genre\"`|||"
    "`deck master get_loaded_song \"bpm\"`|||"
    "`deck master get_loaded_song \"key\"`' : get_text '' : get_text ''";
static_assert(script.size() == 317);

/// The word at `index` (from 0) of a line of words.
std::optional<std::string> word(std::string_view line, std::size_t index) {
  std::istringstream words{std::string(line)};
  std::string found;
  for (std::size_t count = 0; count <= index; ++count)
    if (!(words >> found)) return std::nullopt;
  return found;
}

/// The port of an address such as 127.0.0.1:80, *:80 or 127.0.0.1:80->127.0.0.1:5000; nothing for
/// an address of another network interface.
std::optional<std::int64_t> port(std::string_view address) {
  const auto bare = text::replacingAll(text::replacingAll(address, "127.0.0.1:", ""), "*:", "");
  const auto pieces = text::split(bare, '-');
  return pieces.empty() ? std::nullopt : number::parseInteger<std::int64_t>(pieces.front());
}

std::vector<std::string> fields(std::string_view answer) {
  std::vector<std::string> result;
  std::size_t start = 0;
  for (auto end = answer.find(fieldSeparator); end != std::string_view::npos;
       end = answer.find(fieldSeparator, start)) {
    result.emplace_back(text::bounded(answer.substr(start, end - start)));
    start = end + fieldSeparator.size();
  }
  result.emplace_back(text::bounded(answer.substr(start)));
  return result;
}

} // namespace

std::vector<std::int64_t> VirtualDJNetworkControl::listeningPorts(const Platform& platform) {
  std::string identifiers;
  for (const auto identifier : ProcessUtils::processIDs(platform, processName)) {
    if (!identifiers.empty()) identifiers += ',';
    identifiers += std::to_string(identifier);
  }
  if (identifiers.empty()) return {};
  try {
    const auto result = platform.processes.run(
        {platform.record.lsof, {"-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p", identifiers}});
    return parsePorts(result.output);
  } catch (const LaunchError&) {
    return {};
  }
}

std::vector<std::int64_t> VirtualDJNetworkControl::parsePorts(std::string_view lsofOutput) {
  constexpr std::size_t addressColumn = 8;
  if (!text::isValidUtf8(lsofOutput)) return {};
  auto lines = text::split(lsofOutput, '\n');
  if (!lines.empty()) lines.erase(lines.begin());
  std::set<std::int64_t> ports;
  for (const auto line : lines) {
    const auto address = word(line, addressColumn);
    const auto number = address ? port(*address) : std::nullopt;
    if (number) ports.insert(*number);
  }
  return {ports.begin(), ports.end()};
}

NowPlayingTrack VirtualDJNetworkControl::queryNetworkControl(const Platform& platform,
                                                             std::int64_t port) {
  HttpRequest request;
  request.url = "http://127.0.0.1:" + std::to_string(port) +
                "/query?script=" + text::percentEncoded(script, allowedInQuery);
  request.timeout = requestTimeout;
  const auto token = platform.environment.variable("VIRTUALDJ_NETWORK_CONTROL_TOKEN");
  if (token && !token->empty()) request.headers.emplace_back("Authorization", "Bearer " + *token);

  const auto session =
      platform.http.makeSession({.requestTimeout = requestTimeout, .resourceTimeout = wholeWait});
  const auto response = session->send(request);
  if (!text::isValidUtf8(response.body)) throw NowPlayingError::noActiveSession();
  const auto values = fields(text::trimmed(response.body));
  if (values.size() != 6 || values[0].empty() || values[1].empty()) {
    throw NowPlayingError::noActiveSession();
  }
  NowPlayingTrack track;
  track.title = values[0];
  track.artist = values[1];
  track.album = values[2];
  track.genre = values[3];
  track.bpm = number::parseDouble(text::replacingAll(values[4], "%", "")).value_or(0);
  track.key = values[5];
  track.source = "VirtualDJ";
  track.detection = "VirtualDJ master-deck metadata";
  return track;
}

} // namespace velmor

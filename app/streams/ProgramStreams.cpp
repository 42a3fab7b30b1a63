#include "app/Program.h"
#include "app/TrackText.h"
#include "app/streams/TrackLooking.h"
#include "base/Json.h"
#include "base/VelmorError.h"
#include "platform/Workspace.h"
#include "platform/async/Waiting.h"
#include "streams/StreamServer.h"
#include "streams/TrackFile.h"
#include "streams/TrackFollower.h"

#include <memory>
#include <utility>

namespace velmor {

namespace {

/// A look takes a few seconds at most.
constexpr Seconds patienceForTrack{8};
/// Listening to the sound and asking the model, together.
constexpr Seconds patienceForSuggestions{240};

std::filesystem::path fileNamed(const std::string& name) {
  return std::filesystem::absolute(name);
}

} // namespace

int Program::runNow(const CommandLine& line) {
  if (!line.format.empty()) {
    try {
      format.emplace(line.format);
    } catch (const VelmorError& error) {
      err << error.message() << '\n';
      return 2;
    }
  }
  outputFile = line.output;
  return line.follow ? runFollow(line) : runCommand(&Program::now, line.json);
}

int Program::runFollow(const CommandLine& line) {
  const auto& platform = host.platform();
  std::optional<TrackFile> file;
  if (!line.output.empty())
    file.emplace(platform.mainLoop, platform.files, platform.log, fileNamed(line.output));
  bool hasPrinted = false;
  TrackFeed feed;
  feed.onTrack([&](const TrackFeed::Track& track) {
    // An empty track has all members too, so that scripts need not tell cases apart.
    const auto text = track       ? lineFor(*track, line.json)
                      : line.json ? TrackText::json({})
                                  : std::string("\n");
    if (file) return file->write(text);
    if (!track && !hasPrinted) return;
    hasPrinted = true;
    out << text << std::flush;
    if (!out) platform.workspace.terminate();
  });
  if (!file) host.onOutputClosed([&platform] { platform.workspace.terminate(); });
  const int result = follow(feed);
  // A pipe that was closed is how a reader says that it has enough.
  out.clear();
  return result;
}

int Program::runServe(const CommandLine& line) {
  TrackFeed feed;
  StreamServer server(host.platform().bundle, feed);
  const int port = server.start(line.port);
  out << "http://127.0.0.1:" << port << "/overlay\n" << std::flush;
  return follow(feed);
}

int Program::follow(TrackFeed& feed) {
  const auto& platform = host.platform();
  const auto detector = std::make_shared<NowPlayingDetector>(platform);
  const auto look = [detector, system = platform] { return lookForTrack(*detector, system); };
  TrackFollower follower(platform.mainLoop, host.localService(), look, feed);
  TaskGroup tasks(platform.mainLoop);
  const auto end = [&] { platform.workspace.terminate(); };
  host.onTerminationRequest(end);
  tasks.start(follower.run());
  host.run();
  return 0;
}

Task<std::optional<WindowLine>> Program::askWindow(WindowQuestion question, Seconds patience) {
  constexpr Seconds pause{0.01};
  struct Reply {
    bool hasCome = false;
    std::optional<WindowLine> line;
  };
  const auto reply = std::make_shared<Reply>();
  const auto window = host.localService().connect();
  if (!window) co_return std::nullopt;
  window->read(
      [reply](const auto& line) {
        reply->line = WindowLine::read(line);
        reply->hasCome = true;
      },
      [reply] { reply->hasCome = true; });
  window->send(question.line());
  auto& loop = host.platform().mainLoop;
  for (Seconds waited{0}; !reply->hasCome && waited < patience; waited += pause)
    co_await Sleep(loop, pause);
  co_return reply->line;
}

Task<void> Program::now(AppController& controller, bool json) {
  auto reply = co_await askWindow({WindowQuestion::Kind::now}, patienceForTrack);
  if (reply && !reply->error.empty()) throw VelmorError(reply->error);
  std::optional<NowPlayingTrack> track;
  if (reply) track = reply->track;
  if (!track) track = co_await controller.detectTrack();
  const auto line = lineFor(*track, json);
  if (outputFile.empty())
    out << line << std::flush;
  else
    host.platform().files.writeAtomically(fileNamed(outputFile), line);
}

Task<void> Program::suggest(AppController& controller, bool json) {
  auto reply = co_await askWindow({WindowQuestion::Kind::suggest}, patienceForSuggestions);
  std::optional<NowPlayingTrack> track;
  std::optional<VelmorError> failed;
  std::optional<VisionResult> result;
  if (reply) {
    track = reply->track;
    result = reply->suggestions;
    if (!result) failed.emplace(reply->error);
  } else {
    controller.requireKey();
    track = co_await controller.detectTrack();
    try {
      result = co_await controller.suggestTracksAfter(*track);
    } catch (const VelmorError& error) {
      failed.emplace(error);
    }
  }
  if (result) print(*result, json);
  if (!failed) co_return;
  // What was found is worth having without the model too.
  if (track) out << (json ? TrackText::json(*track) : TrackText::readable(*track)) << std::flush;
  throw VelmorError(*failed);
}

Task<void> Program::suggestFromCrate(AppController& controller, bool json) {
  const WindowQuestion question{.kind = WindowQuestion::Kind::suggest, .fromCrate = true};
  auto reply = co_await askWindow(question, patienceForSuggestions);
  if (reply && !reply->suggestions) throw VelmorError(reply->error);
  std::optional<VisionResult> result;
  if (reply)
    result = reply->suggestions;
  else
    result = co_await controller.suggestFromCrate();
  print(*result, json);
}

void Program::print(const VisionResult& result, bool json) {
  out << (json ? jsonEncoder().encode(result) + "\n" : TrackText::readable(result)) << std::flush;
}

std::string Program::lineFor(const NowPlayingTrack& track, bool json) const {
  if (json) return TrackText::json(track);
  return format ? format->line(track) + "\n" : TrackText::readable(track);
}

} // namespace velmor

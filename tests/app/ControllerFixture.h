#pragma once

#include "app/AppController.h"
#include "base/Json.h"
#include "tests/fakes/FakeMainWindowOwner.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <vector>

namespace velmor {

/// A controller on a fake system whose media session and model provider the test sets up.
class ControllerFixture : public testing::Test {
protected:
  ControllerFixture() {
    system.http.handler = [this](const HttpRequest& request) -> HttpResponse {
      if (!requestFailure.empty()) throw TransportError(requestFailure);
      const auto body = nlohmann::json::parse(request.body);
      prompt = body["messages"][0]["content"][0]["text"];
      const Recommendation next{.song = "Next", .artist = "B"};
      const TrackMetadata current{.song = "?", .artist = "?"};
      const Analysis analysis{true, "yes", current, {next, next, next}};
      const nlohmann::json call = {
          {"type", "tool_use"}, {"name", "submit_dj_analysis"}, {"input", analysis}};
      return {200, nlohmann::json{{"content", {call}}}.dump()};
    };
    auto config = store->current();
    config.recommendationCount = 3;
    config.tinkerApiKey = "key";
    config.autoSuggestTracks = true;
    store->save(config);
    controller.setWebBridge(events);
  }

  void play(const std::string& title, const std::string& artist = "Artist") {
    system.mediaRemote.info = NowPlayingInfo{{nowPlayingKey::playbackRate, 1.0},
                                             {nowPlayingKey::title, title},
                                             {nowPlayingKey::artist, artist}};
  }
  void stop() { system.mediaRemote.info.reset(); }

  /// Installs a recorder and an extractor, which the test has to play.
  void installExtractor(std::function<ChildResult(const ChildProcess&)> handler) {
    system.environment.variables["ESSENTIA_EXTRACTOR"] = "/opt/extractor";
    for (const auto* const program : {"/opt/extractor", "/usr/local/bin/ffmpeg"})
      system.files.files[program].permissions = 0755;
    system.processes.handler = std::move(handler);
  }

  /// The events since the last look.
  std::vector<std::string> heard() {
    std::vector<std::string> lines;
    for (const auto& event : std::exchange(events->events, {})) {
      auto line = event.name.substr(std::string("velmor:").size());
      const auto json = nlohmann::json::parse(event.payload.value_or("null"));
      if (json.is_string()) line += " " + json.get<std::string>();
      if (json.contains("song")) line += " " + json["song"].get<std::string>();
      if (json.contains("notice")) line += " " + json["currentTrack"]["song"].get<std::string>();
      lines.push_back(line);
    }
    return lines;
  }

  FakePlatform system;
  std::shared_ptr<ConfigStore> store = std::make_shared<ConfigStore>(system.platform);
  std::shared_ptr<FakeEventSink> events = std::make_shared<FakeEventSink>();
  AppController controller{system.platform, store};
  std::string requestFailure;
  std::string prompt;
};

} // namespace velmor

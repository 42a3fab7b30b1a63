#include "nowplaying/readers/MediaRemoteClient.h"

#include "tests/fakes/FakePlatform.h"
#include "tests/support/Outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmor;

namespace {

namespace key = nowPlayingKey;

/// A session with these values besides a title and an artist.
NowPlayingInfo playing(const NowPlayingInfo& values) {
  NowPlayingInfo info{{key::title, " T\n"}, {key::artist, "A"}};
  for (const auto& [name, value] : values)
    info.insert_or_assign(name, value);
  return info;
}

TEST(MediaRemoteClient, ReportsWhatPlays) {
  const std::tuple<std::optional<bool>, std::optional<NowPlayingInfo>, std::string> rows[] = {
      {true, playing({{key::playbackRate, 0.0}}), "T / A / "},
      {false, playing({{key::playbackRate, 1.0}}), "T / A / "},
      {false, playing({{key::playbackRate, 0.0}}), "none"},
      {{}, playing({{key::playbackRate, "1"}}), "none"},
      {true, playing({{key::artist, " "}, {key::albumArtist, "B"}, {key::album, "C"}}),
       "T / B / C"},
      {true, playing({{key::artist, ""}}), "none"},
      {true, playing({{key::title, " \t"}}), "none"},
      {true, std::nullopt, "none"},
  };
  for (const auto& [flag, info, expected] : rows) {
    FakePlatform system;
    system.mediaRemote.playing = flag;
    system.mediaRemote.info = info;
    EXPECT_EQ(outcome(MediaRemoteClient::currentTrackWorker, system.platform), expected);
    system.mediaRemote.available = false;
    EXPECT_EQ(outcome(MediaRemoteClient::currentTrackWorker, system.platform), "none");
  }
}

TEST(MediaRemoteClient, NamesTheApplicationAndAsksTheClientOnlyWhenItMust) {
  const std::tuple<std::string, std::optional<std::string>, std::string, int> rows[] = {
      {"com.google.Chrome.helper", "unused", "Chrome", 0},
      {"com.google.Chrome", "unused", "Chrome", 0},
      {"com.spotify.client", "unused", "macOS media", 0},
      {" com.apple.Safari ", "unused", "Safari", 0},
      {"com.apple.Music", "unused", "macOS media", 0},
      {"COM.APPLE.MUSIC", "unused", "COM.APPLE.MUSIC", 0},
      {" ", "com.apple.Safari\n", "Safari", 1},
      {"", std::nullopt, "macOS media", 1},
  };
  for (const auto& [inInfo, client, source, queries] : rows) {
    FakePlatform system;
    system.mediaRemote.playing = true;
    system.mediaRemote.client = client;
    system.mediaRemote.info = playing({{key::bundleIdentifier, inInfo}});
    const auto track = MediaRemoteClient::currentTrackWorker(system.platform);
    EXPECT_EQ(track->source + " / " + track->detection, source + " / macOS media session");
    EXPECT_EQ(system.mediaRemote.clientQueries, queries) << source;
    EXPECT_THAT(system.mediaRemote.limits, testing::Each(Seconds{2}));
  }
}

} // namespace

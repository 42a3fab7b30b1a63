#include "nowplaying/MediaRemoteClient.h"

#include "tests/fakes/FakePlatform.h"
#include "tests/unit/Outcome.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

namespace key = nowPlayingKey;

TEST(MediaRemoteClient, ReportsWhatPlays) {
  const NowPlayingValue title = "T";
  const NowPlayingValue artist = "A";
  const struct {
    std::optional<bool> flag;
    std::optional<NowPlayingInfo> info;
    std::string outcome;
  } rows[] = {
      {true, {{{key::title, " T\n"}, {key::artist, artist}, {key::playbackRate, 0.0}}}, "T / A / "},
      {false, {{{key::title, title}, {key::artist, artist}, {key::playbackRate, 1.0}}}, "T / A / "},
      {false, {{{key::title, title}, {key::artist, artist}, {key::playbackRate, 0.0}}}, "none"},
      {{}, {{{key::title, title}, {key::artist, artist}, {key::playbackRate, "1"}}}, "none"},
      {{}, {{{key::title, title}, {key::artist, artist}}}, "none"},
      {true, {{{key::title, title}, {key::albumArtist, "B"}, {key::album, "C"}}}, "T / B / C"},
      {true, {{{key::title, title}, {key::artist, " "}, {key::albumArtist, "B"}}}, "T / B / "},
      {true, {{{key::title, " \t"}, {key::artist, artist}}}, "none"},
      {true, {{{key::title, 5.0}, {key::artist, artist}}}, "none"},
      {true, {{{key::title, title}}}, "none"},
      {true, std::nullopt, "none"},
  };
  for (const auto& row : rows) {
    FakePlatform system;
    system.mediaRemote.playing = row.flag;
    system.mediaRemote.info = row.info;
    EXPECT_EQ(outcome([&] { return MediaRemoteClient::currentTrackWorker(system.platform); }),
              row.outcome);
  }
  FakePlatform without;
  without.mediaRemote.available = false;
  EXPECT_FALSE(MediaRemoteClient::currentTrackWorker(without.platform));
}

TEST(MediaRemoteClient, NamesTheApplicationAndAsksTheClientOnlyWhenItMust) {
  const struct {
    std::string inInfo;
    std::optional<std::string> client;
    std::string source;
    int queries;
  } rows[] = {
      {"com.google.Chrome.helper", "unused", "Chrome", 0},
      {"com.google.Chrome", "unused", "Chrome", 0},
      {" com.apple.Safari ", "unused", "Safari", 0},
      {"com.apple.Music", "unused", "macOS media", 0},
      {"com.spotify.client", "unused", "macOS media", 0},
      {"COM.APPLE.MUSIC", "unused", "COM.APPLE.MUSIC", 0},
      {" ", "com.apple.Safari\n", "Safari", 1},
      {"", "mpv", "mpv", 1},
      {"", std::nullopt, "macOS media", 1},
  };
  for (const auto& row : rows) {
    FakePlatform system;
    system.mediaRemote.playing = true;
    system.mediaRemote.client = row.client;
    system.mediaRemote.info = {
        {key::title, "T"}, {key::artist, "A"}, {key::bundleIdentifier, row.inInfo}};
    EXPECT_EQ(MediaRemoteClient::currentTrackWorker(system.platform)->source, row.source);
    EXPECT_EQ(system.mediaRemote.clientQueries, row.queries) << row.source;
  }
}

} // namespace
} // namespace velmor

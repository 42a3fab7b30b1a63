#include "nowplaying/MediaRemoteClient.h"

#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

namespace key = nowPlayingKey;

TEST(MediaRemoteClient, ReportsWhatPlays) {
  const struct {
    const char* name;
    std::optional<bool> flag;
    std::optional<NowPlayingInfo> info;
    /// "title / artist / album", or "" for no track.
    std::string result;
  } rows[] = {
      {"flag alone",
       true,
       {{{key::title, " T\n"}, {key::artist, "A"}, {key::playbackRate, 0.0}}},
       "T / A / "},
      {"rate alone",
       false,
       {{{key::title, "T"}, {key::artist, "A"}, {key::playbackRate, 1.0}}},
       "T / A / "},
      {"paused", false, {{{key::title, "T"}, {key::artist, "A"}, {key::playbackRate, 0.0}}}, ""},
      {"rate as text", {}, {{{key::title, "T"}, {key::artist, "A"}, {key::playbackRate, "1"}}}, ""},
      {"no rate", std::nullopt, {{{key::title, "T"}, {key::artist, "A"}}}, ""},
      {"album artist",
       true,
       {{{key::title, "T"}, {key::artist, " "}, {key::albumArtist, "B"}, {key::album, "C"}}},
       "T / B / C"},
      {"title of blanks", true, {{{key::title, " \t"}, {key::artist, "A"}}}, ""},
      {"title of numbers", true, {{{key::title, 5.0}, {key::artist, "A"}}}, ""},
      {"no artist", true, {{{key::title, "T"}}}, ""},
      {"no answer", true, std::nullopt, ""},
  };
  for (const auto& row : rows) {
    FakePlatform system;
    system.mediaRemote.playing = row.flag;
    system.mediaRemote.info = row.info;
    const auto track = MediaRemoteClient::currentTrackWorker(system.platform);
    EXPECT_EQ(track ? track->title + " / " + track->artist + " / " + track->album : "", row.result)
        << row.name;
    EXPECT_EQ(track ? track->detection : "macOS media session", "macOS media session");
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

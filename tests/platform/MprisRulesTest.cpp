#include "platform/linux/MprisDescription.h"
#include "platform/linux/MprisProperties.h"
#include "platform/linux/MprisSessionChoice.h"
#include "platform/linux/PlaybackHistory.h"
#include "platform/linux/SessionBusAddress.h"
#include "tests/fakes/FakeSystem.h"

#include <gio/gio.h>
#include <gmock/gmock.h>

namespace velmor {

namespace {

using Status = MprisPlayer::Status;
using testing::Pair;
using testing::UnorderedElementsAre;

MprisPlayer player(const std::string& name, Status status, const char* title,
                   std::uint64_t began = 0) {
  MprisPlayer made{.busName = MprisPlayer::busNamePrefix + name, .status = status};
  if (title) made.title = title;
  made.beganPlaying = began;
  return made;
}

VariantPtr dictionary(const char* text) {
  GError* error = nullptr;
  VariantPtr value(g_variant_parse(G_VARIANT_TYPE_VARDICT, text, nullptr, nullptr, &error));
  if (!value) throw std::runtime_error(error->message);
  return value;
}

TEST(MprisSessionChoiceTest, TakesTheBestPlayer) {
  struct Case {
    std::vector<MprisPlayer> players;
    const char* chosen;
  };
  auto onlyArtist = player("z", Status::Playing, nullptr);
  onlyArtist.artist = "artist";
  const std::vector<Case> cases = {
      {{}, ""},
      {{player("a", Status::Stopped, "t")}, ""},
      {{player("a", Status::Paused, nullptr)}, ""},
      {{player("a", Status::Paused, "")}, ""},
      {{player("a", Status::Paused, "t"), player("b", Status::Stopped, "t")}, "a"},
      {{player("a", Status::Paused, "t", 9), player("b", Status::Playing, nullptr)}, "b"},
      {{player("a", Status::Playing, "", 9), player("b", Status::Playing, "t")}, "b"},
      {{player("a", Status::Playing, nullptr, 9), onlyArtist}, "z"},
      {{player("b", Status::Playing, "t"), player("a", Status::Playing, "t")}, "a"},
      {{player("a", Status::Playing, "t", 1), player("b", Status::Playing, "t", 2)}, "b"},
      {{player("a", Status::Paused, "t", 3), player("b", Status::Paused, "t", 2)}, "a"},
  };
  for (const auto& [players, expected] : cases) {
    const auto* chosen = chosenSession(players);
    const auto name = chosen ? chosen->busName : std::string(MprisPlayer::busNamePrefix);
    EXPECT_EQ(name, MprisPlayer::busNamePrefix + std::string(expected));
  }
  EXPECT_TRUE(isPlayerName("org.mpris.MediaPlayer2.vlc.instance7"));
  EXPECT_FALSE(isPlayerName("org.mpris.MediaPlayer2.playerctld"));
  EXPECT_FALSE(isPlayerName("org.freedesktop.DBus"));
}

TEST(MprisDescriptionTest, IdentifiesPrograms) {
  struct Case {
    const char* busName;
    std::optional<std::string> desktopEntry;
    const char* identifier;
  };
  for (const auto& [busName, entry, identifier] :
       {Case{"chromium.instance123", std::nullopt, "com.google.Chrome"},
        Case{"chrome.instance9", "google-chrome-beta", "com.google.Chrome"},
        Case{"spotify", "spotify", "com.spotify.client"},
        Case{"x", "com.spotify.Client", "com.spotify.client"}, Case{"vlc.instance77", "vlc", "vlc"},
        Case{"mpv.instance-5", std::nullopt, "mpv"}, Case{"Some.Player", "", "Some.Player"},
        Case{"strawberry", "org.strawberrymusicplayer.strawberry",
             "org.strawberrymusicplayer.strawberry"}}) {
    auto described = player(busName, Status::Playing, nullptr);
    described.desktopEntry = entry;
    EXPECT_EQ(bundleIdentifier(described), identifier);
  }
}

TEST(MprisPropertiesTest, ReadsOnlyMembersOfTheRightType) {
  const auto identity = dictionary("{'DesktopEntry': <'mpv'>, 'Identity': <'mpv'>}");
  const auto complete = dictionary(
      "{'PlaybackStatus': <'Playing'>, 'Rate': <1.5>, 'Metadata': <{'xesam:title': <'T'>,"
      " 'xesam:artist': <['A', '', 'B']>, 'xesam:albumArtist': <['']>, 'xesam:album': <''>}>}");
  const auto info =
      nowPlayingInfo(playerFromProperties("org.mpris.MediaPlayer2.x", *complete, identity.get()));
  EXPECT_THAT(info,
              UnorderedElementsAre(Pair(nowPlayingKey::playbackRate, NowPlayingValue(1.5)),
                                   Pair(nowPlayingKey::title, NowPlayingValue("T")),
                                   Pair(nowPlayingKey::artist, NowPlayingValue("A, B")),
                                   Pair(nowPlayingKey::albumArtist, NowPlayingValue("")),
                                   Pair(nowPlayingKey::album, NowPlayingValue("")),
                                   Pair(nowPlayingKey::bundleIdentifier, NowPlayingValue("mpv"))));

  for (const char* text :
       {"{'PlaybackStatus': <1>, 'Rate': <'fast'>, 'Metadata': <'none'>}", "@a{sv} {}",
        "{'Rate': <1>, 'Metadata': <{'xesam:title': <7>, 'xesam:artist': <'A'>,"
        " 'xesam:albumArtist': <[1, 2]>, 'xesam:album': <['x']>}>}",
        "{'Metadata': <{'xesam:artist': <@av []>, 'xesam:title': <<'nested'>>}>}"}) {
    const auto wrong = dictionary(text);
    const auto read = playerFromProperties("org.mpris.MediaPlayer2.x", *wrong, nullptr);
    EXPECT_EQ(read.status, Status::Stopped);
    EXPECT_THAT(nowPlayingInfo(read),
                UnorderedElementsAre(Pair(nowPlayingKey::playbackRate, NowPlayingValue(0.0)),
                                     Pair(nowPlayingKey::bundleIdentifier, NowPlayingValue("x"))));
  }
}

TEST(MprisPropertiesTest, TheRateCountsOnlyWhilePlaying) {
  struct Case {
    const char* properties;
    std::optional<double> rate;
  };
  for (const auto& [properties, rate] :
       {Case{"{'PlaybackStatus': <'Paused'>, 'Rate': <1.0>}", 0.0},
        Case{"{'PlaybackStatus': <'Playing'>, 'Rate': <inf>}", std::nullopt},
        Case{"{'PlaybackStatus': <'Playing'>}", std::nullopt}}) {
    const auto read = dictionary(properties);
    const auto info = nowPlayingInfo(playerFromProperties("org.mpris.MediaPlayer2.x", *read, {}));
    const auto entry = info.find(nowPlayingKey::playbackRate);
    ASSERT_EQ(entry != info.end(), rate.has_value()) << properties;
    if (rate) {
      EXPECT_EQ(std::get<double>(entry->second), *rate);
    }
  }
}

TEST(PlaybackHistoryTest, OrdersByWhoBeganToPlayLast) {
  PlaybackHistory history;
  history.update({{":1", true}, {":2", true}, {":3", false}});
  EXPECT_EQ(history.beganPlaying(":1"), 0U);
  history.statusChanged(":1", true);
  EXPECT_EQ(history.beganPlaying(":1"), 0U) << "a repeated status is no beginning";
  history.statusChanged(":1", false);
  history.statusChanged(":1", true);
  history.update({{":1", true}, {":2", true}, {":3", true}});
  EXPECT_GT(history.beganPlaying(":1"), history.beganPlaying(":2"));
  EXPECT_GT(history.beganPlaying(":3"), history.beganPlaying(":1"));
  history.update({{":2", true}});
  EXPECT_EQ(history.beganPlaying(":1"), 0U) << "gone players are forgotten";
}

TEST(SessionBusAddressTest, NeverAsksForANewBus) {
  FakeEnvironment environment;
  EXPECT_EQ(sessionBusAddress(environment), std::nullopt);
  environment.variables = {{"XDG_RUNTIME_DIR", "/nowhere"}, {"DISPLAY", ":0"}};
  EXPECT_EQ(sessionBusAddress(environment), std::nullopt);
  for (const char* none : {"autolaunch:", "disabled:", "nonsense", "unix:path=/x;autolaunch:"}) {
    environment.variables["DBUS_SESSION_BUS_ADDRESS"] = none;
    EXPECT_EQ(sessionBusAddress(environment), std::nullopt) << none;
  }
  environment.variables["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/run/bus,guid=0a";
  EXPECT_EQ(sessionBusAddress(environment), "unix:path=/run/bus,guid=0a");
}

} // namespace

} // namespace velmor

#include "base/Text.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/media/MprisBus.h"
#include "platform/linux/media/MprisMediaRemote.h"
#include "platform/linux/media/MprisPlayer.h"
#include "platform/linux/media/MprisScripts.h"
#include "tests/fakes/FakeSystem.h"

#include <gio/gio.h>
#include <gmock/gmock.h>

namespace velmor {

namespace {

using Status = MprisPlayer::Status;
using testing::Pair;
using testing::UnorderedElementsAre;

const std::string prefix = MprisPlayer::busNamePrefix;

MprisPlayer player(const std::string& name, Status status, const char* title,
                   std::uint64_t began = 0) {
  MprisPlayer made{.busName = prefix + name, .status = status};
  if (title) made.title = title;
  made.beganPlaying = began;
  return made;
}

VariantPtr dictionary(const char* text) {
  return VariantPtr(g_variant_parse(G_VARIANT_TYPE_VARDICT, text, nullptr, nullptr, nullptr));
}

TEST(MprisSessionChoiceTest, TakesTheBestPlayer) {
  auto onlyArtist = player("z", Status::Playing, nullptr);
  onlyArtist.artist = "artist";
  auto complete = player("complete", Status::Playing, "t");
  complete.albumArtist = "artist";
  auto pausedComplete = complete;
  pausedComplete.busName = prefix + "paused";
  pausedComplete.status = Status::Paused;
  const std::vector<std::pair<std::vector<MprisPlayer>, std::string>> cases = {
      {{player("a", Status::Stopped, "t")}, ""},
      {{player("a", Status::Paused, "")}, ""},
      {{player("b", Status::Paused, "t"), player("a", Status::Stopped, "t")}, "b"},
      {{player("a", Status::Paused, "t", 9), player("b", Status::Playing, nullptr)}, "b"},
      {{player("a", Status::Playing, "", 9), onlyArtist}, "z"},
      {{player("a", Status::Playing, "video", 9), onlyArtist, complete}, "complete"},
      {{player("a", Status::Playing, "video"), pausedComplete}, "a"},
      {{player("a", Status::Paused, "video", 9), pausedComplete}, "paused"},
      {{player("b", Status::Playing, "t"), player("a", Status::Playing, "t")}, "a"},
      {{player("a", Status::Playing, "t", 1), player("b", Status::Playing, "t", 2)}, "b"},
  };
  for (const auto& [players, expected] : cases) {
    const auto* chosen = chosenSession(players);
    EXPECT_EQ(chosen ? chosen->busName : prefix, prefix + expected);
  }
  EXPECT_FALSE(isPlayerName("org.freedesktop.DBus"));
}

TEST(MprisDescriptionTest, IdentifiesPrograms) {
  const std::tuple<const char*, std::optional<std::string>, const char*> cases[] = {
      {"chromium.instance123", std::nullopt, "com.google.Chrome"},
      {"chrome.instance9", "google-chrome-beta", "com.google.Chrome"},
      {"x", "com.spotify.Client", "com.spotify.client"},
      {"mpv.instance-5", std::nullopt, "mpv"},
      {"Some.Player", "", "Some.Player"},
      {"strawberry", "org.strawberry", "org.strawberry"},
  };
  for (const auto& [busName, entry, identifier] : cases) {
    auto described = player(busName, Status::Playing, nullptr);
    described.desktopEntry = entry;
    EXPECT_EQ(bundleIdentifier(described), identifier);
  }
  auto named = player("io.elementary.music", Status::Playing, nullptr);
  EXPECT_FALSE(goesByName(named, "Music"));
  EXPECT_FALSE(goesByName(named, "")) << "though it has no identity";
  named.identity = "Music";
  EXPECT_TRUE(goesByName(named, "Music"));
}

TEST(MprisScriptsTest, AnswersInTheScriptsWords) {
  using Question = PlayerScript::Question;
  auto complete = player("x", Status::Playing, "T");
  complete.artist = "A";
  auto other = complete;
  other.status = Status::Paused;
  EXPECT_EQ(answerOf(complete, Question::CurrentTrack), "") << "without an album";
  complete.album = "";
  EXPECT_EQ(answerOf(complete, Question::CurrentTrack), "T\x1E\x41\x1E");
  EXPECT_EQ(answerOf(complete, Question::IsPaused), "no");
  EXPECT_EQ(answerOf(other, Question::CurrentTrack), "STATE:paused");
  EXPECT_EQ(answerOf(other, Question::IsPaused), "yes");
  other.status = Status::Stopped;
  EXPECT_EQ(answerOf(other, Question::IsPaused), "no");
}

TEST(MprisScriptsTest, FailsWithoutABus) {
  FakeEnvironment environment;
  MprisBusSource buses(environment, {});
  const auto result = answerScript({PlayerScript::Question::IsPaused, "Spotify", ""}, buses);
  EXPECT_EQ(result.errorOutput, "Spotify does not answer on the session bus.");
  EXPECT_EQ(result.exitStatus, 1);
  const auto second = answerScript({PlayerScript::Question::CurrentTrack, "Spotify", ""}, buses);
  EXPECT_EQ(second.errorOutput, "") << "the log has it already";
  EXPECT_EQ(second.exitStatus, 1);
  EXPECT_FALSE(buses.isNewFailure("Spotify", true));
  EXPECT_TRUE(buses.isNewFailure("Spotify", false)) << "it has answered in between";
}

TEST(MprisPropertiesTest, ReadsOnlyMembersOfTheRightType) {
  const auto identity = dictionary("{'DesktopEntry': <'mpv'>, 'Identity': <'mpv'>}");
  const auto complete = dictionary(
      "{'PlaybackStatus': <'Playing'>, 'Rate': <1.5>, 'Metadata': <{'xesam:title': <'T'>,"
      " 'xesam:artist': <['A', '', 'B']>, 'xesam:albumArtist': <['']>, 'xesam:album': <''>}>}");
  EXPECT_THAT(nowPlayingInfo(playerFromProperties(prefix + "x", complete, identity)),
              UnorderedElementsAre(Pair(nowPlayingKey::playbackRate, NowPlayingValue(1.5)),
                                   Pair(nowPlayingKey::title, NowPlayingValue("T")),
                                   Pair(nowPlayingKey::artist, NowPlayingValue("A, B")),
                                   Pair(nowPlayingKey::albumArtist, NowPlayingValue("")),
                                   Pair(nowPlayingKey::album, NowPlayingValue("")),
                                   Pair(nowPlayingKey::bundleIdentifier, NowPlayingValue("mpv"))));
  for (const char* text : {"{'PlaybackStatus': <1>, 'Rate': <'fast'>, 'Metadata': <'none'>}",
                           "{'Rate': <1>, 'Metadata': <{'xesam:title': <7>, 'xesam:artist': <8>,"
                           " 'xesam:albumArtist': <[1, 2]>, 'xesam:album': <['x']>}>}"}) {
    const auto wrong = dictionary(text);
    const auto read = playerFromProperties(prefix + "x", wrong, nullptr);
    EXPECT_EQ(read.status, Status::Stopped);
    EXPECT_THAT(nowPlayingInfo(read),
                UnorderedElementsAre(Pair(nowPlayingKey::playbackRate, NowPlayingValue(0.0)),
                                     Pair(nowPlayingKey::bundleIdentifier, NowPlayingValue("x"))));
  }
}

TEST(MprisPropertiesTest, TakesPlainTextsForArtistsAndKeepsABoundedPartOfEach) {
  const auto read = [](const std::string& properties) {
    return playerFromProperties(prefix + "x", dictionary(properties.c_str()), nullptr);
  };
  const auto plain =
      read("{'PlaybackStatus': <'Playing'>, 'Rate': <inf>, 'Metadata': <{'xesam:artist': <'A'>}>}");
  EXPECT_EQ(plain.artist, "A");
  EXPECT_FALSE(nowPlayingInfo(plain).contains(nowPlayingKey::playbackRate)) << "an infinite one";
  const std::string endless(10'000'000, 'x');
  const auto bounded = read("{'Metadata': <{'xesam:title': <'" + endless +
                            "'>, 'xesam:artist': <['" + endless + "', 'B']>}>}");
  EXPECT_EQ(bounded.title->size(), text::mostCharacters);
  EXPECT_EQ(bounded.artist->size(), text::mostCharacters);
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

TEST(LateAnswersTest, AreWorthWaitingForWhenTheyComeInTime) {
  LateAnswers answers;
  const LateAnswers::Moment start{};
  const auto after = [&](int seconds) { return start + std::chrono::seconds(seconds); };
  const std::string slow = ":1";
  answers.answered(slow, after(0));
  EXPECT_FALSE(answers.isWorthWaitingFor(slow)) << "it was in time, not late";
  answers.missed(slow, after(2));
  answers.missed(slow, after(4));
  answers.answered(slow, after(3));
  EXPECT_FALSE(answers.isWorthWaitingFor(slow)) << "this answers the first question";
  answers.missed(slow, after(6));
  answers.answered(slow, after(5));
  EXPECT_TRUE(answers.isWorthWaitingFor(slow));
  answers.missed(slow, after(9));
  EXPECT_FALSE(answers.isWorthWaitingFor(slow)) << "waited for in vain";
}

TEST(SessionBusAddressTest, NeverAsksForANewBus) {
  FakeEnvironment environment;
  EXPECT_EQ(sessionBusAddress(environment), std::nullopt);
  environment.variables = {{"XDG_RUNTIME_DIR", "/nowhere"}};
  EXPECT_EQ(sessionBusAddress(environment), std::nullopt);
  for (const char* none : {"nonsense", "unix:path=/x;autolaunch:"}) {
    environment.variables["DBUS_SESSION_BUS_ADDRESS"] = none;
    EXPECT_EQ(sessionBusAddress(environment), std::nullopt) << none;
  }
  environment.variables["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/run/bus,guid=0a";
  EXPECT_EQ(sessionBusAddress(environment), "unix:path=/run/bus,guid=0a");
}

} // namespace

} // namespace velmor

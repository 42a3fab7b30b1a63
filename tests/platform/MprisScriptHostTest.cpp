#include "platform/linux/MprisScriptHost.h"

#include "platform/linux/MprisBusSource.h"
#include "platform/linux/MprisDescription.h"
#include "tests/fakes/FakeSystem.h"

#include <gtest/gtest.h>

namespace velmor {

namespace {

TEST(MprisScriptHostTest, FailsForOtherScriptsAndWithoutAPlayer) {
  FakeEnvironment environment;
  MprisBusSource buses(environment, {});
  MprisScriptHost host(buses);
  const std::string paused = "\"\n    if player state is paused then return \"yes\"\n"
                             "end tell\nreturn \"no\"";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "This system cannot run the script."},
      {"tell application \"Spotify", "This system cannot run the script."},
      {"do shell script \"true\"", "This system cannot run the script."},
      {"tell application \"Spotify" + paused + "\nquit", "This system cannot run the script."},
      {"tell application \"Spotify" + paused, "Spotify does not answer on the session bus."},
  };
  for (const auto& [script, error] : cases) {
    const auto result = host.run(script, "the media player");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errorOutput, error) << script;
  }
}

TEST(MprisDescriptionTest, PlayersGoByTheirNames) {
  MprisPlayer player{.busName = "org.mpris.MediaPlayer2.spotify.instance42"};
  EXPECT_TRUE(goesByName(player, "Spotify"));
  EXPECT_FALSE(goesByName(player, "Music"));
  player.busName = "org.mpris.MediaPlayer2.io.elementary.music";
  EXPECT_FALSE(goesByName(player, "Music"));
  player.identity = "Music";
  EXPECT_TRUE(goesByName(player, "Music"));
  EXPECT_FALSE(goesByName(player, ""));
}

} // namespace

} // namespace velmor

#include "platform/linux/desktop/DesktopApplications.h"
#include "platform/linux/desktop/EwmhWindowList.h"

#include <gtest/gtest.h>

namespace velmor {

namespace {

TEST(EwmhWindowListTest, TellsTheFrontFirstAndKeepsWhatIsMinimised) {
  std::string order;
  for (const auto& window : frontFirst({{.title = "desktop", .belongsToDesktop = true},
                                        {.title = "low"},
                                        {.title = "minimised", .hidden = true},
                                        {.title = "front"}})) {
    order += window.name + ", ";
  }
  EXPECT_EQ(order, "front, low, minimised, ");
}

TEST(DesktopApplicationsTest, TellsProgramsApartThatShareAProcessNumber) {
  const auto window = [](std::int32_t process, const char* windowClass) {
    return EwmhClient{.process = process, .windowClass = windowClass};
  };
  const auto player = [](std::int32_t process, const std::string& name) {
    return MprisPlayer{.busName = MprisPlayer::busNamePrefix + name, .process = process};
  };
  const std::tuple<std::vector<EwmhClient>, std::vector<MprisPlayer>, std::string> rows[] = {
      {{window(2, "Mixxx"), window(2, "Spotify"), window(2, "Mixxx")}, {}, "2 Mixxx, 2 Spotify, "},
      {{window(2, "Mixxx"), window(2, "vlc")}, {player(2, "vlc")}, "2 Mixxx, 2 vlc + vlc, "},
      {{window(2, "Mixxx"), window(2, "vlc")}, {player(2, "x")}, "2 Mixxx, 2 vlc, 2  + x, "},
      {{window(3, ""), window(3, "Mixxx"), window(3, "")}, {}, "3 Mixxx, "},
      {{window(3, "Player")}, {player(3, "a"), player(4, "b")}, "3 Player + a, 4  + b, "},
      {{window(0, "Mixxx")}, {player(0, "a")}, ""},
  };
  for (const auto& [windows, players, expected] : rows) {
    std::string found;
    for (const auto& evidence : collectEvidence(windows, players)) {
      found += std::to_string(evidence.process) + " " + evidence.windowClass;
      if (evidence.player) found += " + " + evidence.player->busName.substr(23);
      found += ", ";
    }
    EXPECT_EQ(found, expected);
  }
}

} // namespace

} // namespace velmor

#include "platform/linux/media/MprisBus.h"

#include "platform/linux/media/MprisMediaRemote.h"
#include "platform/linux/system/FileDescriptor.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/platform/linux/media/FakePlayer.h"
#include "tests/platform/linux/media/PrivateBus.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace velmor {

namespace {

using std::chrono::steady_clock;

constexpr Seconds generous{30};
constexpr Seconds brief{0.3};

std::string playing(const std::string& title) {
  return "{'PlaybackStatus': <'Playing'>, 'Rate': <1.0>, 'Metadata': <{'xesam:title': <'" + title +
         "'>, 'xesam:artist': <['A', 'B']>, 'xesam:album': <'L'>}>}";
}

class MprisBusTest : public testing::Test {
protected:
  MprisBusTest() { environment.variables["DBUS_SESSION_BUS_ADDRESS"] = bus.address; }

  /// The title that a new session answers; "" when there is no session.
  std::string title(Seconds timeout = generous) {
    const auto info = remote.open()->nowPlayingInfo(timeout);
    if (!info || !info->contains(nowPlayingKey::title)) return "";
    return std::get<std::string>(info->at(nowPlayingKey::title));
  }

  /// Whether the condition comes true before long.
  template <typename Condition>
  bool becomes(const Condition& condition) {
    const auto deadline = steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
      if (steady_clock::now() > deadline) return false;
    }
    return true;
  }

  PrivateBus bus;
  FakeEnvironment environment;
  std::stop_source quit;
  MprisBusSource buses{environment, quit.get_token()};
  MprisMediaRemote remote{buses};
};

TEST_F(MprisBusTest, PlayersThatMisbehaveDoNotHideTheOneThatPlays) {
  const FakePlayer mistyped(bus.address, "aaa",
                            "{'PlaybackStatus': <'Playing'>, 'Metadata': <{'xesam:title': <1>}>}");
  const FakePlayer mirror(bus.address, "playerctld", playing("mirrored"));
  const FakePlayer refusing(bus.address, "bbb", "");
  const FakePlayer good(bus.address, "chromium.instance5", playing("T"));
  EXPECT_EQ(title(), "T");
  const auto session = remote.open();
  EXPECT_EQ(session->nowPlayingApplicationIsPlaying(generous), true);
  EXPECT_TRUE(session->nowPlayingInfo(Seconds{0})) << "one reading answers all";
  EXPECT_EQ(session->nowPlayingClient(Seconds{0}), "com.google.Chrome");
}

TEST_F(MprisBusTest, AHungPlayerIsPaidForOnceUntilItRecovers) {
  FakePlayer hung(bus.address, "aaa", playing("hung"));
  FakePlayer good(bus.address, "bbb", playing("good"));
  hung.hang(true);
  EXPECT_EQ(title(brief), "good");
  const auto start = steady_clock::now();
  EXPECT_EQ(title(generous), "good");
  EXPECT_LT(steady_clock::now() - start, generous / 2);
  EXPECT_GT(hung.ignored(), 0);
  hung.hang(false);
  // Later than a player that hangs is waited for, and with two questions in a row.
  hung.answerAfter(std::chrono::milliseconds(150));
  EXPECT_TRUE(becomes([&] { return title() == "hung"; }));
}

TEST_F(MprisBusTest, TheOneThatBeganLastCountsAmongEquals) {
  const FakePlayer first(bus.address, "aaa", playing("first"));
  FakePlayer second(bus.address, "bbb", playing("second"));
  EXPECT_EQ(title(), "first");
  second.announce("Paused");
  second.announce("Playing");
  EXPECT_TRUE(becomes([&] { return title() == "second"; }));
}

TEST_F(MprisBusTest, ABusThatNeverAnswersCostsTheTimeoutOnce) {
  const TemporaryFolder folder;
  sockaddr_un place{.sun_family = AF_UNIX, .sun_path = {}};
  const auto path = (folder.path / "bus").string();
  path.copy(place.sun_path, path.size());
  const FileDescriptor silent(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(::bind(silent.get(), reinterpret_cast<sockaddr*>(&place), sizeof place), 0);
  ASSERT_EQ(::listen(silent.get(), 4), 0);
  environment.variables = {{"XDG_RUNTIME_DIR", folder.path}};
  const auto session = remote.open();
  EXPECT_EQ(session->nowPlayingApplicationIsPlaying(Seconds{0.2}), std::nullopt);
  EXPECT_EQ(session->nowPlayingInfo(Seconds{3600}), std::nullopt);
}

TEST_F(MprisBusTest, ComesBackWithABusThatStartsAgain) {
  std::optional<PrivateBus> other(std::in_place);
  environment.variables["DBUS_SESSION_BUS_ADDRESS"] = other->address;
  EXPECT_EQ(title(), "");
  other.reset();
  EXPECT_TRUE(becomes([&] { return !remote.open()->nowPlayingApplicationIsPlaying(generous); }));
  other.emplace();
  environment.variables["DBUS_SESSION_BUS_ADDRESS"] = other->address;
  const FakePlayer player(other->address, "mpv", playing("T"));
  EXPECT_EQ(title(), "T");
}

} // namespace

} // namespace velmor

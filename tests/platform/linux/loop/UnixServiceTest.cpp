#include "platform/linux/loop/UnixService.h"

#include "platform/linux/loop/GlibMainLoop.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace velmor;

namespace {

using Heard = std::vector<std::string>;

class UnixServiceTest : public testing::Test {
protected:
  UnixServiceTest() { environment.variables["XDG_RUNTIME_DIR"] = folder.path; }

  /// Offers a service that answers each line with itself, twice.
  void offer() {
    EXPECT_TRUE(window.offer([this](const auto& connection) {
      guest = connection;
      guest->read(
          [this](const auto& line) {
            guest->send(line);
            guest->send(line);
          },
          [this] {
            guest.reset();
            loop.quit();
          });
    }));
  }
  /// What comes back until the connection ends, or so many lines have come.
  Heard ask(const std::string& line, std::size_t most) {
    Heard heard;
    const auto connection = other.connect();
    if (!connection) return {"nobody"};
    connection->read(
        [&](const auto& answer) {
          heard.push_back(answer);
          if (heard.size() == most) loop.quit();
        },
        [&] { loop.quit(); });
    connection->send(line);
    loop.run();
    return heard;
  }

  TemporaryFolder folder;
  const std::filesystem::path path = folder.path / "velmor.sock";
  FakeEnvironment environment;
  GlibMainLoop loop;
  std::shared_ptr<LocalConnection> guest;
  UnixService window{environment, loop};
  UnixService other{environment, loop};
};

} // namespace

TEST_F(UnixServiceTest, ConnectsTheProgramsOfOneUser) {
  EXPECT_EQ(ask("?", 1), Heard{"nobody"});
  offer();
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_FALSE(other.offer([](const auto&) {})) << "one window answers";
  const std::string big(100'000, 'x');
  EXPECT_EQ(ask(big, 2), (Heard{big, big}));
}

TEST_F(UnixServiceTest, TakesThePlaceOfAWindowThatCrashed) {
  {
    UnixService crashed(environment, loop);
    ASSERT_TRUE(crashed.offer([](const auto&) {}));
    std::filesystem::create_hard_link(path, folder.path / "left");
  }
  EXPECT_FALSE(std::filesystem::exists(path)) << "one that ends takes it along";
  std::filesystem::rename(folder.path / "left", path);
  EXPECT_EQ(ask("?", 1), Heard{"nobody"});
  offer();
  EXPECT_EQ(ask("a", 2), (Heard{"a", "a"}));
}

TEST_F(UnixServiceTest, DoesWithoutAFolderForIt) {
  environment.variables["XDG_RUNTIME_DIR"] = "/" + std::string(200, 'x');
  EXPECT_FALSE(other.connect());
  environment.variables.clear();
  EXPECT_FALSE(other.connect());
  EXPECT_FALSE(other.offer([](const auto&) {}));
}

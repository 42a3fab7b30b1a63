#include "update/UpdateService.h"

#include "base/Json.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <limits>

using namespace velmor;

namespace {

class UpdateServiceTest : public testing::Test {
protected:
  UpdateInfo check(int status, const std::string& body, const std::string& current = "1.3.2") {
    system.http.handler = [=](const HttpRequest&) { return HttpResponse{status, body}; };
    return UpdateService(system.platform, "macos", current).check();
  }

  FakePlatform system;
};

std::string release(const std::string& version) {
  return R"({"ok":true,"version":")" + version + R"(","download_url":" https://d ","error":null})";
}

} // namespace

TEST_F(UpdateServiceTest, ComparesThreePartsAsNumbers) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  const std::tuple<const char*, const char*, std::int64_t> cases[] = {
      {"1.12.0", "1.9.9", 3},
      {"2.0", "2.0.0", 0},
      {"1.2.3-beta", "1.2.0", 0},
      {"1.2", "1.2.7", -7},
      {"1.2.3.9", "1.2.3", 0},
      {"-1.0.0", "3.9.9", -4},
      {"9223372036854775807.0.0", "-1.0.0", most},
      {"-9223372036854775808.0.0", "1.0.0", least},
      {"0.0.0", "-9223372036854775808.0.0", most},
  };
  for (const auto& [first, second, difference] : cases)
    EXPECT_EQ(UpdateService::compareVersions(first, second), difference) << first << " " << second;
}

TEST_F(UpdateServiceTest, AsksTheConfiguredServer) {
  (void)check(200, "");
  EXPECT_EQ(system.http.requests.back().url, "https://versions.example.invalid/v1/macos");
  system.environment.variables["VELMORDJ_VERSION_URL"] = " /http://127.0.0.1:9/base// \n";
  (void)check(200, "");
  EXPECT_EQ(system.http.requests.back().url, "http://127.0.0.1:9/base/v1/macos");
  EXPECT_EQ(system.http.configurations.back().requestTimeout, Seconds{8});
  EXPECT_EQ(system.http.configurations.back().resourceTimeout, Seconds{8});
}

TEST_F(UpdateServiceTest, TellsNewerSameAndOlder) {
  const auto newer = check(200, release(" 1.4.0\\n"));
  EXPECT_EQ(newer, (UpdateInfo{.current = "1.3.2",
                               .latest = "1.4.0",
                               .updateAvailable = true,
                               .downloadUrl = "https://d"}));
  EXPECT_FALSE(check(200, release("1.3.2")).updateAvailable);
  EXPECT_EQ(check(200, release("1.3.2")).latest, "1.3.2");
  EXPECT_FALSE(check(299, release("1.2.9")).updateAvailable);
}

TEST_F(UpdateServiceTest, EveryOtherAnswerIsNoUpdate) {
  const std::pair<int, std::string> cases[] = {
      {200, release("1.4")},
      {200, release("1..0")},
      {200, release("1.4.x")},
      {503, release("1.4.0")},
      {200, R"({"ok":false,"version":"1.4.0","message":"later"})"},
      {200, R"({"ok":"true","version":"1.4.0"})"},
      {200, R"({"ok":true,"version":1.4})"},
      {200, R"({"ok":true,"version":"1.4.0","message":["later"]})"},
      {199, release("1.4.0")},
      {300, release("1.4.0")},
      {200, "[]"},
      {200, "<html>"},
  };
  for (const auto& [status, body] : cases) {
    EXPECT_EQ(check(status, body), UpdateInfo{.current = "1.3.2"}) << body;
  }
}

TEST_F(UpdateServiceTest, OnlyAServerOutOfReachIsOffline) {
  const UpdateInfo none{.current = "1.0.0"};
  const UpdateService service(system.platform, "macos", "1.0.0");
  EXPECT_EQ(service.check(), (UpdateInfo{.current = "1.0.0", .offline = true}));
  const std::string endless(100'000, 'a');
  const std::pair<std::string, bool> addresses[] = {
      {"http://a b", false},      {"http://a:port", false},        {"http://[::1", false},
      {"http://a]", false},       {"https://u@[::1]:9/x:y", true}, {"", true},
      {"http://" + endless, true}};
  for (const auto& [address, isURL] : addresses) {
    system.environment.variables["VELMORDJ_VERSION_URL"] = address;
    EXPECT_EQ(UpdateService(system.platform, "macos", "1.0.0").check().offline, isURL) << address;
  }
  system.http.handler = [](const HttpRequest&) -> HttpResponse { throw AnswerTooLarge(); };
  EXPECT_EQ(service.check(), none);
  system.http.handler = nullptr;
  EXPECT_EQ(UpdateService(system.platform, "", "1.0.0").check(), none);
}

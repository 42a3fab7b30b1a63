#include "nowplaying/VirtualDJNetworkControl.h"

#include "nowplaying/NowPlayingError.h"
#include "nowplaying/VirtualDJDetector.h"
#include "tests/fakes/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string line(const std::string& address) {
  return "virtualdj  4242 dj  31u  IPv4  0x1a2b  0t0  TCP " + address + " (LISTEN)\n";
}

const std::string header = "COMMAND PID USER FD TYPE DEVICE SIZE/OFF NODE NAME\n";

TEST(VirtualDJNetworkControl, FindsThePortsOfThisMachine) {
  const auto ports = [](const std::string& lines) {
    return VirtualDJNetworkControl::parsePorts(lines);
  };
  EXPECT_THAT(ports(header + line("127.0.0.1:8080") + line("*:80") + line("*:80")),
              ElementsAre(80, 8080));
  EXPECT_THAT(ports(header + line("127.0.0.1:49152->127.0.0.1:50000")), ElementsAre(49152));
  EXPECT_THAT(ports(header + line("[::1]:80") + line("192.168.0.2:80") + line("*:http")),
              IsEmpty());
  EXPECT_THAT(ports("\n\n" + line("*:1") + "\n" + line("*:2")), ElementsAre(2)) << "no header";
  EXPECT_THAT(ports(header + "virtualdj 4242 dj 31u IPv4 0x1 0t0 TCP\n" + line("-81-82")),
              ElementsAre(81));
  EXPECT_THAT(ports(header + line("*:80") + "\xFF"), IsEmpty());
  EXPECT_THAT(ports(""), IsEmpty());
}

class NetworkControl : public testing::Test {
protected:
  NetworkControl() {
    system.processes.handler = [this](const ChildProcess& child) -> ChildResult {
      if (child.executable != "/usr/sbin/lsof") return {0, identifiers, ""};
      if (!hasLsof) throw LaunchError("No such file or directory");
      return {1, header + line("*:8082") + line("*:81"), "ignored"};
    };
  }

  NowPlayingTrack answered(const std::string& body, int status = 200) {
    system.http.handler = [=](const auto&) { return HttpResponse{status, body}; };
    return VirtualDJNetworkControl::queryNetworkControl(system.platform, 80);
  }

  std::string identifiers = "4242\n\n 4243\n";
  bool hasLsof = true;
  FakePlatform system;
};

TEST_F(NetworkControl, AsksLsofAboutEveryProcess) {
  EXPECT_THAT(VirtualDJNetworkControl::listeningPorts(system.platform), ElementsAre(81, 8082));
  EXPECT_THAT(system.processes.started.back().arguments,
              ElementsAre("-nP", "-iTCP", "-sTCP:LISTEN", "-a", "-p", "4242,4243"));
  hasLsof = false;
  EXPECT_THAT(VirtualDJNetworkControl::listeningPorts(system.platform), IsEmpty());
  identifiers = "";
  EXPECT_THAT(VirtualDJNetworkControl::listeningPorts(system.platform), IsEmpty());
  EXPECT_EQ(system.processes.started.back().executable, "/usr/bin/pgrep");
}

TEST_F(NetworkControl, ReadsTheMasterDeck) {
  const NowPlayingTrack expected{"Song", "Artist", "Album",     "House",
                                 124,    "8A",     "VirtualDJ", "VirtualDJ master-deck metadata"};
  EXPECT_EQ(answered("Song|||Artist|||Album|||House|||124.0|||8A\n"), expected);
  EXPECT_EQ(answered("Song|||Artist|||Album|||House|||124%|||8A", 404), expected);
  EXPECT_EQ(answered("Nick Cave & The Bad Seeds|||x|||||||||y|||").bpm, 0);
  for (const auto* const body :
       {"", "error:-2147467259", "a|||b|||c|||d|||e", "a|||b|||c|||d|||e|||f|||g",
        "|||b|||c|||d|||e|||f", "a||||||c|||d|||e|||f", "a|||b|||c|||d|||e|||\xFF"}) {
    EXPECT_THROW(answered(body), NowPlayingError) << body;
  }
}

TEST_F(NetworkControl, SendsTheScriptAndATokenOnlyWhenThereIsOne) {
  const auto headers = [this] {
    (void)answered("a|||b|||c|||d|||e|||f");
    return system.http.requests.back().headers;
  };
  EXPECT_THAT(headers(), IsEmpty());
  system.environment.variables["VIRTUALDJ_NETWORK_CONTROL_TOKEN"] = "";
  EXPECT_THAT(headers(), IsEmpty());
  system.environment.variables["VIRTUALDJ_NETWORK_CONTROL_TOKEN"] = "s3cret";
  EXPECT_THAT(headers(), ElementsAre(testing::Pair("Authorization", "Bearer s3cret")));
  const auto& request = system.http.requests.back();
  EXPECT_EQ(request.method, "GET");
  EXPECT_EQ(request.timeout, Seconds{0.7});
  EXPECT_EQ(system.http.configurations.back().resourceTimeout, Seconds{1.0});
  const auto song = [](const std::string& field) {
    return "%60deck%20master%20get_loaded_song%20%22" + field + "%22%60";
  };
  const std::string bar = "%7C%7C%7C";
  EXPECT_EQ(request.url, "http://127.0.0.1:80/query?script=deck%20master%20play%20?%20deck%20"
                         "master%20is_audible%20?%20get_text%20'" +
                             song("title") + bar + song("artist") + bar + song("album") + bar +
                             song("genre") + bar + song("bpm") + bar + song("key") +
                             "'%20:%20get_text%20''%20:%20get_text%20''");
}

TEST_F(NetworkControl, TriesPortsUntilOneAnswers) {
  system.http.handler = [](const HttpRequest& request) -> HttpResponse {
    if (request.url.starts_with("http://127.0.0.1:81/")) throw TransportError("timed out");
    return {200, "Song|||Artist||||||||||||"};
  };
  EXPECT_EQ(VirtualDJDetector::current(system.platform).title, "Song");
  EXPECT_EQ(system.http.requests.size(), 2U);
  identifiers = "";
  EXPECT_THROW((void)VirtualDJDetector::current(system.platform), NowPlayingError);
  EXPECT_EQ(system.processes.asked("virtualdj"), 3);
}

} // namespace
} // namespace velmor

#include "streams/StreamServer.h"

#include "base/VelmorError.h"
#include "tests/fakes/FakeSystem.h"

#include <gmock/gmock.h>
#include <httplib.h>

#include <thread>

using namespace velmor;
using testing::HasSubstr;

namespace {

class StreamServerTest : public testing::Test {
protected:
  void play(const std::string& title) {
    feed.setTrack(NowPlayingTrack{.title = title, .artist = "A"});
  }

  FakeBundle bundle;
  TrackFeed feed;
  StreamServer server{bundle, feed};
  const int port = server.start(0);
  httplib::Client client{"127.0.0.1", port};
};

} // namespace

TEST_F(StreamServerTest, AnswersWhatIsKnown) {
  EXPECT_EQ(client.Get("/now")->body, "null\n");
  play("T");
  feed.setSuggestions({.notice = "N"});
  EXPECT_THAT(client.Get("/now")->body, HasSubstr(R"("title":"T")"));
  EXPECT_THAT(client.Get("/suggestions")->body, HasSubstr(R"("notice":"N")"));
  feed.setTrack(std::nullopt);
  EXPECT_EQ(client.Get("/now")->body, "null\n");
}

TEST_F(StreamServerTest, IsClosedToOtherOriginsAndToChanges) {
  const auto here = "127.0.0.1:" + std::to_string(port);
  const auto local = "localhost:" + std::to_string(port);
  const std::tuple<httplib::Headers, int> cases[] = {
      {{{"Host", here}}, 200},
      {{{"Host", local}}, 200},
      {{{"Host", local}, {"Origin", "http://" + local}}, 200},
      {{{"Host", "evil.example:" + std::to_string(port)}}, 403},
      {{{"Host", "127.0.0.1"}}, 403},
      {{{"Host", here}, {"Origin", "https://evil.example"}}, 403},
      {{{"Host", here}, {"Origin", "null"}}, 403},
  };
  for (const auto& [headers, status] : cases) {
    const auto answer = client.Get("/now", headers);
    EXPECT_EQ(answer->status, status) << headers.begin()->second;
    EXPECT_FALSE(answer->has_header("Access-Control-Allow-Origin"));
  }
  EXPECT_EQ(client.Post("/now", "{}", "application/json")->status, 405);
  EXPECT_EQ(client.Options("/now")->status, 405);
  EXPECT_EQ(client.Get("/settings")->status, 404);
  EXPECT_EQ(client.Get("/../Info.json")->status, 404);
}

TEST_F(StreamServerTest, StreamsEveryChangeToEachReader) {
  play("0");
  std::array<std::string, 3> texts;
  std::vector<std::thread> readers;
  std::atomic<int> begun = 0;
  for (auto& text : texts)
    readers.emplace_back([&] {
      httplib::Client reader("127.0.0.1", port);
      bool isFirst = true;
      reader.Get("/events", [&](const char* data, std::size_t size) {
        text.append(data, size);
        if (text.find("\"0\"") != std::string::npos && std::exchange(isFirst, false)) ++begun;
        return text.find("\"99\"") == std::string::npos;
      });
    });
  while (begun < 3)
    std::this_thread::yield();
  for (int i = 1; i < 100; ++i)
    play(std::to_string(i));
  for (auto& reader : readers)
    reader.join();
  for (const auto& text : texts)
    for (int i = 0; i < 100; ++i)
      EXPECT_THAT(text, HasSubstr("\"title\":\"" + std::to_string(i) + "\""));
}

TEST_F(StreamServerTest, SaysThatAPortIsTakenAndEndsUnderItsReaders) {
  TrackFeed other;
  auto second = std::make_unique<StreamServer>(bundle, other);
  EXPECT_THROW(second->start(port), VelmorError);
  const int free = second->start(0);
  std::atomic<bool> isReading = false;
  std::thread reader([&] {
    httplib::Client("127.0.0.1", free).Get("/events", [&](const char*, std::size_t) {
      return isReading = true;
    });
  });
  while (!isReading)
    std::this_thread::yield();
  second.reset();
  reader.join();
}

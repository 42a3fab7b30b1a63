#pragma once

#include <httplib.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace velmor {

/// Before that, a server cannot be stopped.
void waitUntilRunning(const httplib::Server& server);

/// A web server on a free port of this machine. Its paths:
/// /echo answers with the request line, the headers in small letters and the body;
/// /redirect?status=S&to=URL; /bytes?count=N; /silent answers once the server ends;
/// /trickle?count=N sends N bytes with short pauses; /loop leads back to itself.
class TestServer {
public:
  TestServer();
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;
  ~TestServer();

  [[nodiscard]] std::string url(const std::string& path) const;

  /// Returns once a request for /silent has come in.
  void waitForSilentRequest();

  /// How often /loop was asked for.
  [[nodiscard]] int loops() const { return loopRequests; }

private:
  void addPaths();
  void pause(std::chrono::milliseconds time);

  httplib::Server server;
  int port;
  std::mutex lock;
  std::condition_variable changed;
  bool ending = false;
  int silentRequests = 0;
  std::atomic<int> loopRequests = 0;
  std::jthread thread;
};

} // namespace velmor

#pragma once

#include <httplib.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace velmor {

/// Before that, a server cannot be stopped.
inline void waitUntilRunning(const httplib::Server& server) {
  while (!server.is_running())
    std::this_thread::yield();
}

/// A web server on a free port of this machine. Its paths:
/// /echo answers with the request line, the headers in small letters and the body;
/// /redirect?status=S&to=URL; /bytes?count=N; /silent answers once the server ends;
/// /gzip answers with {}, compressed; /trickle?count=N sends N bytes with short pauses; /loop leads
/// back to itself.
class TestServer {
public:
  TestServer() {
    on("/echo", [](const Request& request, Response& response) {
      response.set_content(described(request), "text/plain");
    });
    on("/redirect", [](const Request& request, Response& response) {
      response.status = std::stoi(request.get_param_value("status"));
      response.set_header("Location", request.get_param_value("to"));
    });
    on("/bytes", [](const Request& request, Response& response) {
      response.set_content(std::string(count(request), 'x'), "x/y");
    });
    on("/gzip", [](const Request&, Response& response) {
      constexpr std::string_view bytes("\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xab\xae\x05\x00"
                                       "\x43\xbf\xa6\xa3\x02\x00\x00\x00",
                                       22);
      response.set_header("Content-Encoding", "gzip");
      response.set_content(bytes.data(), bytes.size(), "application/json");
    });
    // As a proxy it wants to know who asks.
    server.set_pre_routing_handler([](const Request& request, Response& response) {
      if (request.method != "CONNECT") return httplib::Server::HandlerResponse::Unhandled;
      response.status = 407;
      return httplib::Server::HandlerResponse::Handled;
    });
    on("/loop", [this](const Request&, Response& response) {
      ++loopRequests;
      response.set_redirect("/loop");
    });
    on("/silent", [this](const Request&, Response&) { pause(std::chrono::hours(1)); });
    on("/trickle", [this](const Request& request, Response& response) {
      response.set_content_provider(count(request), "x/y", [this](auto, auto, auto& sink) {
        pause(std::chrono::milliseconds(50));
        return sink.write("x", 1);
      });
    });
    thread = std::jthread([this] { server.listen_after_bind(); });
    waitUntilRunning(server);
  }
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;
  ~TestServer() {
    {
      const std::lock_guard guard(lock);
      ending = true;
    }
    changed.notify_all();
    server.stop();
  }

  [[nodiscard]] std::string url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(port) + path;
  }

  /// How often /loop was asked for.
  [[nodiscard]] int loops() const { return loopRequests; }

private:
  using Request = httplib::Request;
  using Response = httplib::Response;

  void on(const std::string& path, const httplib::Server::Handler& answer) {
    server.Get(path, answer).Post(path, answer).Put(path, answer);
  }

  static std::size_t count(const Request& request) {
    return std::stoul(request.get_param_value("count"));
  }

  static std::string described(const Request& request) {
    std::string head;
    for (const auto& [name, value] : request.headers)
      head.append(name).append(": ").append(value).append("\n");
    std::ranges::transform(head, head.begin(), [](unsigned char letter) {
      return static_cast<char>(std::tolower(letter));
    });
    return request.method + " " + request.path + "\n" + head + "\n" + request.body;
  }

  /// Waits so long, or until the server ends.
  void pause(std::chrono::milliseconds time) {
    std::unique_lock guard(lock);
    changed.wait_for(guard, time, [this] { return ending; });
  }

  httplib::Server server;
  int port = server.bind_to_any_port("127.0.0.1");
  std::mutex lock;
  std::condition_variable changed;
  bool ending = false;
  std::atomic<int> loopRequests = 0;
  std::jthread thread;
};

} // namespace velmor

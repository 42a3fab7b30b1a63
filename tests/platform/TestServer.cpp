#include "tests/platform/TestServer.h"

#include <algorithm>

namespace velmor {

namespace {

std::string described(const httplib::Request& request) {
  std::string text = request.method + " " + request.path + "\n";
  for (const auto& [name, value] : request.headers) {
    std::string small = name;
    std::ranges::transform(small, small.begin(), [](unsigned char letter) {
      return static_cast<char>(std::tolower(letter));
    });
    text.append(small).append(": ").append(value).append("\n");
  }
  return text + "\n" + request.body;
}

} // namespace

void waitUntilRunning(const httplib::Server& server) {
  while (!server.is_running())
    std::this_thread::yield();
}

TestServer::TestServer() {
  addPaths();
  port = server.bind_to_any_port("127.0.0.1");
  thread = std::jthread([this] { server.listen_after_bind(); });
  waitUntilRunning(server);
}

TestServer::~TestServer() {
  {
    const std::lock_guard guard(lock);
    ending = true;
  }
  changed.notify_all();
  server.stop();
}

std::string TestServer::url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port) + path;
}

void TestServer::waitForSilentRequest() {
  std::unique_lock guard(lock);
  changed.wait(guard, [this] { return silentRequests > 0; });
}

void TestServer::addPaths() {
  const auto echo = [](const httplib::Request& request, httplib::Response& response) {
    response.set_content(described(request), "text/plain");
  };
  server.Get("/echo", echo).Post("/echo", echo).Put("/echo", echo);
  const auto redirect = [](const httplib::Request& request, httplib::Response& response) {
    response.status = std::stoi(request.get_param_value("status"));
    response.set_header("Location", request.get_param_value("to"));
  };
  server.Get("/redirect", redirect).Post("/redirect", redirect).Put("/redirect", redirect);
  server.Get("/bytes", [](const httplib::Request& request, httplib::Response& response) {
    response.set_content(std::string(std::stoul(request.get_param_value("count")), 'x'), "x/y");
  });
  server.Get("/loop", [this](const httplib::Request&, httplib::Response& response) {
    ++loopRequests;
    response.set_redirect("/loop");
  });
  server.Get("/silent", [this](const httplib::Request&, httplib::Response&) {
    std::unique_lock guard(lock);
    ++silentRequests;
    changed.notify_all();
    changed.wait(guard, [this] { return ending; });
  });
  server.Get("/trickle", [this](const httplib::Request& request, httplib::Response& response) {
    const auto count = std::stoul(request.get_param_value("count"));
    response.set_content_provider(count, "x/y",
                                  [this](std::size_t, std::size_t, httplib::DataSink& sink) {
                                    pause(std::chrono::milliseconds(50));
                                    return sink.write("x", 1);
                                  });
  });
}

void TestServer::pause(std::chrono::milliseconds time) {
  std::unique_lock guard(lock);
  changed.wait_for(guard, time, [this] { return ending; });
}

} // namespace velmor

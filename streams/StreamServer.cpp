#include "streams/StreamServer.h"

#include "base/Json.h"
#include "base/VelmorError.h"

#include <httplib.h>

#include <array>
#include <atomic>
#include <fstream>
#include <iterator>
#include <thread>
#include <utility>

namespace velmor {

namespace {

constexpr const char* loopback = "127.0.0.1";
constexpr const char* json = "application/json";
constexpr std::size_t threadCount = 24;
/// Each holds a thread for as long as it lasts: some threads must stay free for short questions.
constexpr int mostEventStreams = 16;
/// How often a silent event stream says that it lives, and finds out that its reader has gone.
constexpr std::chrono::seconds aliveInterval{5};

struct OverlayFile {
  const char* path;
  const char* name;
  const char* extension;
  const char* type;
};
constexpr std::array<OverlayFile, 4> overlayFiles{{
    {"/overlay", "index", "html", "text/html; charset=utf-8"},
    {"/overlay.css", "overlay", "css", "text/css; charset=utf-8"},
    {"/theme.css", "theme", "css", "text/css; charset=utf-8"},
    {"/overlay.js", "overlay", "js", "text/javascript; charset=utf-8"},
}};

std::string contentOf(const Bundle& bundle, const OverlayFile& file) {
  const auto path = bundle.resource(file.name, file.extension, "Overlay");
  if (!path) return "";
  std::ifstream stream(*path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string eventText(const EventBoard::Event& event) {
  return "event: " + event.name + "\ndata: " + event.data + "\n\n";
}

bool send(httplib::DataSink& sink, const std::string& text) {
  return sink.write(text.data(), text.size());
}

/// A number that falls again with its holder.
class Seat {
public:
  explicit Seat(std::atomic<int>& taken) : count(taken), number(++taken) {}
  Seat(const Seat&) = delete;
  Seat& operator=(const Seat&) = delete;
  ~Seat() { --count; }
  [[nodiscard]] int place() const { return number; }

private:
  std::atomic<int>& count;
  const int number;
};

} // namespace

class StreamServer::Routes {
public:
  Routes(const Bundle& bundle, std::shared_ptr<EventBoard> events) : board(std::move(events)) {
    server.new_task_queue = [] { return new httplib::ThreadPool(threadCount); };
    server.set_payload_max_length(1024);
    server.set_keep_alive_timeout(2);
    server.set_pre_routing_handler([this](const auto& request, auto& response) {
      return isAllowed(request, response) ? httplib::Server::HandlerResponse::Unhandled
                                          : httplib::Server::HandlerResponse::Handled;
    });
    serveNewest("/now", "track");
    serveNewest("/suggestions", "suggestions");
    server.Get("/events", [this](const auto&, auto& response) { streamEvents(response); });
    for (const auto& file : overlayFiles) {
      const auto content = contentOf(bundle, file);
      if (content.empty()) continue;
      server.Get(file.path, [content, type = file.type](const auto&, auto& response) {
        response.set_content(content, type);
      });
    }
  }
  Routes(const Routes&) = delete;
  Routes& operator=(const Routes&) = delete;
  ~Routes() {
    board->close();
    server.stop();
    if (thread.joinable()) thread.join();
  }

  int start(int wanted) {
    // Two servers at one port would share the requests by chance.
    server.set_socket_options([](auto socket) {
      const int yes = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    port = wanted == 0 ? server.bind_to_any_port(loopback)
                       : (server.bind_to_port(loopback, wanted) ? wanted : -1);
    if (port < 0)
      throw VelmorError("The port " + std::to_string(wanted) +
                        " cannot be used; another program may have it. Choose another one.");
    thread = std::thread([this] { server.listen_after_bind(); });
    // Stopping a server that has not begun yet would leave it running.
    while (!server.is_running())
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return port;
  }

private:
  /// A page elsewhere may let a name of its own lead here; its requests carry that name.
  bool isAllowed(const httplib::Request& request, httplib::Response& response) const {
    response.set_header("Cache-Control", "no-store");
    response.set_header("X-Content-Type-Options", "nosniff");
    response.set_header("Cross-Origin-Resource-Policy", "same-origin");
    response.set_header("Content-Security-Policy",
                        "default-src 'none'; style-src 'self'; script-src 'self'; "
                        "connect-src 'self'; base-uri 'none'; form-action 'none'");
    const auto colonPort = ":" + std::to_string(port);
    const auto host = request.get_header_value("Host");
    const bool isHere = host == loopback + colonPort || host == "localhost" + colonPort;
    const auto origin = request.get_header_value("Origin");
    const bool isOwn = origin.empty() || origin == "http://" + host;
    if (!isHere || !isOwn) return refuse(response, 403);
    if (request.method != "GET" && request.method != "HEAD") return refuse(response, 405);
    return true;
  }

  static bool refuse(httplib::Response& response, int status) {
    response.status = status;
    return false;
  }

  void serveNewest(const char* path, const char* event) {
    server.Get(path, [this, event](const auto&, auto& response) {
      const auto newest = board->newest(event);
      response.set_content((newest ? newest->data : "null") + "\n", json);
    });
  }

  void streamEvents(httplib::Response& response) {
    const auto seat = std::make_shared<Seat>(streams);
    if (seat->place() > mostEventStreams) {
      response.status = 503;
      return;
    }
    auto reached = std::make_shared<std::optional<std::uint64_t>>();
    response.set_chunked_content_provider(
        "text/event-stream", [this, seat, reached](std::size_t, httplib::DataSink& sink) {
          if (!*reached) return tellPresent(sink, *reached);
          const auto event = board->next(**reached, aliveInterval);
          if (board->isClosed()) {
            sink.done();
            return true;
          }
          if (!event) return send(sink, ": still here\n\n");
          *reached = event->number;
          return send(sink, eventText(*event));
        });
  }

  bool tellPresent(httplib::DataSink& sink, std::optional<std::uint64_t>& reached) {
    reached = board->lastNumber();
    // One that comes in between is told twice rather than never.
    std::string present = "retry: 1000\n\n";
    for (const auto* const name : {"track", "suggestions"})
      if (const auto event = board->newest(name)) present += eventText(*event);
    return send(sink, present);
  }

  const std::shared_ptr<EventBoard> board;
  int port = 0;
  std::atomic<int> streams = 0;
  httplib::Server server;
  std::thread thread;
};

StreamServer::StreamServer(const Bundle& bundle, TrackFeed& feed)
    : board(std::make_shared<EventBoard>()), routes(std::make_unique<Routes>(bundle, board)) {
  feed.onTrack([events = board](const auto& track) {
    events->post("track", track ? jsonEncoder().encode(*track) : "null");
  });
  feed.onSuggestions([events = board](const auto& result) {
    events->post("suggestions", jsonEncoder().encode(result));
  });
}

StreamServer::~StreamServer() = default;

int StreamServer::start(int port) {
  return routes->start(port);
}

} // namespace velmor

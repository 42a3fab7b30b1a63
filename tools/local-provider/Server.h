#pragma once

#include "Answer.h"
#include "Provider.h"
#include "ReceivedRequest.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

namespace velmor::tools {

/// Serves a provider on 127.0.0.1, on threads of its own, until it is destroyed.
class Server {
public:
  struct Setup {
    int port = 0;                       ///< 0 for any free port
    std::chrono::milliseconds delay{0}; ///< before each answer
    std::filesystem::path record;       ///< empty for none
    std::string key;                    ///< kept out of the record
  };

  /// Listens when it returns; throws `std::runtime_error` when it cannot.
  Server(const Provider& answering, Setup wanted);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  int port() const { return boundPort; }

private:
  int bind(); ///< gives the port, or -1
  void route();
  void serve(const httplib::Request& request, std::string body, httplib::Response& response);
  void record(const ReceivedRequest& request);
  bool waitDelay(); ///< false when the server stops meanwhile
  Answer answer(const ReceivedRequest& request);

  const Provider& provider;
  Setup setup;
  int boundPort = 0;
  std::mutex recordMutex; ///< guards `recordFile`
  std::ofstream recordFile;
  std::stop_source stopping;
  std::unique_ptr<httplib::Server> server;
  std::jthread listener;
};

} // namespace velmor::tools

#include "Server.h"

#include "RefusalAnswer.h"
#include "RequestRecord.h"

#include <httplib.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <iostream>
#include <optional>
#include <stdexcept>

namespace velmor::tools {
namespace {

constexpr const char* address = "127.0.0.1";
constexpr const char* anyPath = ".*";
constexpr size_t longestBody = 1'048'576; ///< bytes

/// The library puts the addresses of both ends among the headers, in names of its own.
bool isFromLibrary(const std::string& name) {
  constexpr std::array<std::string_view, 4> names{"REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR",
                                                  "LOCAL_PORT"};
  return std::ranges::find(names, name) != names.end();
}

std::string lowerCase(std::string name) {
  std::ranges::transform(name, name.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return name;
}

ReceivedRequest received(const httplib::Request& request, std::string body) {
  ReceivedRequest result{request.method, request.target, {}, std::move(body)};
  for (const auto& [name, value] : request.headers)
    if (!isFromLibrary(name)) result.headers.emplace_back(lowerCase(name), value);
  return result;
}

/// The default would let a second provider listen on the same port and take half the requests.
void allowQuickReuse(int socket) {
  const int yes = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

std::optional<Protocol> spokenProtocol(const ReceivedRequest& request) {
  const auto protocol = RequestCheck::protocolOf(request);
  const auto* found = std::get_if<Protocol>(&protocol);
  return found ? std::optional(*found) : std::nullopt;
}

} // namespace

Server::Server(const Provider& answering, Setup wanted)
    : provider(answering), setup(std::move(wanted)), server(std::make_unique<httplib::Server>()) {
  if (!setup.record.empty()) recordFile.open(setup.record, std::ios::app);
  if (!recordFile) throw std::runtime_error("cannot write " + setup.record.string());
  route();
  server->set_socket_options(allowQuickReuse);
  server->set_payload_max_length(longestBody);
  // Idle connections would hold up the end of the program.
  server->set_keep_alive_max_count(1);
  server->set_keep_alive_timeout(1);
  boundPort = bind();
  if (boundPort < 0)
    throw std::runtime_error("cannot listen on port " + std::to_string(setup.port));
  listener = std::jthread([this] { server->listen_after_bind(); });
  while (!server->is_running())
    std::this_thread::yield();
}

int Server::bind() {
  if (setup.port == 0) return server->bind_to_any_port(address);
  return server->bind_to_port(address, setup.port) ? setup.port : -1;
}

Server::~Server() {
  stopping.request_stop();
  server->stop();
}

void Server::route() {
  const auto plain = [this](const httplib::Request& request, httplib::Response& response) {
    serve(request, request.body, response);
  };
  // Reading the body ourselves keeps it as it came, whatever its content type says.
  const auto withBody = [this](const httplib::Request& request, httplib::Response& response,
                               const httplib::ContentReader& reader) {
    std::string body;
    reader([&body](const char* data, size_t length) {
      body.append(data, length);
      return true;
    });
    // A body that is too long has its status already.
    if (response.status < 400) serve(request, std::move(body), response);
  };
  server->Get(anyPath, plain);
  server->Post(anyPath, withBody);
  server->Put(anyPath, withBody);
  server->Patch(anyPath, withBody);
  server->Delete(anyPath, withBody);
}

void Server::serve(const httplib::Request& request, std::string body, httplib::Response& response) {
  const auto plainRequest = received(request, std::move(body));
  record(plainRequest);
  if (!waitDelay()) {
    response.status = 503;
    return;
  }
  const auto result = answer(plainRequest);
  response.status = result.status;
  response.set_content(result.body, "application/json");
}

Answer Server::answer(const ReceivedRequest& request) {
  const auto result = provider.answer(request);
  if (const auto* right = std::get_if<Answer>(&result)) return *right;
  const auto& refusal = std::get<Refusal>(result);
  // Clients drop the bodies of refusals; whoever runs the program should see the reason.
  std::cerr << "refused with " + std::to_string(refusal.status) + ": " + request.method + " " +
                   request.target + ": " + RefusalAnswer::message(refusal) + "\n";
  return RefusalAnswer::of(spokenProtocol(request), refusal);
}

void Server::record(const ReceivedRequest& request) {
  if (setup.record.empty()) return;
  const auto line = RequestRecord::line(request, setup.key);
  const std::lock_guard guard(recordMutex);
  recordFile << line << '\n' << std::flush;
}

bool Server::waitDelay() {
  std::mutex mutex;
  std::unique_lock lock(mutex);
  std::condition_variable_any never;
  const auto stopped = stopping.get_token();
  never.wait_for(lock, stopped, setup.delay, [] { return false; });
  return !stopped.stop_requested();
}

} // namespace velmor::tools

#pragma once

#include "platform/MainLoop.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace velmor {

struct HttpRequest {
  std::string method = "GET";
  std::string url;
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;
  /// The longest time without any progress. The session's own limit counts when it is smaller.
  Seconds timeout{60};
};

struct HttpResponse {
  int status = 0;
  std::string body;
};

struct HttpSessionConfiguration {
  /// The longest time without any progress.
  Seconds requestTimeout{60};
  /// The longest time for a whole exchange, redirects included.
  Seconds resourceTimeout{7 * 24 * 3600};
};

/// No answer could be had. The message is a sentence for the user without addresses or keys.
class TransportError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The answer's body was longer than a session takes.
class AnswerTooLarge : public TransportError {
public:
  AnswerTooLarge() : TransportError("The server's answer is too large.") {}
};

/// Sends requests over http and https, keeping no cookies, cache or credentials. Redirects are
/// followed, but the headers "Authorization" and "x-api-key" stay with the first host.
/// Safe to use from any thread.
class HttpSession {
public:
  static constexpr std::size_t bodyLimit = std::size_t{16} << 20;

  virtual ~HttpSession() = default;

  /// Sends the request and waits for the whole answer. When Velmor quits meanwhile, the call ends
  /// at once. Bodies over `bodyLimit` fail. Throws TransportError.
  [[nodiscard]] virtual HttpResponse send(const HttpRequest& request) const = 0;
};

/// Makes sessions.
class HttpClient {
public:
  virtual ~HttpClient() = default;
  [[nodiscard]] virtual std::unique_ptr<HttpSession>
  makeSession(const HttpSessionConfiguration& configuration) = 0;
};

} // namespace velmor

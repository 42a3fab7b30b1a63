#pragma once

#include "platform/Cancellation.h"
#include "platform/MainLoop.h"

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace velmor {

/// What is asked of a server.
struct HttpRequest {
  /// In upper case, such as "GET" or "POST".
  std::string method = "GET";
  /// Begins with http:// or https://.
  std::string url;
  /// Names and values, sent in this order. One with a line break fails the request.
  std::vector<std::pair<std::string, std::string>> headers;
  /// Raw bytes, sent with every method but GET and HEAD.
  std::string body;
  /// The longest time without any progress. The session's own limit counts when it is smaller.
  Seconds timeout{60};
  /// Ends the exchange at once, with an error.
  Cancellation cancellation;
};

/// What the server has answered; a status such as 404 is an answer too.
struct HttpResponse {
  int status = 0;
  /// Raw bytes.
  std::string body;
};

/// The limits of a session's requests.
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

/// Sends requests over http and https, keeping no cookies, cache or credentials. Up to 16 redirects
/// are followed, but the headers "Authorization" and "x-api-key" stay with the first scheme, host
/// and port. Safe to use from any thread.
class HttpSession {
public:
  /// In bytes.
  static constexpr std::size_t bodyLimit = std::size_t{16} << 20;

  virtual ~HttpSession() = default;

  /// Sends the request and waits for the whole answer. When Velmor quits meanwhile, or the request
  /// is cancelled, the call ends at once, with an error. Throws TransportError, and
  /// AnswerTooLarge for a body over `bodyLimit`.
  [[nodiscard]] virtual HttpResponse send(const HttpRequest& request) const = 0;
};

/// Makes sessions, which must end before it does. Any thread.
class HttpClient {
public:
  virtual ~HttpClient() = default;
  [[nodiscard]] virtual std::unique_ptr<HttpSession>
  makeSession(const HttpSessionConfiguration& configuration) = 0;
};

} // namespace velmor

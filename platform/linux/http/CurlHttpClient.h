#pragma once

#include "platform/HttpSession.h"

#include <stop_token>

namespace velmor {

/// Sends requests with libcurl, each over a connection of its own.
class CurlHttpSession final : public HttpSession {
public:
  CurlHttpSession(const HttpSessionConfiguration& limits, std::stop_token quitToken);

  [[nodiscard]] HttpResponse send(const HttpRequest& request) const override;

private:
  HttpSessionConfiguration configuration;
  std::stop_token quit;
};

/// Makes sessions that use libcurl. Sessions end before their client does.
class CurlHttpClient final : public HttpClient {
public:
  /// `quitToken` ends every request at once.
  explicit CurlHttpClient(std::stop_token quitToken);
  CurlHttpClient(const CurlHttpClient&) = delete;
  CurlHttpClient& operator=(const CurlHttpClient&) = delete;
  ~CurlHttpClient() override;

  [[nodiscard]] std::unique_ptr<HttpSession>
  makeSession(const HttpSessionConfiguration& configuration) override;

private:
  std::stop_token quit;
};

} // namespace velmor

#pragma once

#include "platform/HttpSession.h"

#include <memory>
#include <stop_token>

namespace velmor {

/// Makes sessions that send requests with libcurl, each over a connection of its own. Sessions end
/// before their client does.
class CurlHttpClient final : public HttpClient {
public:
  /// Once `quitToken` is stopped, every request fails at once.
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

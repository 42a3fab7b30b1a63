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

} // namespace velmor

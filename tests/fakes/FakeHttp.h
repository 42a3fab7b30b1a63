#pragma once

#include "platform/HttpSession.h"

#include <functional>
#include <mutex>

namespace velmor {

/// Records requests and answers them with `handler`, which may throw TransportError.
class FakeHttp : public HttpClient {
public:
  std::unique_ptr<HttpSession> makeSession(const HttpSessionConfiguration& configuration) override {
    configurations.push_back(configuration);
    return std::make_unique<Session>(*this);
  }

  std::function<HttpResponse(const HttpRequest&)> handler = [](const HttpRequest&) -> HttpResponse {
    throw TransportError("Could not connect to the server.");
  };
  std::vector<HttpRequest> requests;
  std::vector<HttpSessionConfiguration> configurations;

private:
  class Session : public HttpSession {
  public:
    explicit Session(FakeHttp& client) : http(client) {}
    HttpResponse send(const HttpRequest& request) const override {
      http.requests.push_back(request);
      return http.handler(request);
    }

  private:
    FakeHttp& http;
  };
};

} // namespace velmor

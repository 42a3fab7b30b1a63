#include "platform/linux/http/CurlHttpClient.h"

#include "platform/linux/http/CurlTransfer.h"
#include "platform/linux/http/HttpAddress.h"
#include "platform/linux/system/PosixProcessLauncher.h"

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <initializer_list>
#include <utility>

namespace velmor {

namespace {

constexpr int redirectLimit = 16;

bool isRedirect(int status) {
  constexpr std::array redirects = {301, 302, 303, 307, 308};
  return std::ranges::find(redirects, status) != redirects.end();
}

void removeHeaders(HttpRequest& request, std::initializer_list<const char*> names) {
  std::erase_if(request.headers, [&](const auto& header) {
    return std::ranges::any_of(
        names, [&](const char* name) { return curl_strequal(header.first.c_str(), name) != 0; });
  });
}

/// The request with which a redirect is followed.
void redirect(HttpRequest& request, int status) {
  constexpr int seeOther = 303;
  const bool onlyChangesPost = status == 301 || status == 302;
  const bool becomesGet = (onlyChangesPost && request.method == "POST") ||
                          (status == seeOther && request.method != "HEAD");
  if (!becomesGet) return;
  request.method = "GET";
  request.body.clear();
  removeHeaders(request, {"Content-Type", "Content-Length", "Content-Encoding"});
}

CurlTransfer::Clock::duration limited(Seconds duration) {
  constexpr Seconds longest = std::chrono::hours{24 * 365};
  return std::chrono::duration_cast<CurlTransfer::Clock::duration>(
      std::clamp(duration, Seconds{0}, longest));
}

class CurlHttpSession final : public HttpSession {
public:
  CurlHttpSession(const HttpSessionConfiguration& limits, std::stop_token quitToken)
      : configuration(limits), quit(std::move(quitToken)) {}

  [[nodiscard]] HttpResponse send(const HttpRequest& request) const override;

private:
  HttpSessionConfiguration configuration;
  std::stop_token quit;
};

HttpResponse CurlHttpSession::send(const HttpRequest& original) const {
  HttpRequest request = original;
  const HttpAddress first(request.url);
  HttpAddress address = first;
  std::stop_source stop;
  const auto end = [&stop] { stop.request_stop(); };
  const std::stop_callback onQuit(quit, end);
  const Cancellation::Hook onRequest(request.cancellation, end);
  const CurlTransfer::Limits limits{
      .idle = limited(std::min(configuration.requestTimeout, request.timeout)),
      .end = CurlTransfer::Clock::now() + limited(configuration.resourceTimeout),
      .stop = stop.get_token()};
  for (int redirects = 0; redirects <= redirectLimit; ++redirects) {
    CurlTransfer transfer(address, request);
    auto response = transfer.run(limits);
    const auto next = transfer.redirectAddress();
    if (!isRedirect(response.status) || next.empty()) return response;
    address = HttpAddress(next);
    redirect(request, response.status);
    if (!address.hasSameOrigin(first)) removeHeaders(request, {"Authorization", "x-api-key"});
  }
  throw TransportError("There were too many redirects.");
}

} // namespace

CurlHttpClient::CurlHttpClient(std::stop_token quitToken) : quit(std::move(quitToken)) {
  // libcurl sets itself up with the first request, from any thread: starting does not pay for it.
  ignoreBrokenPipes();
}

CurlHttpClient::~CurlHttpClient() {
  curl_global_cleanup();
}

std::unique_ptr<HttpSession>
CurlHttpClient::makeSession(const HttpSessionConfiguration& configuration) {
  return std::make_unique<CurlHttpSession>(configuration, quit);
}

} // namespace velmor

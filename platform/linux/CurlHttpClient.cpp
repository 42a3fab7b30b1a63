#include "platform/linux/CurlHttpClient.h"

#include "platform/linux/BrokenPipes.h"
#include "platform/linux/CurlHttpSession.h"

#include <curl/curl.h>

namespace velmor {

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

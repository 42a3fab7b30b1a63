#include "platform/linux/http/HttpAddress.h"

#include "platform/HttpSession.h"

#include <arpa/inet.h>
#include <curl/curl.h>

#include <cstdint>
#include <memory>

namespace velmor {

namespace {

struct UrlCleanup {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using UrlHandle = std::unique_ptr<CURLU, UrlCleanup>;

/// "" when the address has no such part.
std::string part(const UrlHandle& url, CURLUPart which) {
  char* value = nullptr;
  if (curl_url_get(url.get(), which, &value, CURLU_DEFAULT_PORT) != CURLUE_OK) return {};
  std::string text(value);
  curl_free(value);
  return text;
}

/// In any case of letters, as names of hosts go.
bool isHost(const std::string& host, const char* name) {
  return curl_strequal(host.c_str(), name) != 0;
}

} // namespace

HttpAddress::HttpAddress(const std::string& address) : text(address) {
  const UrlHandle url(curl_url());
  const auto failure =
      curl_url_set(url.get(), CURLUPART_URL, text.c_str(), CURLU_NON_SUPPORT_SCHEME);
  scheme = part(url, CURLUPART_SCHEME);
  if (failure == CURLUE_BAD_SCHEME || (!failure && scheme != "http" && scheme != "https")) {
    throw TransportError("The address does not begin with http:// or https://.");
  }
  host = part(url, CURLUPART_HOST);
  if (failure || host.empty()) throw TransportError("The address is not valid.");
  port = part(url, CURLUPART_PORT);
}

bool HttpAddress::hasSameOrigin(const HttpAddress& other) const {
  return scheme == other.scheme && isHost(host, other.host.c_str()) && port == other.port;
}

bool HttpAddress::isLoopback() const {
  constexpr std::uint32_t loopbackNetwork = 127;
  constexpr int networkShift = 24;
  in_addr address{};
  if (::inet_pton(AF_INET, host.c_str(), &address) == 1) {
    return ntohl(address.s_addr) >> networkShift == loopbackNetwork;
  }
  if (host == "[::1]" || isHost(host, "localhost")) return true;
  const auto lastDot = host.rfind('.');
  return lastDot != std::string::npos && isHost(host.substr(lastDot), ".localhost");
}

} // namespace velmor

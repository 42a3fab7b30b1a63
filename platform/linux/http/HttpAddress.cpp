#include "platform/linux/http/HttpAddress.h"

#include "platform/HttpSession.h"
#include "platform/linux/http/CurlTransfer.h"

#include <arpa/inet.h>

namespace velmor {

namespace {

std::string part(CURLU* url, CURLUPart which) {
  char* value = nullptr;
  if (curl_url_get(url, which, &value, CURLU_DEFAULT_PORT) != CURLUE_OK) return {};
  std::string text(value);
  curl_free(value);
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

} // namespace

HttpAddress::HttpAddress(const std::string& address) : text(address) {
  const CurlUrlHandle url(curl_url());
  const auto failure =
      curl_url_set(url.get(), CURLUPART_URL, text.c_str(), CURLU_NON_SUPPORT_SCHEME);
  const auto scheme = part(url.get(), CURLUPART_SCHEME);
  if (failure == CURLUE_BAD_SCHEME || (!failure && scheme != "http" && scheme != "https")) {
    throw TransportError("The address does not begin with http:// or https://.");
  }
  host = part(url.get(), CURLUPART_HOST);
  if (failure || host.empty()) throw TransportError("The address is not valid.");
  origin = scheme + "://" + host + ":" + part(url.get(), CURLUPART_PORT);
}

bool HttpAddress::isLoopback() const {
  constexpr std::uint32_t loopbackNetwork = 127;
  constexpr int networkShift = 24;
  in_addr address{};
  if (::inet_pton(AF_INET, host.c_str(), &address) == 1) {
    return ntohl(address.s_addr) >> networkShift == loopbackNetwork;
  }
  return host == "[::1]" || host == "localhost" || host.ends_with(".localhost");
}

} // namespace velmor

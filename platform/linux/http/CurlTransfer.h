#pragma once

#include "platform/HttpSession.h"
#include "platform/linux/http/HttpAddress.h"

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <exception>
#include <memory>
#include <stop_token>
#include <string>

namespace velmor {

/// Lets go of libcurl's handles.
struct CurlCleanup {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
/// libcurl's other handles have one type in common, so each needs a record of its own.
struct CurlEasyCleanup {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct CurlMultiCleanup {
  void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
};

using CurlUrlHandle = std::unique_ptr<CURLU, CurlCleanup>;
using CurlHeaderList = std::unique_ptr<curl_slist, CurlCleanup>;
using CurlEasyHandle = std::unique_ptr<CURL, CurlEasyCleanup>;
using CurlMultiHandle = std::unique_ptr<CURLM, CurlMultiCleanup>;

/// What a failed transfer means, as a sentence for the user.
[[nodiscard]] std::string transportMessage(CURLcode failure);

/// One request and its answer, without redirects.
class CurlTransfer {
public:
  using Clock = std::chrono::steady_clock;

  struct Limits {
    Clock::duration idle;
    Clock::time_point end;
    std::stop_token stop;
  };

  /// `request` is used until the transfer is destroyed.
  CurlTransfer(const HttpAddress& address, const HttpRequest& request);
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;
  ~CurlTransfer();

  /// Carries it out. Throws TransportError.
  [[nodiscard]] HttpResponse run(const Limits& limits);

  /// The address that the answer points to; "" when it points nowhere.
  [[nodiscard]] std::string redirectAddress() const;

private:
  /// How much has moved and which steps of connecting are done.
  using Progress = std::array<curl_off_t, 6>;

  void setMethod(const HttpRequest& request);
  void setHeaders(const HttpRequest& request);
  void waitForAnswer(const Limits& limits);
  [[nodiscard]] Progress progress() const;
  [[nodiscard]] HttpResponse answer();
  static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* transfer);

  CurlMultiHandle multi;
  CurlEasyHandle easy;
  CurlHeaderList headers;
  std::string body;
  bool bodyTooLarge = false;
};

} // namespace velmor

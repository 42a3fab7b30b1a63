#pragma once

#include "platform/HttpSession.h"

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <stop_token>
#include <string>

namespace velmor {

class HttpAddress;

/// One request and its answer, without redirects. Used by one thread.
class CurlTransfer {
public:
  using Clock = std::chrono::steady_clock;

  struct Limits {
    /// The longest time without any progress.
    Clock::duration idle;
    /// When the whole transfer must be done.
    Clock::time_point end;
    /// Ends the transfer at once.
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
  struct EasyCleanup {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct MultiCleanup {
    void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
  };
  struct ListCleanup {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  /// How much has moved and which steps of connecting are done.
  using Progress = std::array<curl_off_t, 6>;

  void setMethod(const HttpRequest& request);
  void setHeaders(const HttpRequest& request);
  void waitForAnswer(const Limits& limits);
  [[nodiscard]] Progress progress() const;
  [[nodiscard]] HttpResponse answer();
  [[nodiscard]] std::string failureMessage(CURLcode failure) const;
  static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* transfer);

  std::unique_ptr<CURLM, MultiCleanup> multi;
  std::unique_ptr<CURL, EasyCleanup> easy;
  std::unique_ptr<curl_slist, ListCleanup> headers;
  std::string body;
  bool bodyTooLarge = false;
};

} // namespace velmor

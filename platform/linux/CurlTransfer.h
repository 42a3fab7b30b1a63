#pragma once

#include "platform/HttpSession.h"
#include "platform/linux/CurlHandles.h"
#include "platform/linux/HttpAddress.h"

#include <array>
#include <chrono>
#include <exception>
#include <stop_token>

namespace velmor {

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

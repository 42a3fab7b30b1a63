#pragma once

#include <string>

namespace velmor {

/// An http or https address in its pieces.
class HttpAddress {
public:
  /// Throws TransportError for anything else than a valid http or https address.
  explicit HttpAddress(const std::string& address);

  /// As it was given.
  [[nodiscard]] const std::string& url() const { return text; }

  /// True when scheme, host and port are the same.
  [[nodiscard]] bool hasSameOrigin(const HttpAddress& other) const;

  /// True when the host can only be this machine.
  [[nodiscard]] bool isLoopback() const;

private:
  std::string text;
  std::string scheme;
  std::string host;
  std::string port;
};

} // namespace velmor

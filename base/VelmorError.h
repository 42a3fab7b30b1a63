#pragma once

#include <stdexcept>
#include <string>

namespace velmor {

/// A failure whose message is a complete sentence for the user, passed on unchanged by every layer
/// above the one that understood it. Its domain is "Velmor".
class VelmorError : public std::runtime_error {
public:
  static constexpr auto domain = "Velmor";

  explicit VelmorError(const std::string& message, int errorCode = 1)
      : std::runtime_error(message), code(errorCode) {}

  /// 1, or 404 for an unknown bridge method, or the HTTP status of a failed model request.
  const int code;
};

} // namespace velmor

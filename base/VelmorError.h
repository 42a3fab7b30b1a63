#pragma once

#include <exception>
#include <stdexcept>
#include <string>

namespace velmor {

/// A failure whose message is a complete sentence for the user, passed on unchanged by every layer
/// above the one that understood it. Its domain is "Velmor".
class VelmorError : public std::runtime_error {
public:
  static constexpr auto domain = "Velmor";

  explicit VelmorError(const std::string& message, int errorCode = 1)
      : std::runtime_error(message), code(errorCode), text(message) {}

  /// The sentence, whole. `what` ends at a NUL, which names and texts of others may contain.
  [[nodiscard]] const std::string& message() const { return text; }

  /// 1, or 404 for an unknown bridge method, or the HTTP status of a failed model request.
  const int code;

private:
  std::string text;
};

/// The sentence of any failure, whole when it is a VelmorError.
[[nodiscard]] inline std::string messageOf(const std::exception& error) {
  const auto* const own = dynamic_cast<const VelmorError*>(&error);
  return own ? own->message() : error.what();
}

} // namespace velmor

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// What the version server answers. Every member may be missing or null.
struct ReleaseResponse {
  bool ok = false;
  std::string platform;
  std::string version;
  std::string downloadURL;
  std::string releaseNotesURL;
  std::string error;
  std::string message;

  /// Nothing when the body is not such an answer: not an object, or a member of a wrong type.
  [[nodiscard]] static std::optional<ReleaseResponse> decode(std::string_view body);
};

} // namespace velmor

#pragma once

#include <stdexcept>
#include <string>

namespace velmor {

/// A version check that gave no release.
class UpdateError : public std::runtime_error {
public:
  UpdateError(bool offline, const std::string& message)
      : std::runtime_error(message), isOffline(offline) {}

  /// The server could not be reached.
  const bool isOffline;
};

} // namespace velmor

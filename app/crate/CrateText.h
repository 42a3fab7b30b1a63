#pragma once

#include "crate/tracks/CrateContents.h"

#include <string>

namespace velmor {

/// What the command line says of the DJ's own music; each text ends with a line feed. Any thread.
struct CrateText {
  /// For people, without control characters.
  [[nodiscard]] static std::string readable(const CrateContents& crate);
  /// One line with a JSON object.
  [[nodiscard]] static std::string json(const CrateContents& crate);
};

} // namespace velmor

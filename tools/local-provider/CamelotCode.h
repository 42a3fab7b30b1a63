#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor::tools {

/// A key on the Camelot wheel.
struct CamelotCode {
  int number = 1;     ///< 1 to 12, round the wheel
  bool major = false; ///< the outer ring, "B"

  /// Reads "1A" to "12B", in either case; any other text gives nothing.
  static std::optional<CamelotCode> read(std::string_view text);

  std::string text() const;

  /// Steps round the wheel to another key, the shorter way: -5 to 6.
  int stepsTo(CamelotCode other) const;

  /// 0 for the same key to 1 for one that clashes outright.
  double distanceTo(CamelotCode other) const;

  bool operator==(const CamelotCode&) const = default;
};

} // namespace velmor::tools

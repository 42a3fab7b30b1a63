#include "base/Number.h"

#include <array>
#include <cmath>
#include <limits>

namespace velmor::number {

std::optional<double> parseDouble(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  double value = 0;
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::string formatFixed(double value, int decimals) {
  // The largest double has 309 digits before the point.
  std::array<char, std::numeric_limits<double>::max_exponent10 + 32> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                          std::chars_format::fixed, decimals);
  return error == std::errc{} ? std::string(digits.data(), end) : std::string();
}

} // namespace velmor::number

#include "base/Number.h"

#include <array>
#include <limits>
#include <locale>
#include <sstream>

namespace velmor::number {

std::optional<double> parseDouble(std::string_view text) {
  // Hexadecimal digits are read by one C++ library and not by another.
  if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return std::nullopt;
  // std::from_chars would do, but not every C++ library has it for floating-point numbers.
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  const bool isRead = !stream.fail() && stream.eof();
  return isRead ? std::optional(value) : std::nullopt;
}

std::string formatFixed(double value, int decimals) {
  // The largest double has 309 digits before the point; room for 30 behind it, sign and point.
  std::array<char, std::numeric_limits<double>::max_exponent10 + 33> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                          std::chars_format::fixed, decimals);
  return error == std::errc{} ? std::string(digits.data(), end) : std::string();
}

} // namespace velmor::number

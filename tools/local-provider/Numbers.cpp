#include "Numbers.h"

#include <charconv>
#include <cmath>

namespace velmor::tools {

std::optional<int> wholeNumber(std::string_view text) {
  int number = 0;
  const auto* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end) return std::nullopt;
  // "007" and "-0" are numbers, but not the way a program writes them.
  if (std::to_string(number) != text) return std::nullopt;
  return number;
}

std::optional<double> twoDecimalNumber(std::string_view text) {
  const auto point = text.find('.');
  if (point == std::string_view::npos || text.size() - point != 3) return std::nullopt;
  if (text.find_first_not_of("0123456789.") != std::string_view::npos) return std::nullopt;
  if (point == 0 || (point > 1 && text.front() == '0')) return std::nullopt;
  double number = 0;
  const auto* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return number;
}

std::string shortText(double number) {
  char buffer[64];
  const auto rounded = std::round(number * 100.0) / 100.0;
  const auto [stop, error] = std::to_chars(buffer, buffer + sizeof buffer, rounded);
  return error == std::errc{} ? std::string(buffer, stop) : std::string("?");
}

} // namespace velmor::tools
